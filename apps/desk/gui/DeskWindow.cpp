#include "apps/desk/gui/DeskWindow.h"

#include "Orvel/integration/ExceptionCatcher.h"
#include "Orvel/integration/OrvelGUIExtension.h"
#include "Orvel/store/ProtocolTypes.h"
#include "apps/desk/Desk.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/ProjectFile.h"
#include "apps/desk/gui/DeskNavigation.h"
#include "apps/desk/gui/GlyphIcon.h"
#include "apps/desk/gui/HelpDialog.h"
#include "apps/desk/gui/ItemFilterModel.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/gui/MessageBar.h"
#include "apps/desk/gui/ProtocolList.h"
#include "apps/desk/gui/RecentFiles.h"
#include "host/app/Application.h"
#include "host/app/SDIApplication.h"
#include "host/files/Error.h"
#include "host/reports/ReportsGeneratorItem.h"

#include <QAction>
#include <QCloseEvent>
#include <QDir>
#include <QDockWidget>
#include <QFileDialog>
#include <QFileInfo>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QSettings>
#include <QStatusBar>
#include <QUrl>
#include <QUrlQuery>
#include <QVBoxLayout>

#include <algorithm>

namespace orvel::desk {

namespace {

const QString kNetworkSuffix = QStringLiteral("gkf");
const QString kProjectSuffix = QStringLiteral("orvel");

bool isNetworkFile(const QString& path)
{
    return QFileInfo(path).suffix().compare(kNetworkSuffix, Qt::CaseInsensitive) == 0;
}

/// The file of a drag from a file manager, if it is one that the desk opens.
QString findDroppedFile(const QMimeData& data)
{
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile())
            return url.toLocalFile();
    }
    return QString();
}

QString getNetworkFilter()
{
    return Desk::tr("Нивелирные сети (*.%1)").arg(kNetworkSuffix);
}

QString getProjectFilter()
{
    return Desk::tr("Проекты (*.%1)").arg(kProjectSuffix);
}

} // namespace

DeskWindow::DeskWindow(std::unique_ptr<Document> projectDocument)
    : ProjectWindow(&projectDocument->getModel())
    , document(projectDocument.release())
{
    setWindowIcon(makeApplicationIcon());
    setAcceptDrops(true);
    createActions();
    setCentralWidget(createCentralWidget());
    createToolBar();
    createProtocolDock();
    addUriNavigationHandler(std::make_unique<DeskNavigation>(*this));

    connect(document, &Document::modifiedChanged, this, &QWidget::setWindowModified);
    connect(document, &Document::networkReplaced, this, &DeskWindow::updateActions);
    connect(document, &Document::resultsChanged, this, &DeskWindow::updateActions);
    connect(document, &Document::summaryChanged, this,
            [this] { protocols->setSummary(document->getSummary()); });
    protocols->setSummary(document->getSummary());
    setWindowModified(document->isModified());
    updateTitle();
    updateActions();
    // Wide enough for the table in the font at hand.
    resize(qMax(1000, table->horizontalHeader()->length() + 60), 680);
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
        monitor = std::make_unique<RunMonitor>(this, this);
        monitor->setRecorder(recorder.get());
        monitor->setOnItemClicked([this](LONGID id) { locateItem(id); });
        connect(monitor.get(), &CProcessMonitor::runFinished, this, &DeskWindow::finishRun);
    }
    return *monitor;
}

bool DeskWindow::isRunWorking() const
{
    return monitor && monitor->isRunning();
}

void DeskWindow::setRecordFile(const QString& path)
{
    recorder = std::make_unique<JournalRecorder>(path, *document);
    connect(recorder.get(), &JournalRecorder::failed, messageBar, &MessageBar::showMessage);
    if (monitor)
        monitor->setRecorder(recorder.get());
}

void DeskWindow::importFile(const QString& path)
{
    if (isRunWorking() || !mayReplaceNetwork())
        return;
    if (document->isEmpty() && document->getProject().getFilePath().isEmpty()) {
        document->getProject().setName(QFileInfo(path).completeBaseName());
        updateTitle();
    }
    recentfiles::add(path);
    start(runs::makeImport(*document, path));
}

void DeskWindow::exportFile(const QString& path)
{
    start(runs::makeExport(*document, path));
}

bool DeskWindow::saveFile(const QString& path)
{
    try {
        projectfile::save(*document, path);
    } catch (const exceptions::Error& error) {
        Application::warning(
            Desk::tr("Проект не сохранён. %1 Выберите другое место командой «Сохранить как».")
                .arg(QString::fromStdWString(error.getText())),
            this);
        return false;
    }
    recentfiles::add(path);
    updateTitle();
    statusBar()->showMessage(Desk::tr("Проект сохранён: %1").arg(path), 5000);
    return true;
}

bool DeskWindow::save()
{
    const QString path = document->getProject().getFilePath();
    return path.isEmpty() ? chooseAndSave() : saveFile(path);
}

bool DeskWindow::mayBeClosed()
{
    if (isRunWorking() && !mayStopRun())
        return false;
    // A run that still works is stopped first; this is asked again when it is over.
    if (isRunWorking() || !document->isModified())
        return true;
    QMessageBox box(QMessageBox::Question, Desk::tr("Проект не сохранён"),
                    Desk::tr("Сохранить изменения в проекте «%1»?").arg(document->getProject().getName()),
                    QMessageBox::NoButton, this);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(Desk::tr("Без сохранения пропадут результаты и протоколы."));
    QPushButton* saveButton = box.addButton(Desk::tr("&Сохранить"), QMessageBox::AcceptRole);
    QPushButton* discardButton = box.addButton(Desk::tr("&Не сохранять"), QMessageBox::DestructiveRole);
    box.setEscapeButton(box.addButton(Desk::tr("&Отмена"), QMessageBox::RejectRole));
    box.setDefaultButton(saveButton);
    box.exec();
    if (box.clickedButton() == saveButton)
        return save();
    return box.clickedButton() == discardButton;
}

void DeskWindow::showProtocol(int protocolType)
{
    if (OrvelGUIExtension* viewer = OrvelGUIExtension::find(*this))
        viewer->showOrvel(protocolType);
}

void DeskWindow::showReport(int reportType)
{
    if (!document->hasResults()) {
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

void DeskWindow::locateItem(LONGID id)
{
    if (!table->selectItem(id)) {
        // The search may hide it.
        search->clear();
        if (!table->selectItem(id)) {
            messageBar->showMessage(Desk::tr("Этого пункта или этой секции в проекте больше нет."));
            return;
        }
    }
    bringToFront();
}

DeskWindow::UriAnswer DeskWindow::followUri(const QUrl& url)
{
    const QString scheme = static_cast<SDIApplication*>(getApplication())->getUriScheme();
    if (url.scheme() != scheme)
        return UriAnswer::NotUnderstood;
    const QString projectName = QUrlQuery(url).queryItemValue(QStringLiteral("project"), QUrl::FullyDecoded);
    if (projectName != document->getProject().getName())
        return UriAnswer::OtherProject;
    // A page would empty the protocol under the run's hands.
    if (isRunWorking() && url.host() != QLatin1String("locate-item")) {
        messageBar->showMessage(Desk::tr("Идёт обработка. Откройте ссылку ещё раз, когда она закончится."));
        bringToFront();
        return UriAnswer::Taken;
    }
    if (!navigate(url))
        return UriAnswer::NotUnderstood;
    bringToFront();
    return UriAnswer::Taken;
}

void DeskWindow::explainUri(const QUrl& url)
{
    const QString projectName = QUrlQuery(url).queryItemValue(QStringLiteral("project"), QUrl::FullyDecoded);
    if (projectName.isEmpty() || projectName == document->getProject().getName())
        messageBar->showMessage(Desk::tr("Ссылка не понята: %1").arg(url.toDisplayString()));
    else
        messageBar->showMessage(
            Desk::tr("Ссылка ведёт в проект «%1». Откройте этот проект и щёлкните ссылку ещё раз.")
                .arg(projectName));
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
    event->accept();
}

void DeskWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (!isRunWorking() && !findDroppedFile(*event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void DeskWindow::dropEvent(QDropEvent* event)
{
    const QString path = findDroppedFile(*event->mimeData());
    if (path.isEmpty() || isRunWorking())
        return;
    event->acceptProposedAction();
    // The file manager waits for the end of the drag: no questions before that.
    QMetaObject::invokeMethod(
        this, [this, path] { openFile(path); }, Qt::QueuedConnection);
}

QWidget* DeskWindow::createCentralWidget()
{
    auto* central = new QWidget(this);
    messageBar = new MessageBar(central);
    search = new QLineEdit(central);
    search->setPlaceholderText(Desk::tr("Поиск по имени (Ctrl+F)"));
    search->setAccessibleName(Desk::tr("Поиск пунктов и секций"));
    search->setClearButtonEnabled(true);
    search->addAction(makeIcon(Glyph::Search), QLineEdit::LeadingPosition);
    table = new ItemTable(*document, this, central);
    connect(search, &QLineEdit::textChanged, table->getFilterModel(), &ItemFilterModel::setSearchText);
    connect(search, &QLineEdit::textChanged, this, &DeskWindow::updateStatus);
    connect(search, &QLineEdit::returnPressed, table, QOverload<>::of(&QWidget::setFocus));
    connect(table, &ItemTable::currentItemChanged, this, &DeskWindow::updateActions);

    auto* findAction = new QAction(this);
    findAction->setShortcut(QKeySequence::Find);
    connect(findAction, &QAction::triggered, this, &DeskWindow::startSearch);
    QMainWindow::addAction(findAction);

    auto* layout = new QVBoxLayout(central);
    layout->addWidget(messageBar);
    layout->addWidget(search);
    layout->addWidget(table, 1);
    return central;
}

void DeskWindow::createProtocolDock()
{
    auto* dock = new QDockWidget(Desk::tr("Последние протоколы"), this);
    dock->setObjectName(QStringLiteral("protocols"));
    protocols = new ProtocolList(dock);
    dock->setWidget(protocols);
    addDockWidget(Qt::BottomDockWidgetArea, dock);
    resizeDocks({dock}, {150}, Qt::Vertical);
    connect(protocols, &ProtocolList::protocolRequested, this, &DeskWindow::showProtocol);
    protocolMenu->addSeparator();
    protocolMenu->addAction(dock->toggleViewAction());
}

void DeskWindow::restoreLayout()
{
    const QSettings settings;
    restoreGeometry(settings.value(QStringLiteral("window/geometry")).toByteArray());
    restoreState(settings.value(QStringLiteral("window/state")).toByteArray());
    table->horizontalHeader()->restoreState(settings.value(QStringLiteral("window/columns")).toByteArray());
}

void DeskWindow::saveLayout() const
{
    QSettings settings;
    settings.setValue(QStringLiteral("window/geometry"), saveGeometry());
    settings.setValue(QStringLiteral("window/state"), saveState());
    settings.setValue(QStringLiteral("window/columns"), table->horizontalHeader()->saveState());
}

void DeskWindow::chooseAndOpen()
{
    const QString path = QFileDialog::getOpenFileName(
        this, Desk::tr("Открыть проект или сеть"), recentfiles::getFolder(),
        Desk::tr("Проекты и нивелирные сети (*.%1 *.%2)").arg(kProjectSuffix, kNetworkSuffix));
    if (!path.isEmpty())
        openFile(path);
}

void DeskWindow::chooseAndImport()
{
    const QString path = QFileDialog::getOpenFileName(this, Desk::tr("Импорт нивелирной сети"),
                                                      recentfiles::getFolder(), getNetworkFilter());
    if (!path.isEmpty())
        importFile(path);
}

void DeskWindow::chooseAndExport()
{
    const QString path = QFileDialog::getSaveFileName(
        this, Desk::tr("Экспорт высот"), suggestPath(QStringLiteral("csv")), Desk::tr("Таблицы CSV (*.csv)"));
    if (!path.isEmpty())
        exportFile(path);
}

QString DeskWindow::suggestPath(const QString& suffix) const
{
    return QDir(recentfiles::getFolder())
        .filePath(document->getProject().getName() + QLatin1Char('.') + suffix);
}

bool DeskWindow::chooseAndSave()
{
    QString path = QFileDialog::getSaveFileName(this, Desk::tr("Сохранить проект"),
                                                suggestPath(kProjectSuffix), getProjectFilter());
    if (path.isEmpty())
        return false;
    if (QFileInfo(path).suffix().isEmpty())
        path += QLatin1Char('.') + kProjectSuffix;
    return saveFile(path);
}

void DeskWindow::saveWithoutAnswer()
{
    save();
}

void DeskWindow::compile()
{
    start(runs::makeCompile(*document));
}

void DeskWindow::adjust()
{
    start(runs::makeAdjust(*document));
}

void DeskWindow::analyse()
{
    start(runs::makeL1Analysis(*document));
}

void DeskWindow::showCurrentItemProtocol()
{
    if (getModel()->isItemMentioned(table->getCurrentItem()))
        table->showCurrentProtocol();
    else
        messageBar->showMessage(Desk::tr("О выделенном ни один протокол не говорит."));
}

void DeskWindow::showMonitor()
{
    getMonitor().show();
    getMonitor().raise();
    getMonitor().activateWindow();
}

void DeskWindow::showHelp()
{
    auto* dialog = new HelpDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->show();
}

void DeskWindow::showAbout()
{
    auto* box = new QMessageBox(QMessageBox::NoIcon, Desk::tr("О программе"),
                                Desk::tr("Нивелирный стол %1").arg(QCoreApplication::applicationVersion()),
                                QMessageBox::NoButton, this);
    box->setIconPixmap(makeApplicationIcon().pixmap(64, 64));
    box->setInformativeText(
        Desk::tr("Обработка нивелирных сетей с протоколами, каждая строка которых ведёт к своим "
                 "пунктам и секциям."));
    box->addButton(Desk::tr("&Закрыть"), QMessageBox::RejectRole);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void DeskWindow::startSearch()
{
    search->setFocus();
    search->selectAll();
}

void DeskWindow::openFile(const QString& path)
{
    if (isNetworkFile(path))
        importFile(path);
    else
        Q_EMIT openRequested(path);
}

void DeskWindow::start(const DeskRun& run)
{
    if (isRunWorking())
        return;
    getMonitor().setWindowTitle(getTypeText(run.protocolType));
    getMonitor().startRun(run);
    getMonitor().show();
    updateActions();
}

void DeskWindow::finishRun()
{
    if (!monitor->wasInterrupted())
        document->setModified(true);
    document->updateSummary();
    updateActions();
    if (closeAfterRun) {
        closeAfterRun = false;
        close();
    }
}

bool DeskWindow::mayReplaceNetwork()
{
    if (document->isEmpty())
        return true;
    QMessageBox box(QMessageBox::Question, Desk::tr("Импорт нивелирной сети"),
                    Desk::tr("Заменить сеть проекта «%1»?").arg(document->getProject().getName()),
                    QMessageBox::NoButton, this);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText(Desk::tr("Результаты и протоколы обработки прежней сети пропадут."));
    QPushButton* replaceButton = box.addButton(Desk::tr("&Заменить"), QMessageBox::AcceptRole);
    QPushButton* cancelButton = box.addButton(Desk::tr("&Отмена"), QMessageBox::RejectRole);
    box.setDefaultButton(cancelButton);
    box.setEscapeButton(cancelButton);
    box.exec();
    return box.clickedButton() == replaceButton;
}

bool DeskWindow::mayStopRun()
{
    QMessageBox box(QMessageBox::Question, Desk::tr("Идёт обработка"),
                    Desk::tr("Прервать обработку и закрыть окно?"), QMessageBox::NoButton, this);
    QPushButton* stopButton = box.addButton(Desk::tr("&Прервать"), QMessageBox::DestructiveRole);
    QPushButton* cancelButton = box.addButton(Desk::tr("П&родолжить"), QMessageBox::RejectRole);
    box.setDefaultButton(cancelButton);
    box.setEscapeButton(cancelButton);
    // Nothing to ask any more once the run is over.
    connect(monitor.get(), &CProcessMonitor::runFinished, &box, [&] { stopButton->click(); });
    box.exec();
    return box.clickedButton() == stopButton;
}

void DeskWindow::updateTitle()
{
    setWindowTitle(document->getProject().getName() + QStringLiteral("[*]"));
    setWindowFilePath(document->getProject().getFilePath());
}

void DeskWindow::updateActions()
{
    const bool isIdle = !isRunWorking();
    const auto enable = [](const std::vector<QAction*>& actions, bool isEnabled) {
        for (QAction* action : actions)
            action->setEnabled(isEnabled);
    };
    enable(idleActions, isIdle);
    enable(networkActions, isIdle && !document->isEmpty());
    enable(resultActions, isIdle && document->hasResults());
    itemProtocolAction->setEnabled(isIdle && table->getCurrentItem() != 0);
    protocols->setEnabled(isIdle);
    table->setProtocolsAvailable(isIdle);
    updateStatus();
}

void DeskWindow::updateStatus()
{
    if (document->isEmpty()) {
        statusBar()->showMessage(Desk::tr("Импортируйте нивелирную сеть (.gkf) или откройте проект"));
        table->setEmptyText(Desk::tr("Перетащите сюда файл нивелирной сети (.gkf) или нажмите Ctrl+I"));
        return;
    }
    table->setEmptyText(Desk::tr("Поиск не нашёл ни пунктов, ни секций"));
    statusBar()->showMessage(Desk::tr("Пунктов: %1, секций: %2, показано: %3")
                                 .arg(QString::number(document->getPoints().size()),
                                      QString::number(document->getSections().size()),
                                      QString::number(table->model()->rowCount())));
}

} // namespace orvel::desk
