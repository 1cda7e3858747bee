#include "Orvel/store/ProtocolTypes.h"
#include "apps/desk/document/ProtocolKeeper.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/TestFiles.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace orvel::desk;
using namespace orvel::test;

/// What the desk does when the data file of the protocols fails.
class TestProtocolKeeper : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void nothingIsWholeBeforeTheFirstRun();
    void takesWhatARunHasWritten();
    void theSameAgainIsNoChange();
    void knowsWhatItKeeps();
    void makesAVanishedFileAnew();
    void makesAVanishedFolderAnew();
    void returnsTheLinesThatAPageHasLost();
    void returnsTheLinesOfOtherRuns();
    void returnsNoLinesThatARunHasReplaced();
    void saysThatARunIsNotInTheFile();
    void unreadableFileIsNotWhole();

private:
    std::unique_ptr<QTemporaryDir> folder;
    QString path;
};

namespace {

QByteArray makeLine(int type, const QByteArray& item, const QByteArray& text)
{
    return "    <li ptype=\"" + QByteArray::number(type) +
           "\" mtype=\"3\">\n"
           "        <item iid=\"" +
           item +
           "\" itype=\"1\"/>\n"
           "        <mess><![CDATA[" +
           text +
           "]]></mess>\n"
           "    </li>\n";
}

QByteArray makeFile(const QByteArray& lines)
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE zarnik_vok_protocol>\n" +
           (lines.isEmpty() ? QByteArray("<messagelist/>\n")
                            : "<messagelist>\n" + lines + "</messagelist>\n");
}

QByteArray oldLines()
{
    return makeLine(enums::Compile, "5", "loop") + makeLine(enums::Adjust, "6", "residual") +
           makeLine(enums::Adjust, "6", "another");
}

} // namespace

void TestProtocolKeeper::init()
{
    folder = std::make_unique<QTemporaryDir>();
    path = folder->filePath(QStringLiteral("temporary/data.xml"));
    QVERIFY(QDir().mkpath(folder->filePath(QStringLiteral("temporary"))));
}

void TestProtocolKeeper::nothingIsWholeBeforeTheFirstRun()
{
    ProtocolKeeper keeper;
    const ProtocolKeeper::Outcome outcome = keeper.check(QString());
    QVERIFY(outcome.isWhole);
    QCOMPARE(outcome.message, QString());
    QCOMPARE(keeper.getContent(), QByteArray());
}

void TestProtocolKeeper::takesWhatARunHasWritten()
{
    ProtocolKeeper keeper;
    keeper.check(path);
    writeFile(path, makeFile(oldLines()));
    const ProtocolKeeper::Outcome outcome = keeper.check(path, {enums::Adjust});
    QVERIFY(outcome.isWhole);
    QCOMPARE(outcome.message, QString());
    QVERIFY(!outcome.mentionedItems);
    QCOMPARE(keeper.getContent(), makeFile(oldLines()));
}

void TestProtocolKeeper::theSameAgainIsNoChange()
{
    ProtocolKeeper keeper;
    writeFile(path, makeFile(oldLines()));
    QVERIFY(keeper.check(path).isChanged);
    QVERIFY(!keeper.check(path).isChanged);
    // A page writes the file anew.
    QVERIFY(QFile::remove(path));
    writeFile(path, makeFile(oldLines()));
    QVERIFY(!keeper.check(path).isChanged);
}

void TestProtocolKeeper::knowsWhatItKeeps()
{
    ProtocolKeeper keeper;
    keeper.adopt(path, makeFile(oldLines()));
    QCOMPARE(keeper.getSummary().types.at(enums::Adjust).errors, 2);
    writeFile(path, makeFile(oldLines() + makeLine(enums::Import, "7", "new")));
    keeper.check(path);
    QCOMPARE(keeper.getSummary().types.at(enums::Import).errors, 1);
    QCOMPARE(keeper.getSummary().types.at(enums::Import).all, 1);
    QCOMPARE(keeper.getSummary().linesOfItem.value(6), 2);
}

void TestProtocolKeeper::makesAVanishedFileAnew()
{
    ProtocolKeeper keeper;
    writeFile(path, makeFile(oldLines()));
    keeper.adopt(path, makeFile(oldLines()));
    QVERIFY(QFile::remove(path));
    const ProtocolKeeper::Outcome outcome = keeper.check(path);
    QVERIFY(outcome.isWhole);
    QCOMPARE(outcome.message, QStringLiteral("Файл протоколов «%1» пропал или не прочитался. Строки прежних "
                                             "запусков записаны в него заново.")
                                  .arg(path));
    QCOMPARE(outcome.mentionedItems, (std::set<LONGID>{5, 6}));
    QCOMPARE(readFile(path), makeFile(oldLines()));
    QCOMPARE(keeper.getContent(), makeFile(oldLines()));
    // The user is told once.
    QCOMPARE(keeper.check(path).message, QString());
}

void TestProtocolKeeper::makesAVanishedFolderAnew()
{
    ProtocolKeeper keeper;
    keeper.adopt(path, makeFile(oldLines()));
    const QString temporary = QFileInfo(path).absolutePath();
    QVERIFY(QDir(temporary).removeRecursively());
    QVERIFY(keeper.check(path).isWhole);
    QCOMPARE(readFile(path), makeFile(oldLines()));
    struct stat status = {};
    QCOMPARE(stat(QFile::encodeName(temporary).constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777U, 0700U);
}

void TestProtocolKeeper::returnsTheLinesThatAPageHasLost()
{
    // A page that could not read the file has written it back empty.
    ProtocolKeeper keeper;
    keeper.adopt(path, makeFile(oldLines()));
    writeFile(path, makeFile(QByteArray()));
    QVERIFY(!keeper.check(path).message.isEmpty());
    QCOMPARE(readFile(path), makeFile(oldLines()));
}

void TestProtocolKeeper::returnsTheLinesOfOtherRuns()
{
    // A run that could not read the file knows of no other runs.
    ProtocolKeeper keeper;
    writeFile(path, makeFile(oldLines()));
    keeper.adopt(path, makeFile(oldLines()));
    writeFile(path, makeFile(makeLine(enums::Adjust, "7", "new")));
    const ProtocolKeeper::Outcome outcome = keeper.check(path, {enums::Adjust});
    QVERIFY(outcome.isWhole);
    QCOMPARE(outcome.mentionedItems, (std::set<LONGID>{5, 7}));
    const QByteArray wanted =
        makeFile(makeLine(enums::Compile, "5", "loop") + makeLine(enums::Adjust, "7", "new"));
    QCOMPARE(readFile(path), wanted);
    QCOMPARE(keeper.getContent(), wanted);
}

void TestProtocolKeeper::returnsNoLinesThatARunHasReplaced()
{
    ProtocolKeeper keeper;
    writeFile(path, makeFile(oldLines()));
    keeper.adopt(path, makeFile(oldLines()));
    const QByteArray shorter = makeFile(makeLine(enums::Import, "7", "new"));
    writeFile(path, shorter);
    const ProtocolKeeper::Outcome outcome =
        keeper.check(path, {enums::Import, enums::Compile, enums::Adjust});
    QVERIFY(outcome.isWhole);
    QCOMPARE(outcome.message, QString());
    QCOMPARE(readFile(path), shorter);
}

void TestProtocolKeeper::saysThatARunIsNotInTheFile()
{
    ProtocolKeeper keeper;
    writeFile(path, makeFile(oldLines()));
    keeper.adopt(path, makeFile(oldLines()));
    const ProtocolKeeper::Outcome outcome = keeper.check(path, {enums::Adjust});
    QVERIFY(!outcome.isWhole);
    QCOMPARE(outcome.message,
             QStringLiteral("Строки этого запуска в протокол не попали: его файл не записан. "
                            "Страница покажет прежний запуск, если он был."));
    QCOMPARE(keeper.getContent(), makeFile(oldLines()));
}

void TestProtocolKeeper::unreadableFileIsNotWhole()
{
    ProtocolKeeper keeper;
    keeper.adopt(path, makeFile(oldLines()));
    // A folder can be opened by nobody as a file.
    QVERIFY(QDir().mkpath(path));
    const ProtocolKeeper::Outcome outcome = keeper.check(path);
    QVERIFY(!outcome.isWhole);
    QVERIFY2(outcome.message.startsWith(QStringLiteral("Не удалось открыть файл «%1»: ").arg(path)),
             qUtf8Printable(outcome.message));
    QCOMPARE(keeper.getContent(), makeFile(oldLines()));
}

QTEST_GUILESS_MAIN(TestProtocolKeeper)
#include "tst_protocolkeeper.moc"
