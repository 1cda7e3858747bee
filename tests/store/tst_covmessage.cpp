#include "Orvel/store/COVMessage.h"
#include "Orvel/store/COrvel.h"
#include "host/model/ItemTypes.h"
#include "tests/support/MessageText.h"

#include <QtTest>

#include <algorithm>
#include <type_traits>
#include <utility>

namespace {

constexpr int kTypeA = kPointItemType;
constexpr int kTypeB = kSectionItemType;

using Ids = std::vector<LONGID>;
using Types = std::vector<int>;

/// A message of no particular kind that refers to `ids`.
COVMessage makeMessage(const Ids& ids, const Types& types)
{
    return COVMessage(enums::Adjust, COVMessage::Error, ids, types, QStringLiteral("line"), 2);
}

} // namespace

class TestCOVMessage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAPlainValue();
    void fieldsStandInTheirOrder();
    void kindsHaveTheirValues();
    void generalItemTypeHasItsValue();

    void singleItemConstructorStoresEveryField();
    void listConstructorStoresEveryField();
    void listConstructorTakesListsAsTheyAre();

    void copyIsIndependent();
    void assignmentReplacesEveryField();
    void moveLeavesTheSourceWithoutItems();
    void moveAssignmentLeavesTheSourceWithoutItems();

    void itemTypeOfAnId();
    void itemTypeOfAnUnknownIdIsGeneral();
    void itemTypeOfARepeatedIdIsThatOfTheFirst();
    void itemTypeIsGeneralForEveryIdWhenTheListsDiffer();
    void itemTypeIsGeneralForAnyIdWithoutItems();
    void itemTypeOfNoItem();

    void mentionsEveryOneOfItsIds();
    void mentionsNothingWithoutItems();
    void mentionsNoItem();

    void addsItsIdsToASet();
    void addsTheIdOfNoItemToASet();

    void styleClassOfAKind_data();
    void styleClassOfAKind();
};

void TestCOVMessage::isAPlainValue()
{
    QVERIFY(!std::is_polymorphic_v<COVMessage>);
    QVERIFY(std::is_copy_constructible_v<COVMessage>);
    QVERIFY(std::is_copy_assignable_v<COVMessage>);
    QVERIFY(std::is_nothrow_move_constructible_v<COVMessage>);
    QVERIFY(std::is_nothrow_move_assignable_v<COVMessage>);
    QVERIFY(!std::is_default_constructible_v<COVMessage>);
}

void TestCOVMessage::fieldsStandInTheirOrder()
{
    const COVMessage message = makeMessage({1}, {kTypeA});
    const std::vector<const void*> addresses = {&message.protocolType, &message.messageType, &message.stage,
                                                &message.itemIds,      &message.itemTypes,   &message.text};
    QCOMPARE(addresses.front(), static_cast<const void*>(&message));
    QVERIFY(std::is_sorted(addresses.begin(), addresses.end()));
}

void TestCOVMessage::kindsHaveTheirValues()
{
    QCOMPARE(int(COVMessage::Title), 0);
    QCOMPARE(int(COVMessage::Service), 1);
    QCOMPARE(int(COVMessage::Statistics), 2);
    QCOMPARE(int(COVMessage::Error), 3);
    QCOMPARE(int(COVMessage::Warning), 4);
    QCOMPARE(int(COVMessage::Message), 5);
    QCOMPARE(int(COVMessage::Stage), 6);
    QCOMPARE(sizeof(COVMessage::MessageType), sizeof(qint32));
}

void TestCOVMessage::generalItemTypeHasItsValue()
{
    QCOMPARE(kGeneralItemType, 1710060288);
}

void TestCOVMessage::singleItemConstructorStoresEveryField()
{
    const COVMessage message(305510146, 4, 17, kTypeB, QStringLiteral("Невязка <b>велика</b>"), 3);
    QCOMPARE(message.protocolType, 305510146);
    QCOMPARE(message.messageType, COVMessage::Warning);
    QCOMPARE(message.stage, 3);
    QCOMPARE(message.itemIds, Ids{17});
    QCOMPARE(message.itemTypes, Types{kTypeB});
    QCOMPARE(message.text, QStringLiteral("Невязка <b>велика</b>"));
}

void TestCOVMessage::listConstructorStoresEveryField()
{
    const COVMessage message(305510145, 5, Ids{9, -2, 9}, Types{kTypeA, kTypeB, kTypeA}, QStringLiteral("t"),
                             1);
    QCOMPARE(message.protocolType, 305510145);
    QCOMPARE(message.messageType, COVMessage::Message);
    QCOMPARE(message.stage, 1);
    QCOMPARE(message.itemIds, (Ids{9, -2, 9}));
    QCOMPARE(message.itemTypes, (Types{kTypeA, kTypeB, kTypeA}));
    QCOMPARE(message.text, QStringLiteral("t"));
}

void TestCOVMessage::listConstructorTakesListsAsTheyAre()
{
    const COVMessage message = makeMessage({1, 2, 3}, {kTypeA, kTypeB});
    QCOMPARE(message.itemIds, (Ids{1, 2, 3}));
    QCOMPARE(message.itemTypes, (Types{kTypeA, kTypeB}));
    const COVMessage empty = makeMessage({}, {});
    QCOMPARE(empty.itemIds, Ids{});
    QCOMPARE(empty.itemTypes, Types{});
}

void TestCOVMessage::copyIsIndependent()
{
    const COVMessage source = makeMessage({1, 2}, {kTypeA, kTypeB});
    COVMessage copy = source;
    QCOMPARE(describe(copy), describe(source));

    copy.text = QStringLiteral("other");
    copy.itemIds.push_back(3);
    copy.itemTypes.clear();
    QCOMPARE(describe(source), QStringLiteral("ptype=305510146 mtype=3 stage=2 ids=1,2 "
                                              "types=1842165504,1842165508 text=line"));
}

void TestCOVMessage::assignmentReplacesEveryField()
{
    const COVMessage source = makeMessage({1, 2}, {kTypeA, kTypeB});
    COVMessage target(enums::Import, COVMessage::Title, 0, kGeneralItemType, QStringLiteral("old"), 9);
    target = source;
    QCOMPARE(describe(target), describe(source));
    target.itemIds[0] = 99;
    QCOMPARE(source.itemIds, (Ids{1, 2}));
}

void TestCOVMessage::moveLeavesTheSourceWithoutItems()
{
    COVMessage source = makeMessage({1, 2}, {kTypeA, kTypeB});
    const QString wanted = describe(source);
    const COVMessage target = std::move(source);
    QCOMPARE(describe(target), wanted);
    // NOLINTNEXTLINE(bugprone-use-after-move): what is left behind is promised
    QVERIFY(source.itemIds.empty() && source.itemTypes.empty());
}

void TestCOVMessage::moveAssignmentLeavesTheSourceWithoutItems()
{
    COVMessage source = makeMessage({1, 2}, {kTypeA, kTypeB});
    const QString wanted = describe(source);
    COVMessage target = makeMessage({7}, {kTypeB});
    target = std::move(source);
    QCOMPARE(describe(target), wanted);
    // NOLINTNEXTLINE(bugprone-use-after-move): what is left behind is promised
    QVERIFY(source.itemIds.empty() && source.itemTypes.empty());
}

void TestCOVMessage::itemTypeOfAnId()
{
    const COVMessage message = makeMessage({5, 7}, {kTypeA, kTypeB});
    QCOMPARE(message.GetItemTypeByID(5), kTypeA);
    QCOMPARE(message.GetItemTypeByID(7), kTypeB);
}

void TestCOVMessage::itemTypeOfAnUnknownIdIsGeneral()
{
    QCOMPARE(makeMessage({5, 7}, {kTypeA, kTypeB}).GetItemTypeByID(6), kGeneralItemType);
}

void TestCOVMessage::itemTypeOfARepeatedIdIsThatOfTheFirst()
{
    QCOMPARE(makeMessage({5, 5}, {kTypeA, kTypeB}).GetItemTypeByID(5), kTypeA);
}

void TestCOVMessage::itemTypeIsGeneralForEveryIdWhenTheListsDiffer()
{
    const COVMessage tooFewTypes = makeMessage({1, 2, 3}, {kTypeA, kTypeB});
    for (const LONGID id : {1, 2, 3})
        QCOMPARE(tooFewTypes.GetItemTypeByID(id), kGeneralItemType);
    const COVMessage tooManyTypes = makeMessage({1}, {kTypeA, kTypeB});
    QCOMPARE(tooManyTypes.GetItemTypeByID(1), kGeneralItemType);
}

void TestCOVMessage::itemTypeIsGeneralForAnyIdWithoutItems()
{
    const COVMessage message = makeMessage({}, {});
    QCOMPARE(message.GetItemTypeByID(0), kGeneralItemType);
    QCOMPARE(message.GetItemTypeByID(1), kGeneralItemType);
}

void TestCOVMessage::itemTypeOfNoItem()
{
    const COVMessage message(enums::Adjust, COVMessage::Message, 0, kGeneralItemType, QString(), 0);
    QCOMPARE(message.GetItemTypeByID(0), kGeneralItemType);
}

void TestCOVMessage::mentionsEveryOneOfItsIds()
{
    // The types take no part.
    const COVMessage message = makeMessage({5, -7}, {});
    QVERIFY(message.IsItemMessage(5));
    QVERIFY(message.IsItemMessage(-7));
    QVERIFY(!message.IsItemMessage(7));
    QVERIFY(!message.IsItemMessage(0));
}

void TestCOVMessage::mentionsNothingWithoutItems()
{
    QVERIFY(!makeMessage({}, {}).IsItemMessage(0));
}

void TestCOVMessage::mentionsNoItem()
{
    const COVMessage message(enums::Adjust, COVMessage::Message, 0, kGeneralItemType, QString(), 0);
    QVERIFY(message.IsItemMessage(0));
    QVERIFY(!message.IsItemMessage(1));
}

void TestCOVMessage::addsItsIdsToASet()
{
    std::set<LONGID> ids = {1, 100};
    makeMessage({7, 3, 7, 100}, {}).GetItemsID(ids);
    QCOMPARE(ids, (std::set<LONGID>{1, 3, 7, 100}));
    makeMessage({}, {}).GetItemsID(ids);
    QCOMPARE(ids, (std::set<LONGID>{1, 3, 7, 100}));
}

void TestCOVMessage::addsTheIdOfNoItemToASet()
{
    std::set<LONGID> ids;
    COVMessage(enums::Adjust, COVMessage::Message, 0, kGeneralItemType, QString(), 0).GetItemsID(ids);
    QCOMPARE(ids, std::set<LONGID>{0});
}

void TestCOVMessage::styleClassOfAKind_data()
{
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("styleClass");
    QTest::newRow("title") << 0 << QStringLiteral("title");
    QTest::newRow("service") << 1 << QStringLiteral("service");
    QTest::newRow("statistics") << 2 << QStringLiteral("statistics");
    QTest::newRow("error") << 3 << QStringLiteral("error");
    QTest::newRow("warning") << 4 << QStringLiteral("warning");
    QTest::newRow("message") << 5 << QStringLiteral("message");
    QTest::newRow("stage") << 6 << QString();
    QTest::newRow("above the known") << 7 << QString();
    QTest::newRow("below the known") << -1 << QString();
}

void TestCOVMessage::styleClassOfAKind()
{
    QFETCH(int, kind);
    QFETCH(QString, styleClass);
    const COVMessage message(enums::Adjust, kind, 0, kGeneralItemType, QStringLiteral("line"), 0);
    QCOMPARE(COrvel::GetMessageStyleClass(message), styleClass);
}

QTEST_GUILESS_MAIN(TestCOVMessage)
#include "tst_covmessage.moc"
