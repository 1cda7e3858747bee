#include "Orvel/store/COrvel.h"
#include "tests/support/OrvelTestAccess.h"
#include "tests/support/ProtocolFixture.h"

#include <QtTest>

using Access = OrvelTestAccess;

namespace {

using Ids = std::vector<LONGID>;
using Types = std::vector<int>;
using List = COrvel::MessageList;
template<typename Key>
using Groups = COrvel::MessageGroups<Key>;

COVMessage makeMessage(int protocolType, int kind, const Ids& ids = {0},
                       const Types& types = {kGeneralItemType}, int stage = 0)
{
    return COVMessage(protocolType, kind, ids, types, QStringLiteral("line"), stage);
}

/// A list of all the messages, in their order.
List listOf(std::vector<COVMessage>& messages)
{
    List list;
    for (COVMessage& message : messages)
        list.push_back(&message);
    return list;
}

/// An adjustment's messages of the kinds 3, 5, 4, 5, 5, 0.
std::vector<COVMessage> messagesOfSeveralKinds()
{
    std::vector<COVMessage> messages;
    for (const int kind : {3, 5, 4, 5, 5, 0})
        messages.push_back(makeMessage(enums::Adjust, kind));
    return messages;
}

} // namespace

class TestSelection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void messagesOfAType();
    void messagesOfATypeByKind();
    void messagesOfATypeAreAppended();
    void messagesOfAnAbsentType();
    void messagesPointIntoTheStore();

    void filterWithEmptySetsKeepsAll();
    void filterRejectsKinds();
    void filterRejectsProtocolTypes();
    void filterRejectsByEitherSet();
    void filterOfAnEmptyList();
    void filterMayRejectEverything();

    void listByKindAndItemType();
    void listOfTheGeneralTypeIsByKindAlone();
    void listSkipsMessagesWithoutItemTypes();
    void listIgnoresItsSecondArgument();
    void listIsAppended();

    void groupsByItemId();
    void groupsOfIdsAscendBySign();
    void messageThatNamesAnItemTwiceIsGroupedOnce();
    void messageWithoutItemsIsInNoGroupOfIds();
    void messageOfNoItemIsGroupedUnderZero();
    void groupsByItemType();
    void messageOfNoItemIsGroupedUnderTheGeneralType();
    void idsAndTypesAreGroupedIndependently();
    void groupsByMessageType();
    void groupsByStage();
    void groupsKeepTheOrderOfTheList();
    void groupingTwiceListsTwice();
    void groupingLeavesTheMessagesAlone();
};

void TestSelection::messagesOfAType()
{
    ProtocolFixture f;
    f.addMessages(messagesOfSeveralKinds());
    f.addMessages({makeMessage(enums::Import, 5)});
    std::vector<COVMessage>& stored = Access::messages(f.protocol).at(enums::Adjust);
    List list;
    Access::GetProtocolMessages(f.protocol, enums::Adjust, list, {});
    QCOMPARE(list, listOf(stored));
    QCOMPARE(list.size(), std::size_t(6));
}

void TestSelection::messagesOfATypeByKind()
{
    ProtocolFixture f;
    f.addMessages(messagesOfSeveralKinds());
    const List all = listOf(Access::messages(f.protocol).at(enums::Adjust));
    List list;
    Access::GetProtocolMessages(f.protocol, enums::Adjust, list, {5});
    QCOMPARE(list, (List{all[1], all[3], all[4]}));
    list.clear();
    Access::GetProtocolMessages(f.protocol, enums::Adjust, list, {0, 4});
    QCOMPARE(list, (List{all[2], all[5]}));
    list.clear();
    Access::GetProtocolMessages(f.protocol, enums::Adjust, list, {6});
    QCOMPARE(list, List());
}

void TestSelection::messagesOfATypeAreAppended()
{
    ProtocolFixture f;
    f.addMessages({makeMessage(enums::Import, 5)});
    COVMessage other = makeMessage(enums::Adjust, 3);
    List list = {&other};
    Access::GetProtocolMessages(f.protocol, enums::Import, list, {});
    QCOMPARE(list, (List{&other, &Access::messages(f.protocol).at(enums::Import).front()}));
}

void TestSelection::messagesOfAnAbsentType()
{
    ProtocolFixture f;
    f.addMessages({makeMessage(enums::Import, 5)});
    COVMessage other = makeMessage(enums::Adjust, 3);
    List list = {&other};
    Access::GetProtocolMessages(f.protocol, enums::Adjust, list, {});
    QCOMPARE(list, List{&other});
    // Asking makes no entry.
    QCOMPARE(Access::messages(f.protocol).size(), std::size_t(1));
}

void TestSelection::messagesPointIntoTheStore()
{
    ProtocolFixture f;
    f.addMessages({makeMessage(enums::Import, 5)});
    List list;
    Access::GetProtocolMessages(f.protocol, enums::Import, list, {});
    list.front()->text = QStringLiteral("changed");
    QCOMPARE(Access::messages(f.protocol).at(enums::Import).front().text, QStringLiteral("changed"));
}

void TestSelection::filterWithEmptySetsKeepsAll()
{
    ProtocolFixture f;
    std::vector<COVMessage> messages = messagesOfSeveralKinds();
    List list = listOf(messages);
    Access::FilterMessages(f.protocol, list, {}, {});
    QCOMPARE(list, listOf(messages));
}

void TestSelection::filterRejectsKinds()
{
    ProtocolFixture f;
    std::vector<COVMessage> messages = messagesOfSeveralKinds();
    const List all = listOf(messages);
    List list = all;
    // Two of the rejected ones stand in a row.
    Access::FilterMessages(f.protocol, list, {}, {5});
    QCOMPARE(list, (List{all[0], all[2], all[5]}));
    Access::FilterMessages(f.protocol, list, {}, {0, 3});
    QCOMPARE(list, List{all[2]});
}

void TestSelection::filterRejectsProtocolTypes()
{
    ProtocolFixture f;
    std::vector<COVMessage> messages = {makeMessage(1, 5), makeMessage(2, 5), makeMessage(2, 3),
                                        makeMessage(3, 5)};
    const List all = listOf(messages);
    List list = all;
    Access::FilterMessages(f.protocol, list, {2}, {});
    QCOMPARE(list, (List{all[0], all[3]}));
    Access::FilterMessages(f.protocol, list, {3, 4}, {});
    QCOMPARE(list, List{all[0]});
}

void TestSelection::filterRejectsByEitherSet()
{
    ProtocolFixture f;
    std::vector<COVMessage> messages = {makeMessage(1, 5), makeMessage(2, 5), makeMessage(2, 3),
                                        makeMessage(1, 3), makeMessage(1, 4)};
    const List all = listOf(messages);
    List list = all;
    Access::FilterMessages(f.protocol, list, {2}, {3});
    QCOMPARE(list, (List{all[0], all[4]}));
}

void TestSelection::filterOfAnEmptyList()
{
    ProtocolFixture f;
    List list;
    Access::FilterMessages(f.protocol, list, {1}, {2});
    QCOMPARE(list, List());
}

void TestSelection::filterMayRejectEverything()
{
    ProtocolFixture f;
    std::vector<COVMessage> messages = messagesOfSeveralKinds();
    List list = listOf(messages);
    Access::FilterMessages(f.protocol, list, {enums::Adjust}, {});
    QCOMPARE(list, List());
}

void TestSelection::listByKindAndItemType()
{
    ProtocolFixture f;
    std::vector<COVMessage> messages = {
        makeMessage(enums::Adjust, COVMessage::Error, {1, 2}, {kStationItemType, kPointItemType}),
        makeMessage(enums::Adjust, COVMessage::Warning, {1}, {kPointItemType}),
        makeMessage(enums::Adjust, COVMessage::Error, {1}, {kStationItemType}),
        makeMessage(enums::Import, COVMessage::Error, {1, 2}, {kPointItemType, kPointItemType}),
    };
    const List all = listOf(messages);
    List result;
    Access::GetMessageList(f.protocol, all, 0, COVMessage::Error, kPointItemType, result);
    QCOMPARE(result, (List{all[0], all[3]}));
}

void TestSelection::listOfTheGeneralTypeIsByKindAlone()
{
    ProtocolFixture f;
    std::vector<COVMessage> messages = {
        makeMessage(enums::Adjust, COVMessage::Error, {1}, {kPointItemType}),
        makeMessage(enums::Adjust, COVMessage::Message),
        makeMessage(enums::Adjust, COVMessage::Error, {}, {}),
        makeMessage(enums::Adjust, COVMessage::Error),
    };
    const List all = listOf(messages);
    List result;
    Access::GetMessageList(f.protocol, all, 0, COVMessage::Error, kGeneralItemType, result);
    QCOMPARE(result, (List{all[0], all[2], all[3]}));
}

void TestSelection::listSkipsMessagesWithoutItemTypes()
{
    ProtocolFixture f;
    std::vector<COVMessage> messages = {makeMessage(enums::Adjust, COVMessage::Error, {}, {}),
                                        makeMessage(enums::Adjust, COVMessage::Error, {1}, {})};
    List result;
    Access::GetMessageList(f.protocol, listOf(messages), 0, COVMessage::Error, kPointItemType, result);
    QCOMPARE(result, List());
}

void TestSelection::listIgnoresItsSecondArgument()
{
    ProtocolFixture f;
    std::vector<COVMessage> messages = {makeMessage(enums::Adjust, COVMessage::Error)};
    for (const int ignored : {-1, 0, 1, int(enums::Import)}) {
        List result;
        Access::GetMessageList(f.protocol, listOf(messages), ignored, COVMessage::Error, kGeneralItemType,
                               result);
        QCOMPARE(result, listOf(messages));
    }
}

void TestSelection::listIsAppended()
{
    ProtocolFixture f;
    std::vector<COVMessage> messages = {makeMessage(enums::Adjust, COVMessage::Error)};
    COVMessage other = makeMessage(enums::Adjust, COVMessage::Title);
    List result = {&other};
    Access::GetMessageList(f.protocol, listOf(messages), 0, COVMessage::Error, kGeneralItemType, result);
    QCOMPARE(result, (List{&other, &messages[0]}));
}

void TestSelection::groupsByItemId()
{
    ProtocolFixture f;
    std::vector<COVMessage> messages = {makeMessage(enums::Adjust, 3, {7, 3}),
                                        makeMessage(enums::Adjust, 3, {3}),
                                        makeMessage(enums::Adjust, 3, {9, 7, 1})};
    const List all = listOf(messages);
    Groups<LONGID> groups;
    Access::GetMessagesByItemId(f.protocol, all, groups);
    QCOMPARE(groups,
             (Groups<LONGID>{{1, {all[2]}}, {3, {all[0], all[1]}}, {7, {all[0], all[2]}}, {9, {all[2]}}}));
}

void TestSelection::groupsOfIdsAscendBySign()
{
    ProtocolFixture f;
    std::vector<COVMessage> messages = {
        makeMessage(enums::Adjust, 3, {5, static_cast<LONGID>(Q_UINT64_C(0x8000000000000001)), 0, -1})};
    Groups<LONGID> groups;
    Access::GetMessagesByItemId(f.protocol, listOf(messages), groups);
    Ids keys;
    for (const auto& group : groups)
        keys.push_back(group.first);
    QCOMPARE(keys, (Ids{Q_INT64_C(-9223372036854775807), -1, 0, 5}));
}

void TestSelection::messageThatNamesAnItemTwiceIsGroupedOnce()
{
    ProtocolFixture f;
    std::vector<COVMessage> messages = {
        makeMessage(enums::Adjust, 3, {7, 3, 7}, {kPointItemType, kSectionItemType, kPointItemType})};
    Groups<LONGID> byId;
    Access::GetMessagesByItemId(f.protocol, listOf(messages), byId);
    QCOMPARE(byId, (Groups<LONGID>{{3, {&messages[0]}}, {7, {&messages[0]}}}));
    Groups<int> byType;
    Access::GetMessagesByItemType(f.protocol, listOf(messages), byType);
    QCOMPARE(byType, (Groups<int>{{kPointItemType, {&messages[0]}}, {kSectionItemType, {&messages[0]}}}));
}

void TestSelection::messageWithoutItemsIsInNoGroupOfIds()
{
    ProtocolFixture f;
    std::vector<COVMessage> messages = {makeMessage(enums::Adjust, 3, {}, {})};
    Groups<LONGID> byId;
    Access::GetMessagesByItemId(f.protocol, listOf(messages), byId);
    QVERIFY(byId.empty());
    Groups<int> byType;
    Access::GetMessagesByItemType(f.protocol, listOf(messages), byType);
    QVERIFY(byType.empty());
}

void TestSelection::messageOfNoItemIsGroupedUnderZero()
{
    ProtocolFixture f;
    std::vector<COVMessage> messages = {makeMessage(enums::Adjust, 3)};
    Groups<LONGID> groups;
    Access::GetMessagesByItemId(f.protocol, listOf(messages), groups);
    QCOMPARE(groups, (Groups<LONGID>{{0, {&messages[0]}}}));
}

void TestSelection::groupsByItemType()
{
    ProtocolFixture f;
    std::vector<COVMessage> messages = {
        makeMessage(enums::Adjust, 3, {1, 2}, {kSectionItemType, kPointItemType}),
        makeMessage(enums::Adjust, 3, {3}, {kPointItemType}),
        makeMessage(enums::Adjust, 3, {4, 5}, {kStationItemType, kStationItemType}),
        makeMessage(enums::Adjust, 3, {6}, {-4}),
    };
    const List all = listOf(messages);
    Groups<int> groups;
    Access::GetMessagesByItemType(f.protocol, all, groups);
    QCOMPARE(groups, (Groups<int>{{-4, {all[3]}},
                                  {kPointItemType, {all[0], all[1]}},
                                  {kStationItemType, {all[2]}},
                                  {kSectionItemType, {all[0]}}}));
}

void TestSelection::messageOfNoItemIsGroupedUnderTheGeneralType()
{
    ProtocolFixture f;
    std::vector<COVMessage> messages = {makeMessage(enums::Adjust, 3)};
    Groups<int> groups;
    Access::GetMessagesByItemType(f.protocol, listOf(messages), groups);
    QCOMPARE(groups, (Groups<int>{{1710060288, {&messages[0]}}}));
}

void TestSelection::idsAndTypesAreGroupedIndependently()
{
    // Neither needs the other list to match.
    ProtocolFixture f;
    std::vector<COVMessage> messages = {makeMessage(enums::Adjust, 3, {1, 2}, {kPointItemType})};
    Groups<LONGID> byId;
    Access::GetMessagesByItemId(f.protocol, listOf(messages), byId);
    QCOMPARE(byId.size(), std::size_t(2));
    Groups<int> byType;
    Access::GetMessagesByItemType(f.protocol, listOf(messages), byType);
    QCOMPARE(byType.size(), std::size_t(1));
}

void TestSelection::groupsByMessageType()
{
    ProtocolFixture f;
    std::vector<COVMessage> messages = messagesOfSeveralKinds();
    const List all = listOf(messages);
    Groups<int> groups;
    Access::GetMessagesByMessageType(f.protocol, all, groups);
    QCOMPARE(groups,
             (Groups<int>{{0, {all[5]}}, {3, {all[0]}}, {4, {all[2]}}, {5, {all[1], all[3], all[4]}}}));
}

void TestSelection::groupsByStage()
{
    ProtocolFixture f;
    std::vector<COVMessage> messages;
    for (const int stage : {2, 0, 1, 2, -1})
        messages.push_back(makeMessage(enums::Adjust, 5, {0}, {kGeneralItemType}, stage));
    const List all = listOf(messages);
    Groups<int> groups;
    Access::GetMessagesByStage(f.protocol, all, groups);
    QCOMPARE(groups, (Groups<int>{{-1, {all[4]}}, {0, {all[1]}}, {1, {all[2]}}, {2, {all[0], all[3]}}}));
}

void TestSelection::groupsKeepTheOrderOfTheList()
{
    ProtocolFixture f;
    std::vector<COVMessage> messages = {makeMessage(enums::Adjust, 3, {5}),
                                        makeMessage(enums::Adjust, 3, {5}),
                                        makeMessage(enums::Adjust, 3, {5})};
    const List list = {&messages[2], &messages[0], &messages[1]};
    Groups<LONGID> byId;
    Access::GetMessagesByItemId(f.protocol, list, byId);
    QCOMPARE(byId.at(5), list);
    Groups<int> byType;
    Access::GetMessagesByItemType(f.protocol, list, byType);
    QCOMPARE(byType.at(kGeneralItemType), list);
    Groups<int> byKind;
    Access::GetMessagesByMessageType(f.protocol, list, byKind);
    QCOMPARE(byKind.at(3), list);
    Groups<int> byStage;
    Access::GetMessagesByStage(f.protocol, list, byStage);
    QCOMPARE(byStage.at(0), list);
}

void TestSelection::groupingTwiceListsTwice()
{
    ProtocolFixture f;
    std::vector<COVMessage> messages = {makeMessage(enums::Adjust, 3, {5})};
    const List list = listOf(messages);
    const List twice = {&messages[0], &messages[0]};
    Groups<LONGID> byId;
    Groups<int> byType;
    Groups<int> byKind;
    Groups<int> byStage;
    for (int i = 0; i < 2; ++i) {
        Access::GetMessagesByItemId(f.protocol, list, byId);
        Access::GetMessagesByItemType(f.protocol, list, byType);
        Access::GetMessagesByMessageType(f.protocol, list, byKind);
        Access::GetMessagesByStage(f.protocol, list, byStage);
    }
    QCOMPARE(byId, (Groups<LONGID>{{5, twice}}));
    QCOMPARE(byType, (Groups<int>{{kGeneralItemType, twice}}));
    QCOMPARE(byKind, (Groups<int>{{3, twice}}));
    QCOMPARE(byStage, (Groups<int>{{0, twice}}));
}

void TestSelection::groupingLeavesTheMessagesAlone()
{
    ProtocolFixture f;
    std::vector<COVMessage> messages = {
        makeMessage(enums::Adjust, 3, {7, 3, 7}, {kSectionItemType, kPointItemType, kSectionItemType})};
    Groups<LONGID> byId;
    Access::GetMessagesByItemId(f.protocol, listOf(messages), byId);
    Groups<int> byType;
    Access::GetMessagesByItemType(f.protocol, listOf(messages), byType);
    QCOMPARE(messages[0].itemIds, (Ids{7, 3, 7}));
    QCOMPARE(messages[0].itemTypes, (Types{kSectionItemType, kPointItemType, kSectionItemType}));
}

QTEST_GUILESS_MAIN(TestSelection)
#include "tst_selection.moc"
