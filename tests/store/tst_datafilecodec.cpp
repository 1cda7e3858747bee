#include "Orvel/store/DataFileReader.h"
#include "Orvel/store/DataFileWriter.h"
#include "tests/reference/DomDataFile.h"

#include <QBuffer>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

#include <limits>
#include <tuple>

using orvel::datafile::Messages;
using reference::MessageStore;

bool operator==(const COVMessage& a, const COVMessage& b)
{
    const auto fields = [](const COVMessage& m) {
        return std::tie(m.protocolType, m.messageType, m.stage, m.itemIds, m.itemTypes, m.text);
    };
    return fields(a) == fields(b);
}

namespace {

constexpr int kType = 305510146;

/// Texts from pieces that are hard on a reader of XML.
class TextGenerator
{
public:
    explicit TextGenerator(quint32 seed) : random(seed) {}

    QString makeText()
    {
        QString text;
        const int pieces = random.bounded(8);
        for (int i = 0; i < pieces; ++i)
            text += makePiece();
        return text;
    }

    MessageStore makeStore()
    {
        MessageStore store;
        const int count = random.bounded(6);
        for (int i = 0; i < count; ++i) {
            const int protocolType = kType + random.bounded(3) - 1;
            COVMessage message(protocolType, random.bounded(7), std::vector<LONGID>(), std::vector<int>(),
                               makeText(), random.bounded(4));
            const int items = random.bounded(4);
            for (int k = 0; k < items; ++k) {
                message.itemIds.push_back(makeId());
                message.itemTypes.push_back(random.bounded(2) ? 0x65ED7300 : -random.bounded(1000));
            }
            store[protocolType].push_back(message);
        }
        return store;
    }

    QByteArray mutate(QByteArray file)
    {
        static const QList<QByteArray> tokens{"]]>",
                                              "<![CDATA[",
                                              "<mess>",
                                              "</mess>",
                                              "<li ",
                                              "</li>",
                                              "&amp;",
                                              "\"",
                                              "0",
                                              "-",
                                              "\xFF",
                                              "\xED\xA0\x80",
                                              "\xEF\xBF\xBE",
                                              "\xEF\xBB\xBF",
                                              "\xC0\x80",
                                              "\n",
                                              " ",
                                              "<!-- -->",
                                              "item",
                                              "\0"};
        const int changes = 1 + random.bounded(3);
        for (int i = 0; i < changes && !file.isEmpty(); ++i) {
            const int at = random.bounded(file.size());
            switch (random.bounded(5)) {
            case 0:
                file[at] = static_cast<char>(random.bounded(256));
                break;
            case 1:
                file.remove(at, 1 + random.bounded(4));
                break;
            case 2:
                file.insert(at, tokens.at(random.bounded(tokens.size())));
                break;
            case 3:
                file.insert(at, file.mid(random.bounded(file.size()), random.bounded(60)));
                break;
            default:
                // Within a text, where the file has a chance to stay whole.
                file.insert(file.indexOf("]]>"), static_cast<char>(random.bounded(256)));
            }
        }
        return file;
    }

private:
    QString makePiece()
    {
        static const QStringList pieces{
            QStringLiteral("]]>"),
            QStringLiteral("]]"),
            QStringLiteral("]"),
            QStringLiteral(">"),
            QStringLiteral("<br>"),
            QStringLiteral("&amp;"),
            QStringLiteral("\r"),
            QStringLiteral("\r\n"),
            QStringLiteral("\n"),
            QStringLiteral(" "),
            QStringLiteral("Невязка секции"),
            QStringLiteral("<![CDATA["),
            QStringLiteral("</mess>"),
            QStringLiteral("\t"),
            QStringLiteral("<a href=\"survey://locate-item?type=P&id=5&project=%D0%9F\">Rp5</a>")};
        switch (random.bounded(4)) {
        case 0:
            return QString(QChar(static_cast<ushort>(random.bounded(0x10000))));
        case 1: {
            const uint codePoint = 0x10000 + random.bounded(0x100000u);
            return QString::fromUcs4(&codePoint, 1);
        }
        default:
            return pieces.at(random.bounded(pieces.size()));
        }
    }

    LONGID makeId()
    {
        switch (random.bounded(4)) {
        case 0:
            return std::numeric_limits<LONGID>::max();
        case 1:
            return std::numeric_limits<LONGID>::min();
        case 2:
            return 0;
        default:
            return random.bounded(100000);
        }
    }

    QRandomGenerator random;
};

QByteArray write(const MessageStore& store)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    orvel::datafile::write(store, buffer);
    return buffer.data();
}

QByteArray writeByDom(const MessageStore& store)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    reference::writeDataFile(store, buffer);
    return buffer.data();
}

std::optional<Messages> readCanonical(QByteArray content)
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    return orvel::datafile::readCanonical(buffer);
}

/// The same, message by message.
std::optional<Messages> visitCanonical(QByteArray content)
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    Messages messages;
    const auto keep = [&messages](const COVMessage& message) {
        messages[message.protocolType].push_back(message);
    };
    return orvel::datafile::visitCanonical(buffer, keep) ? std::make_optional(messages) : std::nullopt;
}

std::optional<Messages> readByDom(QByteArray content)
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    return orvel::datafile::readXml(buffer);
}

/// The DOM's writer puts attributes in the order of a hash.
QByteArray withOrderedAttributes(const QByteArray& file)
{
    QString text = QString::fromLatin1(file);
    text.replace(QRegularExpression(QStringLiteral("<li (mtype=\"[^\"]*\") (ptype=\"[^\"]*\")>")),
                 QStringLiteral("<li \\2 \\1>"));
    text.replace(QRegularExpression(QStringLiteral("<item (itype=\"[^\"]*\") (iid=\"[^\"]*\")/>")),
                 QStringLiteral("<item \\2 \\1/>"));
    return text.toLatin1();
}

} // namespace

class TestDataFileCodec : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesWhatTheDomWrites();
    void readsItsOwnFormAsTheDomDoes();
    void everyCodeUnitReadsBackAsTheDomReadsIt();
    void readsMessagesWhereverThePiecesOfTheFileEnd();
    void readsMessagesOfAnyLength();
    void aChangedFileIsDeclinedOrReadAsTheDomReadsIt();
    void aTruncatedFileIsDeclined();
    void messagesAreTheSameOneByOne();
    void otherFormsAreDeclined_data();
    void otherFormsAreDeclined();
};

void TestDataFileCodec::writesWhatTheDomWrites()
{
    TextGenerator generator(1);
    for (int i = 0; i < 3000; ++i) {
        const MessageStore store = generator.makeStore();
        QCOMPARE(write(store), withOrderedAttributes(writeByDom(store)));
    }
}

void TestDataFileCodec::readsItsOwnFormAsTheDomDoes()
{
    TextGenerator generator(2);
    for (int i = 0; i < 3000; ++i) {
        const MessageStore store = generator.makeStore();
        const QByteArray file = write(store);
        const std::optional<Messages> own = readCanonical(file);
        QVERIFY2(own, file.constData());
        QCOMPARE(own->size(), store.size());
        const std::optional<Messages> dom = readByDom(file);
        QVERIFY2(dom, file.constData());
        QVERIFY2(*own == *dom, file.constData());
    }
}

void TestDataFileCodec::everyCodeUnitReadsBackAsTheDomReadsIt()
{
    MessageStore store;
    for (uint unit = 0; unit <= 0xFFFF; ++unit) {
        const QChar c(unit);
        store[kType].emplace_back(kType, COVMessage::Message, 0, 0, QString(c), 0);
        store[kType].emplace_back(kType, COVMessage::Message, 0, 0,
                                  QLatin1Char('a') + QString(c) + QLatin1Char('b'), 0);
    }
    const std::optional<Messages> own = readCanonical(write(store));
    QVERIFY(own);
    const std::optional<Messages> dom = readByDom(write(store));
    QVERIFY(dom);
    const std::vector<COVMessage>& written = store[kType];
    const std::vector<COVMessage>& ownList = own->at(kType);
    const std::vector<COVMessage>& domList = dom->at(kType);
    QCOMPARE(ownList.size(), written.size());
    QCOMPARE(domList.size(), written.size());
    for (std::size_t i = 0; i < written.size(); ++i) {
        const QChar c = written[i].text[i % 2 == 0 ? 0 : 1];
        QString expected = written[i].text;
        if (c.isSurrogate() || c.unicode() >= 0xFFFE)
            expected.replace(c, QChar(QChar::ReplacementCharacter));
        QCOMPARE(ownList[i].text, expected);
        QCOMPARE(domList[i].text, expected);
    }
}

void TestDataFileCodec::readsMessagesWhereverThePiecesOfTheFileEnd()
{
    // The file is read in pieces of 256 KB; the first text moves their ends through the messages behind it.
    const int pieceSize = 1 << 18;
    for (int length = pieceSize - 500; length < pieceSize; ++length) {
        MessageStore store;
        store[kType].emplace_back(kType, COVMessage::Error, 5, 7, QString(length, QLatin1Char('x')), 2);
        store[kType].emplace_back(kType, COVMessage::Error, 6, 7, QStringLiteral("Невязка ]]> 😀"), 3);
        const std::optional<Messages> own = readCanonical(write(store));
        QVERIFY2(own && *own == store, QByteArray::number(length).constData());
    }
}

void TestDataFileCodec::readsMessagesOfAnyLength()
{
    MessageStore store;
    for (int length = 1; length < 10000000; length *= 3) {
        store[kType].emplace_back(kType, COVMessage::Error, 5, 7, QString(length, QChar(0x2116)), 0);
        store[kType + 1].emplace_back(kType + 1, COVMessage::Error, 5, 7, QString(length, QLatin1Char(']')),
                                      0);
    }
    QByteArray file = write(store);
    const std::optional<Messages> own = readCanonical(file);
    QVERIFY(own && *own == store);
    file.chop(1);
    QVERIFY(!readCanonical(file));
    file.append("\n ");
    QVERIFY(!readCanonical(file));
}

void TestDataFileCodec::aChangedFileIsDeclinedOrReadAsTheDomReadsIt()
{
    TextGenerator generator(3);
    int accepted = 0;
    int declined = 0;
    for (int i = 0; i < 30000; ++i) {
        const QByteArray file = generator.mutate(write(generator.makeStore()));
        const std::optional<Messages> own = readCanonical(file);
        if (!own) {
            ++declined;
            continue;
        }
        ++accepted;
        const std::optional<Messages> dom = readByDom(file);
        QVERIFY2(dom, file.toPercentEncoding(" <>=\"/!?[]\n").constData());
        QVERIFY2(*own == *dom, file.toPercentEncoding(" <>=\"/!?[]\n").constData());
    }
    // Both must happen often, or the comparison says nothing.
    QVERIFY2(accepted > 1000, QByteArray::number(accepted).constData());
    QVERIFY2(declined > 1000, QByteArray::number(declined).constData());
}

void TestDataFileCodec::aTruncatedFileIsDeclined()
{
    MessageStore store;
    store[kType].emplace_back(kType, COVMessage::Error, 5, 7, QStringLiteral("Невязка ]]> 5"), 2);
    store[kType].emplace_back(kType, COVMessage::Stage, 0, 7, QString(), 0);
    const QByteArray file = write(store);
    QVERIFY(readCanonical(file));
    for (int size = 0; size < file.size(); ++size)
        QVERIFY2(!readCanonical(file.left(size)), QByteArray::number(size).constData());
}

void TestDataFileCodec::messagesAreTheSameOneByOne()
{
    TextGenerator generator(4);
    for (int i = 0; i < 300; ++i) {
        const MessageStore store = generator.makeStore();
        const QByteArray file = write(store);
        QVERIFY2(readCanonical(file) == visitCanonical(file), file.constData());
        QVERIFY(visitCanonical(file));
        QVERIFY(!visitCanonical(file.chopped(2)));
    }
}

void TestDataFileCodec::otherFormsAreDeclined_data()
{
    QTest::addColumn<QByteArray>("from");
    QTest::addColumn<QByteArray>("to");
    QTest::newRow("byte order mark") << QByteArray("<?xml") << QByteArray("\xEF\xBB\xBF<?xml");
    QTest::newRow("other encoding") << QByteArray("utf-8") << QByteArray("UTF-8");
    QTest::newRow("other doctype") << QByteArray("zarnik_vok_protocol") << QByteArray("other");
    QTest::newRow("other root") << QByteArray("messagelist>\n    ") << QByteArray("list>\n    ");
    QTest::newRow("CR LF") << QByteArray("\n") << QByteArray("\r\n");
    QTest::newRow("other indentation") << QByteArray("    <li") << QByteArray("  <li");
    QTest::newRow("ptype is no number") << QByteArray("ptype=\"305510146\"") << QByteArray("ptype=\"abc\"");
    QTest::newRow("ptype is empty") << QByteArray("ptype=\"305510146\"") << QByteArray("ptype=\"\"");
    QTest::newRow("ptype is over 32 bits") << QByteArray("305510146") << QByteArray("2147483648");
    QTest::newRow("ptype is missing") << QByteArray("ptype=\"305510146\" ") << QByteArray("");
    QTest::newRow("mtype is no number") << QByteArray("mtype=\"3\"") << QByteArray("mtype=\"x\"");
    QTest::newRow("mtype is missing") << QByteArray(" mtype=\"3\"") << QByteArray("");
    QTest::newRow("leading zero") << QByteArray("iid=\"5\"") << QByteArray("iid=\"05\"");
    QTest::newRow("minus zero") << QByteArray("iid=\"5\"") << QByteArray("iid=\"-0\"");
    QTest::newRow("plus sign") << QByteArray("iid=\"5\"") << QByteArray("iid=\"+5\"");
    QTest::newRow("blank before a number") << QByteArray("iid=\"5\"") << QByteArray("iid=\" 5\"");
    QTest::newRow("only a minus") << QByteArray("iid=\"5\"") << QByteArray("iid=\"-\"");
    QTest::newRow("id over 64 bits") << QByteArray("iid=\"5\"") << QByteArray("iid=\"9223372036854775808\"");
    QTest::newRow("stage zero") << QByteArray("sid=\"2\"") << QByteArray("sid=\"0\"");
    QTest::newRow("stage is no number") << QByteArray("sid=\"2\"") << QByteArray("sid=\"\"");
    QTest::newRow("text outside CDATA") << QByteArray("<![CDATA[line]]>") << QByteArray("line");
    QTest::newRow("empty mess") << QByteArray("<![CDATA[line]]>") << QByteArray("");
    QTest::newRow("text before CDATA") << QByteArray("<![CDATA[line]]>") << QByteArray("x<![CDATA[line]]>");
    QTest::newRow("text behind CDATA") << QByteArray("]]></mess>") << QByteArray("]]>x</mess>");
    QTest::newRow("second CDATA section without an end")
        << QByteArray("]]></mess>") << QByteArray("]]><![CDATA[</mess>");
    QTest::newRow("invalid UTF-8") << QByteArray("line") << QByteArray("l\xFFne");
    QTest::newRow("surrogate in UTF-8") << QByteArray("line") << QByteArray("l\xED\xA0\x80ne");
    QTest::newRow("overlong UTF-8") << QByteArray("line") << QByteArray("l\xC0\xAFne");
    QTest::newRow("overlong UTF-8 of three bytes") << QByteArray("line") << QByteArray("l\xE0\x9F\xBFne");
    QTest::newRow("overlong UTF-8 of four bytes") << QByteArray("line") << QByteArray("l\xF0\x8F\xBF\xBDne");
    QTest::newRow("UTF-8 beyond U+10FFFF") << QByteArray("line") << QByteArray("l\xF4\x90\x80\x80ne");
    QTest::newRow("continuation byte alone") << QByteArray("line") << QByteArray("l\x80ne");
    QTest::newRow("UTF-8 cut off after two bytes") << QByteArray("line") << QByteArray("line\xE2\x82");
    QTest::newRow("UTF-8 cut off after three bytes") << QByteArray("line") << QByteArray("line\xF0\x9F\x98");
    QTest::newRow("U+FFFE") << QByteArray("line") << QByteArray("l\xEF\xBF\xBEne");
    QTest::newRow("U+FFFF") << QByteArray("line") << QByteArray("l\xEF\xBF\xBFne");
    QTest::newRow("another element in the list") << QByteArray("    <li") << QByteArray("    <x/>\n    <li");
    QTest::newRow("another element in the li")
        << QByteArray("        <mess") << QByteArray("        <x/>\n        <mess");
    QTest::newRow("text behind the root")
        << QByteArray("</messagelist>\n") << QByteArray("</messagelist>\n\n");
}

void TestDataFileCodec::otherFormsAreDeclined()
{
    QFETCH(QByteArray, from);
    QFETCH(QByteArray, to);
    MessageStore store;
    store[kType].emplace_back(kType, COVMessage::Error, 5, 7, QStringLiteral("line"), 2);
    QByteArray file = write(store);
    QVERIFY(readCanonical(file));
    const int at = file.indexOf(from);
    QVERIFY(at >= 0);
    file.replace(at, from.size(), to);
    QVERIFY(!readCanonical(file));
}

QTEST_APPLESS_MAIN(TestDataFileCodec)
#include "tst_datafilecodec.moc"
