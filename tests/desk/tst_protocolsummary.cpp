#include "Orvel/store/ProtocolTypes.h"
#include "apps/desk/document/ProtocolSummary.h"

#include <QTest>

using namespace orvel::desk;

/// Counts of protocol lines by type and item.
class TestProtocolSummary : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void countsKindsByType();
    void countsLinesOfItems();
    void gravestLineOfAnItemCounts();
    void countsTheSameInItsOwnForm();
    void countsBehindControlCharacters();
    void nothingIsEmpty();
    void damagedFileCountsUpToTheDamage();
};

namespace {

QByteArray makeLine(int type, int kind, const QByteArray& items)
{
    return "<li ptype=\"" + QByteArray::number(type) + "\" mtype=\"" + QByteArray::number(kind) + "\">" +
           items + "<mess><![CDATA[text with <item iid=\"7\"/>]]></mess></li>\n";
}

QByteArray makeItem(int id)
{
    return "<item iid=\"" + QByteArray::number(id) + "\" itype=\"1\"/>";
}

QByteArray makeFile(const QByteArray& lines)
{
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<messagelist>\n" + lines + "</messagelist>\n";
}

} // namespace

void TestProtocolSummary::countsKindsByType()
{
    const ProtocolSummary summary = ProtocolSummary::of(makeFile(
        makeLine(enums::Adjust, 3, {}) + makeLine(enums::Adjust, 3, {}) + makeLine(enums::Adjust, 4, {}) +
        makeLine(enums::Adjust, 6, {}) + makeLine(enums::Compile, 5, {}) + makeLine(enums::Compile, 1, {})));
    QCOMPARE(int(summary.types.size()), 2);
    QCOMPARE(summary.types.at(enums::Adjust).errors, 2);
    QCOMPARE(summary.types.at(enums::Adjust).warnings, 1);
    QCOMPARE(summary.types.at(enums::Adjust).messages, 0);
    QCOMPARE(summary.types.at(enums::Compile).errors, 0);
    QCOMPARE(summary.types.at(enums::Compile).messages, 1);
}

void TestProtocolSummary::countsLinesOfItems()
{
    const ProtocolSummary summary =
        ProtocolSummary::of(makeFile(makeLine(enums::Adjust, 3, makeItem(5) + makeItem(6) + makeItem(5)) +
                                     makeLine(enums::Import, 5, makeItem(5))));
    QCOMPARE(summary.linesOfItem.value(5), 2);
    QCOMPARE(summary.linesOfItem.value(6), 1);
    QCOMPARE(summary.linesOfItem.value(7), 0);
}

void TestProtocolSummary::gravestLineOfAnItemCounts()
{
    const ProtocolSummary summary = ProtocolSummary::of(makeFile(
        makeLine(enums::Import, 5, makeItem(5) + makeItem(6)) + makeLine(enums::Adjust, 3, makeItem(5)) +
        makeLine(enums::Adjust, 4, makeItem(5)) + makeLine(enums::Adjust, 4, makeItem(6)) +
        makeLine(enums::Adjust, 5, makeItem(7)) + makeLine(enums::Adjust, 1, makeItem(8))));
    QCOMPARE(summary.worstOfItem,
             (QHash<LONGID, COVMessage::MessageType>{
                 {5, COVMessage::Error}, {6, COVMessage::Warning}, {7, COVMessage::Message}}));
}

void TestProtocolSummary::countsTheSameInItsOwnForm()
{
    const ProtocolSummary summary = ProtocolSummary::of(
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<!DOCTYPE zarnik_vok_protocol>\n<messagelist>\n"
        "    <li ptype=\"305510146\" mtype=\"3\">\n        <item iid=\"5\" itype=\"1\"/>\n"
        "        <item iid=\"6\" itype=\"1\"/>\n        <item iid=\"5\" itype=\"1\"/>\n"
        "        <mess><![CDATA[a\x01<item iid=\"7\"/>]]></mess>\n    </li>\n"
        "    <li ptype=\"305510146\" mtype=\"4\">\n        <item iid=\"5\" itype=\"1\"/>\n"
        "        <mess sid=\"2\"><![CDATA[b]]></mess>\n    </li>\n</messagelist>\n");
    QCOMPARE(int(summary.types.size()), 1);
    QCOMPARE(summary.types.at(305510146).errors, 1);
    QCOMPARE(summary.types.at(305510146).warnings, 1);
    QCOMPARE(summary.types.at(305510146).messages, 0);
    QCOMPARE(summary.linesOfItem, (QHash<LONGID, int>{{5, 2}, {6, 1}}));
    QCOMPARE(summary.worstOfItem,
             (QHash<LONGID, COVMessage::MessageType>{{5, COVMessage::Error}, {6, COVMessage::Error}}));
}

void TestProtocolSummary::countsBehindControlCharacters()
{
    QByteArray odd = makeLine(enums::Import, 3, {});
    odd.replace("text", QByteArray("a\x01\x1f\0b", 5));
    const ProtocolSummary summary =
        ProtocolSummary::of(makeFile(odd + makeLine(enums::Import, 3, makeItem(5))));
    QCOMPARE(summary.types.at(enums::Import).errors, 2);
    QCOMPARE(summary.linesOfItem.value(5), 1);
}

void TestProtocolSummary::nothingIsEmpty()
{
    const ProtocolSummary summary = ProtocolSummary::of(QByteArray());
    QVERIFY(summary.types.empty());
    QVERIFY(summary.linesOfItem.isEmpty());
}

void TestProtocolSummary::damagedFileCountsUpToTheDamage()
{
    const ProtocolSummary summary = ProtocolSummary::of("<messagelist>" + makeLine(enums::Adjust, 3, {}) +
                                                        "<li ptype=\"" + QByteArray::number(1));
    QCOMPARE(summary.types.at(enums::Adjust).errors, 1);
    QCOMPARE(int(summary.types.size()), 1);
}

QTEST_GUILESS_MAIN(TestProtocolSummary)
#include "tst_protocolsummary.moc"
