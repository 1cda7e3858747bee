#include "host/files/CFileException.h"
#include "host/files/CQtArchive.h"
#include "levelling/GkfReader.h"
#include "levelling/GsiLevelReader.h"
#include "levelling/M5LevelReader.h"
#include "tests/support/OrvelTestAccess.h"
#include "tests/support/ProtocolFixture.h"
#include "tests/support/TestFiles.h"

#include <QBuffer>
#include <QTest>

#include <algorithm>
#include <cstring>
#include <limits>

/// The largest that there may be, and one more.
class TestLimits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aMillionIdsAndOneMore();
    void aHundredPagePathsAndOneMore();
    void aLineOfAHundredMegabytes();
    void aMillionLines();
    void idsUpToTheLargestAndBeyond_data();
    void idsUpToTheLargestAndBeyond();
    void aHundredStages();
    void foreignDataFileNestedDeeply_data();
    void foreignDataFileNestedDeeply();
    void aMillionPoints();
    void networkFileThatIsTooLarge();
    void networkFileWithTooManyPoints();
    void networkFileWithTooManyProblems();
    void fieldFileThatIsTooLarge();
    void fieldFileWithTooManyStations();
    void fieldFileWithTooManyProblems();
};

namespace {

using Access = OrvelTestAccess;

/// The protocol's state after saving and loading it.
void saveAndLoad(COrvel& from, COrvel& to)
{
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    CQtArchive saving(&buffer, CQtArchive::Save);
    from.serialize(saving);
    buffer.seek(0);
    CQtArchive loading(&buffer, CQtArchive::Load);
    to.serialize(loading);
}

/// The code of the exception with which loading the state ends; 0 if it succeeds.
int failureOf(COrvel& from, COrvel& to)
{
    try {
        saveAndLoad(from, to);
    } catch (const qor::CFileException& error) {
        return error.getDescription().empty() ? error.getCode() : -1;
    }
    return 0;
}

/// A file that repeats a text between a head and a tail, made while it is read.
class RepeatingFile : public QIODevice
{
public:
    RepeatingFile(const QByteArray& headText, const QByteArray& repeatedText, qint64 repetitions,
                  const QByteArray& tailText)
        : head(headText)
        , repeated(repeatedText)
        , tail(tailText)
        , size(head.size() + repeated.size() * repetitions + tail.size())
    {
        open(QIODevice::ReadOnly);
    }

    bool isSequential() const override { return true; }
    bool atEnd() const override { return at == size && QIODevice::atEnd(); }

protected:
    qint64 readData(char* data, qint64 maxSize) override
    {
        const qint64 tailBegin = size - tail.size();
        qint64 count = 0;
        while (count < maxSize && at < size) {
            if (at < head.size())
                count += copy(head, at, data + count, maxSize - count);
            else if (at < tailBegin)
                count += copy(repeated, (at - head.size()) % repeated.size(), data + count, maxSize - count);
            else
                count += copy(tail, at - tailBegin, data + count, maxSize - count);
        }
        return count;
    }

    qint64 writeData(const char* /*data*/, qint64 /*size*/) override { return -1; }

private:
    /// Copies the part from an offset on, as far as there is room; answers how much that was.
    qint64 copy(const QByteArray& part, qint64 offset, char* data, qint64 room)
    {
        const qint64 count = std::min(room, part.size() - offset);
        std::memcpy(data, part.constData() + offset, static_cast<std::size_t>(count));
        at += count;
        return count;
    }

    const QByteArray head;
    const QByteArray repeated;
    const QByteArray tail;
    const qint64 size;
    qint64 at = 0;
};

const QByteArray kGkfHead = "<gama-local>\n<network>\n<points-observations>\n";
const QByteArray kGkfTail = "</points-observations>\n</network>\n</gama-local>\n";

} // namespace

void TestLimits::aMillionIdsAndOneMore()
{
    ProtocolFixture f;
    COrvel loaded(&f.model, QStringLiteral("survey"));
    std::set<LONGID>& ids = Access::idList(f.protocol);
    for (LONGID id = 1; id <= 1000000; ++id)
        ids.insert(ids.end(), id);
    QCOMPARE(failureOf(f.protocol, loaded), 0);
    QCOMPARE(Access::idList(loaded).size(), std::size_t(1000000));

    ids.insert(0);
    QCOMPARE(failureOf(f.protocol, loaded), 1);
    QVERIFY(Access::idList(loaded).empty());
}

void TestLimits::aHundredPagePathsAndOneMore()
{
    ProtocolFixture f;
    COrvel loaded(&f.model, QStringLiteral("survey"));
    for (int type = 1; type <= 100; ++type)
        Access::protocolFiles(f.protocol)[type] = QStringLiteral("/p%1.html").arg(type);
    QCOMPARE(failureOf(f.protocol, loaded), 0);
    QCOMPARE(Access::protocolFiles(loaded), Access::protocolFiles(f.protocol));

    Access::protocolFiles(f.protocol)[101] = QStringLiteral("/p101.html");
    QCOMPARE(failureOf(f.protocol, loaded), 1);
    QVERIFY(Access::protocolFiles(loaded).empty());
}

void TestLimits::aLineOfAHundredMegabytes()
{
    ProtocolFixture f;
    f.protocol.ProtocolBegin(enums::Import);
    const QString link = QStringLiteral("<a href=\"id=5\">5</a>");
    const QString line = link + QString(100 << 20, QLatin1Char('x')) + link;
    f.protocol.AddMessageRaw(line, enums::Import, COVMessage::Error);
    f.protocol.ProtocolEnd(enums::Import);
    QCOMPARE(f.application.getWarnings(), QStringList());

    QVERIFY(Access::ReadXML(f.protocol));
    const COVMessage& message = Access::messages(f.protocol)[enums::Import].at(0);
    QCOMPARE(message.itemIds, (std::vector<LONGID>{5, 5}));
    QVERIFY(message.text == line);
}

void TestLimits::aMillionLines()
{
    ProtocolFixture f;
    f.protocol.ProtocolBegin(enums::Import);
    for (int i = 0; i < 1000000; ++i)
        f.protocol.AddMessageRaw(QString::number(i), enums::Import, COVMessage::Warning);
    f.protocol.ProtocolEnd(enums::Import);
    QCOMPARE(f.application.getWarnings(), QStringList());

    QVERIFY(Access::ReadXML(f.protocol));
    const std::vector<COVMessage>& lines = Access::messages(f.protocol)[enums::Import];
    QVERIFY(lines.size() > 1000000);
    for (int i = 0; i < 1000000; ++i)
        QCOMPARE(lines[static_cast<std::size_t>(i)].text, QString::number(i));
}

void TestLimits::idsUpToTheLargestAndBeyond_data()
{
    QTest::addColumn<QString>("digits");
    QTest::addColumn<LONGID>("id");
    QTest::newRow("largest") << QStringLiteral("9223372036854775807") << std::numeric_limits<LONGID>::max();
    QTest::newRow("one more") << QStringLiteral("9223372036854775808") << LONGID(0);
    QTest::newRow("far more") << QString(1000, QLatin1Char('9')) << LONGID(0);
    QTest::newRow("leading zeros") << QString(1000, QLatin1Char('0')) + QLatin1Char('7') << LONGID(7);
    QTest::newRow("negative") << QStringLiteral("-5") << LONGID(-1); // no digits: no id at all
}

void TestLimits::idsUpToTheLargestAndBeyond()
{
    QFETCH(QString, digits);
    QFETCH(LONGID, id);
    ProtocolFixture f;
    f.protocol.ProtocolBegin(enums::Import);
    f.protocol.AddMessageRaw(QStringLiteral("<a href=\"x?id=%1\">x</a>").arg(digits), enums::Import,
                             COVMessage::Error);
    f.protocol.ProtocolEnd(enums::Import);
    QVERIFY(Access::ReadXML(f.protocol));
    const std::vector<LONGID> expected = id < 0 ? std::vector<LONGID>() : std::vector<LONGID>{id};
    QCOMPARE(Access::messages(f.protocol)[enums::Import].at(0).itemIds, expected);
    QCOMPARE(f.protocol.IsMessages(std::numeric_limits<LONGID>::max()),
             id == std::numeric_limits<LONGID>::max());
}

void TestLimits::aHundredStages()
{
    ProtocolFixture f;
    f.writeTemplate("<html><body><div>\n</div></body></html>\n");
    f.protocol.ProtocolBegin(enums::Adjust);
    for (int stage = 1; stage <= 100; ++stage) {
        f.protocol.startProtocolStage(QStringLiteral("heading %1.").arg(stage), enums::Adjust);
        f.protocol.AddMessageRaw(QStringLiteral("line %1.").arg(stage), enums::Adjust, COVMessage::Message);
        f.protocol.finishProtocolStage();
    }
    f.protocol.ProtocolEnd(enums::Adjust);
    QString html;
    f.protocol.CreateProtocolHtml(enums::Adjust, html);
    QCOMPARE(html.count(QStringLiteral("<div class='stageblock'>")), 100);
    int at = 0;
    for (int stage = 1; stage <= 100; ++stage) {
        at = html.indexOf(QStringLiteral("heading %1.").arg(stage), at);
        QVERIFY(at >= 0);
        at = html.indexOf(QStringLiteral("line %1.").arg(stage), at);
        QVERIFY(at >= 0);
    }
}

void TestLimits::foreignDataFileNestedDeeply_data()
{
    QTest::addColumn<int>("depth");
    QTest::addColumn<bool>("isRead");
    QTest::newRow("as deep as may be") << 997 << true;
    QTest::newRow("one more") << 998 << false;
    QTest::newRow("far more") << 1000000 << false;
}

void TestLimits::foreignDataFileNestedDeeply()
{
    QFETCH(int, depth);
    QFETCH(bool, isRead);
    ProtocolFixture f;
    Access::dataFilePath(f.protocol) = f.tempPath(QStringLiteral("foreign.xml"));
    // Behind the root, the entry and the item the nest has the rest.
    writeFile(Access::dataFilePath(f.protocol),
              "<messagelist><li ptype=\"1\" mtype=\"5\"><mess><![CDATA[line]]></mess>" +
                  QByteArray("<x>").repeated(depth) + "<item iid=\"5\" itype=\"7\"/>" +
                  QByteArray("</x>").repeated(depth) + "</li></messagelist>");
    QCOMPARE(Access::ReadXML(f.protocol), isRead);
    QCOMPARE(f.application.getWarnings(), QStringList());
    if (isRead)
        QCOMPARE(Access::messages(f.protocol)[1].at(0).itemIds, std::vector<LONGID>{5});
    else
        QVERIFY(Access::messages(f.protocol).empty());
}

void TestLimits::aMillionPoints()
{
    QByteArray content = kGkfHead + "<point id=\"P0\" z=\"0\" fix=\"z\"/>\n";
    for (int i = 1; i < 1000000; ++i)
        content += "<point id=\"P" + QByteArray::number(i) + "\" adj=\"z\"/>\n";
    content += "<height-differences>\n<dh from=\"P0\" to=\"P999999\" val=\"1\" dist=\"1\"/>\n"
               "</height-differences>\n" +
               kGkfTail;
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    const levelling::GkfResult result = levelling::GkfReader::read(buffer);
    QVERIFY(!result.fatal);
    QVERIFY(result.problems.empty());
    QCOMPARE(result.network.points.size(), std::size_t(1000000));
    QCOMPARE(result.network.sections.at(0).to, 999999);
}

void TestLimits::networkFileThatIsTooLarge()
{
    // A gigabyte, of which a quarter is looked at.
    const QByteArray comment = "<!-- a comment in a line of its own, again and again and again -->\n";
    RepeatingFile file(kGkfHead, comment, qint64(1) << 24, kGkfTail);
    const qint64 completeLines =
        kGkfHead.count('\n') + (levelling::GkfReader::kLargestFile - kGkfHead.size()) / comment.size();
    const levelling::GkfResult result = levelling::GkfReader::read(file);
    QVERIFY(result.fatal);
    QCOMPARE(result.fatal->kind, levelling::ProblemKind::FileTooLarge);
    QCOMPARE(result.fatal->arguments, QStringList{QStringLiteral("256")});
    QCOMPARE(result.fatal->line, completeLines + 1);
    QVERIFY(result.network.points.empty());
}

void TestLimits::networkFileWithTooManyPoints()
{
    // Few bytes in the file for many in memory.
    RepeatingFile file(kGkfHead + "<height-differences>\n", "<dh/>\n", 3000001,
                       "</height-differences>\n" + kGkfTail);
    const levelling::GkfResult result = levelling::GkfReader::read(file);
    QVERIFY(result.fatal);
    QCOMPARE(result.fatal->kind, levelling::ProblemKind::TooManyEntries);
    QCOMPARE(result.fatal->arguments, QStringList{QStringLiteral("3000000")});
    QCOMPARE(result.fatal->line, qint64(3000005));
}

void TestLimits::networkFileWithTooManyProblems()
{
    RepeatingFile file(kGkfHead, "<x/>\n", 1000001, kGkfTail);
    const levelling::GkfResult result = levelling::GkfReader::read(file);
    QVERIFY(result.fatal);
    QCOMPARE(result.fatal->kind, levelling::ProblemKind::TooManyProblems);
    QCOMPARE(result.fatal->arguments, QStringList{QStringLiteral("1000000")});
    QCOMPARE(result.fatal->line, qint64(1000004));
    QVERIFY(result.problems.empty());
}

void TestLimits::fieldFileThatIsTooLarge()
{
    // A gigabyte, of which a quarter is looked at: readings of one station that never ends.
    RepeatingFile gsi("410001+?......1\n", "110003+0000000A 331.08+00150000\n", qint64(1) << 25,
                      QByteArray());
    const levelling::LevelResult result = levelling::gsilevelreader::read(gsi, {});
    QVERIFY(result.file.fatal);
    QCOMPARE(result.file.fatal->kind, levelling::ProblemKind::FileTooLarge);
    QCOMPARE(result.file.fatal->arguments, QStringList{QStringLiteral("256")});
    QVERIFY(result.findings.checks.empty());
}

void TestLimits::fieldFileWithTooManyStations()
{
    // There and back without end, two stations a time.
    RepeatingFile gsi("410001+?......1\n",
                      "110003+0000000A 331.08+00150000\n110003+00000001 332.08+00150000\n"
                      "110003+00000001 331.08+00150000\n110003+0000000A 332.08+00150000\n",
                      1000001, QByteArray());
    const levelling::LevelResult result = levelling::gsilevelreader::read(gsi, {});
    QVERIFY(result.file.fatal);
    QCOMPARE(result.file.fatal->kind, levelling::ProblemKind::TooManyStations);
    QCOMPARE(result.file.fatal->arguments, QStringList{QStringLiteral("2000000")});
    QVERIFY(result.file.network.points.empty());
}

void TestLimits::fieldFileWithTooManyProblems()
{
    RepeatingFile m5(QByteArray(), "noise\n", 1000001, QByteArray());
    const levelling::LevelResult result = levelling::m5levelreader::readM5(m5, {});
    QVERIFY(result.file.fatal);
    QCOMPARE(result.file.fatal->kind, levelling::ProblemKind::TooManyProblems);
    QCOMPARE(result.file.fatal->line, qint64(1000000));
    QVERIFY(result.file.problems.empty());
}

QTEST_GUILESS_MAIN(TestLimits)
#include "tst_limits.moc"
