#include "host/app/Application.h"
#include "tests/support/TestFiles.h"

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>

namespace {

const QString kChild = QStringLiteral(APPLICATION_CHILD);

/// How a run of the child program has ended.
struct Outcome
{
    int exitCode = -1;
    QString output;
    QString errors;
};

Outcome runChild(const QStringList& arguments, const QStringList& variables = {},
                 const QString& program = kChild)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("ORVEL_DATA_DIR"));
    for (const QString& variable : variables)
        environment.insert(variable.section(QLatin1Char('='), 0, 0), variable.section(QLatin1Char('='), 1));
    QProcess child;
    child.setProcessEnvironment(environment);
    child.start(program, arguments);
    child.waitForFinished(-1);
    return {child.exitCode(), QString::fromUtf8(child.readAllStandardOutput()),
            QString::fromUtf8(child.readAllStandardError())};
}

mode_t getMode(const QString& path)
{
    struct stat status = {};
    ::stat(QFile::encodeName(path).constData(), &status);
    return status.st_mode & 07777;
}

QString inTempFolder(const QString& name)
{
    return Application::getTempFolder() + QLatin1Char('/') + name;
}

/// A folder tree with the child program in bin, its library elsewhere, and room for data in five places.
class DataFixture
{
public:
    DataFixture()
    {
        QDir(folder.path()).mkdir(QStringLiteral("bin"));
        QFile::copy(kChild, program());
        QDir(folder.path()).mkpath(QStringLiteral("installed/" LIBRARY_FOLDER));
        QFile::copy(QStringLiteral(HOST_LIBRARY), libraries() + QStringLiteral("/" HOST_LIBRARY_NAME));
        for (const QString& place : {override(), beside(), installed(), home(), system()})
            QDir().mkpath(place);
    }

    QString program() const { return folder.filePath(QStringLiteral("bin/child")); }
    QString override() const { return folder.filePath(QStringLiteral("override")); }
    QString beside() const { return folder.filePath(QStringLiteral("share/orvel")); }
    QString libraries() const { return folder.filePath(QStringLiteral("installed/" LIBRARY_FOLDER)); }
    QString installed() const { return folder.filePath(QStringLiteral("installed/share/orvel")); }
    QString home() const { return folder.filePath(QStringLiteral("home/orvel")); }
    QString system() const { return folder.filePath(QStringLiteral("system/orvel")); }

    QString locate(const QString& name, const QString& command = QStringLiteral("locate-file")) const
    {
        return runChild({command, name},
                        {QStringLiteral("LD_LIBRARY_PATH=") + libraries(),
                         QStringLiteral("ORVEL_DATA_DIR=") + override(),
                         QStringLiteral("XDG_DATA_HOME=") + folder.filePath(QStringLiteral("home")),
                         QStringLiteral("XDG_DATA_DIRS=") + folder.filePath(QStringLiteral("system"))},
                        program())
            .output;
    }

private:
    QTemporaryDir folder;
};

/// An instance in the middle of writing a file.
class WritingChild
{
public:
    explicit WritingChild(const QString& path)
    {
        process.start(kChild, {QStringLiteral("write-on"), path});
        process.waitForReadyRead();
        tempFolder = QString::fromUtf8(process.readLine()).trimmed();
    }

    const QString& getTempFolder() const { return tempFolder; }
    void kill()
    {
        process.kill();
        process.waitForFinished();
    }
    void finish()
    {
        process.closeWriteChannel();
        process.waitForFinished();
    }

private:
    QProcess process;
    QString tempFolder;
};

QStringList getFiles(const QTemporaryDir& folder)
{
    return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

} // namespace

class TestApplication : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void instanceIsThereWhileItLives();
    void tempFolderIsForItsUserOnly();
    void tempFolderHasAnUnguessableName();
    void slashInTheApplicationNameDoesNoHarm();
    void tempFolderGoesWithTheApplication();
    void restoredTempFolderIsNobodyElses();
    void tempFolderGoesWhenTheProgramEnds();
    void whatAKilledInstanceLeftIsRemovedByTheNext();
    void whatALivingInstanceUsesStays();
    void whatIsNoLeftOverStays();
    void missingSystemTempFolderIsAnError();
    void tmpFileNameHasANumberInPlaceOfTheMarker();
    void tmpFileNameWithoutAMarkerStartsWithTheNumber();
    void tmpFileNamePassesOverExistingFiles();
    void tmpFileNamesNeverRepeatThoughNoFileIsMade();
    void tmpFileNameStaysInTheTempFolder();
    void withoutAnApplicationThereAreNoTempPaths();
    void registeredFilesAreRemovedAtTheEnd();
    void registeredLinkIsRemovedNotWhatItLeadsTo();
    void dataIsLookedForInOrder();
    void filesAndFoldersAreToldApart();
    void foldersOfDataAreLocated();
    void unknownDataHasNoPath();
    void locatedPathIsAbsolute();
    void warningGoesToTheStandardErrorOutput();
    void warningNeedsNoApplication();
};

void TestApplication::instanceIsThereWhileItLives()
{
    QCOMPARE(Application::instance(), static_cast<Application*>(nullptr));
    {
        const Application application;
        QCOMPARE(static_cast<const Application*>(Application::instance()), &application);
        QCOMPARE(static_cast<const Application*>(getApplication()), &application);
    }
    QCOMPARE(Application::instance(), static_cast<Application*>(nullptr));
}

void TestApplication::tempFolderIsForItsUserOnly()
{
    const mode_t oldMask = umask(0);
    const Application application;
    umask(oldMask);

    QVERIFY(QFileInfo(Application::getTempFolder()).isDir());
    QCOMPARE(getMode(Application::getTempFolder()), mode_t(0700));
}

void TestApplication::tempFolderHasAnUnguessableName()
{
    const QRegularExpression form(QStringLiteral("^%1/tst_application-[a-z0-9]{16}$")
                                      .arg(QRegularExpression::escape(QDir::tempPath())));
    QStringList folders;
    for (int i = 0; i < 2; ++i) {
        const Application application;
        folders.append(Application::getTempFolder());
        QVERIFY2(form.match(folders.last()).hasMatch(), qPrintable(folders.last()));
    }
    QVERIFY(folders.first() != folders.last());
}

void TestApplication::slashInTheApplicationNameDoesNoHarm()
{
    QCoreApplication::setApplicationName(QStringLiteral("a/../b"));
    const Application application;
    QCoreApplication::setApplicationName(QStringLiteral("tst_application"));

    QVERIFY(Application::getTempFolder().startsWith(QDir::tempPath() + QStringLiteral("/a_.._b-")));
}

void TestApplication::tempFolderGoesWithTheApplication()
{
    QString folder;
    {
        const Application application;
        folder = Application::getTempFolder();
        QVERIFY(QDir(folder).mkpath(QStringLiteral("a/b")));
        writeFile(folder + QStringLiteral("/a/b/file"), "x");
    }
    QVERIFY(!QFileInfo::exists(folder));
}

void TestApplication::restoredTempFolderIsNobodyElses()
{
    const Application application;
    const QString folder = Application::getTempFolder();
    QVERIFY(QDir(folder).removeRecursively());
    Application::restoreTempFolder();
    QCOMPARE(Application::getTempFolder(), folder);
    QCOMPARE(getMode(folder), mode_t(0700));
    // As the next start of the program does.
    TempFolder::removeLeftOvers(QCoreApplication::applicationName());
    QVERIFY(QFileInfo(folder).isDir());
}

void TestApplication::tempFolderGoesWhenTheProgramEnds()
{
    const Outcome outcome = runChild({QStringLiteral("temp-folder")});

    QCOMPARE(outcome.exitCode, 0);
    QVERIFY(outcome.output.startsWith(QDir::tempPath() + QStringLiteral("/applicationchild-")));
    QVERIFY(!QFileInfo::exists(outcome.output));
}

void TestApplication::whatAKilledInstanceLeftIsRemovedByTheNext()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("page.html"));
    writeFile(path, "old");
    WritingChild child(path);
    child.kill();
    QVERIFY(QFileInfo::exists(child.getTempFolder()));
    QCOMPARE(getFiles(folder).size(), 2);

    QCOMPARE(runChild({QStringLiteral("temp-folder")}).exitCode, 0);
    QVERIFY(!QFileInfo::exists(child.getTempFolder()));
    QCOMPARE(getFiles(folder), QStringList(QStringLiteral("page.html")));
    QCOMPARE(readFile(path), QByteArray("old"));
}

void TestApplication::whatALivingInstanceUsesStays()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("page.html"));
    WritingChild child(path);
    QCOMPARE(runChild({QStringLiteral("temp-folder")}).exitCode, 0);
    QVERIFY(QFileInfo::exists(child.getTempFolder()));
    child.finish();
    QVERIFY(!QFileInfo::exists(child.getTempFolder()));
    QCOMPARE(getFiles(folder), QStringList(QStringLiteral("page.html")));
    QCOMPARE(readFile(path), QByteArray("new"));
}

void TestApplication::whatIsNoLeftOverStays()
{
    const QTemporaryDir system;
    const QDir folder(system.path());
    const QString target = QStringLiteral("target");
    const QString link = QStringLiteral("applicationchild-aaaaaaaaaaaaaaaa");
    // Of an earlier version, which locks nothing; of another program; a link.
    const QStringList others{QStringLiteral("applicationchild-AbCdEfGhIjKl"),
                             QStringLiteral("otherchild-aaaaaaaaaaaaaaaa"), target};
    for (const QString& name : others)
        QVERIFY(folder.mkdir(name));
    QVERIFY(QFile::link(folder.filePath(target), folder.filePath(link)));
    // A note may be of anything, but only files that were being written are removed.
    const QString leftOver = QStringLiteral("applicationchild-bbbbbbbbbbbbbbbb");
    const QString precious = folder.filePath(QStringLiteral("precious.html"));
    QVERIFY(folder.mkdir(leftOver));
    writeFile(precious, "x");
    QVERIFY(QFile::link(precious, folder.filePath(leftOver + QStringLiteral("/unfinished-1"))));

    const QString variable = QStringLiteral("TMPDIR=") + system.path();
    QCOMPARE(runChild({QStringLiteral("temp-folder")}, {variable}).exitCode, 0);
    QCOMPARE(folder.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name),
             QStringList({others[0], link, others[1], target}));
    QVERIFY(QFileInfo::exists(precious));
}

void TestApplication::missingSystemTempFolderIsAnError()
{
    const Outcome outcome =
        runChild({QStringLiteral("temp-folder")}, {QStringLiteral("TMPDIR=/missing/folder")});

    QCOMPARE(outcome.exitCode, 3);
    QCOMPARE(outcome.errors,
             QStringLiteral("Не удалось создать временную папку в «/missing/folder»: такой папки нет."));
    QCOMPARE(outcome.output, QString());
}

void TestApplication::tmpFileNameHasANumberInPlaceOfTheMarker()
{
    const Application application;

    QCOMPARE(Application::getTmpFileName(QStringLiteral("protocol_%1.html")),
             inTempFolder(QStringLiteral("protocol_1.html")));
    QCOMPARE(Application::getTmpFileName(QStringLiteral("protocol_%1.html")),
             inTempFolder(QStringLiteral("protocol_2.html")));
    QCOMPARE(Application::getTmpFileName(QStringLiteral("%1-%1")), inTempFolder(QStringLiteral("3-3")));
    QVERIFY(QDir(Application::getTempFolder()).isEmpty());
}

void TestApplication::tmpFileNameWithoutAMarkerStartsWithTheNumber()
{
    const Application application;

    QCOMPARE(Application::getTmpFileName(QStringLiteral("report.html")),
             inTempFolder(QStringLiteral("1_report.html")));
    QCOMPARE(Application::getTmpFileName(QStringLiteral("report.html")),
             inTempFolder(QStringLiteral("2_report.html")));
    QCOMPARE(Application::getTmpFileName(QString()), inTempFolder(QStringLiteral("3_")));
}

void TestApplication::tmpFileNamePassesOverExistingFiles()
{
    const Application application;
    writeFile(inTempFolder(QStringLiteral("1.txt")), "x");
    QVERIFY(QDir().mkdir(inTempFolder(QStringLiteral("2.txt"))));
    QVERIFY(QFile::link(QStringLiteral("/missing/target"), inTempFolder(QStringLiteral("3.txt"))));

    QCOMPARE(Application::getTmpFileName(QStringLiteral("%1.txt")), inTempFolder(QStringLiteral("4.txt")));
}

void TestApplication::tmpFileNamesNeverRepeatThoughNoFileIsMade()
{
    const Application application;
    QCOMPARE(Application::getTmpFileName(QStringLiteral("%10")), inTempFolder(QStringLiteral("10")));
    for (int number = 2; number < 10; ++number) {
        QCOMPARE(Application::getTmpFileName(QStringLiteral("%1")), inTempFolder(QString::number(number)));
    }

    QCOMPARE(Application::getTmpFileName(QStringLiteral("%1")), inTempFolder(QStringLiteral("11")));
}

void TestApplication::tmpFileNameStaysInTheTempFolder()
{
    const Application application;

    QCOMPARE(Application::getTmpFileName(QStringLiteral("../../etc/%1.txt")),
             inTempFolder(QStringLiteral("1.txt")));
    QCOMPARE(Application::getTmpFileName(QStringLiteral("..")), inTempFolder(QStringLiteral("2_..")));
}

void TestApplication::withoutAnApplicationThereAreNoTempPaths()
{
    QCOMPARE(Application::getTempFolder(), QString());
    QCOMPARE(Application::getTmpFileName(QStringLiteral("%1.txt")), QString());
}

void TestApplication::registeredFilesAreRemovedAtTheEnd()
{
    const QTemporaryDir folder;
    const QString registered = folder.filePath(QStringLiteral("registered"));
    const QString other = folder.filePath(QStringLiteral("other"));
    {
        Application application;
        application.registerTmpFile(registered);
        application.registerTmpFile(folder.filePath(QStringLiteral("never made")));
        writeFile(registered, "x");
        writeFile(other, "x");
    }
    QVERIFY(!QFileInfo::exists(registered));
    QVERIFY(QFileInfo::exists(other));
}

void TestApplication::registeredLinkIsRemovedNotWhatItLeadsTo()
{
    const QTemporaryDir folder;
    const QString target = folder.filePath(QStringLiteral("target"));
    const QString link = folder.filePath(QStringLiteral("link"));
    writeFile(target, "x");
    QVERIFY(QFile::link(target, link));
    {
        Application application;
        application.registerTmpFile(link);
    }
    QVERIFY(!QFileInfo(link).isSymLink());
    QVERIFY(QFileInfo::exists(target));
}

void TestApplication::dataIsLookedForInOrder()
{
    const DataFixture data;
    const QString name = QStringLiteral("form.txt");
    const QStringList places = {data.override(), data.beside(), data.installed(), data.home(), data.system()};
    for (const QString& place : places)
        writeFile(place + QLatin1Char('/') + name, "x");

    for (const QString& place : places) {
        const QString path = place + QLatin1Char('/') + name;
        QCOMPARE(data.locate(name), path);
        QFile::remove(path);
    }
    QCOMPARE(data.locate(name), QString());
}

void TestApplication::filesAndFoldersAreToldApart()
{
    const DataFixture data;
    QDir().mkdir(data.override() + QStringLiteral("/name"));
    writeFile(data.beside() + QStringLiteral("/name"), "x");

    QCOMPARE(data.locate(QStringLiteral("name")), data.beside() + QStringLiteral("/name"));
    QCOMPARE(data.locate(QStringLiteral("name"), QStringLiteral("locate-folder")),
             data.override() + QStringLiteral("/name"));
}

void TestApplication::foldersOfDataAreLocated()
{
    const DataFixture data;
    QDir().mkpath(data.home() + QStringLiteral("/forms/ru"));

    QCOMPARE(data.locate(QStringLiteral("forms/ru"), QStringLiteral("locate-folder")),
             data.home() + QStringLiteral("/forms/ru"));
}

void TestApplication::unknownDataHasNoPath()
{
    const DataFixture data;

    QCOMPARE(data.locate(QStringLiteral("missing")), QString());
    QCOMPARE(data.locate(QStringLiteral("missing"), QStringLiteral("locate-folder")), QString());
    QCOMPARE(data.locate(QString()), QString());
}

void TestApplication::locatedPathIsAbsolute()
{
    const QTemporaryDir folder;
    writeFile(folder.filePath(QStringLiteral("file")), "x");
    const QString relative = QDir::current().relativeFilePath(folder.path());
    const Outcome outcome = runChild({QStringLiteral("locate-file"), QStringLiteral("file")},
                                     {QStringLiteral("ORVEL_DATA_DIR=") + relative});

    QCOMPARE(outcome.output, folder.filePath(QStringLiteral("file")));
}

void TestApplication::warningGoesToTheStandardErrorOutput()
{
    const Outcome outcome =
        runChild({QStringLiteral("warning"), QStringLiteral("Модуль «x» не загружен: 100%")});

    QCOMPARE(outcome.errors, QStringLiteral("Модуль «x» не загружен: 100%\n"));
    QCOMPARE(outcome.output, QString());
    QCOMPARE(outcome.exitCode, 0);
}

void TestApplication::warningNeedsNoApplication()
{
    const Outcome outcome = runChild({QStringLiteral("bare-warning"), QStringLiteral("слово")});

    QCOMPARE(outcome.errors, QStringLiteral("слово\n"));
}

QTEST_GUILESS_MAIN(TestApplication)
#include "tst_application.moc"
