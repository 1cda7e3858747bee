#include "Orvel/Toolkit.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/ProjectFile.h"
#include "apps/desk/headless/Headless.h"
#include "apps/replay/JournalError.h"
#include "apps/replay/JournalPlayer.h"
#include "tests/desk/DeskFixture.h"
#include "tests/reliability/FailingCalls.h"
#include "tests/support/MessageText.h"
#include "tests/support/TestFiles.h"

#include <QBuffer>
#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

using namespace orvel;
using namespace orvel::desk;
using namespace orvel::test;

/// Every call on a file of the desk and of the replay fails once, in turn, reading and closing included: no
/// line is lost, and nothing passes for done that was not.
class TestEveryCall : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void deskLosesNoLine();
    void replayLosesNoLine();

private:
    /// How an attempt ended, and what it left.
    struct Attempt
    {
        int exitCode = 0;
        QStringList messages;
        int calls = 0;
        QByteArray failedCall;
        QMap<QString, QString> files; ///< pages and copies by their names, without dates
        QMap<int, QStringList> lines; ///< of the project when it is opened again
    };

    static QString findFolder();
    Attempt runDesk(int failingCall);
    Attempt playJournal(int failingCall);
    QMap<int, QStringList> openProject(const QString& path) const;

    QString at(const QString& name) const { return root.filePath(name); }

    QTemporaryDir root{findFolder()};
    QByteArray project;
};

namespace {

/// Keeps the summaries of hundreds of attempts out of the test's own output.
class SilentOutput
{
public:
    SilentOutput() : old(dup(STDOUT_FILENO))
    {
        const int nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, STDOUT_FILENO);
        close(nowhere);
    }

    SilentOutput(const SilentOutput&) = delete;
    SilentOutput& operator=(const SilentOutput&) = delete;

    ~SilentOutput()
    {
        dup2(old, STDOUT_FILENO);
        close(old);
    }

private:
    int old;
};

QMap<QString, QString> readFiles(const QString& folder)
{
    QMap<QString, QString> files;
    for (const QFileInfo& file : QDir(folder).entryInfoList(QDir::Files))
        files.insert(file.fileName(), withoutDates(QString::fromUtf8(readFile(file.filePath()))));
    return files;
}

/// The lines of a page, its template left out: that one is found missing by a look, and holds no line.
QStringList pageLines(const QString& page)
{
    QStringList lines;
    // The template's script has such lines in it.
    const QString body = page.mid(page.lastIndexOf(QLatin1String("</script>")));
    for (const QString& line : body.split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1String("<div class=\"Content")))
            lines.append(line);
    }
    return lines;
}

void makeEmpty(const QString& folder)
{
    QDir(folder).removeRecursively();
    QDir().mkpath(folder);
}

} // namespace

/// Where what is written need not wait for a disk.
QString TestEveryCall::findFolder()
{
    const QString inMemory = QStringLiteral("/dev/shm");
    const QString parent = QFileInfo(inMemory).isWritable() ? inMemory : QDir::tempPath();
    return parent + QStringLiteral("/tst_everycall-XXXXXX");
}

void TestEveryCall::initTestCase()
{
    QDir().mkpath(at(QStringLiteral("temporary")));
    qputenv("TMPDIR", QFile::encodeName(at(QStringLiteral("temporary"))));

    const SilentOutput silence;
    DeskFixture desk;
    Document document(desk.plugins, QStringLiteral("Новый проект"));
    ProjectWindow window(&document.getModel());
    desk.plugins.extendProjectGUI(&window);
    CommandLine script;
    script.importFile = samplePath(QStringLiteral("blunder.gkf"));
    script.runs = {CommandLine::Run::Compile, CommandLine::Run::Adjust};
    script.saveFile = at(QStringLiteral("first.orvel"));
    QCOMPARE(Headless(document, window, [](const QString&) {}).execute(script), 0);
    project = readFile(script.saveFile);
}

QMap<int, QStringList> TestEveryCall::openProject(const QString& path) const
{
    DeskFixture desk;
    Document document(desk.plugins, QString());
    projectfile::load(document, path);
    QByteArray content = document.getProtocolData();
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    QMap<int, QStringList> lines;
    if (const auto messages = datafile::readCanonical(buffer)) {
        for (const auto& [type, list] : *messages) {
            for (const COVMessage& line : list)
                lines[type].append(withoutDates(describe(line)));
        }
    }
    return lines;
}

TestEveryCall::Attempt TestEveryCall::runDesk(int failingCall)
{
    Attempt attempt;
    const QString results = at(QStringLiteral("results"));
    makeEmpty(results);
    const QString path = at(QStringLiteral("project.orvel"));
    writeFile(path, project);
    {
        const SilentOutput silence;
        DeskFixture desk;
        Document document(desk.plugins, QStringLiteral("Новый проект"));
        ProjectWindow window(&document.getModel());
        desk.plugins.extendProjectGUI(&window);
        CommandLine script;
        script.projectFile = path;
        script.runs = {CommandLine::Run::Compile, CommandLine::Run::L1Analysis};
        script.exportFile = results + QStringLiteral("/heights.csv");
        script.pagesFolder = results;
        script.dataFile = results + QStringLiteral("/data.xml");
        script.saveFile = path;
        Headless headless(document, window, [&](const QString& text) { attempt.messages.append(text); });
        const FailingCalls calls(QFile::encodeName(root.path()), failingCall, EIO,
                                 FailingCalls::Meant::ReadingToo);
        attempt.exitCode = headless.execute(script);
        attempt.calls = calls.getCount();
        attempt.failedCall = calls.getFailedCall();
        attempt.messages += desk.application.takeWarnings();
    }
    attempt.files = readFiles(results);
    attempt.lines = openProject(path);
    return attempt;
}

void TestEveryCall::deskLosesNoLine()
{
    const Attempt whole = runDesk(0);
    QCOMPARE(whole.exitCode, 0);
    QCOMPARE(whole.messages, QStringList());
    writeFile(at(QStringLiteral("old.orvel")), project);
    const QMap<int, QStringList> old = openProject(at(QStringLiteral("old.orvel")));
    QCOMPARE(old.size(), 3);
    QCOMPARE(whole.lines.size(), 5);
    QVERIFY(whole.calls > 50);

    for (int number = 1; number <= whole.calls; ++number) {
        const Attempt attempt = runDesk(number);
        const QByteArray where = "call " + QByteArray::number(number) + ", " + attempt.failedCall + "; " +
                                 attempt.messages.join(QStringLiteral(" | ")).toUtf8();
        const bool isTold = !attempt.messages.isEmpty();
        QVERIFY2(isTold || attempt.exitCode == 0, where.constData());
        for (auto type = old.begin(); type != old.end(); ++type)
            QVERIFY2(attempt.lines.value(type.key()) == type.value(), where.constData());
        if (!isTold) {
            QVERIFY2(attempt.lines == whole.lines, where.constData());
            QVERIFY2(attempt.files.keys() == whole.files.keys(), where.constData());
        }
        for (auto file = attempt.files.begin(); file != attempt.files.end(); ++file) {
            const QString wanted = whole.files.value(file.key());
            const bool isPage = file.key().endsWith(QLatin1String(".html"));
            if (isPage && file.key() != QLatin1String("Export.html"))
                QVERIFY2(pageLines(file.value()) == pageLines(wanted),
                         (where + "; " + file.key().toUtf8()).constData());
            else if (!isTold || file.key() == QLatin1String("heights.csv"))
                QVERIFY2(file.value() == wanted || isPage, (where + "; " + file.key().toUtf8()).constData());
        }
    }
}

TestEveryCall::Attempt TestEveryCall::playJournal(int failingCall)
{
    Attempt attempt;
    const QString results = at(QStringLiteral("results"));
    makeEmpty(results);
    {
        replay::JournalPlayer player((replay::JournalFolder(results)));
        const auto play = [&player](const char* line) { player.play(replay::JournalLine(line)); };
        play(R"({"do":"project","name":"Net"})");
        play(R"({"do":"item","id":"5","type":1842165504,"name":"R5"})");
        const FailingCalls calls(QFile::encodeName(root.path()), failingCall, EIO,
                                 FailingCalls::Meant::ReadingToo);
        try {
            play(R"({"do":"begin","type":305510145})");
            play(R"({"do":"writeError","text":"<a href=\"survey://locate-item?id=5\">R5</a> compiled"})");
            play(R"({"do":"end"})");
            play(R"({"do":"begin","type":305510146})");
            play(R"({"do":"writeError","text":"adjusted"})");
            play(R"({"do":"end"})");
            play(R"({"do":"page","type":305510145,"to":"compile.html"})");
            play(R"({"do":"pageHtml","type":305510146,"to":"adjust.html"})");
            play(R"({"do":"itemPage","id":"5","to":"item.html"})");
            play(R"({"do":"data","to":"data.xml"})");
            play(R"({"do":"save","to":"state"})");
        } catch (const replay::JournalError& error) {
            attempt.exitCode = 2;
            attempt.messages.append(error.getReason());
        }
        attempt.calls = calls.getCount();
        attempt.failedCall = calls.getFailedCall();
    }
    attempt.files = readFiles(results);
    attempt.files.remove(QStringLiteral("state")); // holds the path of the data file, which changes
    return attempt;
}

void TestEveryCall::replayLosesNoLine()
{
    const Attempt whole = playJournal(0);
    QCOMPARE(whole.messages, QStringList());
    QCOMPARE(whole.files.size(), 4);
    for (int number = 1; number <= whole.calls; ++number) {
        const Attempt attempt = playJournal(number);
        const QByteArray where = "call " + QByteArray::number(number) + ", " + attempt.failedCall + "; " +
                                 attempt.messages.join(QStringLiteral(" | ")).toUtf8();
        if (attempt.messages.isEmpty())
            QVERIFY2(attempt.files.keys() == whole.files.keys(), where.constData());
        for (auto file = attempt.files.begin(); file != attempt.files.end(); ++file) {
            const QString wanted = whole.files.value(file.key());
            if (file.key().endsWith(QLatin1String(".html")))
                QVERIFY2(pageLines(file.value()) == pageLines(wanted),
                         (where + "; " + file.key().toUtf8()).constData());
            else
                QVERIFY2(file.value() == wanted, (where + "; " + file.key().toUtf8()).constData());
        }
    }
}

QTEST_MAIN(TestEveryCall)
#include "tst_everycall.moc"
