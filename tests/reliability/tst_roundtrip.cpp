#include "tests/support/MessageText.h"
#include "tests/support/OrvelTestAccess.h"
#include "tests/support/ProtocolFixture.h"
#include "tests/support/TestFiles.h"

#include <QRandomGenerator>
#include <QTest>

#include <limits>

/// Whatever lines a run writes, they are the same after writing and reading, and none costs another.
class TestRoundTrip : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void anyMessagesSurvive();
    void anyLinesOfARunSurvive();
    void noCodeUnitCostsAnotherLine();

private:
    int messageCount = 20000;
};

namespace {

using Access = OrvelTestAccess;

constexpr int kFileSize = 5000; // messages: some pieces of the reader

/// Messages with any content at all.
class Generator
{
public:
    explicit Generator(quint32 seed) : random(seed) {}

    COVMessage makeMessage()
    {
        COVMessage message(makeInt(), makeInt(), {}, {}, makeText(), makeInt());
        const int items = random.bounded(4);
        for (int i = 0; i < items; ++i) {
            message.itemIds.push_back(makeId());
            message.itemTypes.push_back(makeInt());
        }
        return message;
    }

    /// Any UTF-16 text, valid or not, with a liking for what is special in XML and in lines.
    QString makeText()
    {
        QString text;
        const int pieces = random.bounded(6);
        for (int i = 0; i < pieces; ++i)
            text += makePiece();
        return text;
    }

    LONGID makeId()
    {
        switch (random.bounded(5)) {
        case 0:
            return std::numeric_limits<LONGID>::max() - random.bounded(2);
        case 1:
            return std::numeric_limits<LONGID>::min() + random.bounded(2);
        case 2:
            return random.bounded(3) - 1;
        default:
            return static_cast<LONGID>(random.generate64());
        }
    }

private:
    int makeInt()
    {
        switch (random.bounded(4)) {
        case 0:
            return random.bounded(8);
        case 1:
            return std::numeric_limits<int>::min() + random.bounded(2);
        case 2:
            return std::numeric_limits<int>::max() - random.bounded(2);
        default:
            return static_cast<int>(random.generate());
        }
    }

    QString makePiece()
    {
        static const QStringList pieces{
            QStringLiteral("]]>"),
            QStringLiteral("]]"),
            QStringLiteral(">"),
            QStringLiteral("<br>"),
            QStringLiteral("\n"),
            QStringLiteral("\r\n"),
            QStringLiteral("</li>"),
            QStringLiteral("<![CDATA["),
            QStringLiteral("&amp;&#0;"),
            QStringLiteral("Невязка"),
            QStringLiteral(" \t"),
            QStringLiteral("<a href=\"s://locate-item?id=5&kid=18446744073709551616\">5</a>")};
        switch (random.bounded(3)) {
        case 0:
            return pieces.at(random.bounded(pieces.size()));
        case 1: {
            QString units(random.bounded(20), Qt::Uninitialized);
            for (QChar& unit : units)
                unit = QChar(static_cast<ushort>(random.bounded(0x10000)));
            return units;
        }
        default: {
            // Where XML and UTF-16 have their borders.
            static constexpr ushort units[] = {0x0,    0x1,    0xB,    0x1F,   0x7F,   0x85,
                                               0xD7FF, 0xD800, 0xDBFF, 0xDC00, 0xDFFF, 0xE000,
                                               0xFEFF, 0xFFFD, 0xFFFE, 0xFFFF};
            return QString(QChar(units[random.bounded(int(std::size(units)))]));
        }
        }
    }

    QRandomGenerator random;
};

/// Writes the store, reads it back, and compares every field.
void writeAndRead(ProtocolFixture& f)
{
    Access::MessageStore written = Access::messages(f.protocol);
    for (auto& entry : written) {
        for (COVMessage& message : entry.second)
            message.text = carried(message.text);
    }
    QVERIFY(Access::WriteXML(f.protocol));
    QVERIFY(Access::ReadXML(f.protocol));
    QCOMPARE(f.application.getWarnings(), QStringList());
    const QStringList expected = describe(written);
    const QStringList actual = describe(Access::messages(f.protocol));
    // Line by line: a comparison of the lists would say nothing readable.
    QCOMPARE(actual.size(), expected.size());
    for (int i = 0; i < expected.size(); ++i)
        QCOMPARE(actual[i], expected[i]);
}

} // namespace

void TestRoundTrip::initTestCase()
{
    if (qEnvironmentVariableIsSet("RELIABILITY_MESSAGES"))
        messageCount = qEnvironmentVariableIntValue("RELIABILITY_MESSAGES");
}

void TestRoundTrip::anyMessagesSurvive()
{
    Generator generator(1);
    for (int done = 0; done < messageCount; done += kFileSize) {
        ProtocolFixture f;
        Access::dataFilePath(f.protocol) = f.tempPath(QStringLiteral("data.xml"));
        for (int i = 0; i < kFileSize; ++i)
            Access::AddMessage(f.protocol, generator.makeMessage());
        writeAndRead(f);
        if (QTest::currentTestFailed())
            QFAIL(QByteArray::number(done).constData());
    }
}

void TestRoundTrip::anyLinesOfARunSurvive()
{
    Generator generator(2);
    for (int done = 0; done < messageCount; done += kFileSize) {
        ProtocolFixture f;
        f.protocol.ProtocolBegin(enums::Adjust);
        for (int i = 0; i < kFileSize; ++i) {
            const QString link = QString::fromStdWString(f.protocol.GetItemLink(generator.makeId(), L"item"));
            f.protocol.AddMessageRaw(generator.makeText() + link + generator.makeText(), enums::Adjust,
                                     static_cast<COVMessage::MessageType>(i % 7));
            if (i % 50 == 0)
                f.protocol.startProtocolStage(generator.makeText(), enums::Adjust);
            if (i % 50 == 49)
                f.protocol.finishProtocolStage();
        }
        writeAndRead(f);
        if (QTest::currentTestFailed())
            QFAIL(QByteArray::number(done).constData());
    }
}

void TestRoundTrip::noCodeUnitCostsAnotherLine()
{
    ProtocolFixture f;
    f.protocol.ProtocolBegin(enums::Adjust);
    for (uint unit = 0; unit <= 0xFFFF; ++unit)
        f.protocol.AddMessageRaw(QChar(unit), enums::Adjust, COVMessage::Error);
    QCOMPARE(int(Access::messages(f.protocol)[enums::Adjust].size()), 0x10000);
    writeAndRead(f);
}

QTEST_GUILESS_MAIN(TestRoundTrip)
#include "tst_roundtrip.moc"
