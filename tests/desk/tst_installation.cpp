#include "tests/support/TestFiles.h"

#include <QDir>
#include <QMimeDatabase>
#include <QProcess>
#include <QProcessEnvironment>
#include <QTemporaryDir>
#include <QTest>

/// What is installed needs nothing of the tree that it was built in.
class TestInstallation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void installsTheseFiles();
    void deskRunsFromAnyFolder();
    void whatLiesElsewhereDoesNotMatter();
    void replayRunsFromAnyFolder();
    void desktopFileTakesLinksAndFiles();
    void fileTypesAreKnown_data();
    void fileTypesAreKnown();

private:
    /// Runs an installed program with no other environment than a program needs. Its output.
    QString run(const QString& program, const QStringList& arguments);

    QTemporaryDir folder;
};

void TestInstallation::initTestCase()
{
    QProcess process;
    process.start(QStringLiteral(CMAKE_PROGRAM), {QStringLiteral("--install"), QStringLiteral(BUILD_FOLDER),
                                                  QStringLiteral("--prefix"), folder.path()});
    QVERIFY(process.waitForFinished());
    QVERIFY2(process.exitCode() == 0, process.readAllStandardError().constData());
}

QString TestInstallation::run(const QString& program, const QStringList& arguments)
{
    QProcessEnvironment environment;
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    environment.insert(QStringLiteral("HOME"), folder.filePath(QStringLiteral("home")));
    // Where the sanitizers are used, they need their settings.
    for (const auto& name : {QStringLiteral("ASAN_OPTIONS"), QStringLiteral("LSAN_OPTIONS"),
                             QStringLiteral("UBSAN_OPTIONS"), QStringLiteral("TSAN_OPTIONS")})
        environment.insert(name, qEnvironmentVariable(name.toLatin1().constData()));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.setWorkingDirectory(folder.path());
    process.start(folder.filePath(QStringLiteral("bin/") + program), arguments);
    if (!process.waitForFinished(120000) || process.exitCode() != 0)
        return QStringLiteral("failed: ") + QString::fromUtf8(process.readAllStandardError());
    return QString::fromUtf8(process.readAllStandardOutput());
}

void TestInstallation::installsTheseFiles()
{
    const QDir shared(folder.filePath(QStringLiteral("share")));
    for (const auto& name :
         {QStringLiteral("orvel/Protocol/protocol.html"),
          QStringLiteral("orvel/Protocol/protocol_file/monitor.css"),
          QStringLiteral("orvel/translations/orvel_en.qm"),
          QStringLiteral("applications/org.orvel.Desk.desktop"),
          QStringLiteral("icons/hicolor/scalable/apps/org.orvel.Desk.svg"),
          QStringLiteral("icons/hicolor/16x16/apps/org.orvel.Desk.png"),
          QStringLiteral("icons/hicolor/256x256/apps/org.orvel.Desk.png"),
          QStringLiteral("metainfo/org.orvel.Desk.metainfo.xml"),
          QStringLiteral("mime/packages/org.orvel.Desk.xml"), QStringLiteral("man/man1/orvel-desk.1.gz"),
          QStringLiteral("man/man1/orvel-replay.1.gz")})
        QVERIFY2(QFile::exists(shared.filePath(name)), qPrintable(name));
}

void TestInstallation::deskRunsFromAnyFolder()
{
    QCOMPARE(run(QStringLiteral("orvel-desk"),
                 {QStringLiteral("--headless"), QStringLiteral("--language"), QStringLiteral("en"),
                  QStringLiteral("--import"), QStringLiteral(DESK_SAMPLES "/two-benchmarks.gkf"),
                  QStringLiteral("--pages"), QStringLiteral("pages")}),
             QStringLiteral("Import: errors 0, warnings 0, messages 3; pages/Import.html\n"));
    // The page has the installed template.
    const QByteArray style =
        readFile(folder.filePath(QStringLiteral("share/orvel/Protocol/protocol.html"))).left(2000);
    QCOMPARE(readFile(folder.filePath(QStringLiteral("pages/Import.html"))).left(2000), style);
}

void TestInstallation::whatLiesElsewhereDoesNotMatter()
{
    // Where the build tree has its plug-in, and where other versions of the data may lie.
    QDir(folder.path()).mkpath(QStringLiteral("plugins"));
    for (const auto& name : {QStringLiteral("plugins/libOrvel.so"), QStringLiteral("plugins/libOrvel.so.1")})
        writeFile(folder.filePath(name), "junk");
    QDir(folder.path()).mkpath(QStringLiteral("home/.local/share/orvel/Protocol"));
    writeFile(folder.filePath(QStringLiteral("home/.local/share/orvel/Protocol/protocol.html")), "junk");

    QCOMPARE(run(QStringLiteral("orvel-desk"),
                 {QStringLiteral("--headless"), QStringLiteral("--language"), QStringLiteral("en"),
                  QStringLiteral("--import"), QStringLiteral(DESK_SAMPLES "/two-benchmarks.gkf"),
                  QStringLiteral("--pages"), QStringLiteral("pages")}),
             QStringLiteral("Import: errors 0, warnings 0, messages 3; pages/Import.html\n"));
    QVERIFY(!readFile(folder.filePath(QStringLiteral("pages/Import.html"))).contains("junk"));
}

void TestInstallation::replayRunsFromAnyFolder()
{
    writeFile(folder.filePath(QStringLiteral("journal.jsonl")),
              "{\"do\":\"project\",\"name\":\"P\"}\n{\"do\":\"has\",\"id\":\"12\"}\n");
    QCOMPARE(run(QStringLiteral("orvel-replay"), {QStringLiteral("journal.jsonl")}),
             QStringLiteral("false\n"));
}

void TestInstallation::desktopFileTakesLinksAndFiles()
{
    const QByteArray desktop =
        readFile(folder.filePath(QStringLiteral("share/applications/org.orvel.Desk.desktop")));
    QVERIFY(desktop.contains("\nExec=orvel-desk %u\n"));
    QVERIFY(desktop.contains("\nIcon=org.orvel.Desk\n"));
    QVERIFY(desktop.contains("\nMimeType=application/x-orvel-project;application/x-gama-local+xml;"
                             "application/x-survey-gsi;application/x-survey-m5;x-scheme-handler/orvel;\n"));
}

void TestInstallation::fileTypesAreKnown_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("type");
    const auto sample = [](const char* name) {
        return readFile(QStringLiteral(DESK_SAMPLES "/") + QString::fromUtf8(name));
    };
    QTest::newRow("project") << "line.orvel" << QByteArray("ORVP") << "application/x-orvel-project";
    QTest::newRow("network") << "line.gkf" << sample("blunder.gkf") << "application/x-gama-local+xml";
    QTest::newRow("level, GSI") << "day.gsi" << sample("level-loop.gsi") << "application/x-survey-gsi";
    QTest::newRow("level, in capitals")
        << "DAY.GSI" << sample("level-loop.gsi") << "application/x-survey-gsi";
    QTest::newRow("level, M5") << "day.m5" << sample("level-lines.m5") << "application/x-survey-m5";
    QTest::newRow("M5 by its content") << "day" << sample("tacheometry.m5") << "application/x-survey-m5";
}

void TestInstallation::fileTypesAreKnown()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    QFETCH(QString, type);
    // The system's own list beside it would have to be compiled anew.
    qputenv("XDG_DATA_DIRS", folder.filePath(QStringLiteral("share")).toUtf8());
    qputenv("XDG_DATA_HOME", folder.filePath(QStringLiteral("nothing")).toUtf8());
    QCOMPARE(QMimeDatabase().mimeTypeForFileNameAndData(name, content).name(), type);
}

QTEST_GUILESS_MAIN(TestInstallation)
#include "tst_installation.moc"
