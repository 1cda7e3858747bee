#include "Orvel/Toolkit.h"
#include "Orvel/store/ProtocolTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/ProjectFile.h"
#include "tests/desk/DeskFixture.h"
#include "tests/reliability/FailingCalls.h"
#include "tests/support/MessageText.h"
#include "tests/support/TestFiles.h"

#include <QBuffer>
#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cerrno>
#include <cstring>

using namespace orvel;
using namespace orvel::desk;
using namespace orvel::test;

namespace {

constexpr int kPatience = 60000;

/// What a script works on: the project of an earlier day and what came out of it then, all below one folder.
struct Script
{
    const char* name;
    QString program;
    QStringList arguments;
    QByteArray project;        ///< what lies there as project.orvel before
    bool isProjectKept = true; ///< with the lines of all that the script does not do
    QByteArray journal = {};   ///< of the replay
    QStringList results;       ///< files that the script makes
};

/// How the program's calls fail: one of them, or all from one on.
struct Failure
{
    int number = 0; ///< counted from 1; none with 0
    int error = EIO;
    bool isLasting = false;
};

using Lines = QMap<int, QStringList>;

/// How an attempt ended, and what it left.
struct Attempt
{
    int exitCode = -1;
    QStringList messages;
    QStringList summary;
    QList<QByteArray> calls;
    QByteArray failedCall;
    QMap<QString, QString> results; ///< by their names, without dates
    Lines lines;                    ///< of the project when it is opened again, by protocol type
    QStringList leftOvers;
};

const QString kEarlier = QStringLiteral("earlier");

QString findFolder()
{
    // Where what is written need not wait for a disk.
    const QString inMemory = QStringLiteral("/dev/shm");
    const QString parent = QFileInfo(inMemory).isWritable() ? inMemory : QDir::tempPath();
    return parent + QStringLiteral("/tst_everycall-XXXXXX");
}

QStringList splitLines(const QByteArray& text)
{
    return withoutDates(QString::fromUtf8(text)).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

/// The lines of a page, without its template: a page that has none shows by its look, and holds all lines.
QStringList findPageLines(const QString& page)
{
    QStringList lines;
    for (const QString& line : page.split(QLatin1Char('\n'))) {
        if (line.startsWith(QLatin1String("<div class=\"Content")))
            lines.append(line);
    }
    return lines;
}

bool isPage(const QString& name)
{
    return name.endsWith(QLatin1String(".html"));
}

/// What the program told, without what Qt says of the user's folder, and the library of a page that has no
/// look.
QStringList findMessages(const QStringList& lines)
{
    return lines.filter(QRegularExpression(QStringLiteral("^(?!QStandardPaths:|Page template )")));
}

/// Whether each protocol holds the lines of an earlier run or those of this one, and none of the earlier ones
/// is missing. That of an export tells of its failure.
bool areWhole(const Lines& lines, const Lines& wanted, const Lines& old)
{
    const QList<int> types = lines.keys() + old.keys();
    return std::all_of(types.begin(), types.end(), [&](int type) {
        const QStringList present = lines.value(type);
        return !present.isEmpty() &&
               (type == enums::Export || present == old.value(type) || present == wanted.value(type));
    });
}

/// The page of what cannot be done without a file, and the recording, which goes as far as it went.
bool tellsOfFailure(const QString& name)
{
    return name == QLatin1String("Import.html") || name == QLatin1String("Export.html") ||
           name == QLatin1String("journal.jsonl");
}

/// The summary's line without its page.
QString withoutPage(const QString& line)
{
    return line.section(QLatin1Char(';'), 0, 0);
}

/// The name of the page that the summary of the whole script has for the same run.
QString findPage(const QString& line, const QStringList& wholeSummary)
{
    const QStringList known = wholeSummary.filter(line.section(QLatin1Char(':'), 0, 0));
    return known.value(0).section(QLatin1Char('/'), 1);
}

QByteArray describe(const Failure& failure, const Attempt& attempt)
{
    return "call " + QByteArray::number(failure.number) + (failure.isLasting ? " and on, " : ", ") +
           attempt.failedCall + ", " + QByteArray(std::strerror(failure.error)) + ", exit code " +
           QByteArray::number(attempt.exitCode) + "; " +
           attempt.messages.join(QStringLiteral(" | ")).toUtf8();
}

} // namespace

/// Every call on a file of the two programs fails once, in turn, or goes on failing from there: no line is
/// lost, and nothing passes for done that was not.
class TestEveryCall : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void losesNothing_data();
    void losesNothing();

private:
    QProcessEnvironment makeEnvironment(const Failure& failure) const;
    void prepare(const Script& script) const;
    Attempt perform(const Script& script, const Failure& failure);
    QStringList findLeftOvers() const;
    Lines readLines(const QByteArray& dataContent) const;
    Lines openProject();
    std::vector<Failure> chooseFailures(const Attempt& whole) const;
    void check(const Attempt& attempt, const Attempt& whole, const Lines& old, const Lines& kept,
               bool isLasting, const QByteArray& where) const;

    QString at(const char* name) const { return root.filePath(QString::fromLatin1(name)); }

    QTemporaryDir root{findFolder()};
    QTemporaryDir reports;
    DeskFixture desk;
    std::vector<Script> scripts;
};

void TestEveryCall::initTestCase()
{
    for (const char* name : {"tmp", "run", "home", "data/Protocol/protocol_file"})
        QVERIFY(QDir().mkpath(at(name)));
    QFile::setPermissions(at("run"),
                          QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    writeFile(at("data/Protocol/protocol.html"),
              readFile(QStringLiteral(DESK_TEST_DATA "/Protocol/protocol.html")));
    writeFile(at("data/Protocol/protocol_file/monitor.css"), "p { }\n");
    writeFile(at("network.gkf"), readFile(samplePath(QStringLiteral("blunder.gkf"))));

    const QString deskProgram = QStringLiteral(DESK_PROGRAM);
    const QString pages = QStringLiteral("--pages pages ");
    const auto split = [](const char* arguments) {
        return QString::fromLatin1(arguments).split(QLatin1Char(' '));
    };
    const Script first{
        "first",
        deskProgram,
        split("--headless --import network.gkf --run compile --run adjust --save project.orvel"),
        {},
        false,
        {},
        {}};
    QCOMPARE(perform(first, {}).exitCode, 0);
    const QByteArray project = readFile(at("project.orvel"));

    const QStringList deskResults = split("Compile.html L1Analysis.html Export.html heights.csv data.xml");
    scripts.push_back(
        {"open, runs, pages, data, export, save",
         deskProgram,
         split("--headless --open project.orvel --run compile --run l1 --export results/heights.csv "
               "--pages results --data results/data.xml --save project.orvel"),
         project,
         true,
         {},
         deskResults});
    scripts.push_back({"import over an earlier project",
                       deskProgram,
                       split("--headless --import network.gkf --run adjust --pages results "
                             "--record results/journal.jsonl --save project.orvel"),
                       project,
                       false,
                       {},
                       split("Import.html Adjust.html journal.jsonl")});
    scripts.push_back({"replay", QStringLiteral(REPLAY_PROGRAM), split("--out results journal.jsonl"),
                       project, false,
                       R"({"do":"project","name":"Net"}
{"do":"item","id":"5","type":1842165504,"name":"R5"}
{"do":"begin","type":305510145}
{"do":"writeError","text":"<a href=\"survey://locate-item?id=5\">R5</a> compiled"}
{"do":"end"}
{"do":"begin","type":305510146}
{"do":"startStage","text":"Stage"}
{"do":"writeError","text":"adjusted"}
{"do":"end"}
{"do":"page","type":305510145,"to":"compile.html"}
{"do":"data","to":"data.xml"}
{"do":"save","to":"state"}
{"do":"load","from":"state"}
{"do":"loadData","from":"data.xml"}
{"do":"pageHtml","type":305510146,"to":"adjust.html"}
{"do":"itemPage","id":"5","to":"item.html"}
{"do":"data","to":"data-again.xml"}
{"do":"has","id":"5"}
)",
                       split("compile.html data.xml adjust.html item.html data-again.xml")});
}

QProcessEnvironment TestEveryCall::makeEnvironment(const Failure& failure) const
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("TMPDIR"), at("tmp"));
    environment.insert(QStringLiteral("HOME"), at("home"));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), at("run"));
    environment.insert(QStringLiteral("ORVEL_DATA_DIR"), at("data"));
    environment.insert(QStringLiteral("LD_PRELOAD"), QStringLiteral(FAILURES_LIBRARY));
    environment.insert(QStringLiteral("FAILING_CALLS_FOLDER"), root.path());
    environment.insert(QStringLiteral("FAILING_CALLS_NUMBER"), QString::number(failure.number));
    environment.insert(QStringLiteral("FAILING_CALLS_ERROR"), QString::number(failure.error));
    if (failure.isLasting)
        environment.insert(QStringLiteral("FAILING_CALLS_LAST"), QStringLiteral("yes"));
    environment.insert(QStringLiteral("FAILING_CALLS_REPORT"), reports.filePath(QStringLiteral("report")));
    return environment;
}

void TestEveryCall::prepare(const Script& script) const
{
    for (const char* name : {"tmp", "results"}) {
        QDir(at(name)).removeRecursively();
        QDir().mkpath(at(name));
    }
    QFile::remove(at("project.orvel"));
    if (!script.project.isEmpty())
        writeFile(at("project.orvel"), script.project);
    if (!script.journal.isEmpty())
        writeFile(at("journal.jsonl"), script.journal);
    for (const QString& name : script.results)
        writeFile(at("results/") + name, kEarlier.toUtf8());
}

Attempt TestEveryCall::perform(const Script& script, const Failure& failure)
{
    prepare(script);
    QProcess process;
    process.setProcessEnvironment(makeEnvironment(failure));
    process.setWorkingDirectory(root.path());
    process.start(script.program, script.arguments);
    Attempt attempt;
    if (!process.waitForFinished(kPatience) || process.exitStatus() != QProcess::NormalExit)
        return attempt;
    attempt.exitCode = process.exitCode();
    attempt.messages = findMessages(splitLines(process.readAllStandardError()));
    attempt.summary = splitLines(process.readAllStandardOutput());
    attempt.calls = readFile(reports.filePath(QStringLiteral("report"))).split('\n');
    attempt.calls.removeLast();
    attempt.failedCall = attempt.calls.takeLast().mid(static_cast<int>(std::strlen("failed: ")));
    for (const QString& name : script.results) {
        if (QFile::exists(at("results/") + name))
            attempt.results[name] = withoutDates(QString::fromUtf8(readFile(at("results/") + name)));
    }
    attempt.lines = openProject();
    attempt.leftOvers = findLeftOvers();
    return attempt;
}

/// Temporary folders, and locks and unfinished files among those of the user.
QStringList TestEveryCall::findLeftOvers() const
{
    const auto list = [this](const char* folder, const char* pattern) {
        return QDir(at(folder))
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot)
            .filter(QRegularExpression(QString::fromLatin1(pattern)));
    };
    const char* unfinished = "\\.lock$|\\.unread-|\\.[A-Za-z0-9]{6,}$";
    // What Qt makes in place of the user's runtime folder has a name of its own.
    return list("tmp", "^(?!runtime-)") + list("", unfinished) + list("results", unfinished);
}

Lines TestEveryCall::readLines(const QByteArray& dataContent) const
{
    QByteArray content = dataContent;
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    Lines lines;
    if (const auto messages = datafile::readCanonical(buffer)) {
        for (const auto& [type, list] : *messages) {
            for (const COVMessage& line : list)
                lines[type].append(withoutDates(describe(line)));
        }
    }
    return lines;
}

Lines TestEveryCall::openProject()
{
    if (!QFile::exists(at("project.orvel")))
        return {};
    Document document(desk.plugins, QString());
    projectfile::load(document, at("project.orvel"));
    return readLines(document.getProtocolData());
}

/// All that there are, or in short a few of them.
std::vector<Failure> TestEveryCall::chooseFailures(const Attempt& whole) const
{
    constexpr std::size_t shortCount = 30;
    std::vector<Failure> failures;
    for (const bool isLasting : {false, true}) {
        for (const int error : {EIO, ENOSPC, EMFILE}) {
            for (int i = 0; i < whole.calls.size(); ++i) {
                if (failingcalls::canEndWith(whole.calls[i].constData(), error))
                    failures.push_back({i + 1, error, isLasting});
            }
        }
    }
    if (qEnvironmentVariable("RELIABILITY_CALLS") == QLatin1String("all"))
        return failures;
    QRandomGenerator random(20240601);
    std::shuffle(failures.begin(), failures.end(), random);
    failures.resize(std::min(failures.size(), shortCount));
    return failures;
}

void TestEveryCall::losesNothing_data()
{
    QTest::addColumn<int>("index");
    for (std::size_t i = 0; i < scripts.size(); ++i)
        QTest::newRow(scripts[i].name) << static_cast<int>(i);
}

void TestEveryCall::losesNothing()
{
    QFETCH(int, index);
    const Script& script = scripts[static_cast<std::size_t>(index)];
    prepare(script);
    const Lines old = openProject();
    const Lines kept = script.isProjectKept ? old : Lines();
    const Attempt whole = perform(script, {});
    QCOMPARE(whole.exitCode, 0);
    QCOMPARE(whole.messages, QStringList());
    QCOMPARE(whole.results.size(), script.results.size());
    QVERIFY(!whole.results.values().contains(kEarlier));
    QVERIFY(whole.calls.size() > 100);

    const std::vector<Failure> failures = chooseFailures(whole);
    int told = 0;
    for (const Failure& failure : failures) {
        const Attempt attempt = perform(script, failure);
        check(attempt, whole, old, kept, failure.isLasting, describe(failure, attempt));
        if (QTest::currentTestFailed())
            return;
        told += attempt.exitCode == 0 ? 0 : 1;
    }
    qInfo("%d calls, %d failures, %d of them told with an exit code", whole.calls.size(),
          static_cast<int>(failures.size()), told);
}

void TestEveryCall::check(const Attempt& attempt, const Attempt& whole, const Lines& old, const Lines& kept,
                          bool isLasting, const QByteArray& where) const
{
    // It ended in order, and said why if not all was done.
    QVERIFY2(attempt.exitCode == 0 || attempt.exitCode == 2, where.constData());
    const bool isDone = attempt.exitCode == 0;
    const int told = attempt.messages.size();
    QVERIFY2(isDone || (isLasting ? told > 0 : told == 1), where.constData());
    QVERIFY2(QSet<QString>(attempt.messages.begin(), attempt.messages.end()).size() == told,
             where.constData());
    QVERIFY2(attempt.leftOvers.isEmpty(),
             (where + "; " + attempt.leftOvers.join(QLatin1Char(' ')).toUtf8()).constData());
    // Every line is there.
    QVERIFY2(attempt.lines == old || areWhole(attempt.lines, whole.lines, kept), where.constData());
    if (isDone) {
        QVERIFY2(attempt.lines == whole.lines, where.constData());
        QVERIFY2(attempt.summary == whole.summary, where.constData());
        QVERIFY2(attempt.results.keys() == whole.results.keys(), where.constData());
    }
    // What there is holds all that it should, or is what was there before.
    for (auto result = attempt.results.begin(); result != attempt.results.end(); ++result) {
        const QString wanted = whole.results.value(result.key());
        const QByteArray whereFrom = where + "; " + result.key().toUtf8();
        if (result.value() == kEarlier)
            QVERIFY2(!isDone, whereFrom.constData());
        else if (isPage(result.key()) && (isDone || !tellsOfFailure(result.key())))
            QVERIFY2(findPageLines(result.value()) == findPageLines(wanted), whereFrom.constData());
        else if (result.key().endsWith(QLatin1String(".xml")))
            QVERIFY2(areWhole(readLines(result.value().toUtf8()), readLines(wanted.toUtf8()), kept),
                     whereFrom.constData());
        else if (!isPage(result.key()) && (isDone || !tellsOfFailure(result.key())))
            QVERIFY2(result.value() == wanted, whereFrom.constData());
    }
    // The summary is of this run.
    for (const QString& line : attempt.summary) {
        const bool isKnown =
            std::any_of(whole.summary.begin(), whole.summary.end(), [&line](const QString& known) {
                return line == known || line == withoutPage(known);
            });
        QVERIFY2(isKnown || !isDone, (where + "; " + line.toUtf8()).constData());
        // Nobody takes an earlier page for this run's.
        const QString page = findPage(line, whole.summary);
        const bool isStale = line == withoutPage(line) && attempt.results.value(page) == kEarlier;
        QVERIFY2(!isStale ||
                     !attempt.messages.filter(QStringLiteral("«results/%1», там осталась прежняя").arg(page))
                          .isEmpty(),
                 (where + "; " + line.toUtf8()).constData());
    }
}

QTEST_MAIN(TestEveryCall)
#include "tst_everycall.moc"
