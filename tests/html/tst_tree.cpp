#include "Orvel/store/COrvel.h"
#include "tests/support/OrvelTestAccess.h"
#include "tests/support/ProtocolFixture.h"

#include <QtTest>

using Access = OrvelTestAccess;

namespace {

using Ids = std::vector<LONGID>;
using Types = std::vector<int>;

COVMessage makeMessage(int kind, const QString& text, const Ids& ids = {0},
                       const Types& types = {kGeneralItemType})
{
    return COVMessage(enums::Adjust, kind, ids, types, text, 0);
}

COrvel::MessageList listOf(std::vector<COVMessage>& messages)
{
    COrvel::MessageList list;
    for (COVMessage& message : messages)
        list.push_back(&message);
    return list;
}

/// The grouped blocks of the messages.
QString grouped(std::vector<COVMessage> messages, bool asRoot = true)
{
    ProtocolFixture f;
    QString html;
    if (!Access::GetHtmlGroupedData(f.protocol, listOf(messages), html, asRoot))
        return QStringLiteral("false");
    return html;
}

/// The leaf list of the messages.
QString leaves(std::vector<COVMessage> messages)
{
    ProtocolFixture f;
    QString html;
    Access::GetHtmlList(f.protocol, listOf(messages), html);
    return html;
}

/// A link whose visible text says which one it is.
QString link(int id, const QString& text)
{
    return QStringLiteral("<a href=\"id=%1\">%2</a>").arg(QString::number(id), text);
}

/// A problem with the link of a point.
COVMessage pointError(int id, const QString& text)
{
    return makeMessage(COVMessage::Error, link(id, text), {id}, {kPointItemType});
}

/// The problem block of one item-type node, given what stands inside that node's list of children.
QString problemBlock(int problems, const QString& groupCaption, const QString& children)
{
    return QStringLiteral("<div class='errorblock'>\n"
                          "<ul class=\"Container\">\n"
                          "<li class=\"IsRoot IsLast ExpandOpen\">\n"
                          "<div class=\"Expand\"></div>\n"
                          "<div class=\"Content\">Ошибки и предупреждения (") +
           QString::number(problems) +
           QStringLiteral(")</div>\n"
                          "<ul class=\"Container\">\n"
                          "<li class=\"Node ExpandOpen\">\n"
                          "<div class=\"Expand\"></div>\n"
                          "<div class=\"Content\">") +
           groupCaption +
           QStringLiteral("</div>\n"
                          "<ul class=\"Container\">\n") +
           children +
           QStringLiteral("</ul>\n"
                          "</li>\n"
                          "</ul>\n"
                          "</li>\n"
                          "</ul>\n"
                          "</div>\n");
}

/// The per-item node of messages that are all errors.
QString itemNode(const QString& caption, const QStringList& texts)
{
    QString html = QStringLiteral("<li class=\"Node ExpandClosed\">\n"
                                  "<div class=\"Expand\"></div>\n"
                                  "<div class=\"Content\">") +
                   caption + QStringLiteral(" (%1)</div>\n<ul class=\"Container\">\n").arg(texts.size());
    for (const QString& text : texts)
        html += QStringLiteral("<li class=\"Node ExpandLeaf IsLast\">\n"
                               "<div class=\"Expand\"></div>\n"
                               "<div class=\"Content error\">") +
                text + QStringLiteral("</div>\n</li>\n");
    return html + QStringLiteral("</ul>\n</li>\n");
}

} // namespace

class TestTree : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void leafListOfNothing();
    void leafListShowsWhateverItIsGiven();
    void leafListIsAppended();
    void leafOfAStageHeadingHasNoStyle();

    void groupedDataOfNothing();
    void groupedDataOfOtherKindsWritesNothing();
    void groupedDataIsAppended();
    void problemsAreGroupedByItemType();
    void topNodeInsideAStage();
    void messagesAreOneFlatBlock();
    void problemsComeBeforeMessages();
    void errorsComeBeforeWarnings();
    void problemWithoutAGroupIsCountedOnly();
    void messageOfSeveralItemTypesIsInEachGroup();
    void messageWithoutItemsIsInNoGroup();

    void pointsHaveANodeEach();
    void sectionsHaveANodeEach();
    void itemNodesAreOrderedByCaption();
    void itemNodesAreOrderedByCodeUnits();
    void equalCaptionsAreAllKept();
    void itemWithoutALinkHasAnEmptyCaption();
    void captionIsThatOfTheFirstMessage();
    void itemNamedUnderAnotherTypeFirstIsLeftOut();
    void itemOfTwoTypesBelongsToTheFirst();
    void itemsOfListsThatDifferAreLeftOut();
    void messageNamingAnItemTwiceIsShownOnce();
    void textsAreInsertedAsTheyAre();
};

void TestTree::leafListOfNothing()
{
    ProtocolFixture f;
    QString html = QStringLiteral("before");
    QVERIFY(!Access::GetHtmlList(f.protocol, {}, html));
    QCOMPARE(html, QStringLiteral("before"));
}

void TestTree::leafListShowsWhateverItIsGiven()
{
    std::vector<COVMessage> messages;
    for (int kind = 0; kind <= 5; ++kind)
        messages.push_back(makeMessage(kind, QStringLiteral("line %1").arg(kind)));
    QCOMPARE(leaves(messages), QStringLiteral(R"(<ul class="Container">
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content title">line 0</div>
</li>
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content service">line 1</div>
</li>
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content statistics">line 2</div>
</li>
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content error">line 3</div>
</li>
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content warning">line 4</div>
</li>
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content message">line 5</div>
</li>
</ul>
)"));
}

void TestTree::leafListIsAppended()
{
    COVMessage message = makeMessage(COVMessage::Error, QStringLiteral("line"));
    const QString wanted = QStringLiteral("before\n") + leaves({message});
    ProtocolFixture f;
    QString html = QStringLiteral("before\n");
    QVERIFY(Access::GetHtmlList(f.protocol, {&message}, html));
    QCOMPARE(html, wanted);
}

void TestTree::leafOfAStageHeadingHasNoStyle()
{
    QCOMPARE(leaves({makeMessage(COVMessage::Stage, QStringLiteral("Этап"))}),
             QStringLiteral("<ul class=\"Container\">\n"
                            "<li class=\"Node ExpandLeaf IsLast\">\n"
                            "<div class=\"Expand\"></div>\n"
                            "<div class=\"Content \">Этап</div>\n"
                            "</li>\n"
                            "</ul>\n"));
}

void TestTree::groupedDataOfNothing()
{
    ProtocolFixture f;
    QString html = QStringLiteral("before");
    QVERIFY(Access::GetHtmlGroupedData(f.protocol, {}, html, true));
    QCOMPARE(html, QStringLiteral("before"));
}

void TestTree::groupedDataOfOtherKindsWritesNothing()
{
    std::vector<COVMessage> messages;
    for (const int kind : {COVMessage::Title, COVMessage::Service, COVMessage::Statistics, COVMessage::Stage})
        messages.push_back(makeMessage(kind, QStringLiteral("line")));
    QCOMPARE(grouped(messages), QString());
}

void TestTree::groupedDataIsAppended()
{
    COVMessage message = makeMessage(COVMessage::Message, QStringLiteral("line"));
    const QString wanted = QStringLiteral("before\n") + grouped({message});
    ProtocolFixture f;
    QString html = QStringLiteral("before\n");
    QVERIFY(Access::GetHtmlGroupedData(f.protocol, {&message}, html, true));
    QCOMPARE(html, wanted);
}

void TestTree::problemsAreGroupedByItemType()
{
    QCOMPARE(grouped({
                 makeMessage(COVMessage::Error, QStringLiteral("station"), {7}, {kStationItemType}),
                 makeMessage(COVMessage::Warning, QStringLiteral("general")),
                 makeMessage(COVMessage::Error, link(5, QStringLiteral("Рп5")), {5}, {kPointItemType}),
                 makeMessage(COVMessage::Warning, QStringLiteral("station too"), {8}, {kStationItemType}),
             }),
             QStringLiteral(R"(<div class='errorblock'>
<ul class="Container">
<li class="IsRoot IsLast ExpandOpen">
<div class="Expand"></div>
<div class="Content">Ошибки и предупреждения (4)</div>
<ul class="Container">
<li class="Node ExpandOpen">
<div class="Expand"></div>
<div class="Content">Общие (1)</div>
<ul class="Container">
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content warning">general</div>
</li>
</ul>
</li>
<li class="Node ExpandOpen">
<div class="Expand"></div>
<div class="Content">Пункты (1)</div>
<ul class="Container">
<li class="Node ExpandClosed">
<div class="Expand"></div>
<div class="Content"><a href="id=5">Рп5</a> (1)</div>
<ul class="Container">
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content error"><a href="id=5">Рп5</a></div>
</li>
</ul>
</li>
</ul>
</li>
<li class="Node ExpandOpen">
<div class="Expand"></div>
<div class="Content">Станции (2)</div>
<ul class="Container">
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content error">station</div>
</li>
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content warning">station too</div>
</li>
</ul>
</li>
</ul>
</li>
</ul>
</div>
)"));
}

void TestTree::topNodeInsideAStage()
{
    QCOMPARE(grouped({makeMessage(COVMessage::Error, QStringLiteral("bad")),
                      makeMessage(COVMessage::Message, QStringLiteral("good"))},
                     false),
             QStringLiteral(R"(<div class='errorblock'>
<ul class="Container">
<li class="Node IsLast ExpandOpen">
<div class="Expand"></div>
<div class="Content">Ошибки и предупреждения (1)</div>
<ul class="Container">
<li class="Node ExpandOpen">
<div class="Expand"></div>
<div class="Content">Общие (1)</div>
<ul class="Container">
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content error">bad</div>
</li>
</ul>
</li>
</ul>
</li>
</ul>
</div>
<div class='messageblock'>
<ul class="Container">
<li class="Node IsLast ExpandOpen">
<div class="Expand"></div>
<div class="Content">Сообщения (1)</div>
<ul class="Container">
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content message">good</div>
</li>
</ul>
</li>
</ul>
</div>
)"));
}

void TestTree::messagesAreOneFlatBlock()
{
    QCOMPARE(grouped({
                 makeMessage(COVMessage::Message, QStringLiteral("b"), {5}, {kPointItemType}),
                 makeMessage(COVMessage::Title, QStringLiteral("no")),
                 makeMessage(COVMessage::Message, QStringLiteral("a"), {}, {}),
             }),
             QStringLiteral(R"(<div class='messageblock'>
<ul class="Container">
<li class="IsRoot IsLast ExpandOpen">
<div class="Expand"></div>
<div class="Content">Сообщения (2)</div>
<ul class="Container">
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content message">b</div>
</li>
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content message">a</div>
</li>
</ul>
</li>
</ul>
</div>
)"));
}

void TestTree::problemsComeBeforeMessages()
{
    const COVMessage error = makeMessage(COVMessage::Error, QStringLiteral("bad"));
    const COVMessage message = makeMessage(COVMessage::Message, QStringLiteral("good"));
    QCOMPARE(grouped({message, error}), grouped({error}) + grouped({message}));
}

void TestTree::errorsComeBeforeWarnings()
{
    const COVMessage warning1 = makeMessage(COVMessage::Warning, QStringLiteral("w1"));
    const COVMessage warning2 = makeMessage(COVMessage::Warning, QStringLiteral("w2"));
    const COVMessage error1 = makeMessage(COVMessage::Error, QStringLiteral("e1"));
    const COVMessage error2 = makeMessage(COVMessage::Error, QStringLiteral("e2"));
    const QString html = grouped({warning1, error1, warning2, error2});
    QVERIFY2(html.contains(leaves({error1, error2, warning1, warning2})), qUtf8Printable(html));
}

void TestTree::problemWithoutAGroupIsCountedOnly()
{
    const QString wanted = QStringLiteral("<div class='errorblock'>\n"
                                          "<ul class=\"Container\">\n"
                                          "<li class=\"IsRoot IsLast ExpandOpen\">\n"
                                          "<div class=\"Expand\"></div>\n"
                                          "<div class=\"Content\">Ошибки и предупреждения (1)</div>\n"
                                          "<ul class=\"Container\">\n"
                                          "</ul>\n"
                                          "</li>\n"
                                          "</ul>\n"
                                          "</div>\n");
    QCOMPARE(grouped({makeMessage(COVMessage::Error, QStringLiteral("x"), {5}, {kForeignItemType})}), wanted);
    // Its record has no text for a heading.
    QCOMPARE(grouped({makeMessage(COVMessage::Error, QStringLiteral("x"), {5}, {kInstrumentItemType})}),
             wanted);
}

void TestTree::messageOfSeveralItemTypesIsInEachGroup()
{
    QCOMPARE(grouped({makeMessage(COVMessage::Error, QStringLiteral("x"), {7, 8, 9},
                                  {kStationItemType, kLineItemType, kForeignItemType})}),
             QStringLiteral(R"(<div class='errorblock'>
<ul class="Container">
<li class="IsRoot IsLast ExpandOpen">
<div class="Expand"></div>
<div class="Content">Ошибки и предупреждения (1)</div>
<ul class="Container">
<li class="Node ExpandOpen">
<div class="Expand"></div>
<div class="Content">Станции (1)</div>
<ul class="Container">
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content error">x</div>
</li>
</ul>
</li>
<li class="Node ExpandOpen">
<div class="Expand"></div>
<div class="Content">Ходы (1)</div>
<ul class="Container">
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content error">x</div>
</li>
</ul>
</li>
</ul>
</li>
</ul>
</div>
)"));
}

void TestTree::messageWithoutItemsIsInNoGroup()
{
    QCOMPARE(grouped({makeMessage(COVMessage::Error, QStringLiteral("x"), {}, {}),
                      makeMessage(COVMessage::Error, QStringLiteral("y"), {7}, {kStationItemType})}),
             problemBlock(2, QStringLiteral("Станции (1)"),
                          QStringLiteral("<li class=\"Node ExpandLeaf IsLast\">\n"
                                         "<div class=\"Expand\"></div>\n"
                                         "<div class=\"Content error\">y</div>\n"
                                         "</li>\n")));
}

void TestTree::pointsHaveANodeEach()
{
    const QString five = link(5, QStringLiteral("Рп5"));
    const QString six = link(6, QStringLiteral("Рп6"));
    const QString both = five + QStringLiteral(" - ") + six;
    QCOMPARE(grouped({
                 makeMessage(COVMessage::Error, five, {5}, {kPointItemType}),
                 makeMessage(COVMessage::Error, both, {5, 6}, {kPointItemType, kPointItemType}),
                 makeMessage(COVMessage::Error, six, {6}, {kPointItemType}),
             }),
             problemBlock(3, QStringLiteral("Пункты (3)"),
                          itemNode(five, {five, both}) + itemNode(six, {both, six})));
}

void TestTree::sectionsHaveANodeEach()
{
    const QString text = link(5, QStringLiteral("Ст5"));
    QCOMPARE(grouped({makeMessage(COVMessage::Error, text, {5}, {kSectionItemType})}),
             problemBlock(1, QStringLiteral("Секции (1)"), itemNode(text, {text})));
}

void TestTree::itemNodesAreOrderedByCaption()
{
    const QString ten = link(10, QStringLiteral("a"));
    const QString nine = link(9, QStringLiteral("b"));
    const QString eleven = link(11, QStringLiteral("c"));
    // As texts, not by their numbers.
    QCOMPARE(grouped({pointError(9, QStringLiteral("b")), pointError(11, QStringLiteral("c")),
                      pointError(10, QStringLiteral("a"))}),
             problemBlock(3, QStringLiteral("Пункты (3)"),
                          itemNode(ten, {ten}) + itemNode(eleven, {eleven}) + itemNode(nine, {nine})));
}

void TestTree::itemNodesAreOrderedByCodeUnits()
{
    const auto withText = [](LONGID id, const QString& text) {
        // All their links begin alike, so that the visible texts decide.
        return makeMessage(COVMessage::Error,
                           QStringLiteral("<a href=\"#\" id=\"\">%1 id=%2</a>").arg(text).arg(id), {id},
                           {kPointItemType});
    };
    const std::vector<COVMessage> messages = {
        withText(1, QStringLiteral("б")), withText(2, QStringLiteral("Я")), withText(3, QStringLiteral("ё")),
        withText(4, QStringLiteral("Ё")), withText(5, QStringLiteral("b")), withText(6, QStringLiteral("Z"))};
    QString nodes;
    for (const std::size_t i : {5U, 4U, 3U, 1U, 0U, 2U})
        nodes += itemNode(messages[i].text, {messages[i].text});
    QCOMPARE(grouped(messages), problemBlock(6, QStringLiteral("Пункты (6)"), nodes));
}

void TestTree::equalCaptionsAreAllKept()
{
    // The link of 12 is found in that to 123 as well: both items get the same caption.
    const QString text = link(123, QStringLiteral("Рп"));
    const QString more = text + QStringLiteral(" снова");
    QCOMPARE(grouped({
                 makeMessage(COVMessage::Error, more, {123}, {kPointItemType}),
                 makeMessage(COVMessage::Error, text, {12}, {kPointItemType}),
             }),
             problemBlock(2, QStringLiteral("Пункты (2)"), itemNode(text, {text}) + itemNode(text, {more})));
}

void TestTree::itemWithoutALinkHasAnEmptyCaption()
{
    const QString five = link(5, QStringLiteral("Рп5"));
    const QString bare = QStringLiteral("id=6");
    QCOMPARE(
        grouped({makeMessage(COVMessage::Error, five, {5}, {kPointItemType}),
                 makeMessage(COVMessage::Error, bare, {6}, {kPointItemType})}),
        problemBlock(2, QStringLiteral("Пункты (2)"), itemNode(QString(), {bare}) + itemNode(five, {five})));
}

void TestTree::captionIsThatOfTheFirstMessage()
{
    // Errors come first, so the error's link it is.
    const QString old = link(5, QStringLiteral("old name"));
    const QString now = link(5, QStringLiteral("new name"));
    const QString html = grouped({makeMessage(COVMessage::Warning, old, {5}, {kPointItemType}),
                                  makeMessage(COVMessage::Error, now, {5}, {kPointItemType})});
    QVERIFY2(html.contains(QStringLiteral("<div class=\"Content\">") + now + QStringLiteral(" (2)</div>\n")),
             qUtf8Printable(html));
}

void TestTree::itemNamedUnderAnotherTypeFirstIsLeftOut()
{
    const QString six = link(6, QStringLiteral("Рп6"));
    const QString text = link(5, QStringLiteral("Секция")) + six;
    const QString later = link(5, QStringLiteral("Рп5"));
    // The group of points holds both messages, yet 5 was a section in the first of them.
    QCOMPARE(grouped({
                 makeMessage(COVMessage::Error, text, {5, 6}, {kForeignItemType, kPointItemType}),
                 makeMessage(COVMessage::Error, later, {5}, {kPointItemType}),
             }),
             problemBlock(2, QStringLiteral("Пункты (2)"), itemNode(six, {text})));
}

void TestTree::itemOfTwoTypesBelongsToTheFirst()
{
    const QString text = link(5, QStringLiteral("x"));
    const QString html =
        grouped({makeMessage(COVMessage::Error, text, {5, 5}, {kSectionItemType, kPointItemType})});
    QCOMPARE(html, QStringLiteral(R"(<div class='errorblock'>
<ul class="Container">
<li class="IsRoot IsLast ExpandOpen">
<div class="Expand"></div>
<div class="Content">Ошибки и предупреждения (1)</div>
<ul class="Container">
<li class="Node ExpandOpen">
<div class="Expand"></div>
<div class="Content">Пункты (1)</div>
<ul class="Container">
</ul>
</li>
<li class="Node ExpandOpen">
<div class="Expand"></div>
<div class="Content">Секции (1)</div>
<ul class="Container">
<li class="Node ExpandClosed">
<div class="Expand"></div>
<div class="Content"><a href="id=5">x</a> (1)</div>
<ul class="Container">
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content error"><a href="id=5">x</a></div>
</li>
</ul>
</li>
</ul>
</li>
</ul>
</li>
</ul>
</div>
)"));
}

void TestTree::itemsOfListsThatDifferAreLeftOut()
{
    QCOMPARE(
        grouped({makeMessage(COVMessage::Error, link(5, QStringLiteral("x")), {5, 6}, {kPointItemType})}),
        problemBlock(1, QStringLiteral("Пункты (1)"), QString()));
}

void TestTree::messageNamingAnItemTwiceIsShownOnce()
{
    const QString text = link(5, QStringLiteral("a")) + link(5, QStringLiteral("b"));
    QCOMPARE(grouped({makeMessage(COVMessage::Error, text, {5, 5}, {kPointItemType, kPointItemType})}),
             problemBlock(1, QStringLiteral("Пункты (1)"), itemNode(link(5, QStringLiteral("a")), {text})));
}

void TestTree::textsAreInsertedAsTheyAre()
{
    const QString text = QStringLiteral("%1 (%2) <b>&</b>");
    const QString html = grouped({makeMessage(COVMessage::Message, text)});
    QVERIFY2(
        html.contains(QStringLiteral("<div class=\"Content message\">") + text + QStringLiteral("</div>\n")),
        qUtf8Printable(html));
    QVERIFY2(html.contains(QStringLiteral("<div class=\"Content\">Сообщения (1)</div>\n")),
             qUtf8Printable(html));
}

QTEST_GUILESS_MAIN(TestTree)
#include "tst_tree.moc"
