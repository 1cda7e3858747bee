#include "apps/desk/gui/DeskWindow.h"

#include "Orvel/integration/OrvelGUIExtension.h"
#include "apps/desk/Desk.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/edit/ItemEditor.h"
#include "apps/desk/edit/OutdatedBar.h"
#include "apps/desk/gui/AboutBox.h"
#include "apps/desk/gui/DeskNavigation.h"
#include "apps/desk/gui/DeskPages.h"
#include "apps/desk/gui/FileDialogs.h"
#include "apps/desk/gui/FileDrops.h"
#include "apps/desk/gui/GlyphIcon.h"
#include "apps/desk/gui/HelpDialog.h"
#include "apps/desk/gui/ItemFilterBar.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/gui/MessageBar.h"
#include "apps/desk/gui/ScreenSize.h"
#include "apps/desk/print/DeskPrinting.h"
#include "apps/desk/process/MonitorDisplay.h"
#include "apps/desk/protocol/ProtocolList.h"
#include "apps/desk/protocol/ProtocolPanel.h"
#include "apps/desk/runs/RunKinds.h"
#include "apps/desk/tolerances/ToleranceDialog.h"
#include "host/app/Application.h"

#include <QCloseEvent>
#include <QDir>
#include <QDockWidget>
#include <QFileInfo>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QLabel>
#include <QScreen>
#include <QStatusBar>
#include <QTimer>
#include <QUndoStack>

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

} // namespace

DeskWindow::DeskWindow(std::unique_ptr<Document> projectDocument)
    : ProjectWindow(&projectDocument->getModel())
    , document(projectDocument.release())
    , uriFollower(*this)
    , drops(new FileDrops(*this, [this] { return !isRunWorking(); }))
    , pages(new DeskPages(*document, *this))
    , actions(new DeskActions(*this, document->getSurveyRules()))
    , status(new QLabel)
{
    setWindowIcon(makeApplicationIcon());
    setCentralWidget(createCentralWidget());
    createProtocolDock();
    createPictureDock();
    createPlotDock();
    printing = new DeskPrinting(*document, *table, *protocolPanel, *plotPanel, this);
    connect(printing, &DeskPrinting::told, messageBar, &MessageBar::showMessage);
    connect(pages, &DeskPages::told, messageBar, &MessageBar::showMessage);
    // Stands again when a word that hid it is over.
    statusBar()->addWidget(status);
    createClassIndicator();
    addUriNavigationHandler(std::make_unique<DeskNavigation>(*this));

    // Keys, menus and drops leave the editor of a cell open. What is typed belongs to what they do, so this
    // comes first.
    connect(drops, &FileDrops::dropped, table, &ItemTable::endEditing);
    connect(actions, &DeskActions::classChosen, table, &ItemTable::endEditing);
    connect(actions, &DeskActions::fileRequested, table, &ItemTable::endEditing);
    connect(actions, &DeskActions::triggered, table, &ItemTable::endEditing);
    connect(actions, &DeskActions::runRequested, table, &ItemTable::endEditing);
    connect(actions, &DeskActions::reportRequested, table, &ItemTable::endEditing);
    connect(drops, &FileDrops::dropped, this, &DeskWindow::openFiles);
    connect(actions, &DeskActions::triggered, this, &DeskWindow::perform);
    connect(actions, &DeskActions::classChosen, document, &Document::setLevellingClass);
    connect(actions, &DeskActions::fileRequested, this, &DeskWindow::openFile);
    connect(actions, &DeskActions::runRequested, this,
            [this](int protocolType) { start(runs::make(protocolType, *document)); });
    connect(actions, &DeskActions::protocolRequested, pages, &DeskPages::showProtocol);
    connect(actions, &DeskActions::reportRequested, pages, &DeskPages::showReport);
    connect(document, &Document::modifiedChanged, this, &QWidget::setWindowModified);
    connect(document, &Document::originChanged, this, &DeskWindow::updateTitle);
    connect(document, &Document::networkReplaced, this, &DeskWindow::updateActions);
    connect(document, &Document::outdatedChanged, this, &DeskWindow::showOutdated);
    connect(&document->getUndoStack(), &QUndoStack::indexChanged, this, &DeskWindow::updateActions);
    connect(document, &Document::resultsChanged, this, &DeskWindow::updateActions);
    connect(document, &Document::summaryChanged, this,
            [this] { protocols->setSummary(document->getSummary()); });
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
        connect(monitor.get(), &RunMonitor::showOrvel, pages, &DeskPages::showProtocol);
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
    // The progress window may stand above the lines.
    raise();
    protocolDock->show();
    protocolPanel->goToProblem(isForward);
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

void DeskWindow::start(const DeskRun& run)
{
    if (isRunWorking() || !pages->check())
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
        pages->check();
    else
        pages->check(monitor->getRun().protocolType);
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
    const QString file = path.isEmpty()
                             ? QString()
                             : QStringLiteral(" (%1)").arg(shortenHome(QFileInfo(path).absoluteFilePath()));
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
    situation = {!isIdle,
                 !document->isEmpty(),
                 document->hasResults(),
                 table->getCurrentItem() != 0,
                 table->selectionModel()->hasSelection(),
                 stack.undoText(),
                 stack.redoText(),
                 document->getOutdatedTypes()};
    actions->update(situation);
    outdatedBar->setRunPossible(isIdle);
    protocols->setEnabled(isIdle);
    table->setProtocolsAvailable(isIdle);
    updateStatus();
}

/// Rows are chosen all the time; of that the actions want to know only whether any are. What they were told
/// while the protocol was checked is over.
void DeskWindow::followSelection()
{
    if (situation.isRunWorking != isRunWorking() ||
        situation.hasCurrentItem != (table->getCurrentItem() != 0) ||
        situation.hasSelection != table->selectionModel()->hasSelection())
        updateActions();
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
    const QString points = QString::number(document->countPoints());
    const QString sections = QString::number(document->countSections());
    const QString shown = QString::number(table->model()->rowCount());
    const std::size_t off = document->countOff();
    status->setText(off == 0 ? Desk::tr("Пунктов: %1, секций: %2, показано: %3").arg(points, sections, shown)
                             : Desk::tr("Пунктов: %1, секций: %2 (отключено: %3), показано: %4")
                                   .arg(points, sections, QString::number(off), shown));
}

} // namespace orvel::desk
