#include "tests/desk/DeskFixture.h"
#include "tests/levelling/SyntheticNetwork.h"
#include "tests/support/TestFiles.h"

#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>

#include <chrono>
#include <csignal>
#include <thread>

using namespace orvel::test;

/// However a program is ended, at any moment: a signal that asks for it leaves nothing, and what a kill
/// leaves is removed by the next start.
class TestEndings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void signalEndsInOrder_data();
    void signalEndsInOrder();
    void signalEndsAWindowInOrder_data();
    void signalEndsAWindowInOrder();
    void signalEndsTheReplayInOrder_data();
    void signalEndsTheReplayInOrder();
    void signalEndsWhatWaitsForInput_data();
    void signalEndsWhatWaitsForInput();
    void ignoredSignalStaysIgnored();
    void nextStartRemovesWhatAKillLeft();
    void nextStartRemovesWhatAKilledWindowLeft();
    void stoppedWindowKeepsWhatItUses();
    void lockOfAKilledProgramIsNobodys();

private:
    int kills = 6;
    int signalCount = 2;
};

namespace {

constexpr int kPatience = 60000;

/// What the desk is killed in: a network that takes it a while, and folders that are looked at afterwards.
class Place
{
public:
    Place()
    {
        for (const char* name : {"tmp", "out", "run"})
            QDir(folder.path()).mkdir(QString::fromLatin1(name));
        QFile::setPermissions(path("run"),
                              QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
        writeFile(path("large.gkf"), networks::toGkf(networks::synthetic(2000, 5000)));
        writeFile(path("small.gkf"), networks::toGkf(networks::synthetic(20, 30)));
        QByteArray journal = R"({"do": "project", "name": "P"})"
                             "\n";
        for (int i = 0; i < 2000; ++i)
            journal += "{\"do\": \"begin\", \"type\": 1}\n{\"do\": \"write\", \"text\": \"x\"}\n{\"do\": "
                       "\"end\"}\n{\"do\": \"page\", \"type\": 1, \"to\": \"1.html\"}\n";
        writeFile(path("long.jsonl"), journal);
    }

    QString path(const char* name) const { return folder.filePath(QString::fromLatin1(name)); }
    QStringList list(const char* name) const
    {
        return QDir(path(name))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }
    /// Names of files that were being written.
    QStringList findUnfinished() const
    {
        return list("out").filter(QRegularExpression(QStringLiteral("\\.[A-Za-z0-9]{6,}$")));
    }

    /// @param runtimeFolder the one that the session gives the user; none for a program without a window
    void start(QProcess& process, const QString& program, const QStringList& arguments,
               const QString& runtimeFolder = QString()) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.remove(QStringLiteral("XDG_RUNTIME_DIR"));
        if (!runtimeFolder.isEmpty())
            environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), runtimeFolder);
        environment.insert(QStringLiteral("TMPDIR"), path("tmp"));
        environment.insert(QStringLiteral("HOME"), folder.path());
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(path("out"));
        process.start(program, arguments);
        process.waitForStarted();
    }

private:
    QTemporaryDir folder;
};

QStringList makeHeadlessArguments(const char* network)
{
    return {QStringLiteral("--headless"), QStringLiteral("--import"), QString::fromLatin1(network),
            QStringLiteral("--run"),      QStringLiteral("compile"),  QStringLiteral("--run"),
            QStringLiteral("adjust"),     QStringLiteral("--pages"),  QStringLiteral("."),
            QStringLiteral("--export"),   QStringLiteral("h.csv"),    QStringLiteral("--data"),
            QStringLiteral("d.xml"),      QStringLiteral("--save"),   QStringLiteral("p.orvel")};
}

QStringList makeWindowArguments(const Place& place)
{
    return {QStringLiteral("-platform"), QStringLiteral("offscreen"), place.path("large.gkf")};
}

void addSignals()
{
    QTest::addColumn<int>("number");
    QTest::newRow("TERM") << SIGTERM;
    QTest::newRow("INT") << SIGINT;
    QTest::newRow("HUP") << SIGHUP;
}

void sleepAtMost(QRandomGenerator& random, int milliseconds)
{
    std::this_thread::sleep_for(std::chrono::microseconds(random.bounded(1000 * milliseconds)));
}

const auto kEndedInOrder = QStringLiteral("exit code 0, no complaint");

/// Has a script at work beside or after the others. Tells how it ended.
QString runToItsEnd(const Place& place)
{
    QProcess script;
    place.start(script, QStringLiteral(DESK_PROGRAM), makeHeadlessArguments("../small.gkf"),
                place.path("run"));
    if (!script.waitForFinished(kPatience))
        return QStringLiteral("not ended");
    const QString complaint = QString::fromUtf8(script.readAllStandardError());
    return QStringLiteral("exit code %1, %2")
        .arg(QString::number(script.exitCode()),
             complaint.isEmpty() ? QStringLiteral("no complaint") : complaint);
}

/// Whether the program has made its temporary folder, so that it is past its start.
bool waitForTempFolder(const Place& place)
{
    return QTest::qWaitFor([&place] { return !place.list("tmp").isEmpty(); }, kPatience);
}

} // namespace

void TestEndings::initTestCase()
{
    // A shell's background job begins with some ignored, and so would the programs.
    for (const int number : {SIGTERM, SIGINT, SIGHUP})
        std::signal(number, SIG_DFL);
    if (qEnvironmentVariableIsSet("RELIABILITY_KILLS"))
        kills = qEnvironmentVariableIntValue("RELIABILITY_KILLS");
    if (qEnvironmentVariableIsSet("RELIABILITY_SIGNALS"))
        signalCount = qEnvironmentVariableIntValue("RELIABILITY_SIGNALS");
}

void TestEndings::signalEndsInOrder_data()
{
    addSignals();
}

void TestEndings::signalEndsInOrder()
{
    QFETCH(int, number);
    const Place place;
    QRandomGenerator random(static_cast<quint32>(number));
    for (int i = 0; i < signalCount; ++i) {
        QProcess desk;
        place.start(desk, QStringLiteral(DESK_PROGRAM), makeHeadlessArguments("../large.gkf"));
        QVERIFY(waitForTempFolder(place));
        sleepAtMost(random, 300);
        ::kill(static_cast<pid_t>(desk.processId()), number);
        QVERIFY(desk.waitForFinished(kPatience));
        QCOMPARE(desk.exitStatus(), QProcess::NormalExit);
        QCOMPARE(desk.exitCode(), 128 + number);
        QCOMPARE(place.list("tmp"), QStringList());
        QCOMPARE(place.findUnfinished(), QStringList());
    }
}

void TestEndings::signalEndsAWindowInOrder_data()
{
    addSignals();
}

void TestEndings::signalEndsAWindowInOrder()
{
    QFETCH(int, number);
    const Place place;
    QRandomGenerator random(static_cast<quint32>(number));
    for (int i = 0; i < signalCount; ++i) {
        QProcess desk;
        place.start(desk, QStringLiteral(DESK_PROGRAM), makeWindowArguments(place), place.path("run"));
        QVERIFY(waitForTempFolder(place));
        sleepAtMost(random, 500);
        ::kill(static_cast<pid_t>(desk.processId()), number);
        QVERIFY(desk.waitForFinished(kPatience));
        QCOMPARE(desk.exitStatus(), QProcess::NormalExit);
        QCOMPARE(desk.exitCode(), 128 + number);
        QCOMPARE(place.list("tmp"), QStringList());
        QCOMPARE(place.list("run"), QStringList());
    }
}

void TestEndings::signalEndsTheReplayInOrder_data()
{
    addSignals();
}

void TestEndings::signalEndsTheReplayInOrder()
{
    QFETCH(int, number);
    const Place place;
    QRandomGenerator random(static_cast<quint32>(number));
    for (int i = 0; i < signalCount; ++i) {
        QProcess replay;
        place.start(replay, QStringLiteral(REPLAY_PROGRAM), {QStringLiteral("../long.jsonl")});
        QVERIFY(waitForTempFolder(place));
        sleepAtMost(random, 300);
        ::kill(static_cast<pid_t>(replay.processId()), number);
        QVERIFY(replay.waitForFinished(kPatience));
        QCOMPARE(replay.exitStatus(), QProcess::NormalExit);
        QCOMPARE(replay.exitCode(), 128 + number);
        QCOMPARE(place.list("tmp"), QStringList());
        QCOMPARE(place.findUnfinished(), QStringList());
    }
}

void TestEndings::signalEndsWhatWaitsForInput_data()
{
    QTest::addColumn<QString>("program");
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("begin");
    const QStringList import{QStringLiteral("--headless"), QStringLiteral("--import"), QStringLiteral("-")};
    const QStringList journal{QStringLiteral("/dev/stdin")};
    QTest::newRow("import, nothing yet") << DESK_PROGRAM << import << QByteArray();
    QTest::newRow("import, a part") << DESK_PROGRAM << import << QByteArray("<gama-local><network>");
    QTest::newRow("journal, nothing yet") << REPLAY_PROGRAM << journal << QByteArray();
    QTest::newRow("journal, a part") << REPLAY_PROGRAM << journal
                                     << QByteArray("{\"do\": \"project\", \"name\": \"P\"}\n{\"do\": ");
}

void TestEndings::signalEndsWhatWaitsForInput()
{
    QFETCH(QString, program);
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, begin);
    const Place place;
    QProcess process;
    place.start(process, program, arguments);
    process.write(begin);
    process.waitForBytesWritten();
    if (program == QLatin1String(DESK_PROGRAM) || !begin.isEmpty())
        QVERIFY(waitForTempFolder(place));
    QTest::qWait(200);
    ::kill(static_cast<pid_t>(process.processId()), SIGTERM);
    QVERIFY(process.waitForFinished(kPatience));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 128 + SIGTERM);
    QCOMPARE(QString::fromUtf8(process.readAllStandardError()), QString());
    QCOMPARE(place.list("tmp"), QStringList());
}

void TestEndings::ignoredSignalStaysIgnored()
{
    const Place place;
    QProcess desk;
    place.start(desk, QStringLiteral("nohup"),
                QStringList(QStringLiteral(DESK_PROGRAM)) + makeHeadlessArguments("../small.gkf"));
    QVERIFY(waitForTempFolder(place));
    ::kill(static_cast<pid_t>(desk.processId()), SIGHUP);
    QVERIFY(desk.waitForFinished(kPatience));
    QCOMPARE(desk.exitStatus(), QProcess::NormalExit);
    QCOMPARE(desk.exitCode(), 0);
}

void TestEndings::nextStartRemovesWhatAKillLeft()
{
    const Place place;
    QRandomGenerator random(20240601);
    int leftFolders = 0;
    int leftFiles = 0;
    for (int i = 0; i < kills; ++i) {
        QProcess desk;
        place.start(desk, QStringLiteral(DESK_PROGRAM), makeHeadlessArguments("../large.gkf"));
        sleepAtMost(random, 1500);
        desk.kill();
        QVERIFY(desk.waitForFinished(kPatience));
        leftFolders += place.list("tmp").size();
        leftFiles += place.findUnfinished().size();

        QCOMPARE(runToItsEnd(place), kEndedInOrder);
        QCOMPARE(place.list("tmp"), QStringList());
        QCOMPARE(place.findUnfinished(), QStringList());
    }
    qInfo("%d kills left %d folders and %d unfinished files, all removed", kills, leftFolders, leftFiles);
}

void TestEndings::nextStartRemovesWhatAKilledWindowLeft()
{
    const Place place;
    QRandomGenerator random(20240602);
    int leftFolders = 0;
    int leftSockets = 0;
    for (int i = 0; i < kills; ++i) {
        QProcess window;
        place.start(window, QStringLiteral(DESK_PROGRAM), makeWindowArguments(place), place.path("run"));
        sleepAtMost(random, 1500);
        window.kill();
        QVERIFY(window.waitForFinished(kPatience));
        leftFolders += place.list("tmp").size();
        leftSockets += place.list("run").size();

        QCOMPARE(runToItsEnd(place), kEndedInOrder);
        QCOMPARE(place.list("tmp"), QStringList());
        QCOMPARE(place.list("run"), QStringList());
    }
    qInfo("%d killed windows left %d folders and %d sockets, all removed", kills, leftFolders, leftSockets);
}

void TestEndings::stoppedWindowKeepsWhatItUses()
{
    const Place place;
    QProcess window;
    place.start(window, QStringLiteral(DESK_PROGRAM), makeWindowArguments(place), place.path("run"));
    QVERIFY(QTest::qWaitFor([&place] { return !place.list("run").isEmpty(); }, kPatience));
    ::kill(static_cast<pid_t>(window.processId()), SIGSTOP);
    const QStringList folders = place.list("tmp");
    const QStringList sockets = place.list("run");

    QCOMPARE(runToItsEnd(place), kEndedInOrder);
    QCOMPARE(place.list("tmp"), folders);
    QCOMPARE(place.list("run"), sockets);

    ::kill(static_cast<pid_t>(window.processId()), SIGTERM);
    ::kill(static_cast<pid_t>(window.processId()), SIGCONT);
    QVERIFY(window.waitForFinished(kPatience));
    QCOMPARE(window.exitCode(), 128 + SIGTERM);
    QCOMPARE(place.list("tmp"), QStringList());
    QCOMPARE(place.list("run"), QStringList());
}

void TestEndings::lockOfAKilledProgramIsNobodys()
{
    // Killed before it could write who it is.
    const Place place;
    writeFile(place.path("out/.p.orvel.lock"), QByteArray());
    QCOMPARE(runToItsEnd(place), kEndedInOrder);
    QVERIFY(QFile::exists(place.path("out/p.orvel")));
}

QTEST_GUILESS_MAIN(TestEndings)
#include "tst_endings.moc"
