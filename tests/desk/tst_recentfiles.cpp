#include "apps/desk/gui/RecentFiles.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/TestFiles.h"

#include <QDir>
#include <QTest>

using namespace orvel::desk;
using namespace orvel::test;

/// The folder in which a dialog for files begins is always one that is there: else it would stand in the
/// file's name.
class TestRecentFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void folderOfTheLatestFile();
    void folderThatIsGoneIsPassedOver();
    void documentsElseHomeElseRoot();

private:
    std::unique_ptr<TestHome> home;
    std::unique_ptr<QTemporaryDir> folder;
};

void TestRecentFiles::init()
{
    home = std::make_unique<TestHome>();
    folder = std::make_unique<QTemporaryDir>();
    qputenv("HOME", folder->path().toLocal8Bit());
    qputenv("XDG_CONFIG_HOME", folder->path().toLocal8Bit());
}

void TestRecentFiles::folderOfTheLatestFile()
{
    for (const char* name : {"one/a.gkf", "two/b.gkf"}) {
        const QString path = folder->filePath(QString::fromLatin1(name));
        QVERIFY(QDir().mkpath(QFileInfo(path).path()));
        writeFile(path, "a");
        recentfiles::add(path);
    }
    QCOMPARE(recentfiles::getFolder(), folder->filePath(QStringLiteral("two")));
}

void TestRecentFiles::folderThatIsGoneIsPassedOver()
{
    folderOfTheLatestFile();
    QVERIFY(QDir(folder->filePath(QStringLiteral("two"))).removeRecursively());
    QCOMPARE(recentfiles::getFolder(), folder->filePath(QStringLiteral("one")));
}

void TestRecentFiles::documentsElseHomeElseRoot()
{
    const QDir there(folder->path());
    QVERIFY(there.mkdir(QStringLiteral("Documents")));
    QCOMPARE(recentfiles::getFolder(), there.filePath(QStringLiteral("Documents")));
    QVERIFY(there.rmdir(QStringLiteral("Documents")));
    QCOMPARE(recentfiles::getFolder(), there.path());
    qputenv("HOME", "/no/such/home");
    QCOMPARE(recentfiles::getFolder(), QStringLiteral("/"));
}

QTEST_GUILESS_MAIN(TestRecentFiles)
#include "tst_recentfiles.moc"
