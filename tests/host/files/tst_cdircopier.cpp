#include "host/files/CDirCopier.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/TestFiles.h"

#include <QDateTime>
#include <QDir>
#include <QDirIterator>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/stat.h>
#include <unistd.h>

namespace {

const QDateTime kEarlier(QDate(2020, 1, 1), QTime(12, 0), Qt::UTC);
const QDateTime kMiddle(QDate(2021, 1, 1), QTime(12, 0), Qt::UTC);
const QDateTime kLater(QDate(2022, 1, 1), QTime(12, 0), Qt::UTC);

void setTime(const QString& path, const QDateTime& time)
{
    QFile file(path);
    file.open(QIODevice::ReadWrite);
    file.setFileTime(time, QFileDevice::FileModificationTime);
}

bool copyUpdating(const QString& from, const QString& to)
{
    CDirCopier copier(0);
    copier.setCopyOption(4);
    return copier.copyDir(from, to);
}

/// Everything in the folder, one line each: a folder as "name/", a link as "name -> target", a file as
/// "name: content".
QStringList listing(const QString& folder)
{
    QStringList lines;
    QDirIterator entries(folder, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                         QDirIterator::Subdirectories);
    while (entries.hasNext()) {
        const QFileInfo entry(entries.next());
        const QString name = QDir(folder).relativeFilePath(entry.filePath());
        if (entry.isSymLink())
            lines.append(name + QStringLiteral(" -> ") + entry.symLinkTarget());
        else if (entry.isDir())
            lines.append(name + QLatin1Char('/'));
        else
            lines.append(name + QStringLiteral(": ") + QString::fromUtf8(readFile(entry.filePath())));
    }
    lines.sort();
    return lines;
}

} // namespace

class TestCDirCopier : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void contentsGoStraightIntoTheTarget();
    void wholeFolderGoesIntoTheTarget();
    void nestedFoldersEmptyAndHiddenOnesAreCopied();
    void missingTargetIsMade();
    void otherFilesOfTheTargetStay();
    void olderFileIsReplaced();
    void olderFileWithTheSameContentIsReplaced();
    void newerFileWithOtherContentIsReplaced();
    void newerFileWithTheSameContentStays();
    void nestedFilesAreUpdatedToo();
    void withoutAnOptionExistingFilesStay();
    void permissionsAreCopied();
    void copyOfAReadonlyFileCanBeReplaced();
    void linkInPlaceOfAFileIsReplacedNotFollowed();
    void linkInPlaceOfAFolderIsReplacedNotFollowed();
    void linkThatLeadsNowhereIsReplacedNotFollowed();
    void hardLinkInTheTargetIsNotWrittenThrough();
    void withoutAnOptionLinksStayAndAreNotFollowed();
    void linksOfTheSourceAreCopiedAsFilesAndFoldersLeftOut();
    void fileInPlaceOfAFolderIsToldAndTheRestIsCopied();
    void fileInPlaceOfAnEmptyFolderIsTold();
    void folderInPlaceOfAFileIsToldAndTheRestIsCopied();
    void failedWriteIsToldAndLeavesNoPieces();
    void missingSourceIsRefused();
    void emptyPathsAreRefused();
    void sourceIsNotCopiedIntoItself();

private:
    QScopedPointer<QTemporaryDir> folder;
    QString source;
    QString target;
    QString victim; ///< Outside of source and target.
};

void TestCDirCopier::init()
{
    folder.reset(new QTemporaryDir);
    QVERIFY(folder->isValid());
    source = folder->filePath(QStringLiteral("source"));
    target = folder->filePath(QStringLiteral("target"));
    victim = folder->filePath(QStringLiteral("victim"));
    for (const QString& path : {source, target, victim})
        QVERIFY(QDir().mkdir(path));
    writeFile(source + QStringLiteral("/a"), "new a");
    writeFile(victim + QStringLiteral("/file"), "precious");
}

void TestCDirCopier::contentsGoStraightIntoTheTarget()
{
    QVERIFY(copyUpdating(source, target));
    QCOMPARE(listing(target), QStringList{QStringLiteral("a: new a")});
}

void TestCDirCopier::wholeFolderGoesIntoTheTarget()
{
    CDirCopier copier(1);
    copier.setCopyOption(4);

    QVERIFY(copier.copyDir(source + QLatin1Char('/'), target));
    QCOMPARE(listing(target), QStringList({QStringLiteral("source/"), QStringLiteral("source/a: new a")}));
}

void TestCDirCopier::nestedFoldersEmptyAndHiddenOnesAreCopied()
{
    QVERIFY(QDir(source).mkpath(QStringLiteral("d/e/empty")));
    writeFile(source + QStringLiteral("/d/e/f"), QByteArray(200000, 'x'));
    writeFile(source + QStringLiteral("/d/.hidden"), "");

    QVERIFY(copyUpdating(source, target));
    QCOMPARE(listing(target),
             QStringList({QStringLiteral("a: new a"), QStringLiteral("d/"), QStringLiteral("d/.hidden: "),
                          QStringLiteral("d/e/"), QStringLiteral("d/e/empty/"),
                          QStringLiteral("d/e/f: ") + QString(200000, QLatin1Char('x'))}));
}

void TestCDirCopier::missingTargetIsMade()
{
    const QString deep = target + QStringLiteral("/x/y");

    QVERIFY(copyUpdating(source, deep));
    QCOMPARE(listing(deep), QStringList{QStringLiteral("a: new a")});
}

void TestCDirCopier::otherFilesOfTheTargetStay()
{
    writeFile(target + QStringLiteral("/other"), "other");

    QVERIFY(copyUpdating(source, target));
    QCOMPARE(listing(target), QStringList({QStringLiteral("a: new a"), QStringLiteral("other: other")}));
}

void TestCDirCopier::olderFileIsReplaced()
{
    writeFile(target + QStringLiteral("/a"), "old a");
    setTime(target + QStringLiteral("/a"), kEarlier);

    QVERIFY(copyUpdating(source, target));
    QCOMPARE(listing(target), QStringList{QStringLiteral("a: new a")});
}

void TestCDirCopier::olderFileWithTheSameContentIsReplaced()
{
    writeFile(target + QStringLiteral("/a"), "new a");
    setTime(source + QStringLiteral("/a"), kMiddle);
    setTime(target + QStringLiteral("/a"), kEarlier);

    QVERIFY(copyUpdating(source, target));
    QVERIFY(QFileInfo(target + QStringLiteral("/a")).lastModified() > kMiddle);
}

void TestCDirCopier::newerFileWithOtherContentIsReplaced()
{
    writeFile(source + QStringLiteral("/b"), "longer");
    for (const QString& name : {QStringLiteral("/a"), QStringLiteral("/b")}) {
        writeFile(target + name, "old a");
        setTime(source + name, kMiddle);
        setTime(target + name, kLater);
    }

    QVERIFY(copyUpdating(source, target));
    QCOMPARE(listing(target), QStringList({QStringLiteral("a: new a"), QStringLiteral("b: longer")}));
}

void TestCDirCopier::newerFileWithTheSameContentStays()
{
    writeFile(target + QStringLiteral("/a"), "new a");
    setTime(source + QStringLiteral("/a"), kMiddle);
    setTime(target + QStringLiteral("/a"), kLater);

    QVERIFY(copyUpdating(source, target));
    QCOMPARE(QFileInfo(target + QStringLiteral("/a")).lastModified().toUTC(), kLater);
}

void TestCDirCopier::nestedFilesAreUpdatedToo()
{
    for (const QString& place : {source, target}) {
        QVERIFY(QDir(place).mkpath(QStringLiteral("d/e")));
        writeFile(place + QStringLiteral("/d/e/f"), place.toUtf8());
    }
    setTime(target + QStringLiteral("/d/e/f"), kEarlier);

    QVERIFY(copyUpdating(source, target));
    QCOMPARE(readFile(target + QStringLiteral("/d/e/f")), source.toUtf8());
}

void TestCDirCopier::withoutAnOptionExistingFilesStay()
{
    writeFile(target + QStringLiteral("/a"), "old a");
    writeFile(source + QStringLiteral("/b"), "new b");
    setTime(target + QStringLiteral("/a"), kEarlier);

    QVERIFY(CDirCopier(0).copyDir(source, target));
    QCOMPARE(listing(target), QStringList({QStringLiteral("a: old a"), QStringLiteral("b: new b")}));
}

void TestCDirCopier::permissionsAreCopied()
{
    ::chmod(QFile::encodeName(source + QStringLiteral("/a")).constData(), 0754);
    QVERIFY(copyUpdating(source, target));
    struct stat status = {};
    ::stat(QFile::encodeName(target + QStringLiteral("/a")).constData(), &status);

    QCOMPARE(status.st_mode & 07777, mode_t(0754));
}

void TestCDirCopier::copyOfAReadonlyFileCanBeReplaced()
{
    ::chmod(QFile::encodeName(source + QStringLiteral("/a")).constData(), 0444);
    QVERIFY(copyUpdating(source, target));
    struct stat status = {};
    ::stat(QFile::encodeName(target + QStringLiteral("/a")).constData(), &status);

    QCOMPARE(status.st_mode & 07777, mode_t(0644));
}

void TestCDirCopier::linkInPlaceOfAFileIsReplacedNotFollowed()
{
    QVERIFY(QFile::link(victim + QStringLiteral("/file"), target + QStringLiteral("/a")));

    QVERIFY(copyUpdating(source, target));
    QCOMPARE(listing(target), QStringList{QStringLiteral("a: new a")});
    QCOMPARE(listing(victim), QStringList{QStringLiteral("file: precious")});
}

void TestCDirCopier::linkInPlaceOfAFolderIsReplacedNotFollowed()
{
    QVERIFY(QDir(source).mkdir(QStringLiteral("d")));
    writeFile(source + QStringLiteral("/d/file"), "new file");
    QVERIFY(QFile::link(victim, target + QStringLiteral("/d")));

    QVERIFY(copyUpdating(source, target));
    QCOMPARE(listing(target), QStringList({QStringLiteral("a: new a"), QStringLiteral("d/"),
                                           QStringLiteral("d/file: new file")}));
    QCOMPARE(listing(victim), QStringList{QStringLiteral("file: precious")});
}

void TestCDirCopier::linkThatLeadsNowhereIsReplacedNotFollowed()
{
    QVERIFY(QFile::link(victim + QStringLiteral("/missing"), target + QStringLiteral("/a")));

    QVERIFY(copyUpdating(source, target));
    QCOMPARE(listing(target), QStringList{QStringLiteral("a: new a")});
    QCOMPARE(listing(victim), QStringList{QStringLiteral("file: precious")});
}

void TestCDirCopier::hardLinkInTheTargetIsNotWrittenThrough()
{
    QCOMPARE(::link(QFile::encodeName(victim + QStringLiteral("/file")).constData(),
                    QFile::encodeName(target + QStringLiteral("/a")).constData()),
             0);

    QVERIFY(copyUpdating(source, target));
    QCOMPARE(listing(target), QStringList{QStringLiteral("a: new a")});
    QCOMPARE(listing(victim), QStringList{QStringLiteral("file: precious")});
}

void TestCDirCopier::withoutAnOptionLinksStayAndAreNotFollowed()
{
    QVERIFY(QDir(source).mkdir(QStringLiteral("d")));
    writeFile(source + QStringLiteral("/d/new"), "new");
    QVERIFY(QFile::link(victim, target + QStringLiteral("/d")));
    QVERIFY(QFile::link(victim + QStringLiteral("/missing"), target + QStringLiteral("/a")));

    QVERIFY(!CDirCopier(0).copyDir(source, target));
    QCOMPARE(listing(target), QStringList({QStringLiteral("a -> ") + victim + QStringLiteral("/missing"),
                                           QStringLiteral("d -> ") + victim}));
    QCOMPARE(listing(victim), QStringList{QStringLiteral("file: precious")});
}

void TestCDirCopier::linksOfTheSourceAreCopiedAsFilesAndFoldersLeftOut()
{
    QVERIFY(QFile::link(victim + QStringLiteral("/file"), source + QStringLiteral("/link")));
    QVERIFY(QFile::link(victim, source + QStringLiteral("/folder")));
    QVERIFY(QFile::link(source, source + QStringLiteral("/loop")));

    QVERIFY(copyUpdating(source, target));
    QCOMPARE(listing(target), QStringList({QStringLiteral("a: new a"), QStringLiteral("link: precious")}));
}

void TestCDirCopier::fileInPlaceOfAFolderIsToldAndTheRestIsCopied()
{
    QVERIFY(QDir(source).mkdir(QStringLiteral("A")));
    writeFile(source + QStringLiteral("/A/file"), "new");
    writeFile(target + QStringLiteral("/A"), "old");

    QVERIFY(!copyUpdating(source, target));
    QCOMPARE(listing(target), QStringList({QStringLiteral("A: old"), QStringLiteral("a: new a")}));
}

void TestCDirCopier::fileInPlaceOfAnEmptyFolderIsTold()
{
    QVERIFY(QDir(source).mkdir(QStringLiteral("d")));
    writeFile(target + QStringLiteral("/d"), "old");

    QVERIFY(!copyUpdating(source, target));
    QCOMPARE(listing(target), QStringList({QStringLiteral("a: new a"), QStringLiteral("d: old")}));
}

void TestCDirCopier::folderInPlaceOfAFileIsToldAndTheRestIsCopied()
{
    QVERIFY(QDir(target).mkdir(QStringLiteral("a")));
    QVERIFY(QDir(source).mkdir(QStringLiteral("b")));
    writeFile(source + QStringLiteral("/b/file"), "new");
    writeFile(source + QStringLiteral("/c"), "new c");

    QVERIFY(!copyUpdating(source, target));
    QCOMPARE(listing(target), QStringList({QStringLiteral("a/"), QStringLiteral("b/"),
                                           QStringLiteral("b/file: new"), QStringLiteral("c: new c")}));
}

void TestCDirCopier::failedWriteIsToldAndLeavesNoPieces()
{
    writeFile(source + QStringLiteral("/big"), QByteArray(200000, 'x'));
    writeFile(target + QStringLiteral("/big"), "old");
    {
        const FileSizeLimit limit(100000);
        QVERIFY(!copyUpdating(source, target));
    }
    QCOMPARE(listing(target), QStringList({QStringLiteral("a: new a"), QStringLiteral("big: old")}));
}

void TestCDirCopier::missingSourceIsRefused()
{
    QVERIFY(!copyUpdating(source + QStringLiteral("/missing"), target + QStringLiteral("/new")));
    QVERIFY(!copyUpdating(source + QStringLiteral("/a"), target + QStringLiteral("/new")));
    QCOMPARE(listing(target), QStringList());
}

void TestCDirCopier::emptyPathsAreRefused()
{
    QVERIFY(!copyUpdating(QString(), target));
    QVERIFY(!copyUpdating(source, QString()));
    QCOMPARE(listing(target), QStringList());
}

void TestCDirCopier::sourceIsNotCopiedIntoItself()
{
    const QString link = folder->filePath(QStringLiteral("link"));
    QVERIFY(QFile::link(source, link));

    QVERIFY(!copyUpdating(source, source));
    QVERIFY(!copyUpdating(source, source + QStringLiteral("/d/e")));
    QVERIFY(!copyUpdating(source, link + QStringLiteral("/d")));
    QVERIFY(!copyUpdating(link, source));
    QCOMPARE(listing(source), QStringList{QStringLiteral("a: new a")});

    const QString namedAlike = source + QStringLiteral("2");
    QVERIFY(QDir().mkdir(namedAlike));
    QVERIFY(copyUpdating(source, namedAlike));
}

QTEST_GUILESS_MAIN(TestCDirCopier)
#include "tst_cdircopier.moc"
