#include "Orvel/store/COrvel.h"
#include "Orvel/store/ProtocolTypes.h"
#include "Orvel/store/SavedProtocol.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/ProjectFile.h"
#include "apps/desk/document/ProjectLock.h"
#include "apps/desk/gui/DeskPages.h"
#include "apps/desk/gui/DeskSession.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/gui/MessageBar.h"
#include "apps/desk/gui/RecentFiles.h"
#include "apps/desk/headless/Headless.h"
#include "host/app/TempFolder.h"
#include "tests/desk/DeskFixture.h"
#include "tests/desk/DeskProcess.h"
#include "tests/support/TestFiles.h"

#include <QDir>
#include <QLocalServer>
#include <QLocalSocket>
#include <QPointer>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

using namespace orvel::desk;
using namespace orvel::test;

/// Projects that follow each other, and later starts of the program.
class TestDeskSession : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void startsEmpty();
    void startsWithNetwork();
    void startsWithProject();
    void startsWithUriOfNoProject();
    void startsWithAPipe_data();
    void startsWithAPipe();
    void unreadableProjectIsNotAskedAbout();
    void openedProjectReplacesWindow();
    void openingAsksForUnsavedChanges();
    void changesSavedOnOpeningAreOpened();
    void damagedProjectChangesNothing();
    void projectOpenElsewhereIsNotOpened();
    void lockOfCrashedInstanceIsRemoved();
    void lockGoesWithItsProject();
    void projectThatCannotBeLockedIsOpenedWithAWord();
    void scriptSavesProjectThatCannotBeLocked();
    void scriptLeavesProjectThatIsOpen();
    void otherOutputLeavesProjectThatIsOpen_data();
    void otherOutputLeavesProjectThatIsOpen();
    void exportLeavesProjectOfItsWindow();
    void scriptLeavesTemporaryFilesOfAWindow();
    void scriptLeavesProjectThatOthersChanged();
    void newProjectIsEmpty();
    void savedProjectShowsSamePages();
    void missingPagesAreForgotten();
    void secondStartSelectsItem();
    void secondStartWithOtherProjectIsDeclined();
    void socketOfCrashedInstanceIsRemoved();
    void silentInstanceIsToldOf();
    void endlessRequestIsCutOff();
    void connectionsAreBounded();

private:
    DeskWindow& window() { return session->getWindow(); }
    void finishRun();
    void adjust();
    /// Where this instance listens.
    static QString findSocket();
    /// Shows an empty project; the window of the one before is gone.
    void closeProject();
    QString page(int protocolType);
    /// Starts the program a second time with a URI and lets this one answer. Its exit code.
    int startAgain(const QString& uri);

    std::unique_ptr<DeskFixture> desk;
    std::unique_ptr<DeskSession> session;
};

void TestDeskSession::init()
{
    desk = std::make_unique<DeskFixture>();
    session = std::make_unique<DeskSession>(desk->plugins, QString());
}

void TestDeskSession::cleanup()
{
    session.reset();
    desk.reset();
}

void TestDeskSession::finishRun()
{
    QVERIFY(window().getMonitor().waitForFinished());
}

void TestDeskSession::adjust()
{
    session->start(samplePath(QStringLiteral("two-benchmarks.gkf")));
    finishRun();
    QVERIFY(triggerAction(window(), QStringLiteral("Уравнивание")));
    finishRun();
}

QString TestDeskSession::findSocket()
{
    return QStringLiteral("%1/orvel-desk-%2.socket")
        .arg(qEnvironmentVariable("XDG_RUNTIME_DIR"))
        .arg(QCoreApplication::applicationPid());
}

void TestDeskSession::closeProject()
{
    session->newProject();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

QString TestDeskSession::page(int protocolType)
{
    QString html;
    window().getDocument().getProtocol().CreateProtocolHtml(protocolType, html);
    return html;
}

int TestDeskSession::startAgain(const QString& uri)
{
    QProcess process;
    process.start(QStringLiteral(DESK_PROGRAM), {uri});
    // The event loop of this test is the running instance's.
    if (!QTest::qWaitFor([&] { return process.state() == QProcess::NotRunning; }, 30000))
        return -1;
    return process.exitCode();
}

void TestDeskSession::startsEmpty()
{
    session->start(QString());
    QVERIFY(window().isVisible());
    QVERIFY(window().getDocument().isEmpty());
}

void TestDeskSession::startsWithNetwork()
{
    session->start(samplePath(QStringLiteral("one-benchmark.gkf")));
    finishRun();
    QCOMPARE(int(window().getDocument().getPoints().size()), 8);
}

void TestDeskSession::startsWithProject()
{
    adjust();
    const QString path = desk->path(QStringLiteral("project.orvel"));
    QVERIFY(window().saveFile(path));
    session = std::make_unique<DeskSession>(desk->plugins, QString());
    session->start(path);
    QCOMPARE(window().windowTitle(), QStringLiteral("two-benchmarks[*] (%1)").arg(path));
    QVERIFY(window().getDocument().hasResults());
    QVERIFY(!window().isWindowModified());
    QCOMPARE(recentfiles::get().constFirst(), path);
}

void TestDeskSession::startsWithUriOfNoProject()
{
    session->start(QStringLiteral("orvel://locate-item?id=1000003&project=%D0%9C%D0%BE%D1%81%D1%82"));
    QCOMPARE(window().getMessageBar().getMessage(),
             QStringLiteral("Ссылка ведёт в проект «Мост». Откройте этот проект и щёлкните ссылку ещё раз."));
}

void TestDeskSession::startsWithAPipe_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("network") << "pipe.gkf";
    QTest::newRow("project") << "pipe.orvel";
}

void TestDeskSession::startsWithAPipe()
{
    QFETCH(QString, name);
    const QString path = desk->path(name);
    QCOMPARE(mkfifo(QFile::encodeName(path).constData(), 0600), 0);
    session->start(path);
    QCOMPARE(
        desk->application.takeWarnings(),
        QStringList(
            QStringLiteral("«%1» — не файл, а канал или устройство. Их читает только orvel-desk --headless.")
                .arg(path)));
    QVERIFY(!window().isRunWorking());
}

void TestDeskSession::unreadableProjectIsNotAskedAbout()
{
    adjust();
    QVERIFY(window().isWindowModified());
    const QString path = desk->path(QStringLiteral("cut.orvel"));
    writeFile(path, "ORVP");
    const Answer answer(QStringLiteral("Отмена"));
    Q_EMIT window().openRequested(path);
    Q_EMIT window().openRequested(desk->path(QString()));
    QCOMPARE(answer.getQuestion(), QString());
    const QStringList warnings = desk->application.takeWarnings();
    QCOMPARE(warnings.size(), 2);
    QVERIFY(warnings[0].startsWith(QStringLiteral("Проект не открыт. ")));
    QVERIFY2(warnings[1].endsWith(QStringLiteral("это папка, а не файл.")), qUtf8Printable(warnings[1]));
}

void TestDeskSession::openedProjectReplacesWindow()
{
    adjust();
    const QString path = desk->path(QStringLiteral("project.orvel"));
    QVERIFY(window().saveFile(path));
    const QPointer<DeskWindow> old(&window());
    session->openProject(path);
    QVERIFY(old != &window());
    QVERIFY(window().isVisible());
    QTRY_VERIFY(!old);
    QCOMPARE(int(window().getDocument().getPoints().size()), 5);
}

void TestDeskSession::openingAsksForUnsavedChanges()
{
    adjust();
    const QString path = desk->path(QStringLiteral("project.orvel"));
    projectfile::save(window().getDocument(), path);
    window().getDocument().setModified(true);
    const DeskWindow* old = &window();
    // Nothing is asked for a file that cannot be opened anyway.
    session->openProject(desk->path(QStringLiteral("missing.orvel")));
    QCOMPARE(desk->application.takeWarnings().size(), 1);
    const Answer answer(QStringLiteral("Отмена"));
    session->openProject(path);
    QVERIFY(answer.getQuestion().startsWith(QStringLiteral("Сохранить изменения")));
    QCOMPARE(&window(), old);
}

void TestDeskSession::changesSavedOnOpeningAreOpened()
{
    adjust();
    const QString path = desk->path(QStringLiteral("project.orvel"));
    QVERIFY(window().saveFile(path));
    window().getDocument().setLevellingClass(LevellingClass::I);
    const Answer answer(QStringLiteral("Сохранить"));
    session->openProject(path);
    QVERIFY(!answer.getQuestion().isEmpty());
    QCOMPARE(window().getDocument().getLevellingClass(), LevellingClass::I);
}

void TestDeskSession::damagedProjectChangesNothing()
{
    adjust();
    const QString path = desk->path(QStringLiteral("project.orvel"));
    QVERIFY(window().saveFile(path));
    const QString damaged = desk->path(QStringLiteral("damaged.orvel"));
    QByteArray bytes = readFile(path);
    bytes.chop(10);
    writeFile(damaged, bytes);
    const DeskWindow* old = &window();
    session->openProject(damaged);
    QCOMPARE(
        desk->application.takeWarnings(),
        QStringList(QStringLiteral("Проект не открыт. %1: файл проекта повреждён или обрезан").arg(damaged)));
    QCOMPARE(&window(), old);
    QVERIFY(window().getDocument().hasResults());
}

void TestDeskSession::projectOpenElsewhereIsNotOpened()
{
    adjust();
    const QString path = desk->path(QStringLiteral("project.orvel"));
    QVERIFY(window().saveFile(path));
    closeProject();
    const auto lock = ProjectLock::take(path);
    const DeskWindow* old = &window();
    session->openProject(path);
    const QStringList warnings = desk->application.takeWarnings();
    QCOMPARE(warnings.size(), 1);
    QVERIFY(warnings[0].startsWith(
        QStringLiteral(
            "Проект не открыт. Файл «%1» открыт в другом окне: tst_desksession, процесс %2, компьютер ")
            .arg(path, QString::number(QCoreApplication::applicationPid()))));
    QCOMPARE(&window(), old);
}

void TestDeskSession::lockOfCrashedInstanceIsRemoved()
{
    adjust();
    const QString path = desk->path(QStringLiteral("project.orvel"));
    QVERIFY(window().saveFile(path));
    closeProject();
    QProcess ended;
    ended.start(QStringLiteral("true"), QStringList());
    QVERIFY(ended.waitForStarted());
    const qint64 process = ended.processId();
    QVERIFY(ended.waitForFinished());
    writeFile(desk->path(QStringLiteral(".project.orvel.lock")),
              QStringLiteral("%1\norvel-desk\n%2\n").arg(process).arg(QSysInfo::machineHostName()).toUtf8());
    session->openProject(path);
    QCOMPARE(desk->application.takeWarnings(), QStringList());
    QCOMPARE(window().getDocument().getProject().getFilePath(), path);
}

void TestDeskSession::lockGoesWithItsProject()
{
    adjust();
    const QString path = desk->path(QStringLiteral("project.orvel"));
    const QString lock = desk->path(QStringLiteral(".project.orvel.lock"));
    QVERIFY(window().saveFile(path));
    QVERIFY(QFile::exists(lock));
    // Opened again it is still locked, also when the old window is gone.
    session->openProject(path);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(QFile::exists(lock));
    QVERIFY(window().saveFile(desk->path(QStringLiteral("other.orvel"))));
    QVERIFY(!QFile::exists(lock));
    session.reset();
    QCOMPARE(QDir(desk->folder.path()).entryList({QStringLiteral("*.lock")}, QDir::Files | QDir::Hidden),
             QStringList());
}

void TestDeskSession::projectThatCannotBeLockedIsOpenedWithAWord()
{
    adjust();
    const QString path = desk->path(QStringLiteral("project.orvel"));
    QVERIFY(window().saveFile(path));
    closeProject();
    // As in a folder where no file can be made.
    QVERIFY(QDir(desk->folder.path()).mkdir(QStringLiteral(".project.orvel.lock")));
    session->openProject(path);
    QCOMPARE(window().getDocument().getProject().getFilePath(), path);
    QCOMPARE(desk->application.takeWarnings(), QStringList());
    QCOMPARE(
        window().getMessageBar().getMessage(),
        QStringLiteral("Проект «%1» не заблокирован: рядом с ним нельзя создать файл. Пока он открыт, его "
                       "может изменить и другое окно.")
            .arg(path));
    // Once.
    window().getMessageBar().hide();
    QVERIFY(window().save());
    QCOMPARE(window().getMessageBar().getMessage(), QString());
    // What others have written meanwhile is looked at all the same.
    writeFile(path, "somebody else's work");
    const Answer answer(QStringLiteral("Отмена"));
    QVERIFY(!window().save());
    QVERIFY(answer.getQuestion().startsWith(QStringLiteral("Другая программа изменила файл ")));
    QCOMPARE(readFile(path), QByteArray("somebody else's work"));
}

void TestDeskSession::scriptSavesProjectThatCannotBeLocked()
{
    adjust();
    QVERIFY(window().saveFile(desk->path(QStringLiteral("project.orvel"))));
    session.reset();
    QVERIFY(QDir(desk->folder.path()).mkdir(QStringLiteral(".project.orvel.lock")));
    const DeskProcess script = DeskProcess::run(
        desk->folder.path(), toList("--open|project.orvel|--run|compile|--save|project.orvel"));
    QCOMPARE(script.errors, QStringLiteral("orvel-desk: Проект «project.orvel» не заблокирован: рядом с ним "
                                           "нельзя создать файл. Пока он открыт, его может изменить и другое "
                                           "окно.\n"));
    QCOMPARE(script.exitCode, 0);
}

void TestDeskSession::scriptLeavesProjectThatIsOpen()
{
    adjust();
    const QString path = desk->path(QStringLiteral("project.orvel"));
    QVERIFY(window().saveFile(path));
    const QByteArray saved = readFile(path);
    const DeskProcess script = DeskProcess::run(
        desk->folder.path(), toList("--open|project.orvel|--run|compile|--save|project.orvel"));
    QCOMPARE(script.exitCode, 2);
    QVERIFY(script.errors.startsWith(
        QStringLiteral("orvel-desk: Файл «project.orvel» открыт в другом окне: tst_desksession, процесс %1, ")
            .arg(QCoreApplication::applicationPid())));
    QCOMPARE(script.output, QString());
    QCOMPARE(readFile(path), saved);
    // Read it may be.
    QCOMPARE(
        DeskProcess::run(desk->folder.path(), toList("--open|project.orvel|--run|compile|--save|other.orvel"))
            .exitCode,
        0);
}

void TestDeskSession::otherOutputLeavesProjectThatIsOpen_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("failure");
    QTest::newRow("heights") << "--export"
                             << "";
    QTest::newRow("data") << "--data"
                          << "";
    QTest::newRow("recording") << "--record"
                               << "Журнал «project.csv» не записывается: ";
}

void TestDeskSession::otherOutputLeavesProjectThatIsOpen()
{
    QFETCH(QString, option);
    QFETCH(QString, failure);
    adjust();
    // An export takes no other suffix.
    const QString path = desk->path(QStringLiteral("project.csv"));
    QVERIFY(window().saveFile(path));
    const QByteArray saved = readFile(path);
    const DeskProcess script = DeskProcess::run(
        desk->folder.path(),
        {QStringLiteral("--import"), samplePath(QStringLiteral("two-benchmarks.gkf")),
         QStringLiteral("--run"), QStringLiteral("adjust"), option, QStringLiteral("project.csv")});
    QCOMPARE(script.exitCode, 2);
    const QString expected =
        QStringLiteral("orvel-desk: %1Файл «project.csv» не записан: это открытый проект (tst_desksession, "
                       "процесс %2, компьютер %3).\n")
            .arg(failure, QString::number(QCoreApplication::applicationPid()), QSysInfo::machineHostName());
    QCOMPARE(script.errors, expected);
    QCOMPARE(readFile(path), saved);
}

void TestDeskSession::exportLeavesProjectOfItsWindow()
{
    adjust();
    const QString path = desk->path(QStringLiteral("project.orvel"));
    QVERIFY(window().saveFile(path));
    const QByteArray saved = readFile(path);
    window().exportFile(path);
    finishRun();
    QCOMPARE(window().getDocument().getSummary().types.at(enums::Export).errors, 1);
    QCOMPARE(readFile(path), saved);
}

void TestDeskSession::scriptLeavesTemporaryFilesOfAWindow()
{
    adjust();
    const QString dataFile = orvel::ProtocolState::read(window().getDocument().getProtocol()).dataFilePath;
    const QByteArray data = readFile(dataFile);
    // The folder of a window whose program has the script's name.
    const TempFolder folder(QStringLiteral("orvel-desk"));
    const QString path = folder.filePath(QStringLiteral("protocoldata_1.xml"));
    writeFile(path, data);
    const DeskProcess script = DeskProcess::run(
        desk->folder.path(),
        {QStringLiteral("--import"), samplePath(QStringLiteral("two-benchmarks.gkf")),
         QStringLiteral("--run"), QStringLiteral("compile"), QStringLiteral("--data"), path});
    QCOMPARE(script.exitCode, 2);
    QCOMPARE(script.errors,
             QStringLiteral("orvel-desk: Файл «%1» не записан: в этой папке лежат временные файлы работающей "
                            "программы.\n")
                 .arg(path));
    QCOMPARE(readFile(path), data);
}

void TestDeskSession::scriptLeavesProjectThatOthersChanged()
{
    adjust();
    const QString path = desk->path(QStringLiteral("project.orvel"));
    QVERIFY(window().saveFile(path));
    session.reset();
    Document document(desk->plugins, QStringLiteral("script"));
    ProjectWindow scriptWindow(&document.getModel());
    desk->plugins.extendProjectGUI(&scriptWindow);
    connect(&document, &Document::resultsChanged, this, [&] { writeFile(path, "somebody else's work"); });
    QStringList complaints;
    Headless headless(document, scriptWindow, [&](const QString& text) { complaints.append(text); });
    QCOMPARE(headless.execute(CommandLine::parse({QString(), QStringLiteral("--headless"),
                                                  QStringLiteral("--open"), path, QStringLiteral("--run"),
                                                  QStringLiteral("adjust"), QStringLiteral("--save"), path})),
             2);
    QCOMPARE(
        complaints,
        QStringList(QStringLiteral("Проект «%1» не сохранён: другая программа изменила его тем временем.")
                        .arg(path)));
    QCOMPARE(readFile(path), QByteArray("somebody else's work"));
}

void TestDeskSession::newProjectIsEmpty()
{
    adjust();
    QVERIFY(window().saveFile(desk->path(QStringLiteral("project.orvel"))));
    QVERIFY(triggerAction(window(), QStringLiteral("Новый проект")));
    QVERIFY(window().getDocument().isEmpty());
    QCOMPARE(window().windowTitle(), QStringLiteral("Новый проект[*]"));
}

void TestDeskSession::savedProjectShowsSamePages()
{
    adjust();
    const QString adjustPage = page(enums::Adjust);
    const QString importPage = page(enums::Import);
    const auto counts = window().getDocument().getSummary().types.at(enums::Adjust);
    QVERIFY(adjustPage.contains(QStringLiteral("H = 105,15040\u00A0м")));
    const QString path = desk->path(QStringLiteral("project.orvel"));
    QVERIFY(window().saveFile(path));
    const LONGID id = window().getDocument().getPoints()[2]->getId();

    session = std::make_unique<DeskSession>(desk->plugins, QString());
    session->start(path);
    QCOMPARE(page(enums::Adjust), adjustPage);
    QCOMPARE(page(enums::Import), importPage);
    QVERIFY(window().getModel()->isItemMentioned(id));
    const auto readAgain = window().getDocument().getSummary().types.at(enums::Adjust);
    QVERIFY(readAgain.messages > 0);
    QCOMPARE(readAgain.errors, counts.errors);
    QCOMPARE(readAgain.warnings, counts.warnings);
    QCOMPARE(readAgain.messages, counts.messages);

    // And the next run adds to what was there.
    QVERIFY(triggerAction(window(), QStringLiteral("Предобработка")));
    finishRun();
    QCOMPARE(page(enums::Adjust), adjustPage);
}

void TestDeskSession::missingPagesAreForgotten()
{
    adjust();
    window().getPages().showProtocol(enums::Adjust);
    window().getPages().showProtocol(enums::Import);
    const QStringList pages = desk->opened.getPaths();
    const QString path = desk->path(QStringLiteral("project.orvel"));
    QVERIFY(window().saveFile(path));
    QVERIFY(QFile::remove(pages[0]));

    session = std::make_unique<DeskSession>(desk->plugins, QString());
    session->start(path);
    QString html;
    const LONGID id = window().getDocument().getPoints()[2]->getId();
    window().getDocument().getProtocol().CreateItemHtml(id, html);
    QVERIFY(html.contains(QStringLiteral("generate-protocol?id=%1").arg(int(enums::Adjust))));
    QVERIFY(!html.contains(pages[0]));
}

void TestDeskSession::secondStartSelectsItem()
{
    session->start(samplePath(QStringLiteral("two-benchmarks.gkf")));
    finishRun();
    const LONGID id = window().getDocument().getSections()[3]->getId();
    QCOMPARE(
        startAgain(
            QStringLiteral("orvel://locate-item?type=LevellingSection&id=%1&project=two-benchmarks").arg(id)),
        0);
    QCOMPARE(window().getTable().getCurrentItem(), id);
    QCOMPARE(window().getMessageBar().getMessage(), QString());
}

void TestDeskSession::secondStartWithOtherProjectIsDeclined()
{
    session->start(samplePath(QStringLiteral("two-benchmarks.gkf")));
    finishRun();
    const LONGID selected = window().getDocument().getPoints()[1]->getId();
    QVERIFY(window().getTable().selectItem(selected));
    QCOMPARE(startAgain(QStringLiteral("orvel://locate-item?id=1000003&project=Other")), 0);
    QCOMPARE(window().getTable().getCurrentItem(), selected);
    QCOMPARE(
        window().getMessageBar().getMessage(),
        QStringLiteral("Ссылка ведёт в проект «Other». Откройте этот проект и щёлкните ссылку ещё раз."));
    QCOMPARE(startAgain(QStringLiteral("orvel://explode?id=1&project=two-benchmarks")), 0);
    QCOMPARE(window().getMessageBar().getMessage(),
             QStringLiteral("Ссылка не понята: orvel://explode?id=1&project=two-benchmarks"));
}

void TestDeskSession::socketOfCrashedInstanceIsRemoved()
{
    session->start(samplePath(QStringLiteral("two-benchmarks.gkf")));
    finishRun();
    const QString stale = qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/orvel-desk-1.socket");
    const int descriptor = ::socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, stale.toLocal8Bit().constData(), sizeof(address.sun_path));
    QCOMPARE(::bind(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
    ::close(descriptor);
    QVERIFY(QFileInfo::exists(stale));

    const LONGID id = window().getDocument().getPoints()[1]->getId();
    QCOMPARE(startAgain(QStringLiteral("orvel://locate-item?id=%1&project=two-benchmarks").arg(id)), 0);
    QCOMPARE(window().getTable().getCurrentItem(), id);
    QVERIFY(!QFileInfo::exists(stale));
}

void TestDeskSession::silentInstanceIsToldOf()
{
    QLocalServer silent;
    QVERIFY(silent.listen(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/orvel-desk-1.socket")));
    const DeskProcess start = DeskProcess::runPlain(
        desk->folder.path(),
        toList("-platform|offscreen|orvel://locate-item?id=1000001&project=two-benchmarks"));
    QCOMPARE(start.errors, QStringLiteral("orvel-desk: Открытое окно программы не отвечает. Закройте его или "
                                          "подождите и щёлкните ссылку ещё раз.\n"));
    QCOMPARE(start.exitCode, 2);
}

void TestDeskSession::endlessRequestIsCutOff()
{
    session->start(samplePath(QStringLiteral("two-benchmarks.gkf")));
    finishRun();
    QLocalSocket sender;
    sender.connectToServer(findSocket());
    QVERIFY(sender.waitForConnected());
    QSignalSpy disconnected(&sender, &QLocalSocket::disconnected);
    for (int i = 0; i < 100 && disconnected.isEmpty(); ++i) {
        sender.write(QByteArray(65536, 'a'));
        QTest::qWait(10);
    }
    QCOMPARE(disconnected.size(), 1);
    // Others are still answered.
    const LONGID id = window().getDocument().getPoints()[1]->getId();
    QCOMPARE(startAgain(QStringLiteral("orvel://locate-item?id=%1&project=two-benchmarks").arg(id)), 0);
    QCOMPARE(window().getTable().getCurrentItem(), id);
}

void TestDeskSession::connectionsAreBounded()
{
    session->start(QString());
    std::vector<std::unique_ptr<QLocalSocket>> senders;
    for (int i = 0; i < 60; ++i) {
        senders.push_back(std::make_unique<QLocalSocket>());
        senders.back()->connectToServer(findSocket());
        QTest::qWait(1);
    }
    const auto countConnected = [&] {
        return std::count_if(senders.begin(), senders.end(), [](const std::unique_ptr<QLocalSocket>& sender) {
            return sender->state() == QLocalSocket::ConnectedState;
        });
    };
    QTRY_COMPARE(int(countConnected()), 32);
    // Who says nothing is sent away.
    QTRY_COMPARE_WITH_TIMEOUT(int(countConnected()), 0, 10000);
}

QTEST_MAIN(TestDeskSession)
#include "tst_desksession.moc"
