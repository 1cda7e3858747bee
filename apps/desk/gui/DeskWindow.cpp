#include "apps/desk/gui/DeskWindow.h"

#include "Orvel/Toolkit.h"
#include "Orvel/integration/OrvelGUIExtension.h"
#include "Orvel/store/COrvel.h"
#include "Orvel/store/SavedProtocol.h"
#include "apps/desk/Desk.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/ProjectFile.h"
#include "apps/desk/edit/ItemEditor.h"
#include "apps/desk/edit/OutdatedBar.h"
#include "apps/desk/gui/AboutBox.h"
#include "apps/desk/gui/DeskNavigation.h"
#include "apps/desk/gui/FileDialogs.h"
#include "apps/desk/gui/FileDrops.h"
#include "apps/desk/gui/GlyphIcon.h"
#include "apps/desk/gui/HelpDialog.h"
#include "apps/desk/gui/ItemFilterBar.h"
#include "apps/desk/gui/ItemFilterModel.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/gui/MessageBar.h"
#include "apps/desk/gui/Questions.h"
#include "apps/desk/gui/RecentFiles.h"
#include "apps/desk/gui/ScreenSize.h"
#include "apps/desk/gui/TableColumns.h"
#include "apps/desk/gui/TemplateWizard.h"
#include "apps/desk/picture/PictureDock.h"
#include "apps/desk/picture/PicturePanel.h"
#include "apps/desk/plots/PlotPanel.h"
#include "apps/desk/print/DeskPrinting.h"
#include "apps/desk/process/MonitorDisplay.h"
#include "apps/desk/protocol/LinePage.h"
#include "apps/desk/protocol/ProtocolList.h"
#include "apps/desk/protocol/ProtocolPanel.h"
#include "apps/desk/reports/DeskReports.h"
#include "apps/desk/reports/PageLook.h"
#include "apps/desk/runs/RunKinds.h"
#include "apps/desk/tolerances/ClassIndicator.h"
#include "apps/desk/tolerances/ToleranceDialog.h"
#include "host/app/Application.h"
#include "host/files/Error.h"
#include "host/reports/ReportsGeneratorItem.h"

#include <QAction>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QDir>
#include <QDockWidget>
#include <QFile>
#include <QFileInfo>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QScopedValueRollback>
#include <QScreen>
#include <QSettings>
#include <QSplitter>
#include <QStatusBar>
#include <QTabBar>
#include <QTimer>
#include <QUndoStack>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <utility>

namespace orvel::desk {

namespace {

// A window that may not be closed right now tries again after so long.
constexpr std::chrono::milliseconds kCloseAgain(100);

/// The path as users write it.
QString shortenHome(const QString& path)
{
    const QString home = QDir::homePath() + QLatin1Char('/');
    return path.startsWith(home) ? QStringLiteral("~/") + path.mid(home.size()) : path;
}

/// The pages that the viewer has made.
QStringList listPages()
{
    const QDir folder(Application::getTempFolder());
    QStringList pages;
    for (const QString& name : folder.entryList({QStringLiteral("protocol_*.html")}, QDir::Files))
        pages.append(folder.filePath(name));
    return pages;
}

} // namespace

DeskWindow::DeskWindow(std::unique_ptr<Document> projectDocument)
    : ProjectWindow(&projectDocument->getModel())
    , document(projectDocument.release())
    , uriFollower(*this)
    , drops(new FileDrops(*this, [this] { return !isRunWorking(); }))
    , actions(new DeskActions(*this, document->getSurveyRules()))
    , status(new QLabel)
{
    setWindowIcon(makeApplicationIcon());
    setCentralWidget(createCentralWidget());
    createProtocolDock();
    createPictureDock();
    createPlotDock();
    printing = new DeskPrinting(*document, *table, *protocolPanel, this);
    connect(printing, &DeskPrinting::told, messageBar, &MessageBar::showMessage);
    // Stands again when a word that hid it is over.
    statusBar()->addWidget(status);
    createClassIndicator();
    addUriNavigationHandler(std::make_unique<DeskNavigation>(*this));

    connect(drops, &FileDrops::dropped, this, &DeskWindow::openFiles);
    // Keys and menus leave the editor of a cell open. What is typed belongs to what they do, so this comes
    // first.
    connect(actions, &DeskActions::triggered, table, &ItemTable::endEditing);
    connect(actions, &DeskActions::runRequested, table, &ItemTable::endEditing);
    connect(actions, &DeskActions::reportRequested, table, &ItemTable::endEditing);
    connect(actions, &DeskActions::triggered, this, &DeskWindow::perform);
    connect(actions, &DeskActions::classChosen, document, &Document::setLevellingClass);
    connect(actions, &DeskActions::fileRequested, this, &DeskWindow::openFile);
    connect(actions, &DeskActions::runRequested, this,
            [this](int protocolType) { start(runs::make(protocolType, *document)); });
    connect(actions, &DeskActions::protocolRequested, this, &DeskWindow::showProtocol);
    connect(actions, &DeskActions::reportRequested, this, &DeskWindow::showReport);
    connect(document, &Document::modifiedChanged, this, &QWidget::setWindowModified);
    connect(document, &Document::originChanged, this, &DeskWindow::updateTitle);
    connect(document, &Document::networkReplaced, this, &DeskWindow::updateActions);
    connect(document, &Document::outdatedChanged, this, &DeskWindow::showOutdated);
    connect(&document->getUndoStack(), &QUndoStack::indexChanged, this, &DeskWindow::updateActions);
    connect(document, &Document::resultsChanged, this, &DeskWindow::updateActions);
    connect(document, &Document::summaryChanged, this, [this] {
        pages.clear();
        protocols->setSummary(document->getSummary());
    });
    protocols->setSummary(document->getSummary());
    setWindowModified(document->isModified());
    updateTitle();
    updateActions();
    // Wide enough for the table in the font at hand.
    resizeToScreen(*this, {qMax(1000, table->horizontalHeader()->length() + 60), 680});
    // The dialogs of a window know where it stands before the window manager has told.
    move(screen()->availableGeometry().center() - rect().center());
    restoreLayout();
    table->setFocus();
    // Last of the children: what shows the document goes first.
    document->setParent(this);
}

DeskWindow::~DeskWindow() = default;

RunMonitor& DeskWindow::getMonitor()
{
    if (!monitor) {
        // No child of the window, over which it would stay for good.
        monitor = std::make_unique<RunMonitor>(this);
        monitor->setAttribute(Qt::WA_QuitOnClose, false);
        drops->watch(*monitor);
        monitorDisplay = std::make_unique<MonitorDisplay>(*monitor, *this);
        monitor->setRecorder(recorder.get());
        monitor->setOnItemClicked([this](LONGID id) { locateItem(id); });
        connect(monitor.get(), &CProcessMonitor::runFinished, this, &DeskWindow::finishRun);
        // The viewer shows a page whatever has become of its lines.
        if (OrvelGUIExtension* viewer = OrvelGUIExtension::find(*this))
            disconnect(monitor.get(), &RunMonitor::showOrvel, viewer, &OrvelGUIExtension::showOrvel);
        connect(monitor.get(), &RunMonitor::showOrvel, this, &DeskWindow::showProtocol);
    }
    return *monitor;
}

bool DeskWindow::isRunWorking() const
{
    return (monitor && monitor->isRunning()) || document->isChecking() || readsFiles;
}

void DeskWindow::setRecordFile(const QString& path)
{
    recorder = std::make_unique<JournalRecorder>(path, *document);
    connect(recorder.get(), &JournalRecorder::failed, messageBar, &MessageBar::showMessage);
    if (monitor)
        monitor->setRecorder(recorder.get());
}

void DeskWindow::importFiles(const QStringList& paths)
{
    QStringList tables;
    std::vector<ImportSource> sources;
    for (const QString& path : paths) {
        if (filedialogs::isTableFile(path))
            tables.append(path);
        else if (!path.isEmpty())
            sources.push_back({path, std::nullopt});
    }
    if (isRunWorking())
        return;
    if (sources.empty()) {
        if (!tables.isEmpty())
            showTemplateWizard(tables);
        return;
    }
    importSources(sources);
    // Whoever gives up the one does not mean the other.
    if (isRunWorking())
        tablesToImport = tables;
}

void DeskWindow::showTemplateWizard(const QStringList& paths)
{
    auto* wizard = new TemplateWizard(paths, this);
    wizard->setAttribute(Qt::WA_DeleteOnClose);
    connect(wizard, &QDialog::accepted, this, [this, wizard] {
        std::vector<ImportSource> sources;
        for (const QString& path : wizard->getFiles())
            sources.push_back({path, wizard->getFormat()});
        // The wizard is gone before there are questions.
        QMetaObject::invokeMethod(
            this, [this, sources] { importSources(sources); }, Qt::QueuedConnection);
    });
    wizard->open();
}

void DeskWindow::importSources(const std::vector<ImportSource>& sources)
{
    if (isRunWorking())
        return;
    for (const ImportSource& source : sources) {
        if (const QString reason = filedialogs::describeNoFile(source.filePath); !reason.isEmpty()) {
            Application::warning(reason, this);
            return;
        }
    }
    // Nobody is asked to give up something for nothing.
    if (const auto refusal = findRefusal(sources)) {
        startImport(runs::makeRefusedImport(sources, *refusal));
        return;
    }
    const bool isSaved = !document->getProject().getFilePath().isEmpty();
    const bool wasEmpty = document->isEmpty();
    const std::optional<ImportMode> mode = chooseMode();
    if (!mode)
        return;
    for (const ImportSource& source : sources)
        recentfiles::add(source.filePath);
    // A saved project stays what it is in its file: another network makes another project.
    const bool isOther = *mode == ImportMode::Replace && (isSaved || wasEmpty);
    startImport(
        runs::makeImport(*document, sources, *mode,
                         isOther ? QFileInfo(sources.front().filePath).completeBaseName() : QString()));
}

void DeskWindow::startImport(DeskRun run)
{
    // What the network that stays comes from is told by the import that has read it.
    run.keepsProtocol = !document->isEmpty();
    start(run);
}

/// Why the files give no network, where there is something to ask of before they take the place of the
/// present one.
std::optional<ImportRefusal> DeskWindow::findRefusal(const std::vector<ImportSource>& sources)
{
    if (document->isEmpty() && !document->isModified())
        return std::nullopt;
    const QScopedValueRollback<bool> guard(readsFiles, true);
    return runs::findRefusal(*document, sources);
}

/// How files are imported, after the questions that this asks for; nothing if the user gave up.
std::optional<ImportMode> DeskWindow::chooseMode()
{
    const bool isSaved = !document->getProject().getFilePath().isEmpty();
    const auto replace = [&]() -> std::optional<ImportMode> {
        if (isSaved && !mayLoseChanges())
            return std::nullopt;
        return ImportMode::Replace;
    };
    if (document->isEmpty())
        return replace();
    switch (questions::askToImport(this, document->getProject().getName())) {
    case questions::Import::Replace:
        return replace();
    case questions::Import::Add:
        return ImportMode::Add;
    case questions::Import::Cancel:
        break;
    }
    return std::nullopt;
}

void DeskWindow::exportFile(const QString& path)
{
    if (path.isEmpty())
        return;
    start(runs::makeExport(*document, path));
}

bool DeskWindow::saveFile(const QString& path)
{
    try {
        projectfile::save(*document, path, projectfile::takeLock(*document, path));
    } catch (const exceptions::Error& error) {
        Application::warning(
            Desk::tr("Проект не сохранён. %1 Выберите другое место командой «Сохранить как».")
                .arg(QString::fromStdWString(error.getText())),
            this);
        return false;
    }
    recentfiles::add(path);
    statusBar()->showMessage(Desk::tr("Проект сохранён: %1").arg(path), 5000);
    tellOfLock();
    return true;
}

void DeskWindow::tellOfLock()
{
    const std::shared_ptr<ProjectLock> lock = document->getOrigin().lock;
    const QString warning = lock ? lock->takeWarning() : QString();
    if (!warning.isEmpty())
        messageBar->showMessage(warning);
}

bool DeskWindow::save()
{
    const QString path = document->getProject().getFilePath();
    if (path.isEmpty())
        return chooseAndSave();
    if (!document->isFileChanged())
        return saveFile(path);
    switch (questions::askToOverwrite(this, path)) {
    case questions::Overwrite::Yes:
        return saveFile(path);
    case questions::Overwrite::Elsewhere:
        return chooseAndSave();
    case questions::Overwrite::No:
        break;
    }
    return false;
}

bool DeskWindow::mayBeClosed()
{
    if (document->isChecking() || readsFiles)
        return false;
    if (isRunWorking() && !questions::mayStopRun(this, *monitor))
        return false;
    // A run that still works is stopped first; this is asked again when it is over.
    return isRunWorking() || mayLoseChanges();
}

bool DeskWindow::mayLoseChanges()
{
    if (!document->isModified())
        return true;
    switch (questions::askForChanges(this, document->getProject().getName())) {
    case questions::Changes::Save:
        return save();
    case questions::Changes::Discard:
        return true;
    case questions::Changes::Keep:
        break;
    }
    return false;
}

void DeskWindow::showProtocol(int protocolType)
{
    if (document->isProtocolOutdated(protocolType)) {
        openPage(protocolType, QString());
        return;
    }
    const QString page = pages[protocolType];
    if (QFileInfo::exists(page)) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(page));
        return;
    }
    OrvelGUIExtension* viewer = OrvelGUIExtension::find(*this);
    if (viewer && showPage([&] { viewer->showOrvel(protocolType); }))
        pages[protocolType] = ProtocolState::read(document->getProtocol()).pages[protocolType];
}

/// Has a page shown. One whose lines have had to be restored was made without them, and is withdrawn before a
/// browser has come to it.
bool DeskWindow::showPage(const std::function<void()>& show)
{
    if (!checkProtocol())
        return false;
    const QStringList before = listPages();
    show();
    const ProtocolKeeper::Outcome outcome = document->checkProtocol();
    if (outcome.message.isEmpty()) {
        if (const QString lack = pagelook::describeLack(); !lack.isEmpty())
            messageBar->showMessage(lack);
        return true;
    }
    for (const QString& page : listPages()) {
        if (!before.contains(page))
            QFile::remove(page);
    }
    Application::warning(outcome.message, this);
    return false;
}

/// Whether the lines of the protocols are all there.
bool DeskWindow::checkProtocol(std::optional<int> finishedRun)
{
    const ProtocolKeeper::Outcome outcome = document->checkProtocol(finishedRun);
    if (!outcome.message.isEmpty())
        Application::warning(outcome.message, this);
    return outcome.isWhole;
}

void DeskWindow::showLine(int protocolType, const QString& text)
{
    if (!isRunWorking())
        openPage(protocolType, text);
}

/// Opens the page of a protocol at the line with that text, or at its beginning, and has it say whether it is
/// out of date.
void DeskWindow::openPage(int protocolType, const QString& lineText)
{
    const QString page =
        QDir(Application::getTempFolder()).filePath(QStringLiteral("lines_%1.html").arg(protocolType));
    ExceptionCatcher catcher;
    catcher.addErrorHandler([this](const QString& message) { Application::warning(message, this); });
    catcher.run([&] {
        if (!QFileInfo::exists(pages[protocolType])) {
            bool isMade = false;
            const auto make = [&] {
                isMade = document->getProtocol().CreateProtocolFile(protocolType, page);
            };
            if (!showPage(make) || !isMade)
                return;
            pages[protocolType] = page;
        }
        const QString opened =
            linepage::write(pages[protocolType], lineText, document->isProtocolOutdated(protocolType));
        QDesktopServices::openUrl(QUrl::fromLocalFile(opened));
    });
}

void DeskWindow::showReport(int reportType)
{
    const std::optional<deskreports::Report> report = deskreports::find(reportType);
    if (report && report->needsResults && !document->hasResults()) {
        messageBar->showMessage(
            Desk::tr("Ведомости составляются по результатам. Сначала выполните уравнивание."));
        return;
    }
    const auto* generator = dynamic_cast<reports::ReportsGeneratorItem*>(
        getModel()->getFirstItem(reports::kReportsGeneratorType));
    ExceptionCatcher catcher;
    catcher.addErrorHandler([this](const QString& message) { Application::warning(message, this); });
    catcher.run([&] {
        if (!generator->showReport(reportType))
            messageBar->showMessage(
                Desk::tr("Ведомость не открылась: в системе не назначена программа для страниц "
                         "HTML, или такой ведомости нет."));
    });
}

void DeskWindow::locateItem(LONGID id, const QString& typeName)
{
    const bool isMeant = typeName.isEmpty() || typeName == document->findTypeName(id);
    if (!isMeant || !table->selectItem(id)) {
        // Search and choice may hide it.
        filterBar->clear();
        if (!isMeant || !table->selectItem(id)) {
            messageBar->showMessage(Desk::tr("Этого пункта или этой секции в проекте больше нет."));
            return;
        }
    }
    bringToFront();
}

void DeskWindow::bringToFront()
{
    if (isMinimized())
        showNormal();
    raise();
    activateWindow();
}

void DeskWindow::childEvent(QChildEvent* event)
{
    ProjectWindow::childEvent(event);
    // The main window makes these by itself for docks that share a place.
    auto* tabs = event->polished() ? qobject_cast<QTabBar*>(event->child()) : nullptr;
    if (tabs)
        tabs->setAccessibleName(Desk::tr("Панели"));
}

void DeskWindow::closeEvent(QCloseEvent* event)
{
    table->endEditing();
    if (document->isChecking() || readsFiles) {
        event->ignore();
        QTimer::singleShot(kCloseAgain, this, &QWidget::close);
        return;
    }
    if (!mayBeClosed()) {
        event->ignore();
        return;
    }
    if (isRunWorking()) {
        closeAfterRun = true;
        monitor->stop();
        event->ignore();
        return;
    }
    saveLayout();
    if (monitor)
        monitor->hide();
    event->accept();
}

QWidget* DeskWindow::createCentralWidget()
{
    auto* central = new QWidget(this);
    messageBar = new MessageBar(central);
    table = new ItemTable(*document, this, central);
    filterBar = new ItemFilterBar(*table, central);
    itemEditor = new ItemEditor(*document, *table, this);
    outdatedBar = new OutdatedBar(*document, central);
    connect(itemEditor, &ItemEditor::refused, messageBar, &MessageBar::showMessage);
    connect(table, &ItemTable::editRefused, messageBar, &MessageBar::showMessage);
    connect(outdatedBar, &OutdatedBar::runRequested, this, &DeskWindow::runAgain);
    connect(table, &ItemTable::rowsChanged, this, &DeskWindow::updateActions);
    connect(table, &ItemTable::selectedItemsChanged, this, &DeskWindow::updateActions);
    connect(table, &ItemTable::currentItemChanged, this, &DeskWindow::updateActions);
    connect(table, &ItemTable::copied, this, [this](int rowCount) {
        statusBar()->showMessage(Desk::tr("Скопировано строк: %1").arg(QString::number(rowCount)), 5000);
    });
    table->addItemAction(actions->getAction(DeskActions::Command::ShowItemProtocol));
    for (QAction* action : actions->getItemActions())
        table->addItemAction(action);
    table->setPageShower([this](const std::function<void()>& show) { showPage(show); });

    auto* findAction = new QAction(this);
    findAction->setShortcut(QKeySequence::Find);
    connect(findAction, &QAction::triggered, filterBar, &ItemFilterBar::startSearch);
    QMainWindow::addAction(findAction);

    auto* layout = new QVBoxLayout(central);
    layout->addWidget(messageBar);
    layout->addWidget(filterBar);
    layout->addWidget(outdatedBar);
    layout->addWidget(table, 1);
    return central;
}

void DeskWindow::createProtocolDock()
{
    protocolDock = new QDockWidget(Desk::tr("Последние протоколы"), this);
    protocolDock->setObjectName(QStringLiteral("protocols"));
    auto* parts = new QSplitter(protocolDock);
    protocols = new ProtocolList(parts);
    protocolPanel = new ProtocolPanel(*document, parts);
    parts->setSizes({380, 620});
    protocolDock->setWidget(parts);
    addDockWidget(Qt::BottomDockWidgetArea, protocolDock);
    resizeDocks({protocolDock}, {220}, Qt::Vertical);
    connect(protocols, &ProtocolList::protocolRequested, this, &DeskWindow::showProtocol);
    connect(protocols, &ProtocolList::protocolChosen, protocolPanel, &ProtocolPanel::showProtocol);
    connect(protocolPanel, &ProtocolPanel::itemRequested, this, [this](LONGID id) {
        // The keyboard stays with the lines. Keys that change the selected item mean that of the line: search
        // and choice do not hide it, and where it is gone nothing else stays selected.
        if (table->selectItem(id, ItemTable::Focus::Stays))
            return;
        filterBar->clear();
        if (table->selectItem(id, ItemTable::Focus::Stays))
            return;
        table->selectionModel()->clear();
        messageBar->showMessage(Desk::tr("Этого пункта или этой секции в проекте больше нет."));
    });
    connect(protocolPanel, &ProtocolPanel::lineRequested, this, &DeskWindow::showLine);
    connect(table, &ItemTable::currentItemChanged, protocolPanel,
            [this] { protocolPanel->setCurrentItem(table->getCurrentItem()); });
    actions->addToProtocolMenu(protocolDock->toggleViewAction());
    auto* showLines = new QAction(Desk::tr("В &строках протокола"), this);
    connect(showLines, &QAction::triggered, this, [this] {
        protocolDock->show();
        protocolPanel->showAboutCurrent();
    });
    table->addItemAction(showLines);
}

void DeskWindow::createPlotDock()
{
    auto* dock = new QDockWidget(Desk::tr("Графики"), this);
    dock->setObjectName(QStringLiteral("plots"));
    auto* panel = new PlotPanel(*document, dock);
    dock->setWidget(panel);
    // One above the other leaves neither enough room.
    tabifyDockWidget(pictureDock, dock);
    dock->hide();
    dock->toggleViewAction()->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+G")));
    for (QDockWidget* one : {dock, static_cast<QDockWidget*>(pictureDock)})
        connect(one->toggleViewAction(), &QAction::triggered, one, &QWidget::raise);
    actions->addToViewMenu(dock->toggleViewAction());
    connect(panel, &PlotPanel::itemRequested, this, [this](LONGID id) { locateItem(id); });
}

void DeskWindow::createClassIndicator()
{
    auto* indicator = new ClassIndicator(*document, statusBar());
    statusBar()->addPermanentWidget(indicator);
    connect(indicator, &QAbstractButton::clicked, this, &DeskWindow::editTolerances);
    connect(document, &Document::surveyRulesChanged, actions,
            [this] { actions->showRules(document->getSurveyRules()); });
}

void DeskWindow::editTolerances()
{
    if (isRunWorking())
        return;
    auto* dialog =
        new ToleranceDialog(document->getSurveyRules(), document->getParameters().confidence, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, document,
            [this, dialog] { document->setToleranceRules(dialog->getRules()); });
    dialog->open();
}

void DeskWindow::createPictureDock()
{
    pictureDock = new picture::PictureDock(*document, *table, this);
    addDockWidget(Qt::RightDockWidgetArea, pictureDock);
    pictureDock->hide();
    connect(&pictureDock->getPanel(), &picture::PicturePanel::itemChosen, this, [this](LONGID id) {
        // The keyboard stays with the picture, unless the search hides the item.
        if (!table->selectItem(id, ItemTable::Focus::Stays))
            locateItem(id);
    });
    actions->addToViewMenu(pictureDock->toggleViewAction());
    auto* showInPicture = new QAction(Desk::tr("На с&хеме"), this);
    connect(showInPicture, &QAction::triggered, pictureDock, [this] {
        pictureDock->show();
        pictureDock->raise();
    });
    table->addItemAction(showInPicture);
}

void DeskWindow::restoreLayout()
{
    const QSettings settings;
    restoreGeometry(settings.value(QStringLiteral("window/geometry")).toByteArray());
    restoreState(settings.value(QStringLiteral("window/state")).toByteArray());
    table->getColumns().restore(settings.value(QStringLiteral("window/tableColumns")).toByteArray());
}

void DeskWindow::saveLayout() const
{
    QSettings settings;
    settings.setValue(QStringLiteral("window/geometry"), saveGeometry());
    settings.setValue(QStringLiteral("window/state"), saveState());
    settings.setValue(QStringLiteral("window/tableColumns"), table->getColumns().save());
}

void DeskWindow::perform(DeskActions::Command command)
{
    using Command = DeskActions::Command;
    switch (command) {
    case Command::New:
        Q_EMIT newRequested();
        break;
    case Command::Open:
        openFile(filedialogs::chooseFile(this));
        break;
    case Command::Save:
        save();
        break;
    case Command::SaveAs:
        chooseAndSave();
        break;
    case Command::Import:
        importFiles(filedialogs::chooseNetworks(this));
        break;
    case Command::ImportTable:
        showTemplateWizard({});
        break;
    case Command::Export:
        exportFile(filedialogs::chooseExportTarget(this, *document));
        break;
    case Command::Print:
        printing->showDialog();
        break;
    case Command::Quit:
        close();
        break;
    case Command::EditTolerances:
        editTolerances();
        break;
    case Command::ShowMonitor:
        showMonitor();
        break;
    case Command::ShowItemProtocol:
        showCurrentItemProtocol();
        break;
    case Command::NextProblem:
        goToProblem(true);
        break;
    case Command::PreviousProblem:
        goToProblem(false);
        break;
    case Command::ShowHelp:
        drops->watch(HelpDialog::showBeside(this));
        break;
    case Command::ShowAbout:
        showAboutBox(this);
        break;
    case Command::RunAgain:
        runAgain();
        break;
    default:
        performEdit(command);
    }
}

void DeskWindow::performEdit(DeskActions::Command command)
{
    using Command = DeskActions::Command;
    switch (command) {
    case Command::Undo:
        document->getUndoStack().undo();
        break;
    case Command::Redo:
        document->getUndoStack().redo();
        break;
    case Command::EditValue:
        table->editCurrentValue();
        break;
    case Command::SwitchSections:
        itemEditor->switchSections();
        break;
    case Command::SetSigma:
        itemEditor->setSigma();
        break;
    case Command::HoldPoints:
        itemEditor->holdPoints();
        break;
    case Command::FreePoints:
        itemEditor->freePoints();
        break;
    case Command::AddSection:
        itemEditor->addSection();
        break;
    case Command::DeleteSections:
        itemEditor->deleteSections();
        break;
    default:
        break;
    }
}

/// Runs what has run with another state of the network, one after the other.
void DeskWindow::runAgain()
{
    if (isRunWorking())
        return;
    typesToRun = document->getOutdatedTypes();
    runNext();
}

void DeskWindow::runNext()
{
    if (typesToRun.empty())
        return;
    const int type = typesToRun.front();
    typesToRun.erase(typesToRun.begin());
    start(runs::make(type, *document));
}

void DeskWindow::showOutdated()
{
    protocols->setOutdated(document->getOutdatedTypes());
    updateActions();
}

void DeskWindow::goToProblem(bool isForward)
{
    protocolDock->show();
    protocolPanel->goToProblem(isForward);
}

bool DeskWindow::chooseAndSave()
{
    const QString path = filedialogs::chooseProjectTarget(this, document->getProject().getName());
    return !path.isEmpty() && saveFile(path);
}

void DeskWindow::showCurrentItemProtocol()
{
    if (getModel()->isItemMentioned(table->getCurrentItem()))
        table->showCurrentProtocol();
    else
        messageBar->showMessage(Desk::tr("О выделенном в протоколах нет строк."));
}

void DeskWindow::showMonitor()
{
    getMonitor();
    monitorDisplay->showWanted();
}

void DeskWindow::openFile(const QString& path)
{
    if (path.isEmpty())
        return;
    if (filedialogs::isNetworkFile(path))
        importFile(path);
    else
        Q_EMIT openRequested(path);
}

/// Several files are one network; a project among them is opened, and nothing else.
void DeskWindow::openFiles(const QStringList& paths)
{
    const auto project = std::find_if_not(paths.begin(), paths.end(), &filedialogs::isNetworkFile);
    if (project != paths.end())
        openFile(*project);
    else
        importFiles(paths);
}

void DeskWindow::start(const DeskRun& run)
{
    if (isRunWorking() || !checkProtocol())
        return;
    document->refuseEdits(true);
    getMonitor().startRun(run);
    monitorDisplay->beginRun();
    updateTitle();
    updateActions();
}

void DeskWindow::finishRun()
{
    updateTitle();
    // A file that could not be read, or written, changes nothing of the project.
    if (!monitor->wasInterrupted() && monitor->getRun().failure->kind != RunFailure::Kind::Refused)
        document->setModified(true);
    if (monitor->isProtocolKept())
        checkProtocol();
    else
        checkProtocol(monitor->getRun().protocolType);
    protocols->choose(monitor->getRun().protocolType);
    document->refuseEdits(false);
    updateActions();
    endDisplay();
    const QStringList tables = std::exchange(tablesToImport, QStringList());
    if (closeAfterRun) {
        closeAfterRun = false;
        typesToRun.clear();
        close();
    } else if (monitor->wasInterrupted()) {
        typesToRun.clear();
    } else if (!typesToRun.empty()) {
        QMetaObject::invokeMethod(this, &DeskWindow::runNext, Qt::QueuedConnection);
    } else if (!tables.isEmpty() && !monitor->wasInterrupted() &&
               monitor->getRun().failure->kind == RunFailure::Kind::None) {
        showTemplateWizard(tables);
    }
}

/// Leaves the progress window to those who have something to see there, and the others the list of protocols.
void DeskWindow::endDisplay()
{
    const bool hasProblems = monitor->hasProblems() || monitor->wasInterrupted();
    monitorDisplay->endRun(hasProblems);
    if (!hasProblems && !protocolDock->isVisible())
        statusBar()->showMessage(
            Desk::tr("%1: ошибок и предупреждений нет").arg(getTypeText(monitor->getRun().protocolType)),
            5000);
}

void DeskWindow::updateTitle()
{
    const QString name = document->getProject().getName();
    const QString path = document->getProject().getFilePath();
    // The folder, too: desks with files of the same name are told apart.
    const QString file = path.isEmpty() ? QString() : QStringLiteral(" (%1)").arg(shortenHome(path));
    setWindowTitle(name + QStringLiteral("[*]") + file);
    setWindowFilePath(path);
    if (monitor && monitor->getRun().protocolType != 0)
        monitor->setWindowTitle(
            QStringLiteral("%1 — %2").arg(getTypeText(monitor->getRun().protocolType), name));
}

void DeskWindow::updateActions()
{
    const bool isIdle = !isRunWorking();
    const QUndoStack& stack = document->getUndoStack();
    actions->update({!isIdle, !document->isEmpty(), document->hasResults(), table->getCurrentItem() != 0,
                     table->selectionModel()->hasSelection(), stack.undoText(), stack.redoText(),
                     document->getOutdatedTypes()});
    outdatedBar->setRunPossible(isIdle);
    protocols->setEnabled(isIdle);
    table->setProtocolsAvailable(isIdle);
    updateStatus();
}

void DeskWindow::updateStatus()
{
    if (document->isEmpty()) {
        status->setText(Desk::tr("Импортируйте нивелирную сеть или файл нивелира, или откройте проект"));
        table->setEmptyText(Desk::tr(
            "Перетащите сюда файл нивелирной сети (.gkf) или нивелира (GSI, M5) или нажмите Ctrl+I"));
        return;
    }
    table->setEmptyText(Desk::tr("Поиск и отбор не нашли ни пунктов, ни секций"));
    if (table->isSlow()) {
        status->setText(Desk::tr("Строки таблицы отбираются и сортируются…"));
        return;
    }
    status->setText(Desk::tr("Пунктов: %1, секций: %2, показано: %3")
                        .arg(QString::number(document->getPoints().size()),
                             QString::number(document->getSections().size()),
                             QString::number(table->model()->rowCount())));
}

} // namespace orvel::desk
