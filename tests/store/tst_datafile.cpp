#include "Orvel/store/COrvel.h"
#include "host/files/CFileException.h"
#include "host/files/QtFile.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/MessageText.h"
#include "tests/support/OrvelTestAccess.h"
#include "tests/support/ProtocolFixture.h"
#include "tests/support/TestFiles.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTextCodec>
#include <QtTest>

#include <cstdio>
#include <limits>
#include <memory>

using Access = OrvelTestAccess;

namespace {

using Ids = std::vector<LONGID>;
using Types = std::vector<int>;

const QString& kReadOption()
{
    static const QString option = QStringLiteral("--read-data-file");
    return option;
}

constexpr auto kHead = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE zarnik_vok_protocol>\n";

/// A whole data file whose root holds `content`.
QByteArray dataFile(const QByteArray& content)
{
    return QByteArray(kHead) + "<messagelist>\n" + content + "</messagelist>\n";
}

COVMessage makeMessage(int protocolType, const QString& text)
{
    return COVMessage(protocolType, COVMessage::Message, 0, kGeneralItemType, text, 0);
}

QStringList storedMessages(COrvel& protocol)
{
    return describe(Access::messages(protocol));
}

/// What lies in the data file after the messages were written to it.
QByteArray written(ProtocolFixture& f, const std::vector<COVMessage>& list)
{
    f.saveMessages(list);
    return readFile(Access::dataFilePath(f.protocol));
}

/// Makes a data file of the content and reads it. The store is not empty before.
bool readBack(ProtocolFixture& f, const QByteArray& content)
{
    Access::dataFilePath(f.protocol) = f.tempPath(QStringLiteral("given.xml"));
    writeFile(Access::dataFilePath(f.protocol), content);
    f.addMessages({makeMessage(enums::Export, QStringLiteral("to be dropped"))});
    return Access::ReadXML(f.protocol);
}

/// What the host says of a file that cannot be opened; empty where it can.
QString openFailure(const QString& path, QIODevice::OpenMode mode)
{
    try {
        QtFile(path).open(mode);
    } catch (const qor::CFileException& error) {
        return QString::fromStdWString(error.getDescription());
    }
    return QString();
}

/// This program again, reading a data file; see readInChild().
class ReadingChild
{
public:
    explicit ReadingChild(const QString& path)
    {
        process.start(QCoreApplication::applicationFilePath(), {kReadOption(), path});
        // From here on the child does nothing but read.
        hasBegun = process.waitForReadyRead(60000) && process.readLine() == "reading\n";
    }
    ReadingChild(const ReadingChild&) = delete;
    ReadingChild& operator=(const ReadingChild&) = delete;
    ~ReadingChild()
    {
        process.kill();
        process.waitForFinished();
    }

    bool hasBegunToRead() const { return hasBegun; }
    bool endsWithin(int milliseconds)
    {
        return process.state() == QProcess::NotRunning || process.waitForFinished(milliseconds);
    }
    QByteArray answer() { return process.readAll(); }

private:
    QProcess process;
    bool hasBegun = false;
};

/// What the child does: reads the file, and tells before and after.
int readInChild(const QString& path)
{
    ProtocolFixture f;
    Access::dataFilePath(f.protocol) = path;
    std::fputs("reading\n", stdout);
    std::fflush(stdout);
    const bool result = Access::ReadXML(f.protocol);
    std::fputs(result ? "true\n" : "false\n", stdout);
    for (const QString& line : storedMessages(f.protocol))
        std::fprintf(stdout, "%s\n", qUtf8Printable(line));
    return 0;
}

} // namespace

class TestDataFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Writing
    void writesAnEmptyStore();
    void writesAWholeStore();
    void writesTheStageOnlyWhenOneWasOpen();
    void writesAMessageWithoutItems();
    void writesTheFormOfNoItem();
    void writesNumbersInFull();
    void writesTextUnescaped();
    void writesAnEmptyText();
    void splitsTheEndMarkOfASection_data();
    void splitsTheEndMarkOfASection();
    void writesUtf8WhateverTheLocale();
    void replacesALongerFile();
    void writingEmptiesTheStore();
    void writingWithoutAPathKeepsTheStore();
    void writesNoSpareMessages();

    // Reading
    void readsAWholeFile();
    void readsAnEmptyList();
    void readsWithoutPrologue();
    void readingReplacesTheStore();
    void otherElementsAreIgnored();
    void onlyChildrenOfTheRootAreMessages();
    void itemsAreReadAtAnyDepth();
    void damagedItemIsDropped_data();
    void damagedItemIsDropped();
    void stageOfABadAttributeIsNone_data();
    void stageOfABadAttributeIsNone();
    void unknownKindsAndTypesAreKept();
    void firstMessElementCounts();
    void textIsThatOfTheFirstSections();
    void adjacentSectionsAreJoined();
    void readingWithoutAPathEmptiesTheStore();
    void readingAMissingFileEmptiesTheStore();
    void rootOfAnotherName_data();
    void rootOfAnotherName();
    void contentThatDoesNotParse_data();
    void contentThatDoesNotParse();
    void truncatedFileIsNoProtocol();
    void writtenFileWithMoreBehindItIsNoProtocol_data();
    void writtenFileWithMoreBehindItIsNoProtocol();
    void writtenFileMayEndInWhiteSpaceAndComments();

    // Both ways
    void textSurvives_data();
    void textSurvives();
    void whatXmlCannotCarryIsReplaced_data();
    void whatXmlCannotCarryIsReplaced();
    void everyFieldSurvives();
    void orderSurvives();
    void secondRoundWritesTheSameFile();
    void aHundredThousandMessagesSurvive();

    // Failures
    void unwritablePathIsToldOnce();
    void folderAsPathIsToldOnceWhenWriting();
    void folderAsPathIsToldOnceWhenReading();
    void fullDiskIsToldOnceAndKeepsTheOldFile_data();
    void fullDiskIsToldOnceAndKeepsTheOldFile();

    // Damaged entries
    void healthyFileIsReadByTheChild();
    void damagedEntryIsExaminedForEver();

    void pagePathOfAType();
};

void TestDataFile::writesAnEmptyStore()
{
    ProtocolFixture f;
    QCOMPARE(written(f, {}), QByteArray(kHead) + "<messagelist/>\n");
    QVERIFY(Access::ReadXML(f.protocol));
    QVERIFY(Access::messages(f.protocol).empty());
}

void TestDataFile::writesAWholeStore()
{
    ProtocolFixture f;
    const QByteArray text = written(
        f,
        {
            COVMessage(enums::Adjust, COVMessage::Error, Ids{12, -3}, Types{kPointItemType, kSectionItemType},
                       QStringLiteral("Невязка <a href=\"id=12\">Рп 12</a> & больше"), 2),
            COVMessage(enums::Adjust, COVMessage::Title, 0, kGeneralItemType, QStringLiteral("Уравнивание"),
                       0),
            // Filed later, yet written first: types ascend.
            COVMessage(enums::Compile, COVMessage::Service, 0, kGeneralItemType, QStringLiteral("line"), 0),
        });
    QCOMPARE(QString::fromUtf8(text), QStringLiteral(R"(<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE zarnik_vok_protocol>
<messagelist>
    <li ptype="305510145" mtype="1">
        <item iid="0" itype="1710060288"/>
        <mess><![CDATA[line]]></mess>
    </li>
    <li ptype="305510146" mtype="3">
        <item iid="12" itype="1842165504"/>
        <item iid="-3" itype="1842165508"/>
        <mess sid="2"><![CDATA[Невязка <a href="id=12">Рп 12</a> & больше]]></mess>
    </li>
    <li ptype="305510146" mtype="0">
        <item iid="0" itype="1710060288"/>
        <mess><![CDATA[Уравнивание]]></mess>
    </li>
</messagelist>
)"));
}

void TestDataFile::writesTheStageOnlyWhenOneWasOpen()
{
    ProtocolFixture f;
    QCOMPARE(written(f,
                     {
                         COVMessage(1, 5, Ids{}, Types{}, QStringLiteral("none"), 0),
                         COVMessage(1, 5, Ids{}, Types{}, QStringLiteral("third"), 3),
                         COVMessage(1, 5, Ids{}, Types{}, QStringLiteral("odd"), -1),
                     }),
             dataFile("    <li ptype=\"1\" mtype=\"5\">\n"
                      "        <mess><![CDATA[none]]></mess>\n"
                      "    </li>\n"
                      "    <li ptype=\"1\" mtype=\"5\">\n"
                      "        <mess sid=\"3\"><![CDATA[third]]></mess>\n"
                      "    </li>\n"
                      "    <li ptype=\"1\" mtype=\"5\">\n"
                      "        <mess sid=\"-1\"><![CDATA[odd]]></mess>\n"
                      "    </li>\n"));
}

void TestDataFile::writesAMessageWithoutItems()
{
    ProtocolFixture f;
    QCOMPARE(written(f, {COVMessage(1, 5, Ids{}, Types{}, QStringLiteral("t"), 0)}),
             dataFile("    <li ptype=\"1\" mtype=\"5\">\n"
                      "        <mess><![CDATA[t]]></mess>\n"
                      "    </li>\n"));
    QVERIFY(Access::ReadXML(f.protocol));
    QCOMPARE(storedMessages(f.protocol),
             QStringList(QStringLiteral("ptype=1 mtype=5 stage=0 ids= types= text=t")));
}

void TestDataFile::writesTheFormOfNoItem()
{
    ProtocolFixture f;
    QCOMPARE(written(f, {makeMessage(1, QStringLiteral("t"))}),
             dataFile("    <li ptype=\"1\" mtype=\"5\">\n"
                      "        <item iid=\"0\" itype=\"1710060288\"/>\n"
                      "        <mess><![CDATA[t]]></mess>\n"
                      "    </li>\n"));
}

void TestDataFile::writesNumbersInFull()
{
    ProtocolFixture f;
    const COVMessage message(std::numeric_limits<int>::min(), -1,
                             Ids{std::numeric_limits<LONGID>::min(), std::numeric_limits<LONGID>::max()},
                             Types{std::numeric_limits<int>::min(), std::numeric_limits<int>::max()},
                             QStringLiteral("t"), std::numeric_limits<int>::min());
    QCOMPARE(written(f, {message}),
             dataFile("    <li ptype=\"-2147483648\" mtype=\"-1\">\n"
                      "        <item iid=\"-9223372036854775808\" itype=\"-2147483648\"/>\n"
                      "        <item iid=\"9223372036854775807\" itype=\"2147483647\"/>\n"
                      "        <mess sid=\"-2147483648\"><![CDATA[t]]></mess>\n"
                      "    </li>\n"));
    QVERIFY(Access::ReadXML(f.protocol));
    QCOMPARE(storedMessages(f.protocol), QStringList(describe(message)));
}

void TestDataFile::writesTextUnescaped()
{
    ProtocolFixture f;
    QCOMPARE(
        written(f, {COVMessage(1, 5, Ids{}, Types{}, QStringLiteral("a < b && c > \"d\" &amp; 'e'<br>"), 0)}),
        dataFile("    <li ptype=\"1\" mtype=\"5\">\n"
                 "        <mess><![CDATA[a < b && c > \"d\" &amp; 'e'<br>]]></mess>\n"
                 "    </li>\n"));
}

void TestDataFile::writesAnEmptyText()
{
    ProtocolFixture f;
    QCOMPARE(written(f, {COVMessage(1, 5, Ids{}, Types{}, QString(), 4)}),
             dataFile("    <li ptype=\"1\" mtype=\"5\">\n"
                      "        <mess sid=\"4\"><![CDATA[]]></mess>\n"
                      "    </li>\n"));
}

void TestDataFile::splitsTheEndMarkOfASection_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("sections");
    QTest::newRow("within") << "x]]>y"
                            << "<![CDATA[x]]]]><![CDATA[>y]]>";
    QTest::newRow("alone") << "]]>"
                           << "<![CDATA[]]]]><![CDATA[>]]>";
    QTest::newRow("twice") << "]]>]]>"
                           << "<![CDATA[]]]]><![CDATA[>]]]]><![CDATA[>]]>";
    QTest::newRow("after more brackets") << "]]]]>>"
                                         << "<![CDATA[]]]]]]><![CDATA[>>]]>";
    QTest::newRow("unfinished") << "x]]"
                                << "<![CDATA[x]]]]>";
    QTest::newRow("no mark") << "]>]>"
                             << "<![CDATA[]>]>]]>";
    QTest::newRow("begin mark") << "<![CDATA[x"
                                << "<![CDATA[<![CDATA[x]]>";
}

void TestDataFile::splitsTheEndMarkOfASection()
{
    QFETCH(QString, text);
    QFETCH(QString, sections);
    ProtocolFixture f;
    QCOMPARE(written(f, {COVMessage(1, 5, Ids{}, Types{}, text, 0)}),
             dataFile("    <li ptype=\"1\" mtype=\"5\">\n"
                      "        <mess>" +
                      sections.toUtf8() +
                      "</mess>\n"
                      "    </li>\n"));
}

void TestDataFile::writesUtf8WhateverTheLocale()
{
    struct LocaleCodec
    {
        explicit LocaleCodec(const char* name)
        {
            QTextCodec::setCodecForLocale(QTextCodec::codecForName(name));
        }
        LocaleCodec(const LocaleCodec&) = delete;
        LocaleCodec& operator=(const LocaleCodec&) = delete;
        ~LocaleCodec() { QTextCodec::setCodecForLocale(nullptr); }
    };
    ProtocolFixture f;
    const LocaleCodec latin1("ISO-8859-1");
    QCOMPARE(written(f, {COVMessage(1, 5, Ids{}, Types{}, QStringLiteral("Ход 𝄞"), 0)}),
             dataFile("    <li ptype=\"1\" mtype=\"5\">\n"
                      "        <mess><![CDATA[\xD0\xA5\xD0\xBE\xD0\xB4 \xF0\x9D\x84\x9E]]></mess>\n"
                      "    </li>\n"));
    QVERIFY(Access::ReadXML(f.protocol));
    QCOMPARE(Access::messages(f.protocol).at(1).front().text, QStringLiteral("Ход 𝄞"));
}

void TestDataFile::replacesALongerFile()
{
    ProtocolFixture f;
    const QByteArray longer = written(f, {makeMessage(1, QString(10000, QLatin1Char('x')))});
    QVERIFY(longer.size() > 10000);
    QCOMPARE(written(f, {}), QByteArray(kHead) + "<messagelist/>\n");
}

void TestDataFile::writingEmptiesTheStore()
{
    ProtocolFixture f;
    Access::dataFilePath(f.protocol) = f.tempPath(QStringLiteral("data.xml"));
    f.addMessages({makeMessage(1, QStringLiteral("a")), makeMessage(2, QStringLiteral("b"))});
    QVERIFY(Access::WriteXML(f.protocol));
    QVERIFY(Access::messages(f.protocol).empty());
    QCOMPARE(Access::dataFilePath(f.protocol), f.tempPath(QStringLiteral("data.xml")));
}

void TestDataFile::writingWithoutAPathKeepsTheStore()
{
    ProtocolFixture f;
    f.addMessages({makeMessage(1, QStringLiteral("a"))});
    QVERIFY(!Access::WriteXML(f.protocol));
    QCOMPARE(storedMessages(f.protocol), QStringList(describe(makeMessage(1, QStringLiteral("a")))));
    QCOMPARE(f.application.getWarnings(), QStringList());
}

void TestDataFile::writesNoSpareMessages()
{
    ProtocolFixture f;
    Access::spareMessages(f.protocol)[1] = {makeMessage(1, QStringLiteral("spare"))};
    QCOMPARE(written(f, {}), QByteArray(kHead) + "<messagelist/>\n");
    QCOMPARE(Access::spareMessages(f.protocol).size(), std::size_t(1));
}

void TestDataFile::readsAWholeFile()
{
    ProtocolFixture f;
    QVERIFY(readBack(f, dataFile("<li ptype=\"305510146\" mtype=\"4\">"
                                 "<item iid=\"12\" itype=\"1842165504\"/><item iid=\"-3\" itype=\"7\"/>"
                                 "<mess sid=\"2\"><![CDATA[a <b> & \xD0\xBB]]></mess></li>"
                                 "<li ptype=\"305510145\" mtype=\"0\"><mess><![CDATA[title]]></mess></li>")));
    QCOMPARE(
        storedMessages(f.protocol),
        (QStringList{
            QStringLiteral("ptype=305510145 mtype=0 stage=0 ids= types= text=title"),
            QStringLiteral("ptype=305510146 mtype=4 stage=2 ids=12,-3 types=1842165504,7 text=a <b> & л"),
        }));
}

void TestDataFile::readsAnEmptyList()
{
    ProtocolFixture f;
    QVERIFY(readBack(f, dataFile("")));
    QVERIFY(Access::messages(f.protocol).empty());
}

void TestDataFile::readsWithoutPrologue()
{
    ProtocolFixture f;
    QVERIFY(
        readBack(f, "<messagelist><li mtype='5' ptype='1'><mess><![CDATA[t]]></mess></li></messagelist>"));
    QCOMPARE(storedMessages(f.protocol),
             QStringList(QStringLiteral("ptype=1 mtype=5 stage=0 ids= types= text=t")));
}

void TestDataFile::readingReplacesTheStore()
{
    ProtocolFixture f;
    f.saveMessages({makeMessage(1, QStringLiteral("from the file"))});
    f.addMessages({makeMessage(1, QStringLiteral("in memory")), makeMessage(2, QStringLiteral("in memory"))});
    QVERIFY(Access::ReadXML(f.protocol));
    QCOMPARE(storedMessages(f.protocol),
             QStringList(describe(makeMessage(1, QStringLiteral("from the file")))));
}

void TestDataFile::otherElementsAreIgnored()
{
    ProtocolFixture f;
    QVERIFY(readBack(f, dataFile("<!-- before --><head/>text"
                                 "<li ptype=\"1\" mtype=\"5\"><mess><![CDATA[a]]></mess></li>"
                                 "<LI/><middle><mess/></middle>"
                                 "<li ptype=\"1\" mtype=\"5\"><mess><![CDATA[b]]></mess></li>"
                                 "<tail/><?target data?>")));
    QCOMPARE(storedMessages(f.protocol), (QStringList{
                                             QStringLiteral("ptype=1 mtype=5 stage=0 ids= types= text=a"),
                                             QStringLiteral("ptype=1 mtype=5 stage=0 ids= types= text=b"),
                                         }));
}

void TestDataFile::onlyChildrenOfTheRootAreMessages()
{
    ProtocolFixture f;
    QVERIFY(
        readBack(f, dataFile("<group><li ptype=\"1\" mtype=\"5\"><mess><![CDATA[a]]></mess></li></group>")));
    QVERIFY(Access::messages(f.protocol).empty());
}

void TestDataFile::itemsAreReadAtAnyDepth()
{
    ProtocolFixture f;
    QVERIFY(
        readBack(f, dataFile("<li ptype=\"1\" mtype=\"5\">"
                             "<more><item iid=\"1\" itype=\"11\"><item iid=\"2\" itype=\"12\"/></item></more>"
                             "<mess><![CDATA[a]]><item iid=\"3\" itype=\"13\"/></mess>"
                             "<item iid=\"4\" itype=\"14\"/></li>")));
    QCOMPARE(storedMessages(f.protocol),
             QStringList(QStringLiteral("ptype=1 mtype=5 stage=0 ids=1,2,3,4 types=11,12,13,14 text=a")));
}

void TestDataFile::damagedItemIsDropped_data()
{
    QTest::addColumn<QByteArray>("attributes");
    QTest::newRow("id is no number") << QByteArray("iid=\"abc\" itype=\"7\"");
    QTest::newRow("id is empty") << QByteArray("iid=\"\" itype=\"7\"");
    QTest::newRow("no id") << QByteArray("itype=\"7\"");
    QTest::newRow("id is too large") << QByteArray("iid=\"9223372036854775808\" itype=\"7\"");
    QTest::newRow("id is not whole") << QByteArray("iid=\"1.0\" itype=\"7\"");
    QTest::newRow("id is hexadecimal") << QByteArray("iid=\"0x10\" itype=\"7\"");
    QTest::newRow("type is no number") << QByteArray("iid=\"1\" itype=\"point\"");
    QTest::newRow("no type") << QByteArray("iid=\"1\"");
    QTest::newRow("type is too large") << QByteArray("iid=\"1\" itype=\"2147483648\"");
    QTest::newRow("nothing") << QByteArray("");
}

void TestDataFile::damagedItemIsDropped()
{
    QFETCH(QByteArray, attributes);
    ProtocolFixture f;
    QVERIFY(
        readBack(f, dataFile("<li ptype=\"1\" mtype=\"5\"><item iid=\"3\" itype=\"13\"/><item " + attributes +
                             "/><item iid=\"4\" itype=\"14\"/><mess><![CDATA[a]]></mess></li>")));
    QCOMPARE(storedMessages(f.protocol),
             QStringList(QStringLiteral("ptype=1 mtype=5 stage=0 ids=3,4 types=13,14 text=a")));
    QCOMPARE(f.application.getWarnings(), QStringList());
}

void TestDataFile::stageOfABadAttributeIsNone_data()
{
    QTest::addColumn<QByteArray>("attribute");
    QTest::newRow("missing") << QByteArray("");
    QTest::newRow("empty") << QByteArray("sid=\"\"");
    QTest::newRow("no number") << QByteArray("sid=\"two\"");
    QTest::newRow("number and more") << QByteArray("sid=\"2a\"");
    QTest::newRow("too large") << QByteArray("sid=\"2147483648\"");
    QTest::newRow("zero") << QByteArray("sid=\"0\"");
}

void TestDataFile::stageOfABadAttributeIsNone()
{
    QFETCH(QByteArray, attribute);
    ProtocolFixture f;
    QVERIFY(readBack(
        f, dataFile("<li ptype=\"1\" mtype=\"5\"><mess " + attribute + "><![CDATA[a]]></mess></li>")));
    QCOMPARE(storedMessages(f.protocol),
             QStringList(QStringLiteral("ptype=1 mtype=5 stage=0 ids= types= text=a")));
}

void TestDataFile::unknownKindsAndTypesAreKept()
{
    ProtocolFixture f;
    QVERIFY(
        readBack(f, dataFile("<li ptype=\"-8\" mtype=\"99\"><mess sid=\"-2\"><![CDATA[a]]></mess></li>")));
    QCOMPARE(storedMessages(f.protocol),
             QStringList(QStringLiteral("ptype=-8 mtype=99 stage=-2 ids= types= text=a")));
}

void TestDataFile::firstMessElementCounts()
{
    ProtocolFixture f;
    QVERIFY(readBack(
        f, dataFile("<li ptype=\"1\" mtype=\"5\"><other><mess/></other><mess sid=\"1\"><![CDATA[a]]></mess>"
                    "<mess sid=\"2\"><![CDATA[b]]></mess></li>")));
    QCOMPARE(storedMessages(f.protocol),
             QStringList(QStringLiteral("ptype=1 mtype=5 stage=1 ids= types= text=a")));
}

void TestDataFile::textIsThatOfTheFirstSections()
{
    ProtocolFixture f;
    QVERIFY(readBack(
        f, dataFile("<li ptype=\"1\" mtype=\"5\">"
                    "<mess><![CDATA[a]]>text<![CDATA[b]]></mess></li>"
                    "<li ptype=\"1\" mtype=\"5\"><mess><![CDATA[c]]><br/><![CDATA[d]]></mess></li>")));
    QCOMPARE(storedMessages(f.protocol), (QStringList{
                                             QStringLiteral("ptype=1 mtype=5 stage=0 ids= types= text=a"),
                                             QStringLiteral("ptype=1 mtype=5 stage=0 ids= types= text=c"),
                                         }));
}

void TestDataFile::adjacentSectionsAreJoined()
{
    ProtocolFixture f;
    QVERIFY(readBack(f, dataFile("<li ptype=\"1\" mtype=\"5\">"
                                 "<mess><![CDATA[x]]]]><![CDATA[>]]><![CDATA[]]><![CDATA[y]]></mess></li>")));
    QCOMPARE(Access::messages(f.protocol).at(1).front().text, QStringLiteral("x]]>y"));
}

void TestDataFile::readingWithoutAPathEmptiesTheStore()
{
    ProtocolFixture f;
    f.addMessages({makeMessage(1, QStringLiteral("a"))});
    QVERIFY(!Access::ReadXML(f.protocol));
    QVERIFY(Access::messages(f.protocol).empty());
    QCOMPARE(f.application.getWarnings(), QStringList());
}

void TestDataFile::readingAMissingFileEmptiesTheStore()
{
    ProtocolFixture f;
    Access::dataFilePath(f.protocol) = f.tempPath(QStringLiteral("none.xml"));
    f.addMessages({makeMessage(1, QStringLiteral("a"))});
    QVERIFY(!Access::ReadXML(f.protocol));
    QVERIFY(Access::messages(f.protocol).empty());
    QCOMPARE(f.application.getWarnings(), QStringList());
    QVERIFY(!QFile::exists(f.tempPath(QStringLiteral("none.xml"))));
}

void TestDataFile::rootOfAnotherName_data()
{
    QTest::addColumn<QByteArray>("root");
    QTest::newRow("other") << QByteArray("messages");
    QTest::newRow("upper case") << QByteArray("MessageList");
    QTest::newRow("longer") << QByteArray("messagelists");
    QTest::newRow("entry") << QByteArray("li");
}

void TestDataFile::rootOfAnotherName()
{
    QFETCH(QByteArray, root);
    ProtocolFixture f;
    QVERIFY(!readBack(f, QByteArray(kHead) + '<' + root +
                             "><li ptype=\"1\" mtype=\"5\"><mess><![CDATA[a]]></mess></li></" + root +
                             ">\n"));
    QVERIFY(Access::messages(f.protocol).empty());
    QCOMPARE(f.application.getWarnings(), QStringList());
}

void TestDataFile::contentThatDoesNotParse_data()
{
    const QByteArray entry = "<li ptype=\"1\" mtype=\"5\"><mess><![CDATA[a]]></mess></li>";
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("no XML") << QByteArray("<html");
    QTest::newRow("declaration only") << QByteArray(kHead);
    QTest::newRow("wrong end tag") << QByteArray("<messagelist>" + entry + "</messages>");
    QTest::newRow("damage behind an entry")
        << QByteArray("<messagelist>" + entry + "<li ptype></li></messagelist>");
    QTest::newRow("bare ampersand") << QByteArray("<messagelist>" + entry + " & </messagelist>");
    QTest::newRow("two roots") << QByteArray("<messagelist>" + entry + "</messagelist><messagelist/>");
    QTest::newRow("text behind the root") << QByteArray("<messagelist>" + entry + "</messagelist>text");
    QTest::newRow("section that does not end") << QByteArray(
        "<messagelist>" + entry + "<li ptype=\"1\" mtype=\"5\"><mess><![CDATA[b</mess></li></messagelist>");
}

void TestDataFile::contentThatDoesNotParse()
{
    QFETCH(QByteArray, content);
    ProtocolFixture f;
    QVERIFY(!readBack(f, content));
    QVERIFY(Access::messages(f.protocol).empty());
    QCOMPARE(f.application.getWarnings(), QStringList());
}

void TestDataFile::truncatedFileIsNoProtocol()
{
    ProtocolFixture f;
    const QByteArray whole = written(f, {
                                            COVMessage(enums::Compile, COVMessage::Error, Ids{1, 2},
                                                       Types{kPointItemType, kSectionItemType},
                                                       QStringLiteral("Невязка ]]> <b>велика</b>"), 1),
                                            makeMessage(enums::Adjust, QString()),
                                            makeMessage(enums::Adjust, QStringLiteral("последняя")),
                                        });
    // Only the line break behind the root may be missing.
    const int end = whole.lastIndexOf('>') + 1;
    QCOMPARE(end, whole.size() - 1);
    QStringList accepted;
    for (int size = 0; size < end; ++size) {
        if (readBack(f, whole.left(size)) || !Access::messages(f.protocol).empty())
            accepted.append(QString::number(size));
    }
    QCOMPARE(accepted, QStringList());
    QVERIFY(readBack(f, whole.left(end)));
    QCOMPARE(storedMessages(f.protocol).size(), 3);
    QCOMPARE(f.application.getWarnings(), QStringList());
}

void TestDataFile::writtenFileWithMoreBehindItIsNoProtocol_data()
{
    QTest::addColumn<QByteArray>("more");
    QTest::newRow("text") << QByteArray("text");
    QTest::newRow("second root") << QByteArray("<messagelist/>");
    QTest::newRow("second end") << QByteArray("</messagelist>");
    QTest::newRow("entry") << QByteArray("<li/>");
}

void TestDataFile::writtenFileWithMoreBehindItIsNoProtocol()
{
    QFETCH(QByteArray, more);
    ProtocolFixture f;
    QVERIFY(!readBack(f, written(f, {}) + more));
    QVERIFY(Access::messages(f.protocol).empty());
    QVERIFY(!readBack(f, written(f, {makeMessage(1, QStringLiteral("a"))}) + more));
    QVERIFY(Access::messages(f.protocol).empty());
}

void TestDataFile::writtenFileMayEndInWhiteSpaceAndComments()
{
    ProtocolFixture f;
    QVERIFY(readBack(f, written(f, {makeMessage(1, QStringLiteral("a"))}) + "\n<!-- end -->\n"));
    QCOMPARE(storedMessages(f.protocol), QStringList(describe(makeMessage(1, QStringLiteral("a")))));
}

void TestDataFile::textSurvives_data()
{
    QString allAscii;
    for (ushort c = 0; c < 128; ++c)
        allAscii += QChar(c);
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("blank") << " ";
    QTest::newRow("white space only") << " \t\n\r\n  ";
    QTest::newRow("white space around") << "  \n text \t ";
    QTest::newRow("end mark") << "x]]>y";
    QTest::newRow("end mark alone") << "]]>";
    QTest::newRow("end mark first") << "]]>text";
    QTest::newRow("end mark last") << "text]]>";
    QTest::newRow("end marks in a row") << "]]>]]>]]>";
    QTest::newRow("end mark in brackets") << "]]]]>>";
    QTest::newRow("end mark and blanks") << " ]]> ]]> ";
    QTest::newRow("what end marks are split into") << "]]]]><![CDATA[>";
    QTest::newRow("unfinished end mark") << "text]]";
    QTest::newRow("section") << "<![CDATA[text]]>";
    QTest::newRow("mark-up") << "<a href=\"x?a=1&id=2\">'1' &lt; &amp;&nbsp;</a><br>";
    QTest::newRow("data file in a text") << "</mess></li></messagelist>";
    QTest::newRow("comment and declaration") << "<!-- -- > <?xml version=\"1.0\"?><!DOCTYPE x>";
    QTest::newRow("CR") << "a\rb";
    QTest::newRow("CR LF") << "a\r\nb";
    QTest::newRow("LF CR") << "\n\ra\r";
    QTest::newRow("NUL") << QString(QChar(0));
    QTest::newRow("NUL within") << QStringLiteral("a") + QChar(0) + QStringLiteral("b");
    QTest::newRow("all of ASCII") << allAscii;
    QTest::newRow("C1 controls") << QStringLiteral("\u0080\u0085\u009F");
    QTest::newRow("line and paragraph separators") << QStringLiteral("\u2028\u2029");
    QTest::newRow("byte order mark") << QStringLiteral("\uFEFFa\uFEFF");
    QTest::newRow("replacement character") << QStringLiteral("\uFFFD\uFFFC");
    QTest::newRow("other non-characters") << QStringLiteral("\uFDD0\U0001FFFE\U0010FFFF");
    QTest::newRow("private use") << QStringLiteral("\uE000\uF8FF\U000F0000");
    QTest::newRow("other planes") << QStringLiteral("𝄞a😀𐀀");
    QTest::newRow("combining") << QStringLiteral("и\u0306 й");
    QTest::newRow("long") << QStringLiteral("Строка, которая не кончается. ").repeated(40000);
    // One unit before them, so that pairs and buffers don't end together.
    QTest::newRow("long, other planes") << QStringLiteral("x") + QStringLiteral("😀").repeated(100000);
    QTest::newRow("long, end marks") << QStringLiteral("]]>").repeated(3000);
}

void TestDataFile::textSurvives()
{
    QFETCH(QString, text);
    ProtocolFixture f;
    const COVMessage nasty(1, COVMessage::Error, 5, kPointItemType, text, 2);
    f.saveMessages(
        {makeMessage(1, QStringLiteral("before")), nasty, makeMessage(1, QStringLiteral("after"))});
    QVERIFY(Access::ReadXML(f.protocol));
    const std::vector<COVMessage>& list = Access::messages(f.protocol).at(1);
    QCOMPARE(list.size(), std::size_t(3));
    QCOMPARE(list[0].text, QStringLiteral("before"));
    QVERIFY2(list[1].text == text, qUtf8Printable(list[1].text.left(1000)));
    QCOMPARE(describe(list[1]), describe(nasty));
    QCOMPARE(list[2].text, QStringLiteral("after"));
}

void TestDataFile::whatXmlCannotCarryIsReplaced_data()
{
    const QChar high(0xD83D);
    const QChar low(0xDE00);
    const QChar replacement(0xFFFD);
    const QString a = QStringLiteral("a");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("carried");
    QTest::newRow("U+FFFE") << a + QChar(0xFFFE) + a << a + replacement + a;
    QTest::newRow("U+FFFF") << a + QChar(0xFFFF) + a << a + replacement + a;
    QTest::newRow("U+FFFF alone") << QString(QChar(0xFFFF)) << QString(replacement);
    QTest::newRow("lone high surrogate") << a + high + a << a + replacement + a;
    QTest::newRow("lone low surrogate") << a + low + a << a + replacement + a;
    QTest::newRow("high surrogate last") << a + high << a + replacement;
    QTest::newRow("low surrogate first") << low + a << replacement + a;
    QTest::newRow("swapped surrogates") << QString(low) + high << QString(replacement) + replacement;
    QTest::newRow("high surrogate before a pair")
        << QString(high) + high + low << QString(replacement) + high + low;
    QTest::newRow("low surrogate behind a pair")
        << QString(high) + low + low << QString(high) + low + replacement;
    QTest::newRow("within an end mark") << QStringLiteral("]]") + QChar(0xFFFF) + QStringLiteral(">")
                                        << QStringLiteral("]]") + replacement + QStringLiteral(">");
    QTest::newRow("beside an end mark")
        << high + QStringLiteral("]]>") + low << replacement + QStringLiteral("]]>") + replacement;
}

void TestDataFile::whatXmlCannotCarryIsReplaced()
{
    QFETCH(QString, text);
    QFETCH(QString, carried);
    ProtocolFixture f;
    f.saveMessages({makeMessage(1, QStringLiteral("before")), makeMessage(1, text),
                    makeMessage(1, QStringLiteral("after"))});
    QVERIFY(Access::ReadXML(f.protocol));
    QCOMPARE(storedMessages(f.protocol), (QStringList{describe(makeMessage(1, QStringLiteral("before"))),
                                                      describe(makeMessage(1, carried)),
                                                      describe(makeMessage(1, QStringLiteral("after")))}));
}

void TestDataFile::everyFieldSurvives()
{
    ProtocolFixture f;
    std::vector<COVMessage> list;
    for (int kind = 0; kind <= 6; ++kind)
        list.emplace_back(enums::Adjust, kind, Ids{kind, 0, kind},
                          Types{kPointItemType, kGeneralItemType, kind}, QStringLiteral("kind %1").arg(kind),
                          kind % 3);
    f.saveMessages(list);
    QVERIFY(Access::ReadXML(f.protocol));
    QStringList wanted;
    for (const COVMessage& message : list)
        wanted.append(describe(message));
    QCOMPARE(storedMessages(f.protocol), wanted);
}

void TestDataFile::orderSurvives()
{
    ProtocolFixture f;
    for (const int type : {7, -3, 7, 5, -3, 7})
        f.addMessages({makeMessage(type, QString::number(Access::messages(f.protocol)[type].size()))});
    const QStringList wanted = storedMessages(f.protocol);
    Access::dataFilePath(f.protocol) = f.tempPath(QStringLiteral("data.xml"));
    QVERIFY(Access::WriteXML(f.protocol));
    QVERIFY(Access::ReadXML(f.protocol));
    QCOMPARE(storedMessages(f.protocol), wanted);
    QCOMPARE(wanted.size(), 6);
}

void TestDataFile::secondRoundWritesTheSameFile()
{
    ProtocolFixture f;
    const QByteArray first = written(f, {
                                            COVMessage(enums::Adjust, COVMessage::Error, Ids{1, 2},
                                                       Types{3, 4}, QStringLiteral("a]]>\r\n<b>"), 2),
                                            makeMessage(enums::Import, QStringLiteral("  ")),
                                            makeMessage(enums::Import, QString()),
                                        });
    QVERIFY(Access::ReadXML(f.protocol));
    QVERIFY(Access::WriteXML(f.protocol));
    QCOMPARE(readFile(Access::dataFilePath(f.protocol)), first);
}

void TestDataFile::aHundredThousandMessagesSurvive()
{
    ProtocolFixture f;
    std::vector<COVMessage> list;
    list.reserve(100000);
    for (int i = 0; i < 100000; ++i)
        list.emplace_back(enums::Adjust, COVMessage::Message, i, kPointItemType,
                          QStringLiteral("line %1").arg(i), 1);
    f.saveMessages(list);
    QVERIFY(Access::ReadXML(f.protocol));
    const std::vector<COVMessage>& read = Access::messages(f.protocol).at(enums::Adjust);
    QCOMPARE(read.size(), list.size());
    for (std::size_t i = 0; i < list.size(); ++i)
        QCOMPARE(describe(read[i]), describe(list[i]));
}

void TestDataFile::unwritablePathIsToldOnce()
{
    ProtocolFixture f;
    const QString path = f.tempPath(QStringLiteral("no folder/data.xml"));
    Access::dataFilePath(f.protocol) = path;
    f.addMessages({makeMessage(1, QStringLiteral("a"))});
    QVERIFY(!Access::WriteXML(f.protocol));
    QVERIFY(Access::messages(f.protocol).empty());
    const QString reason = openFailure(path, QIODevice::WriteOnly);
    QVERIFY(reason.contains(path));
    QCOMPARE(f.application.getWarnings(), QStringList(reason));
    QCOMPARE(f.application.getWarningParents(), QObjectList{nullptr});
}

void TestDataFile::folderAsPathIsToldOnceWhenWriting()
{
    ProtocolFixture f;
    const QString path = f.tempPath(QStringLiteral("folder"));
    QVERIFY(QDir().mkpath(path));
    Access::dataFilePath(f.protocol) = path;
    f.addMessages({makeMessage(1, QStringLiteral("a"))});
    QVERIFY(!Access::WriteXML(f.protocol));
    QVERIFY(Access::messages(f.protocol).empty());
    QCOMPARE(f.application.getWarnings(), QStringList(openFailure(path, QIODevice::WriteOnly)));
    QVERIFY(QFileInfo(path).isDir());
}

void TestDataFile::folderAsPathIsToldOnceWhenReading()
{
    ProtocolFixture f;
    const QString path = f.tempPath(QStringLiteral("folder"));
    QVERIFY(QDir().mkpath(path));
    Access::dataFilePath(f.protocol) = path;
    f.addMessages({makeMessage(1, QStringLiteral("a"))});
    QVERIFY(!Access::ReadXML(f.protocol));
    QVERIFY(Access::messages(f.protocol).empty());
    QCOMPARE(f.application.getWarnings(), QStringList(openFailure(path, QIODevice::ReadOnly)));
    QCOMPARE(f.application.getWarningParents(), QObjectList{nullptr});
}

void TestDataFile::fullDiskIsToldOnceAndKeepsTheOldFile_data()
{
    QTest::addColumn<int>("size");
    QTest::newRow("far over the limit") << 1000000;
    QTest::newRow("only the last flush meets the limit") << 5000;
}

void TestDataFile::fullDiskIsToldOnceAndKeepsTheOldFile()
{
    QFETCH(int, size);
    ProtocolFixture f;
    const QByteArray old = written(f, {makeMessage(1, QStringLiteral("old"))});
    f.addMessages({makeMessage(1, QString(size, QLatin1Char('x')))});
    bool result = true;
    {
        const FileSizeLimit limit(4096);
        result = Access::WriteXML(f.protocol);
    }
    QVERIFY(!result);
    QVERIFY(Access::messages(f.protocol).empty());
    QCOMPARE(f.application.getWarnings().size(), 1);
    QVERIFY(f.application.getWarnings().first().contains(Access::dataFilePath(f.protocol)));
    QCOMPARE(readFile(Access::dataFilePath(f.protocol)), old);
}

void TestDataFile::healthyFileIsReadByTheChild()
{
    ProtocolFixture f;
    const QString path = f.tempPath(QStringLiteral("healthy.xml"));
    writeFile(path, dataFile("<li ptype=\"1\" mtype=\"5\"><mess><![CDATA[a]]></mess></li>"));
    ReadingChild child(path);
    QVERIFY(child.hasBegunToRead());
    QVERIFY(child.endsWithin(60000));
    QCOMPARE(child.answer(), QByteArray("true\nptype=1 mtype=5 stage=0 ids= types= text=a\n"));
}

void TestDataFile::damagedEntryIsExaminedForEver()
{
    const QByteArray mess = "<mess><![CDATA[a]]></mess>";
    const std::vector<QByteArray> damagedEntries = {
        "<li mtype=\"5\">" + mess + "</li>",
        "<li ptype=\"\" mtype=\"5\">" + mess + "</li>",
        "<li ptype=\"abc\" mtype=\"5\">" + mess + "</li>",
        "<li ptype=\"2147483648\" mtype=\"5\">" + mess + "</li>",
        "<li ptype=\"1\">" + mess + "</li>",
        "<li ptype=\"1\" mtype=\"5.0\">" + mess + "</li>",
        "<li/>",
        "<li ptype=\"1\" mtype=\"5\"/>",
        "<li ptype=\"1\" mtype=\"5\"><mess/></li>",
        "<li ptype=\"1\" mtype=\"5\"><mess>a</mess></li>",
        "<li ptype=\"1\" mtype=\"5\"><mess>a<![CDATA[b]]></mess></li>",
        "<li ptype=\"1\" mtype=\"5\"><mess><!-- --><![CDATA[a]]></mess></li>",
        "<li ptype=\"1\" mtype=\"5\"><mess><b/><![CDATA[a]]></mess></li>",
        "<li ptype=\"1\" mtype=\"5\"><mess/>" + mess + "</li>",
        "<li ptype=\"1\" mtype=\"5\"><other>" + mess + "</other></li>",
    };
    const QByteArray healthy = "<li ptype=\"1\" mtype=\"5\">" + mess + "</li>";

    ProtocolFixture f;
    std::vector<std::unique_ptr<ReadingChild>> children;
    QList<QByteArray> notBegun;
    for (const QByteArray& entry : damagedEntries) {
        const QString path = f.tempPath(QStringLiteral("damaged%1.xml").arg(children.size()));
        writeFile(path, dataFile(healthy + entry + healthy));
        children.push_back(std::make_unique<ReadingChild>(path));
        if (!children.back()->hasBegunToRead())
            notBegun.append(entry);
    }
    QCOMPARE(notBegun, QList<QByteArray>());

    // They all had the time that the last one gets.
    QVERIFY(!children.back()->endsWithin(1500));
    QList<QByteArray> ended;
    for (std::size_t i = 0; i < children.size(); ++i) {
        if (children[i]->endsWithin(0))
            ended.append(damagedEntries[i]);
    }
    QCOMPARE(ended, QList<QByteArray>());
}

void TestDataFile::pagePathOfAType()
{
    ProtocolFixture f;
    QCOMPARE(Access::GetProtocolFilePath(f.protocol, enums::Adjust), QString());
    // Asking makes no entry.
    QVERIFY(Access::protocolFiles(f.protocol).empty());
    Access::protocolFiles(f.protocol)[enums::Adjust] = QStringLiteral("/a.html");
    QCOMPARE(Access::GetProtocolFilePath(f.protocol, enums::Adjust), QStringLiteral("/a.html"));
    QCOMPARE(Access::GetProtocolFilePath(f.protocol, enums::Import), QString());
}

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments[1] == kReadOption())
        return readInChild(arguments[2]);
    TestDataFile test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_datafile.moc"
