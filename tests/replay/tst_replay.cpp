#include "tests/support/ExpectedFile.h"
#include "tests/support/TestFiles.h"

#include <QDataStream>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QtTest>

namespace {

/// What a replay that hangs is given before it is called one.
constexpr int kPatience = 120000;

/// The journal of the tests that write one of their own.
const char kJournal[] = "journal.jsonl";

QString getTestPath(const QString& name)
{
    return QStringLiteral(REPLAY_TEST_DIR "/") + name;
}

/// The content with every date made "DATE".
QString readNormalized(const QString& path)
{
    static const QRegularExpression date(
        QStringLiteral(R"([0-9]{2}\.[0-9]{2}\.[0-9]{4} [0-9]{2}:[0-9]{2}:[0-9]{2})"));
    return QString::fromUtf8(readFile(path)).replace(date, QStringLiteral("DATE"));
}

struct Result
{
    int exitCode = -1;
    QString output;
    QString errors;
};

/// A folder of its own in which journals are played, as by somebody who has no display.
class Workplace
{
public:
    Workplace()
    {
        QDir(folder.path()).mkdir(QStringLiteral("work"));
        QDir(folder.path()).mkdir(QStringLiteral("tmp"));
    }

    QString getPath(const QString& name = QString()) const
    {
        return folder.filePath(QStringLiteral("work/")) + name;
    }
    QStringList getFiles() const { return QDir(getPath()).entryList(QDir::Files, QDir::Name); }
    /// What the program has left in the system's folder for temporary files.
    QStringList getTemporaryFiles() const
    {
        return QDir(folder.filePath(QStringLiteral("tmp")))
            .entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }

    /// Libraries in the given folder, if any, go before those of the program. What it prints goes to the
    /// given file, if any.
    Result run(const QStringList& arguments, const QString& libraryFolder = QString(),
               const QString& outputFile = QString()) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* display : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            environment.remove(QString::fromLatin1(display));
        environment.insert(QStringLiteral("ORVEL_DATA_DIR"), getTestPath(QStringLiteral("data")));
        environment.insert(QStringLiteral("TMPDIR"), folder.filePath(QStringLiteral("tmp")));
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder.path());
        environment.insert(QStringLiteral("LD_LIBRARY_PATH"), libraryFolder);
        QProcess process;
        process.setProcessEnvironment(environment);
        process.setWorkingDirectory(getPath());
        if (!outputFile.isEmpty())
            process.setStandardOutputFile(outputFile);
        process.start(QStringLiteral(REPLAY_PROGRAM), arguments);
        if (!process.waitForFinished(kPatience) || process.exitStatus() != QProcess::NormalExit) {
            process.kill();
            process.waitForFinished();
            return {-1, QStringLiteral("no end"), QString::fromUtf8(process.readAllStandardError())};
        }
        return {process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
    }

    /// Plays one of the journals that stand beside this test.
    Result playStored(const QString& name) const
    {
        const QString fileName = name + QStringLiteral(".jsonl");
        writeFile(getPath(fileName), readFile(getTestPath(QStringLiteral("journals/") + fileName)));
        const Result result = run({fileName});
        QFile::remove(getPath(fileName));
        return result;
    }

    Result play(const QByteArray& journal) const
    {
        const QString fileName = QString::fromLatin1(kJournal);
        writeFile(getPath(fileName), journal);
        const Result result = run({fileName});
        QFile::remove(getPath(fileName));
        return result;
    }

private:
    QTemporaryDir folder;
};

/// The files that a journal is expected to write, without the state of the protocol, whose form is the
/// archive's.
QStringList getExpectedFiles(const QString& name)
{
    QStringList files =
        QDir(getTestPath(QStringLiteral("expected/") + name)).entryList(QDir::Files, QDir::Name);
    files.removeOne(QStringLiteral("stdout.txt"));
    return files;
}

QString getExpectedPath(const QString& name, const QString& fileName)
{
    return getTestPath(QStringLiteral("expected/%1/%2").arg(name, fileName));
}

/// What tells a text from what is expected of a file, if anything.
QString compare(const QString& text, const QString& name, const QString& fileName)
{
    return orvel::test::compareWithFile(text, getExpectedPath(name, fileName));
}

} // namespace

/// The program orvel-replay, from the command line to the files that it writes.
class TestReplay : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void playsAJournal_data();
    void playsAJournal();
    void playsCarriageReturnsAndBlankLines();
    void playsAnEmptyJournal();
    void playsALongJournal();
    void playsOnWithTheDataOfAnotherProcess();
    void playsOnWithStateAndDataOfAnotherProcess();
    void writesBelowItsFolderOnly_data();
    void writesBelowItsFolderOnly();
    void writesToTheGivenFolder();
    void makesTheGivenFolder();
    void followsNoPathOfALoadedState();

    void refusesALine_data();
    void refusesALine();
    void needsAProject_data();
    void needsAProject();
    void needsARun_data();
    void needsARun();
    void keepsWhatCameBeforeTheError();
    void namesTheLineOfTheError();
    void refusesADamagedState_data();
    void refusesADamagedState();

    void saysHowItIsUsed_data();
    void saysHowItIsUsed();
    void takesOptions_data();
    void takesOptions();
    void helpNamesTheOptions();
    void takesFileUrls();
    void saysWhenItsOutputCannotBeWritten_data();
    void saysWhenItsOutputCannotBeWritten();
    void refusesAJournalThatCannotBeRead();
    void saysWhichPluginIsMissing();
};

void TestReplay::playsAJournal_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name :
         {"adjust", "clear", "compile", "interrupt", "items", "kinds", "odd-texts", "unfinished"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void TestReplay::playsAJournal()
{
    QFETCH(QString, name);
    const Workplace workplace;
    const Result result = workplace.playStored(name);
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(compare(result.output, name, QStringLiteral("stdout.txt")), QString());

    QStringList files = workplace.getFiles();
    files.removeOne(QStringLiteral("protocol.state"));
    for (const QString& file : qAsConst(files))
        QCOMPARE(compare(readNormalized(workplace.getPath(file)), name, file), QString());
    QCOMPARE(files, getExpectedFiles(name));
    QCOMPARE(workplace.getTemporaryFiles(), QStringList());
}

void TestReplay::playsCarriageReturnsAndBlankLines()
{
    QByteArray journal = readFile(getTestPath(QStringLiteral("journals/adjust.jsonl")));
    journal.replace("\n", "\r\n\r\n \t\r\n");
    journal.prepend("\n  ");
    journal = journal.trimmed(); // the last line without an end
    const Workplace workplace;
    const Result result = workplace.play(journal);
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitCode, 0);
    const QString name = QStringLiteral("adjust");
    QCOMPARE(compare(result.output, name, QStringLiteral("stdout.txt")), QString());
    for (const QString& file : getExpectedFiles(name))
        QCOMPARE(compare(readNormalized(workplace.getPath(file)), name, file), QString());
}

void TestReplay::playsAnEmptyJournal()
{
    const Workplace workplace;
    for (const char* journal : {"", "\n", "\r\n \r\n"}) {
        const Result result = workplace.play(journal);
        QCOMPARE(result.errors, QString());
        QCOMPARE(result.output, QString());
        QCOMPARE(result.exitCode, 0);
    }
    QCOMPARE(workplace.getFiles(), QStringList());
}

void TestReplay::playsALongJournal()
{
    constexpr int kLines = 20000;
    QByteArray journal = R"({"do": "project", "name": "Сеть"})"
                         "\n"
                         R"({"do": "begin", "type": 305510148})"
                         "\n";
    QByteArray leaves;
    for (int i = 0; i < kLines; ++i) {
        const QByteArray number = QByteArray::number(i);
        journal += R"({"do": "writeError", "text": "строка )" + number + "\"}\n";
        leaves += "<li class=\"Node ExpandLeaf IsLast\">\n<div class=\"Expand\"></div>\n"
                  "<div class=\"Content error\">строка " +
                  number + "</div>\n</li>\n";
    }
    journal += R"({"do": "end"})"
               "\n"
               R"({"do": "pageHtml", "type": 305510148, "to": "import.html"})"
               "\n";

    const Workplace workplace;
    const Result result = workplace.play(journal);
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitCode, 0);
    const QString expected = QStringLiteral("<!DOCTYPE html>\n<html>\n<body>\n<div id=\"protocol\">\n"
                                            "<h1>Импорт</h1>\n"
                                            "<div class='serviceinfoblock'>\n"
                                            "<p class='service'>DATE</p>\n"
                                            "<p class='service'>Проект: Сеть</p>\n"
                                            "<ul class=\"Container\">\n%1</ul>\n"
                                            "</div>\n</body>\n</html>\n")
                                 .arg(QString::fromUtf8(leaves));
    // Not by QCOMPARE, which would print both.
    QVERIFY(readNormalized(workplace.getPath(QStringLiteral("import.html"))) == expected);
}

void TestReplay::playsOnWithTheDataOfAnotherProcess()
{
    const QString name = QStringLiteral("adjust");
    const QByteArray data = readFile(getExpectedPath(name, QStringLiteral("data.xml")));
    const Workplace workplace;
    writeFile(workplace.getPath(QStringLiteral("data.xml")), data);

    const Result result = workplace.playStored(QStringLiteral("load-data"));
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitCode, 0);
    // The ids came with the next run.
    QCOMPARE(result.output, QStringLiteral("false\ntrue\n"));
    QCOMPARE(readNormalized(workplace.getPath(QStringLiteral("data-copy.xml"))), QString::fromUtf8(data));
    for (const QString& file : {QStringLiteral("adjust.html"), QStringLiteral("section-after.html")})
        QCOMPARE(compare(readNormalized(workplace.getPath(file)), name, file), QString());
    QCOMPARE(workplace.getTemporaryFiles(), QStringList());
}

void TestReplay::playsOnWithStateAndDataOfAnotherProcess()
{
    const Workplace workplace;
    QCOMPARE(workplace.playStored(QStringLiteral("adjust")).exitCode, 0);
    const Result result = workplace.playStored(QStringLiteral("load"));
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.output, QStringLiteral("false\ntrue\nfalse\ntrue\n"));

    const auto read = [&](const char* name) {
        return readFile(workplace.getPath(QString::fromLatin1(name)));
    };
    QCOMPARE(read("data-loaded.xml"), read("data.xml"));
    QCOMPARE(read("adjust-loaded.html"), read("adjust.html"));
    // The page's path came with the state.
    QCOMPARE(read("section-loaded.html"), read("section-after.html"));
}

void TestReplay::writesBelowItsFolderOnly_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    QTest::newRow("above") << QStringLiteral("../1.html") << QStringLiteral("has a \"..\"");
    QTest::newRow("down and up") << QStringLiteral("sub/../../1.html") << QStringLiteral("has a \"..\"");
    QTest::newRow("up at the end") << QStringLiteral("sub/..") << QStringLiteral("has a \"..\"");
    QTest::newRow("absolute") << QStringLiteral("/tmp/1.html") << QStringLiteral("is not relative");
    QTest::newRow("nothing") << QString() << QStringLiteral("is no name of a file");
    QTest::newRow("a zero") << QString::fromUtf8("1.html\0", 7) << QStringLiteral("is no name of a file");
    const QString link = QStringLiteral("leads through a symbolic link");
    QTest::newRow("folder linked to") << QStringLiteral("folder/1.html") << link;
    QTest::newRow("folder above linked to") << QStringLiteral("up/other/1.html") << link;
    QTest::newRow("file linked to") << QStringLiteral("file") << link;
    QTest::newRow("link to nothing") << QStringLiteral("dangling") << link;
}

void TestReplay::writesBelowItsFolderOnly()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    const Workplace workplace;
    const QDir work(workplace.getPath());
    QVERIFY(work.mkpath(QStringLiteral("out/sub")));
    QVERIFY(work.mkdir(QStringLiteral("other")));
    writeFile(workplace.getPath(QStringLiteral("other/secret")), "secret");
    const auto link = [&](const char* target, const char* linkName) {
        return QFile::link(QString::fromLatin1(target),
                           workplace.getPath(QStringLiteral("out/") + QString::fromLatin1(linkName)));
    };
    QVERIFY(link("../other", "folder") && link("..", "up") && link("../other/secret", "file") &&
            link("../other/missing", "dangling"));

    const QByteArray quoted =
        QJsonDocument(QJsonArray{name}).toJson(QJsonDocument::Compact).mid(1).chopped(1);
    for (const QByteArray& line :
         {QByteArray(R"("page", "type": 1, "to": )"), QByteArray(R"("pageHtml", "type": 1, "to": )"),
          QByteArray(R"("itemPage", "id": "1", "to": )"), QByteArray(R"("data", "to": )"),
          QByteArray(R"("save", "to": )"), QByteArray(R"("loadData", "from": )"),
          QByteArray(R"("load", "from": )")}) {
        writeFile(workplace.getPath(QString::fromLatin1(kJournal)),
                  "{\"do\": \"project\", \"name\": \"\"}\n{\"do\": \"begin\", \"type\": 1}\n{\"do\": "
                  "\"end\"}\n{\"do\": " +
                      line + quoted + "}\n");
        const Result result =
            workplace.run({QStringLiteral("--out"), QStringLiteral("out"), QString::fromLatin1(kJournal)});
        const QString shown = QString(name).replace(QChar(0), QStringLiteral("\\x00"));
        QCOMPARE(result.errors, QStringLiteral("journal.jsonl:4: \"%1\" %2\n").arg(shown, reason));
        QCOMPARE(result.exitCode, 2);
    }
    QCOMPARE(work.entryList(QDir::AllEntries | QDir::NoDotAndDotDot),
             QStringList({QStringLiteral("journal.jsonl"), QStringLiteral("other"), QStringLiteral("out")}));
    QCOMPARE(QDir(workplace.getPath(QStringLiteral("other"))).entryList(QDir::Files),
             QStringList(QStringLiteral("secret")));
    QCOMPARE(readFile(workplace.getPath(QStringLiteral("other/secret"))), QByteArray("secret"));
}

void TestReplay::writesToTheGivenFolder()
{
    const QByteArray journal = R"({"do": "project", "name": "Сеть"})"
                               "\n"
                               R"({"do": "page", "type": 1, "to": "страницы/1.html"})";
    const Workplace workplace;
    QVERIFY(QDir(workplace.getPath()).mkpath(QStringLiteral("новая/папка/страницы")));
    writeFile(workplace.getPath(QString::fromLatin1(kJournal)), journal);
    const QString out = QStringLiteral("новая/папка");
    for (const QString& folder : {out, workplace.getPath(out)}) {
        const Result result =
            workplace.run({QStringLiteral("--out=") + folder, QString::fromLatin1(kJournal)});
        QCOMPARE(result.errors, QString());
        QCOMPARE(result.exitCode, 0);
        const QString page = workplace.getPath(QStringLiteral("новая/папка/страницы/1.html"));
        QCOMPARE(readNormalized(page),
                 QStringLiteral("<!DOCTYPE html>\n<html>\n<body>\n<div id=\"protocol\">\n"
                                "<div class='serviceinfoblock'>\n"
                                "</div>\n</body>\n</html>\n"));
        QVERIFY(QFile::remove(page));
    }

    const Result impossible = workplace.run(
        {QStringLiteral("--out"), QStringLiteral("journal.jsonl"), QString::fromLatin1(kJournal)});
    QCOMPARE(impossible.errors,
             QStringLiteral("orvel-replay: \"journal.jsonl\" is no folder and can't be made one\n"));
    QCOMPARE(impossible.exitCode, 2);
}

void TestReplay::makesTheGivenFolder()
{
    const Workplace workplace;
    writeFile(workplace.getPath(QString::fromLatin1(kJournal)), R"({"do": "project", "name": "Сеть"})"
                                                                "\n"
                                                                R"({"do": "save", "to": "1.state"})");
    const Result result =
        workplace.run({QStringLiteral("--out"), QStringLiteral("a/b"), QString::fromLatin1(kJournal)});
    QCOMPARE(result.errors, QString());
    QVERIFY(QFile::exists(workplace.getPath(QStringLiteral("a/b/1.state"))));
}

void TestReplay::followsNoPathOfALoadedState()
{
    const Workplace workplace;
    const QString victim = workplace.getPath(QStringLiteral("victim"));
    writeFile(victim, "secret");
    // No ids, no pages, and the path of the data file.
    QByteArray state;
    QDataStream stream(&state, QIODevice::WriteOnly);
    stream << quint32(0) << quint32(0) << victim;
    writeFile(workplace.getPath(QStringLiteral("1.state")), state);

    const Result result = workplace.play(R"({"do": "project", "name": "Сеть"})"
                                         "\n"
                                         R"({"do": "load", "from": "1.state"})"
                                         "\n"
                                         R"({"do": "begin", "type": 1})"
                                         "\n"
                                         R"({"do": "end"})"
                                         "\n"
                                         R"({"do": "page", "type": 1, "to": "1.html"})"
                                         "\n"
                                         R"({"do": "load", "from": "1.state"})"
                                         "\n"
                                         R"({"do": "data", "to": "copy"})");
    QCOMPARE(result.errors, QString());
    QCOMPARE(readFile(victim), QByteArray("secret"));
    QVERIFY(!readFile(workplace.getPath(QStringLiteral("copy"))).contains("secret"));
}

void TestReplay::refusesALine_data()
{
    QTest::addColumn<QByteArray>("line"); // after a line that makes a project
    QTest::addColumn<QString>("reason");
    const auto row = [](const char* name, const char* line, const char* reason) {
        QTest::newRow(name) << QByteArray(line) << QString::fromUtf8(reason);
    };

    row("not JSON", "begin", "not JSON: illegal value at byte 1");
    row("JSON that breaks off", R"({"do": "end")", "not JSON: unterminated string at byte 12");
    row("two objects", R"({"do": "end"} {})", "not JSON: garbage at the end of the document at byte 14");
    row("a list", "[]", "not a JSON object");
    row("no command", R"({"type": 1})", R"("do" is missing)");
    row("command is no text", R"({"do": 1})", R"("do" is not a text)");
    row("unknown command", R"({"do": "jump"})", R"(nothing is called "jump")");
    row("command in another letter case", R"({"do": "End"})", R"(nothing is called "End")");
    row("empty command", R"({"do": ""})", R"(nothing is called "")");

    row("second project", R"({"do": "project", "name": "2"})", "there is a project already");

    row("enum: no value", R"({"do": "enum", "internal": "", "singular": "", "plural": ""})",
        R"("value" is missing)");
    row("enum: no internal name", R"({"do": "enum", "value": 1, "singular": "", "plural": ""})",
        R"("internal" is missing)");
    row("enum: no singular text", R"({"do": "enum", "value": 1, "internal": "", "plural": ""})",
        R"("singular" is missing)");
    row("enum: no plural text", R"({"do": "enum", "value": 1, "internal": "", "singular": ""})",
        R"("plural" is missing)");

    row("item: no id", R"({"do": "item", "type": 1, "name": ""})", R"("id" is missing)");
    row("item: no type", R"({"do": "item", "id": "1", "name": ""})", R"("type" is missing)");
    row("item: no name", R"({"do": "item", "id": "1", "type": 1})", R"("name" is missing)");
    row("item: id is a number", R"({"do": "item", "id": 1, "type": 1, "name": ""})", R"("id" is not a text)");
    row("item: id is no number", R"({"do": "item", "id": "1x", "type": 1, "name": ""})",
        R"("id" is not a text of decimal digits that fit 64 bits)");
    row("item: empty id", R"({"do": "item", "id": "", "type": 1, "name": ""})",
        R"("id" is not a text of decimal digits that fit 64 bits)");
    row("item: id over 64 bits", R"({"do": "item", "id": "9223372036854775808", "type": 1, "name": ""})",
        R"("id" is not a text of decimal digits that fit 64 bits)");
    row("item: id 0", R"({"do": "item", "id": "0", "type": 1, "name": ""})",
        "an item can't have the id 0, which stands for no item");
    row("item: type is a text", R"({"do": "item", "id": "1", "type": "1", "name": ""})",
        R"("type" is not an integer of 32 bits)");
    row("item: type is a fraction", R"({"do": "item", "id": "1", "type": 1.5, "name": ""})",
        R"("type" is not an integer of 32 bits)");
    row("item: type over 32 bits", R"({"do": "item", "id": "1", "type": 2147483648, "name": ""})",
        R"("type" is not an integer of 32 bits)");
    row("item: type is null", R"({"do": "item", "id": "1", "type": null, "name": ""})",
        R"("type" is not an integer of 32 bits)");
    row("item: name is a number", R"({"do": "item", "id": "1", "type": 1, "name": 5})",
        R"("name" is not a text)");
    row("item: twice",
        R"({"do": "item", "id": "1", "type": 1, "name": ""})"
        "\n"
        R"({"do": "item", "id": "1", "type": 1, "name": ""})",
        "there is an item 1 already");
    row("remove: no id", R"({"do": "remove"})", R"("id" is missing)");
    row("remove: unknown item", R"({"do": "remove", "id": "5"})", "there is no item 5");

    row("begin: no type", R"({"do": "begin"})", R"("type" is missing)");
    row("begin: type is a text", R"({"do": "begin", "type": "1"})", R"("type" is not an integer of 32 bits)");
    row("begin: second run",
        R"({"do": "begin", "type": 1})"
        "\n"
        R"({"do": "begin", "type": 2})",
        "a run is going on already");
    row("write: no text",
        R"({"do": "begin", "type": 1})"
        "\n"
        R"({"do": "write"})",
        R"("text" is missing)");
    row("writeError: text is a number",
        R"({"do": "begin", "type": 1})"
        "\n"
        R"({"do": "writeError", "text": 1})",
        R"("text" is not a text)");
    row("startStage: no text",
        R"({"do": "begin", "type": 1})"
        "\n"
        R"({"do": "startStage"})",
        R"("text" is missing)");
    row("end: second",
        R"({"do": "begin", "type": 1})"
        "\n"
        R"({"do": "end"})"
        "\n"
        R"({"do": "end"})",
        "no run is going on");

    row("add: no type", R"({"do": "add", "kind": 1, "text": ""})", R"("type" is missing)");
    row("add: no kind", R"({"do": "add", "type": 1, "text": ""})", R"("kind" is missing)");
    row("add: no text", R"({"do": "add", "type": 1, "kind": 1})", R"("text" is missing)");
    row("reportTypes: no type", R"({"do": "reportTypes", "reports": []})", R"("type" is missing)");
    row("reportTypes: no list", R"({"do": "reportTypes", "type": 1})", R"("reports" is missing)");
    row("reportTypes: list is a number", R"({"do": "reportTypes", "type": 1, "reports": 1})",
        R"("reports" is not a list)");
    row("reportTypes: a text in the list", R"({"do": "reportTypes", "type": 1, "reports": [1, "2"]})",
        R"("reports" is not an integer of 32 bits)");

    row("page: no type", R"({"do": "page", "to": "1.html"})", R"("type" is missing)");
    row("page: no path", R"({"do": "page", "type": 1})", R"("to" is missing)");
    row("page: empty path", R"({"do": "page", "type": 1, "to": ""})", R"("" is no name of a file)");
    row("page: no such folder", R"({"do": "page", "type": 1, "to": "no/such/1.html"})",
        R"(the page can't be written to "no/such/1.html")");
    row("pageHtml: no such folder", R"({"do": "pageHtml", "type": 1, "to": "no/such/1.html"})",
        "Не удалось открыть файл «no/such/1.html»: такого файла или папки нет.");
    row("pageHtml: no path", R"({"do": "pageHtml", "type": 1})", R"("to" is missing)");
    row("itemPage: no id", R"({"do": "itemPage", "to": "1.html"})", R"("id" is missing)");
    row("itemPage: no path", R"({"do": "itemPage", "id": "1"})", R"("to" is missing)");
    row("itemPage: no such folder", R"({"do": "itemPage", "id": "1", "to": "no/such/1.html"})",
        "Не удалось открыть файл «no/such/1.html»: такого файла или папки нет.");

    row("data: before any run", R"({"do": "data", "to": "1.xml"})", "there is no data file yet");
    row("data: no such folder",
        R"({"do": "begin", "type": 1})"
        "\n"
        R"({"do": "end"})"
        "\n"
        R"({"do": "data", "to": "no/such/1.xml"})",
        "Не удалось открыть файл «no/such/1.xml»: такого файла или папки нет.");
    row("loadData: no path", R"({"do": "loadData"})", R"("from" is missing)");
    row("loadData: no such file", R"({"do": "loadData", "from": "missing.xml"})",
        "Не удалось открыть файл «missing.xml»: такого файла или папки нет.");
    row("clear: type is a text", R"({"do": "clear", "type": "1"})", R"("type" is not an integer of 32 bits)");
    row("link: no id", R"({"do": "link", "text": ""})", R"("id" is missing)");
    row("link: no text", R"({"do": "link", "id": "1"})", R"("text" is missing)");
    row("has: no id", R"({"do": "has"})", R"("id" is missing)");
    row("has: id is no number", R"({"do": "has", "id": "one"})",
        R"("id" is not a text of decimal digits that fit 64 bits)");
    row("save: no path", R"({"do": "save"})", R"("to" is missing)");
    row("save: no such folder", R"({"do": "save", "to": "no/such/1.state"})",
        "Не удалось открыть файл «no/such/1.state»: такого файла или папки нет.");
    row("load: no path", R"({"do": "load"})", R"("from" is missing)");
    row("load: no such file", R"({"do": "load", "from": "missing.state"})",
        "Не удалось открыть файл «missing.state»: такого файла или папки нет.");
}

void TestReplay::refusesALine()
{
    QFETCH(QByteArray, line);
    QFETCH(QString, reason);
    const Workplace workplace;
    const int lineNumber = 2 + line.count('\n');
    const Result result = workplace.play(R"({"do": "project", "name": "Сеть"})"
                                         "\n" +
                                         line + "\n" + R"({"do": "has", "id": "0"})");
    QCOMPARE(result.errors,
             QStringLiteral("journal.jsonl:%1: %2\n").arg(QString::number(lineNumber), reason));
    QCOMPARE(result.output, QString());
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(workplace.getFiles(), QStringList());
    QCOMPARE(workplace.getTemporaryFiles(), QStringList());
}

void TestReplay::needsAProject_data()
{
    QTest::addColumn<QByteArray>("line");
    const auto row = [](const char* name, const char* line) { QTest::newRow(name) << QByteArray(line); };
    row("item", R"({"do": "item", "id": "1", "type": 1, "name": ""})");
    row("remove", R"({"do": "remove", "id": "1"})");
    row("begin", R"({"do": "begin", "type": 1})");
    row("add", R"({"do": "add", "type": 1, "kind": 1, "text": ""})");
    row("reportTypes", R"({"do": "reportTypes", "type": 1, "reports": []})");
    row("page", R"({"do": "page", "type": 1, "to": "1.html"})");
    row("pageHtml", R"({"do": "pageHtml", "type": 1, "to": "1.html"})");
    row("itemPage", R"({"do": "itemPage", "id": "1", "to": "1.html"})");
    row("data", R"({"do": "data", "to": "1.xml"})");
    row("loadData", R"({"do": "loadData", "from": "journal.jsonl"})");
    row("clear", R"({"do": "clear"})");
    row("clear of a type", R"({"do": "clear", "type": 1})");
    row("link", R"({"do": "link", "id": "1", "text": ""})");
    row("has", R"({"do": "has", "id": "1"})");
    row("save", R"({"do": "save", "to": "1.state"})");
    row("load", R"({"do": "load", "from": "journal.jsonl"})");
}

void TestReplay::needsAProject()
{
    QFETCH(QByteArray, line);
    const Workplace workplace;
    const Result result = workplace.play(line);
    QCOMPARE(result.errors, QStringLiteral("journal.jsonl:1: there is no project yet\n"));
    QCOMPARE(result.output, QString());
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(workplace.getFiles(), QStringList());
}

void TestReplay::needsARun_data()
{
    QTest::addColumn<QByteArray>("line");
    const auto row = [](const char* name, const char* line) { QTest::newRow(name) << QByteArray(line); };
    row("write", R"({"do": "write", "text": "1"})");
    row("writeError", R"({"do": "writeError", "text": "1"})");
    row("writeWarning", R"({"do": "writeWarning", "text": "1"})");
    row("writeMessage", R"({"do": "writeMessage", "text": "1"})");
    row("startStage", R"({"do": "startStage", "text": "1"})");
    row("finishStage", R"({"do": "finishStage"})");
    row("end", R"({"do": "end"})");
    row("interrupt", R"({"do": "interrupt"})");
}

void TestReplay::needsARun()
{
    QFETCH(QByteArray, line);
    const Workplace workplace;
    const Result result = workplace.play(R"({"do": "project", "name": "Сеть"})"
                                         "\n" +
                                         line);
    QCOMPARE(result.errors, QStringLiteral("journal.jsonl:2: no run is going on\n"));
    QCOMPARE(result.output, QString());
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(workplace.play(line).errors, QStringLiteral("journal.jsonl:1: no run is going on\n"));
}

void TestReplay::keepsWhatCameBeforeTheError()
{
    const Workplace workplace;
    const Result result = workplace.play(R"({"do": "project", "name": "Сеть"})"
                                         "\n"
                                         R"({"do": "page", "type": 1, "to": "1.html"})"
                                         "\n"
                                         R"({"do": "has", "id": "1"})"
                                         "\n"
                                         R"({"do": "begin", "type": 1})"
                                         "\n"
                                         R"({"do": "jump"})"
                                         "\n"
                                         R"({"do": "page", "type": 1, "to": "2.html"})"
                                         "\n");
    QCOMPARE(result.errors, QStringLiteral("journal.jsonl:5: nothing is called \"jump\"\n"));
    QCOMPARE(result.output, QStringLiteral("false\n"));
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(workplace.getFiles(), QStringList{QStringLiteral("1.html")});
}

void TestReplay::namesTheLineOfTheError()
{
    const Workplace workplace;
    QVERIFY(QDir(workplace.getPath()).mkdir(QStringLiteral("журналы")));
    const QString path = QStringLiteral("журналы/1 2.jsonl");
    writeFile(workplace.getPath(path),
              "\r\n\n{\"do\": \"project\", \"name\": \"\"}\r\n\r\n{\"do\": \"jump\"}");
    for (const QString& given : {path, workplace.getPath(path)}) {
        const Result result = workplace.run({given});
        QCOMPARE(result.errors, given + QStringLiteral(":5: nothing is called \"jump\"\n"));
        QCOMPARE(result.exitCode, 2);
    }
}

void TestReplay::refusesADamagedState_data()
{
    QTest::addColumn<QByteArray>("state");
    QTest::addColumn<QString>("reason");
    const QString corrupt = QStringLiteral("Файл повреждён: недопустимое содержимое.");
    const QString truncated =
        QStringLiteral("Файл повреждён: данные обрываются раньше времени или недопустимы.");
    QTest::newRow("empty") << QByteArray() << truncated;
    QTest::newRow("breaks off") << QByteArray("\x00\x00\x00\x01\x00", 5) << truncated;
    QTest::newRow("too many ids") << QByteArray("\x00\x0F\x42\x41", 4) << corrupt;
    QTest::newRow("too many pages") << QByteArray("\x00\x00\x00\x00\x00\x00\x00\x65", 8) << corrupt;
}

void TestReplay::refusesADamagedState()
{
    QFETCH(QByteArray, state);
    QFETCH(QString, reason);
    const Workplace workplace;
    writeFile(workplace.getPath(QStringLiteral("1.state")), state);
    const Result result = workplace.play(R"({"do": "project", "name": "Сеть"})"
                                         "\n"
                                         R"({"do": "load", "from": "1.state"})");
    QCOMPARE(result.errors, QStringLiteral("journal.jsonl:2: %1\n").arg(reason));
    QCOMPARE(result.output, QString());
    QCOMPARE(result.exitCode, 2);
}

void TestReplay::saysHowItIsUsed_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("error");
    const auto row = [](const char* name, const char* arguments, const char* error) {
        QTest::newRow(name) << QString::fromLatin1(arguments).split(QLatin1Char(' '), Qt::SkipEmptyParts)
                            << QString::fromLatin1(error);
    };
    const char* usage = "usage: orvel-replay [options] JOURNAL.jsonl\n";
    row("no journal", "", usage);
    row("two journals", "1.jsonl 2.jsonl", usage);
    row("no journal after the options", "--", usage);
    row("unknown option", "--jump 1.jsonl", "orvel-replay: Unknown option 'jump'.\n");
    row("option with too much", "--version=2", "orvel-replay: Unexpected value after '--version'.\n");
}

void TestReplay::saysHowItIsUsed()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, error);
    const Result result = Workplace().run(arguments);
    QCOMPARE(result.errors, error);
    QCOMPARE(result.output, QString());
    QCOMPARE(result.exitCode, 2);
}

void TestReplay::takesOptions_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("output");
    const QString version = QStringLiteral("orvel-replay " ORVEL_VERSION "\n");
    const QString journal = QStringLiteral("-1.jsonl");
    QTest::newRow("version") << QStringList(QStringLiteral("--version")) << version;
    QTest::newRow("v") << QStringList(QStringLiteral("-v")) << version;
    QTest::newRow("a journal that looks like an option")
        << QStringList({QStringLiteral("--"), journal}) << QStringLiteral("false\n");
    QTest::newRow("one of Qt's own") << QStringList({QStringLiteral("-platform"), QStringLiteral("minimal"),
                                                     QStringLiteral("--"), journal})
                                     << QStringLiteral("false\n");
}

void TestReplay::takesOptions()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, output);
    const Workplace workplace;
    writeFile(workplace.getPath(QStringLiteral("-1.jsonl")), R"({"do": "project", "name": "Сеть"})"
                                                             "\n"
                                                             R"({"do": "has", "id": "1"})");
    const Result result = workplace.run(arguments);
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.output, output);
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(workplace.getTemporaryFiles(), QStringList());
}

void TestReplay::helpNamesTheOptions()
{
    for (const char* option : {"--help", "-h"}) {
        const Workplace workplace;
        const Result result = workplace.run({QString::fromLatin1(option)});
        QCOMPARE(result.errors, QString());
        QCOMPARE(result.output,
                 QStringLiteral("Usage: " REPLAY_PROGRAM " [options] JOURNAL.jsonl\n"
                                "Plays a recorded journal through the plug-in.\n"
                                "\n"
                                "Options:\n"
                                "  -h, --help     Shows this help.\n"
                                "  --out <DIR>    Reads and writes the files of the journal in "
                                "DIR, which is\n"
                                "                 made where it is missing, instead of in the "
                                "present folder.\n"
                                "  -v, --version  Displays version information.\n"
                                "\n"
                                "Arguments:\n"
                                "  JOURNAL.jsonl  The journal to play.\n"));
        QCOMPARE(result.exitCode, 0);
        QCOMPARE(workplace.getTemporaryFiles(), QStringList());
    }
}

void TestReplay::takesFileUrls()
{
    const Workplace workplace;
    QVERIFY(QDir(workplace.getPath()).mkdir(QStringLiteral("a folder")));
    writeFile(workplace.getPath(QStringLiteral("a folder/journal.jsonl")),
              R"({"do": "project", "name": "Сеть"})"
              "\n"
              R"({"do": "save", "to": "state"})");
    const QString folder =
        QUrl::fromLocalFile(workplace.getPath(QStringLiteral("a folder"))).toString(QUrl::FullyEncoded);
    QVERIFY(folder.endsWith(QStringLiteral("/a%20folder")));
    const Result result = workplace.run({QStringLiteral("--out"), folder + QStringLiteral("/out"),
                                         folder + QStringLiteral("/journal.jsonl")});
    QCOMPARE(result.errors, QString());
    QCOMPARE(result.exitCode, 0);
    QVERIFY(QFile::exists(workplace.getPath(QStringLiteral("a folder/out/state"))));
}

void TestReplay::saysWhenItsOutputCannotBeWritten_data()
{
    QTest::addColumn<QString>("argument");
    for (const char* argument : {"journal.jsonl", "--version", "--help"})
        QTest::newRow(argument) << QString::fromLatin1(argument);
}

void TestReplay::saysWhenItsOutputCannotBeWritten()
{
    QFETCH(QString, argument);
    const Workplace workplace;
    writeFile(workplace.getPath(QString::fromLatin1(kJournal)), R"({"do": "project", "name": "Сеть"})"
                                                                "\n"
                                                                R"({"do": "has", "id": "1"})");
    const Result result = workplace.run({argument}, QString(), QStringLiteral("/dev/full"));
    QCOMPARE(result.errors, QStringLiteral("orvel-replay: the standard output can't be written\n"));
    QCOMPARE(result.exitCode, 2);
}

void TestReplay::refusesAJournalThatCannotBeRead()
{
    const Workplace workplace;
    const Result missing = workplace.run({QStringLiteral("missing.jsonl")});
    QCOMPARE(missing.errors, QStringLiteral("missing.jsonl: No such file or directory\n"));
    QCOMPARE(missing.output, QString());
    QCOMPARE(missing.exitCode, 2);

    QVERIFY(QDir(workplace.getPath()).mkdir(QStringLiteral("folder")));
    const Result folder = workplace.run({QStringLiteral("folder")});
    QCOMPARE(folder.errors, QStringLiteral("folder: file to open is a directory\n"));
    QCOMPARE(folder.exitCode, 2);

    // A file of which no byte can be read.
    const Result memory = workplace.run({QStringLiteral("/proc/self/mem")});
    QCOMPARE(memory.errors, QStringLiteral("/proc/self/mem: Input/output error\n"));
    QCOMPARE(memory.exitCode, 2);
}

void TestReplay::saysWhichPluginIsMissing()
{
    // The host's library alone, away from its plug-in.
    const Workplace workplace;
    const QString libraries = workplace.getPath(QStringLiteral("lib"));
    QVERIFY(QDir().mkdir(libraries));
    QVERIFY(QFile::copy(QStringLiteral(HOST_LIBRARY), libraries + QStringLiteral("/" HOST_LIBRARY_NAME)));
    writeFile(workplace.getPath(QString::fromLatin1(kJournal)), R"({"do": "project", "name": "Сеть"})");

    const Result result = workplace.run({QString::fromLatin1(kJournal)}, libraries);
    QCOMPARE(result.errors,
             QStringLiteral("journal.jsonl:1: %1/" PLUGIN_NAME ": Файл не найден.\n").arg(libraries));
    QCOMPARE(result.output, QString());
    QCOMPARE(result.exitCode, 2);
}

QTEST_GUILESS_MAIN(TestReplay)
#include "tst_replay.moc"
