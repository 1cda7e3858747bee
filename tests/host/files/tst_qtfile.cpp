#include "host/files/QtFile.h"
#include "host/files/WholeFile.h"
#include "tests/host/files/FileFailure.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/TestFiles.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using qor::CFileException;

namespace {

QIODevice* const kNoDevice = nullptr;

QString cannotOpen(const QString& path, const QString& reason)
{
    return QStringLiteral("Не удалось открыть файл «%1»: %2.").arg(path, reason);
}

/// The folder's files by their names.
QStringList filesIn(const QTemporaryDir& folder)
{
    return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

/// Fails to open the file for reading, as a process does that has too many files open.
void failToRead(const QString& path)
{
    rlimit oldLimit{};
    getrlimit(RLIMIT_NOFILE, &oldLimit);
    rlimit limit = oldLimit;
    limit.rlim_cur = 0;
    setrlimit(RLIMIT_NOFILE, &limit);
    QtFile file(path);
    const FileFailure failure = getFailure([&] { file.open(QIODevice::ReadOnly); });
    setrlimit(RLIMIT_NOFILE, &oldLimit);
    QCOMPARE(failure.code, static_cast<int>(CFileException::CannotOpen));
}

} // namespace

class TestQtFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void readsAFile();
    void readsTextWithLineEnds();
    void writesANewFile();
    void emptyFileCanBeWritten();
    void oldFileStaysWholeUntilClose();
    void nothingIsLeftBesideTheFile();
    void destroyedWithoutCloseTheOldFileStays();
    void openedAgainWhatWasWrittenIsGivenUp();
    void writtenFileCanBeReadThroughTheSameObject();
    void permissionsOfTheOldFileStay();
    void linkStaysAndItsTargetIsReplaced();
    void pipeIsWrittenDirectly();
    void streamIsWrittenWhereItStands_data();
    void streamIsWrittenWhereItStands();
    void closedStreamCannotBeWritten();
    void linkOfAnotherUserInASharedFolderIsNotFollowed_data();
    void linkOfAnotherUserInASharedFolderIsNotFollowed();
    void deviceIsThereWhileTheFileIsOpen();
    void closingTwiceDoesNothing();
    void missingFileCannotBeRead();
    void folderCannotBeReadOrWritten();
    void fileCannotServeAsAFolder();
    void missingFolderCannotBeWrittenTo();
    void otherWaysOfOpeningAreRefused();
    void emptyPathIsRefused();
    void percentSignsInThePathAreKept();
    void failedOpenLeavesNoDevice();
    void failedWriteIsToldAndTheOldFileStays();
    void failedWriteOfAFewBytesIsTold();
    void blockThatIsWrittenInPartIsTold();
    void failedReplacementIsTold();
    void vanishedFolderIsTold();
    void failedReadIsTold();
    void fileThatCouldNotBeReadIsKeptBeside();
    void fileThatWasReadAfterAllIsReplaced();

private:
    QScopedPointer<QTemporaryDir> folder;
    QString path;
};

void TestQtFile::init()
{
    folder.reset(new QTemporaryDir);
    QVERIFY(folder->isValid());
    path = folder->filePath(QStringLiteral("file"));
}

void TestQtFile::readsAFile()
{
    writeFile(path, QByteArrayLiteral("a\r\n\0b"));
    QtFile file(path);
    file.open(QIODevice::ReadOnly);

    QCOMPARE(file.device()->readAll(), QByteArrayLiteral("a\r\n\0b"));
    file.close();
}

void TestQtFile::readsTextWithLineEnds()
{
    writeFile(path, "a\r\nb");
    QtFile file(path);
    file.open(QIODevice::ReadOnly | QIODevice::Text);

    QCOMPARE(file.device()->readAll(), QByteArrayLiteral("a\nb"));
    file.close();
}

void TestQtFile::writesANewFile()
{
    QtFile file(path);
    file.open(QIODevice::WriteOnly);
    file.device()->write(QByteArrayLiteral("a\r\n\0b"));
    QVERIFY(!QFileInfo::exists(path));
    file.close();

    QCOMPARE(readFile(path), QByteArrayLiteral("a\r\n\0b"));
}

void TestQtFile::emptyFileCanBeWritten()
{
    writeFile(path, "old");
    QtFile file(path);
    file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text);
    file.close();

    QCOMPARE(readFile(path), QByteArray());
}

void TestQtFile::oldFileStaysWholeUntilClose()
{
    writeFile(path, "old");
    QtFile file(path);
    file.open(QIODevice::WriteOnly);
    file.device()->write(QByteArray(1000000, 'n'));
    QCOMPARE(readFile(path), QByteArrayLiteral("old"));
    file.close();

    QCOMPARE(readFile(path), QByteArray(1000000, 'n'));
}

void TestQtFile::nothingIsLeftBesideTheFile()
{
    {
        QtFile file(path);
        file.open(QIODevice::WriteOnly);
        file.device()->write("new");
        file.close();
        file.open(QIODevice::WriteOnly);
        file.device()->write("newer");
    }
    QCOMPARE(QDir(folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("file")});
}

void TestQtFile::destroyedWithoutCloseTheOldFileStays()
{
    writeFile(path, "old");
    {
        QtFile file(path);
        file.open(QIODevice::WriteOnly);
        file.device()->write("new");
    }
    QCOMPARE(readFile(path), QByteArrayLiteral("old"));
}

void TestQtFile::openedAgainWhatWasWrittenIsGivenUp()
{
    QtFile file(path);
    file.open(QIODevice::WriteOnly);
    file.device()->write("first");
    file.open(QIODevice::WriteOnly);
    QVERIFY(!QFileInfo::exists(path));
    file.device()->write("second");
    file.close();

    QCOMPARE(readFile(path), QByteArrayLiteral("second"));
}

void TestQtFile::writtenFileCanBeReadThroughTheSameObject()
{
    QtFile file(path);
    file.open(QIODevice::WriteOnly);
    file.device()->write("new");
    file.close();
    file.open(QIODevice::ReadOnly);

    QCOMPARE(file.device()->readAll(), QByteArrayLiteral("new"));
}

void TestQtFile::permissionsOfTheOldFileStay()
{
    writeFile(path, "old");
    ::chmod(QFile::encodeName(path).constData(), 0604);
    QtFile file(path);
    file.open(QIODevice::WriteOnly);
    file.close();
    struct stat status = {};
    ::stat(QFile::encodeName(path).constData(), &status);

    QCOMPARE(status.st_mode & 07777, mode_t(0604));
}

void TestQtFile::linkStaysAndItsTargetIsReplaced()
{
    const QString link = folder->filePath(QStringLiteral("link"));
    writeFile(path, "old");
    QVERIFY(QFile::link(path, link));
    QtFile file(link);
    file.open(QIODevice::WriteOnly);
    file.device()->write("new");
    file.close();

    QVERIFY(QFileInfo(link).isSymLink());
    QCOMPARE(readFile(path), QByteArrayLiteral("new"));
}

void TestQtFile::pipeIsWrittenDirectly()
{
    const QByteArray pipePath = QFile::encodeName(path);
    QCOMPARE(::mkfifo(pipePath.constData(), 0600), 0);
    const int pipe = ::open(pipePath.constData(), O_RDWR | O_NONBLOCK);
    QtFile file(path);
    file.open(QIODevice::WriteOnly);
    file.device()->write("line");
    file.close();
    std::array<char, 10> received{};
    const ssize_t count = ::read(pipe, received.data(), received.size());
    ::close(pipe);
    struct stat status = {};
    ::stat(pipePath.constData(), &status);

    QCOMPARE(QByteArray(received.data(), static_cast<int>(count)), QByteArrayLiteral("line"));
    QVERIFY(S_ISFIFO(status.st_mode));
}

void TestQtFile::streamIsWrittenWhereItStands_data()
{
    QTest::addColumn<QString>("pattern");
    QTest::newRow("dev") << QStringLiteral("/dev/fd/%1");
    QTest::newRow("proc") << QStringLiteral("/proc/self/fd/%1");
    QTest::newRow("longer way") << QStringLiteral("/dev/../dev/fd//%1");
    QTest::newRow("by process number") << QStringLiteral("/proc/%2/fd/%1");
    QTest::newRow("by a link") << QStringLiteral("link");
}

void TestQtFile::streamIsWrittenWhereItStands()
{
    QFETCH(QString, pattern);
    writeFile(path, "before\n");
    const int log = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_APPEND | O_CLOEXEC);
    const QString link = path + QStringLiteral(".link");
    QVERIFY(QFile::link(QStringLiteral("/dev/fd/%1").arg(log), link));
    const QString stream = pattern == QLatin1String("link")
                               ? link
                               : QString(pattern)
                                     .replace(QStringLiteral("%2"), QString::number(getpid()))
                                     .replace(QStringLiteral("%1"), QString::number(log));
    QtFile file(stream);
    file.open(QIODevice::WriteOnly);
    file.device()->write("line\n");
    file.close();
    // The stream is still open for others.
    QCOMPARE(::write(log, "after\n", 6), ssize_t(6));
    ::close(log);

    QCOMPARE(readFile(path), QByteArrayLiteral("before\nline\nafter\n"));
}

void TestQtFile::closedStreamCannotBeWritten()
{
    const QString stream = QStringLiteral("/dev/fd/987");
    QtFile file(stream);
    const FileFailure failure = getFailure([&] { file.open(QIODevice::WriteOnly); });

    QCOMPARE(failure.code, int(CFileException::CannotOpen));
    QCOMPARE(failure.description, cannotOpen(stream, QStringLiteral("Bad file descriptor")));
}

void TestQtFile::linkOfAnotherUserInASharedFolderIsNotFollowed_data()
{
    QTest::addColumn<int>("folderMode");
    QTest::addColumn<uint>("linkOwner");
    QTest::addColumn<bool>("isFollowed");
    const uint nobody = 65534;
    QTest::newRow("another user's, shared folder") << 01777 << nobody << false;
    QTest::newRow("another user's, own folder") << 0755 << nobody << true;
    QTest::newRow("own, shared folder") << 01777 << uint(::geteuid()) << true;
}

void TestQtFile::linkOfAnotherUserInASharedFolderIsNotFollowed()
{
    QFETCH(int, folderMode);
    QFETCH(uint, linkOwner);
    QFETCH(bool, isFollowed);
    const QString link = folder->filePath(QStringLiteral("link"));
    writeFile(path, "old");
    QVERIFY(QFile::link(path, link));
    if (::lchown(QFile::encodeName(link).constData(), linkOwner, gid_t(-1)) != 0)
        QSKIP("only root can give a link away", 0);
    QCOMPARE(::chmod(QFile::encodeName(folder->path()).constData(), mode_t(folderMode)), 0);
    QtFile file(link);
    const FileFailure failure = getFailure([&] {
        file.open(QIODevice::WriteOnly);
        file.device()->write("new");
        file.close();
    });

    QCOMPARE(failure.description,
             isFollowed ? QString()
                        : cannotOpen(link, QStringLiteral("это ссылка другого пользователя в общей папке")));
    QCOMPARE(readFile(path), isFollowed ? QByteArrayLiteral("new") : QByteArrayLiteral("old"));
}

void TestQtFile::deviceIsThereWhileTheFileIsOpen()
{
    QtFile file(path);
    QCOMPARE(file.device(), kNoDevice);
    file.open(QIODevice::WriteOnly);
    QVERIFY(file.device() != nullptr);
    QVERIFY(file.device()->isOpen());
    file.close();

    QCOMPARE(file.device(), kNoDevice);
}

void TestQtFile::closingTwiceDoesNothing()
{
    QtFile file(path);
    file.close();
    QVERIFY(!QFileInfo::exists(path));
    file.open(QIODevice::WriteOnly);
    file.close();
    QFile::remove(path);
    file.close();

    QVERIFY(!QFileInfo::exists(path));
}

void TestQtFile::missingFileCannotBeRead()
{
    const FileFailure failure = getFailure([this] { QtFile(path).open(QIODevice::ReadOnly); });

    QCOMPARE(failure.code, static_cast<int>(CFileException::CannotOpen));
    QCOMPARE(failure.description, cannotOpen(path, QStringLiteral("такого файла или папки нет")));
}

void TestQtFile::folderCannotBeReadOrWritten()
{
    const FileFailure read = getFailure([this] { QtFile(folder->path()).open(QIODevice::ReadOnly); });
    const FileFailure written = getFailure([this] { QtFile(folder->path()).open(QIODevice::WriteOnly); });

    QCOMPARE(read.code, static_cast<int>(CFileException::CannotOpen));
    QCOMPARE(read.description, cannotOpen(folder->path(), QStringLiteral("это папка, а не файл")));
    QCOMPARE(written.code, static_cast<int>(CFileException::CannotOpen));
    QCOMPARE(written.description, cannotOpen(folder->path(), QStringLiteral("это папка, а не файл")));
}

void TestQtFile::fileCannotServeAsAFolder()
{
    writeFile(path, "x");
    const QString below = path + QStringLiteral("/below");
    const FileFailure failure = getFailure([&] { QtFile(below).open(QIODevice::WriteOnly); });

    QCOMPARE(failure.code, static_cast<int>(CFileException::CannotOpen));
    QCOMPARE(failure.description, cannotOpen(below, QStringLiteral("часть пути — файл, а не папка")));
    QCOMPARE(readFile(path), QByteArrayLiteral("x"));
}

void TestQtFile::missingFolderCannotBeWrittenTo()
{
    const QString below = path + QStringLiteral("/below");
    const FileFailure failure = getFailure([&] { QtFile(below).open(QIODevice::WriteOnly); });

    QCOMPARE(failure.code, static_cast<int>(CFileException::CannotOpen));
    QCOMPARE(failure.description, cannotOpen(below, QStringLiteral("такого файла или папки нет")));
}

void TestQtFile::otherWaysOfOpeningAreRefused()
{
    writeFile(path, "old");
    const QString expected = cannotOpen(path, QStringLiteral("такой способ открытия не поддерживается"));
    for (const QIODevice::OpenMode mode :
         {QIODevice::OpenMode(QIODevice::ReadWrite), QIODevice::WriteOnly | QIODevice::Append,
          QIODevice::OpenMode(QIODevice::NotOpen), QIODevice::WriteOnly | QIODevice::NewOnly}) {
        const FileFailure failure = getFailure([&] { QtFile(path).open(mode); });
        QCOMPARE(failure.code, static_cast<int>(CFileException::CannotOpen));
        QCOMPARE(failure.description, expected);
    }
    QCOMPARE(readFile(path), QByteArrayLiteral("old"));
}

void TestQtFile::emptyPathIsRefused()
{
    for (const QIODevice::OpenMode mode :
         {QIODevice::OpenMode(QIODevice::ReadOnly), QIODevice::OpenMode(QIODevice::WriteOnly)}) {
        const FileFailure failure = getFailure([&] { QtFile(QString()).open(mode); });
        QCOMPARE(failure.code, static_cast<int>(CFileException::CannotOpen));
        QCOMPARE(failure.description, cannotOpen(QString(), QStringLiteral("имя файла пусто")));
    }
}

void TestQtFile::percentSignsInThePathAreKept()
{
    const QString odd = folder->filePath(QStringLiteral("%1 %2 100%"));
    const FileFailure failure = getFailure([&] { QtFile(odd).open(QIODevice::ReadOnly); });

    QCOMPARE(failure.description, cannotOpen(odd, QStringLiteral("такого файла или папки нет")));
}

void TestQtFile::failedOpenLeavesNoDevice()
{
    writeFile(path, "old");
    QtFile file(path);
    file.open(QIODevice::WriteOnly);
    file.device()->write("new");
    const FileFailure failure = getFailure([&] { file.open(QIODevice::ReadWrite); });

    QCOMPARE(failure.code, static_cast<int>(CFileException::CannotOpen));
    QCOMPARE(file.device(), kNoDevice);
    file.close();
    QCOMPARE(readFile(path), QByteArrayLiteral("old"));
}

void TestQtFile::failedWriteIsToldAndTheOldFileStays()
{
    writeFile(path, "old");
    QtFile file(path);
    FileFailure failure;
    {
        const FileSizeLimit limit(100000);
        file.open(QIODevice::WriteOnly);
        for (int i = 0; i < 300; ++i)
            file.device()->write(QByteArray(1000, 'n'));
        failure = getFailure([&] { file.close(); });
    }
    QCOMPARE(failure.code, static_cast<int>(CFileException::CannotWrite));
    QCOMPARE(failure.description,
             QStringLiteral("Не удалось записать файл «%1»: файл слишком велик.").arg(path));
    QCOMPARE(file.device(), kNoDevice);
    QCOMPARE(readFile(path), QByteArrayLiteral("old"));
    QCOMPARE(QDir(folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("file")});
}

void TestQtFile::failedWriteOfAFewBytesIsTold()
{
    QtFile file(path);
    FileFailure failure;
    {
        // So few that they are written no earlier than on close().
        const FileSizeLimit limit(0);
        file.open(QIODevice::WriteOnly);
        file.device()->write("new");
        failure = getFailure([&] { file.close(); });
    }
    QCOMPARE(failure.code, static_cast<int>(CFileException::CannotWrite));
    QCOMPARE(failure.description,
             QStringLiteral("Не удалось записать файл «%1»: файл слишком велик.").arg(path));
    QVERIFY(!QFileInfo::exists(path));
}

void TestQtFile::blockThatIsWrittenInPartIsTold()
{
    writeFile(path, "old");
    QtFile file(path);
    FileFailure failure;
    {
        const FileSizeLimit limit(100000);
        file.open(QIODevice::WriteOnly);
        file.device()->write(QByteArray(300000, 'n'));
        failure = getFailure([&] { file.close(); });
    }
    QCOMPARE(failure.code, static_cast<int>(CFileException::CannotWrite));
    QCOMPARE(failure.description,
             QStringLiteral("Не удалось записать файл «%1»: файл слишком велик.").arg(path));
    QCOMPARE(readFile(path), QByteArrayLiteral("old"));
}

void TestQtFile::failedReplacementIsTold()
{
    QtFile file(path);
    file.open(QIODevice::WriteOnly);
    file.device()->write("new");
    QVERIFY(QDir().mkdir(path));
    const FileFailure failure = getFailure([&] { file.close(); });

    QCOMPARE(failure.code, static_cast<int>(CFileException::CannotWrite));
    QCOMPARE(failure.description,
             QStringLiteral("Не удалось записать файл «%1»: это папка, а не файл.").arg(path));
    QCOMPARE(QDir(folder->path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
             QStringList{QStringLiteral("file")});
}

void TestQtFile::vanishedFolderIsTold()
{
    const QString below = folder->filePath(QStringLiteral("sub/file"));
    QVERIFY(QDir(folder->path()).mkdir(QStringLiteral("sub")));
    QtFile file(below);
    file.open(QIODevice::WriteOnly);
    QVERIFY(QDir(folder->filePath(QStringLiteral("sub"))).removeRecursively());
    const FileFailure failure = getFailure([&] { file.close(); });

    QCOMPARE(failure.code, static_cast<int>(CFileException::CannotWrite));
    QCOMPARE(failure.description,
             QStringLiteral("Не удалось записать файл «%1»: такого файла или папки нет.").arg(below));
}

void TestQtFile::failedReadIsTold()
{
    // No memory is mapped at the address 0.
    const QString memory = QStringLiteral("/proc/self/mem");
    QtFile file(memory);
    file.open(QIODevice::ReadOnly);
    QCOMPARE(file.device()->read(1), QByteArray());
    const FileFailure failure = getFailure([&] { file.close(); });

    QCOMPARE(failure.code, static_cast<int>(CFileException::CannotRead));
    QCOMPARE(failure.description,
             QStringLiteral("Не удалось прочитать файл «%1»: ошибка ввода-вывода.").arg(memory));
}

void TestQtFile::fileThatCouldNotBeReadIsKeptBeside()
{
    files::writeAll(path, "old");
    failToRead(path);
    files::writeAll(path, "new");
    QCOMPARE(readFile(path), QByteArray("new"));
    QCOMPARE(filesIn(*folder), (QStringList{QStringLiteral("file"), QStringLiteral("file.unread-1")}));
    QCOMPARE(readFile(path + QStringLiteral(".unread-1")), QByteArray("old"));

    // Each state of the file once.
    files::writeAll(path, "newer");
    failToRead(path);
    files::writeAll(path, "newest");
    QCOMPARE(filesIn(*folder), (QStringList{QStringLiteral("file"), QStringLiteral("file.unread-1"),
                                            QStringLiteral("file.unread-2")}));
    QCOMPARE(readFile(path + QStringLiteral(".unread-2")), QByteArray("newer"));
}

void TestQtFile::fileThatWasReadAfterAllIsReplaced()
{
    files::writeAll(path, "old");
    failToRead(path);
    QCOMPARE(files::readAll(path), QByteArray("old"));
    files::writeAll(path, "new");
    QCOMPARE(filesIn(*folder), QStringList{QStringLiteral("file")});
    QCOMPARE(readFile(path), QByteArray("new"));
}

QTEST_GUILESS_MAIN(TestQtFile)
#include "tst_qtfile.moc"
