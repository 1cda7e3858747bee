#include "Orvel/store/COrvel.h"
#include "host/enums/EnumData.h"
#include "tests/support/MessageText.h"
#include "tests/support/OrvelTestAccess.h"
#include "tests/support/ProtocolFixture.h"
#include "tests/support/TestFiles.h"

#include <QtTest>

using Access = OrvelTestAccess;

namespace {

using Ids = std::vector<LONGID>;

COVMessage makeMessage(int protocolType, int kind, const QString& text, const Ids& ids)
{
    return COVMessage(protocolType, kind, ids, std::vector<int>(ids.size(), kPointItemType), text, 0);
}

/// The page's body for the item, from messages in the store; "false" when there is none.
QString body(ProtocolFixture& f, LONGID id)
{
    QString html;
    return Access::GetHtmlItemData(f.protocol, id, html) ? html : QStringLiteral("false") + html;
}

/// The body of a page with the nodes given.
QString wholeBody(const QString& nodes)
{
    return QStringLiteral("<div class='errorblock'>\n"
                          "<ul class=\"Container\">\n"
                          "<li class=\"IsRoot IsLast ExpandOpen\">\n"
                          "<div class=\"Expand\"></div>\n"
                          "<div class=\"Content\">Ошибки и предупреждения</div>\n"
                          "<ul class=\"Container\">\n") +
           nodes +
           QStringLiteral("</ul>\n"
                          "</li>\n"
                          "</ul>\n"
                          "</div>\n");
}

/// The node of a protocol type with leaves that are given as "class|text".
QString node(const QString& title, const QStringList& leaves)
{
    QString html = QStringLiteral("<li class=\"Node ExpandOpen\">\n"
                                  "<div class=\"Expand\"></div>\n"
                                  "<div class=\"Content\">") +
                   title +
                   QStringLiteral("</div>\n"
                                  "<ul class=\"Container\">\n");
    for (const QString& leaf : leaves)
        html += QStringLiteral("<li class=\"Node ExpandLeaf IsLast\">\n"
                               "<div class=\"Expand\"></div>\n"
                               "<div class=\"Content ") +
                leaf.section(QLatin1Char('|'), 0, 0) + QStringLiteral("\">") +
                leaf.section(QLatin1Char('|'), 1) +
                QStringLiteral("</div>\n"
                               "</li>\n");
    return html + QStringLiteral("</ul>\n"
                                 "</li>\n");
}

/// The link to the protocol page of a type, in the project "line".
QString protocolLink(int type, const QString& name)
{
    return QStringLiteral("<a href=\"survey://generate-protocol?id=%1&project=line\">%2</a>")
        .arg(QString::number(type), name);
}

} // namespace

class TestItemPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itemWithoutMessagesHasNoBody();
    void bodyOfOneType();
    void everyKindIsListed();
    void typesAscendWithANodeEach();
    void itemNamedTwiceInAMessageIsListedOnce();
    void otherItemsAreNotListed();
    void messagesOfNoItemAreThoseOfItemZero();
    void itemTypesTakeNoPart();
    void bodyIsAppended();

    void typeWithoutAPageIsLinkedByItsUri();
    void typeWithAPageIsLinkedByItsFile();
    void emptyPagePathCountsAsNone();
    void titleOfATypeWithoutAName();
    void partsOfTheTitleAreNeverExpandedAgain();

    void wholePageInATemplate();
    void pageOfAnUnmentionedItemIsTheBareTemplate();
    void pageShowsTheDataFileAndKeepsIt();
    void pageLinksThePagesWrittenSinceTheRunBegan();
};

void TestItemPage::itemWithoutMessagesHasNoBody()
{
    ProtocolFixture f;
    QCOMPARE(body(f, 5), QStringLiteral("false"));
    f.addMessages({makeMessage(enums::Import, COVMessage::Error, QStringLiteral("x"), {6}),
                   makeMessage(enums::Import, COVMessage::Error, QStringLiteral("x"), {})});
    QCOMPARE(body(f, 5), QStringLiteral("false"));
}

void TestItemPage::bodyOfOneType()
{
    ProtocolFixture f(QStringLiteral("line"));
    f.addMessages({makeMessage(enums::Import, COVMessage::Warning, QStringLiteral("Рп5"), {5})});
    QCOMPARE(body(f, 5), QStringLiteral(R"(<div class='errorblock'>
<ul class="Container">
<li class="IsRoot IsLast ExpandOpen">
<div class="Expand"></div>
<div class="Content">Ошибки и предупреждения</div>
<ul class="Container">
<li class="Node ExpandOpen">
<div class="Expand"></div>
<div class="Content"><a href="survey://generate-protocol?id=305510148&project=line">Импорт</a></div>
<ul class="Container">
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content warning">Рп5</div>
</li>
</ul>
</li>
</ul>
</li>
</ul>
</div>
)"));
}

void TestItemPage::everyKindIsListed()
{
    ProtocolFixture f(QStringLiteral("line"));
    for (int kind = 6; kind >= 0; --kind)
        f.addMessages({makeMessage(enums::Import, kind, QString::number(kind), {5})});
    // In stored order.
    QCOMPARE(body(f, 5),
             wholeBody(node(protocolLink(enums::Import, QStringLiteral("Импорт")),
                            {QStringLiteral("|6"), QStringLiteral("message|5"), QStringLiteral("warning|4"),
                             QStringLiteral("error|3"), QStringLiteral("statistics|2"),
                             QStringLiteral("service|1"), QStringLiteral("title|0")})));
}

void TestItemPage::typesAscendWithANodeEach()
{
    ProtocolFixture f(QStringLiteral("line"));
    f.addMessages({makeMessage(enums::Import, COVMessage::Error, QStringLiteral("i1"), {5}),
                   makeMessage(enums::Adjust, COVMessage::Error, QStringLiteral("a1"), {5}),
                   makeMessage(enums::Export, COVMessage::Error, QStringLiteral("other"), {6}),
                   makeMessage(enums::Import, COVMessage::Error, QStringLiteral("i2"), {5})});
    QCOMPARE(body(f, 5), wholeBody(node(protocolLink(enums::Adjust, QStringLiteral("Уравнивание")),
                                        {QStringLiteral("error|a1")}) +
                                   node(protocolLink(enums::Import, QStringLiteral("Импорт")),
                                        {QStringLiteral("error|i1"), QStringLiteral("error|i2")})));
}

void TestItemPage::itemNamedTwiceInAMessageIsListedOnce()
{
    ProtocolFixture f(QStringLiteral("line"));
    f.addMessages({makeMessage(enums::Import, COVMessage::Error, QStringLiteral("x"), {5, 7, 5})});
    const QString wanted =
        wholeBody(node(protocolLink(enums::Import, QStringLiteral("Импорт")), {QStringLiteral("error|x")}));
    QCOMPARE(body(f, 5), wanted);
    QCOMPARE(body(f, 7), wanted);
}

void TestItemPage::otherItemsAreNotListed()
{
    ProtocolFixture f(QStringLiteral("line"));
    f.addMessages(
        {makeMessage(enums::Import, COVMessage::Error, QStringLiteral("a"), {50}),
         makeMessage(enums::Import, COVMessage::Error, QStringLiteral("<a href=\"id=5\">5</a>"), {}),
         makeMessage(enums::Import, COVMessage::Error, QStringLiteral("b"), {6, 5}),
         makeMessage(enums::Import, COVMessage::Error, QStringLiteral("c"), {-5})});
    QCOMPARE(body(f, 5), wholeBody(node(protocolLink(enums::Import, QStringLiteral("Импорт")),
                                        {QStringLiteral("error|b")})));
}

void TestItemPage::messagesOfNoItemAreThoseOfItemZero()
{
    ProtocolFixture f(QStringLiteral("line"));
    f.protocol.AddMessageRaw(QStringLiteral("plain"), enums::Import, COVMessage::Message);
    f.protocol.AddMessageRaw(QStringLiteral("<a href=\"id=5\">5</a>"), enums::Import, COVMessage::Message);
    QCOMPARE(body(f, 0), wholeBody(node(protocolLink(enums::Import, QStringLiteral("Импорт")),
                                        {QStringLiteral("message|plain")})));
}

void TestItemPage::itemTypesTakeNoPart()
{
    ProtocolFixture f(QStringLiteral("line"));
    COVMessage message = makeMessage(enums::Import, COVMessage::Error, QStringLiteral("x"), {5});
    message.itemTypes.clear();
    f.addMessages({message});
    QCOMPARE(body(f, 5), wholeBody(node(protocolLink(enums::Import, QStringLiteral("Импорт")),
                                        {QStringLiteral("error|x")})));
}

void TestItemPage::bodyIsAppended()
{
    ProtocolFixture f(QStringLiteral("line"));
    f.addMessages({makeMessage(enums::Import, COVMessage::Error, QStringLiteral("x"), {5})});
    QString html = QStringLiteral("before\n");
    QVERIFY(!Access::GetHtmlItemData(f.protocol, 6, html));
    QCOMPARE(html, QStringLiteral("before\n"));
    QVERIFY(Access::GetHtmlItemData(f.protocol, 5, html));
    QCOMPARE(html, QStringLiteral("before\n") + body(f, 5));
}

void TestItemPage::typeWithoutAPageIsLinkedByItsUri()
{
    ProtocolFixture f(QStringLiteral("Проект 1"), QStringLiteral("levels"));
    f.addMessages({makeMessage(enums::Adjust, COVMessage::Error, QStringLiteral("x"), {5})});
    // The page of another type does not count.
    Access::protocolFiles(f.protocol)[enums::Import] = QStringLiteral("/tmp/i.html");
    QCOMPARE(body(f, 5),
             wholeBody(node(QStringLiteral("<a href=\"levels://generate-protocol?id=305510146&project="
                                           "%D0%9F%D1%80%D0%BE%D0%B5%D0%BA%D1%82%201\">Уравнивание</a>"),
                            {QStringLiteral("error|x")})));
}

void TestItemPage::typeWithAPageIsLinkedByItsFile()
{
    ProtocolFixture f;
    f.addMessages({makeMessage(enums::Adjust, COVMessage::Error, QStringLiteral("x"), {5})});
    Access::protocolFiles(f.protocol)[enums::Adjust] = QStringLiteral("/tmp/мои файлы/a & b.html");
    QCOMPARE(body(f, 5),
             wholeBody(node(QStringLiteral("<a href=\"/tmp/мои файлы/a & b.html\">Уравнивание</a>"),
                            {QStringLiteral("error|x")})));
}

void TestItemPage::emptyPagePathCountsAsNone()
{
    ProtocolFixture f(QStringLiteral("line"));
    f.addMessages({makeMessage(enums::Adjust, COVMessage::Error, QStringLiteral("x"), {5})});
    Access::protocolFiles(f.protocol)[enums::Adjust] = QString();
    QCOMPARE(body(f, 5), wholeBody(node(protocolLink(enums::Adjust, QStringLiteral("Уравнивание")),
                                        {QStringLiteral("error|x")})));
}

void TestItemPage::titleOfATypeWithoutAName()
{
    ProtocolFixture f(QStringLiteral("line"));
    f.addMessages({makeMessage(-3, COVMessage::Error, QStringLiteral("x"), {5}),
                   makeMessage(enums::UndefProtocol, COVMessage::Error, QStringLiteral("y"), {5})});
    QCOMPARE(body(f, 5), wholeBody(node(protocolLink(-3, QString()), {QStringLiteral("error|x")}) +
                                   node(protocolLink(0x1235B700, QString()), {QStringLiteral("error|y")})));
}

void TestItemPage::partsOfTheTitleAreNeverExpandedAgain()
{
    constexpr int kOdd = 4713;
    registerEnumData(EnumData(kOdd, "Odd", "%1 %3", ""));
    ProtocolFixture f(QStringLiteral("%4"), QStringLiteral("s%2"));
    f.addMessages({makeMessage(kOdd, COVMessage::Error, QStringLiteral("x"), {5})});
    QCOMPARE(body(f, 5),
             wholeBody(node(QStringLiteral("<a href=\"s%2://generate-protocol?id=4713&project=%254\">"
                                           "%1 %3</a>"),
                            {QStringLiteral("error|x")})));
    Access::protocolFiles(f.protocol)[kOdd] = QStringLiteral("/tmp/%2.html");
    QCOMPARE(body(f, 5), wholeBody(node(QStringLiteral("<a href=\"/tmp/%2.html\">%1 %3</a>"),
                                        {QStringLiteral("error|x")})));
}

void TestItemPage::wholePageInATemplate()
{
    ProtocolFixture f(QStringLiteral("line"));
    f.writeTemplate("<body>\n<div>\n</div>\n</body>\n");
    f.saveMessages({makeMessage(enums::Import, COVMessage::Error, QStringLiteral("x"), {5})});
    QString html = QStringLiteral("old");
    QVERIFY(f.protocol.CreateItemHtml(5, html));
    QCOMPARE(html, QStringLiteral("<body>\n<div>\n") +
                       wholeBody(node(protocolLink(enums::Import, QStringLiteral("Импорт")),
                                      {QStringLiteral("error|x")})) +
                       QStringLiteral("</div>\n</body>\n"));
}

void TestItemPage::pageOfAnUnmentionedItemIsTheBareTemplate()
{
    ProtocolFixture f;
    f.saveMessages({makeMessage(enums::Import, COVMessage::Error, QStringLiteral("x"), {5})});
    QString html = QStringLiteral("old");
    QVERIFY(f.protocol.CreateItemHtml(6, html));
    QCOMPARE(html, QString());

    f.writeTemplate("<body>\n<div>\n</div>\n</body>\n");
    QVERIFY(f.protocol.CreateItemHtml(6, html));
    QCOMPARE(html, QStringLiteral("<body>\n<div>\n</div>\n</body>\n"));
}

void TestItemPage::pageShowsTheDataFileAndKeepsIt()
{
    ProtocolFixture f(QStringLiteral("line"));
    f.saveMessages({makeMessage(enums::Import, COVMessage::Error, QStringLiteral("filed"), {5})});
    const QByteArray data = readFile(Access::dataFilePath(f.protocol));
    f.addMessages({makeMessage(enums::Import, COVMessage::Error, QStringLiteral("in memory only"), {5})});
    QString html;
    QVERIFY(f.protocol.CreateItemHtml(5, html));
    QCOMPARE(html, wholeBody(node(protocolLink(enums::Import, QStringLiteral("Импорт")),
                                  {QStringLiteral("error|filed")})));
    QVERIFY(Access::messages(f.protocol).empty());
    QCOMPARE(readFile(Access::dataFilePath(f.protocol)), data);
    QVERIFY(Access::protocolFiles(f.protocol).empty());
}

void TestItemPage::pageLinksThePagesWrittenSinceTheRunBegan()
{
    ProtocolFixture f(QStringLiteral("line"));
    const QString line = QStringLiteral("<a href=\"id=5\">5</a>");
    const QStringList leaves = {QStringLiteral("error|") + line};
    const auto run = [&f, &line](int type) {
        f.protocol.ProtocolBegin(type);
        f.protocol.AddMessageRaw(line, type, COVMessage::Error);
        f.protocol.ProtocolEnd(type);
    };
    run(enums::Adjust);
    run(enums::Import);
    const QString path = f.tempPath(QStringLiteral("adjust.html"));
    QVERIFY(f.protocol.CreateProtocolFile(enums::Adjust, path));

    const QString importNode = node(protocolLink(enums::Import, QStringLiteral("Импорт")), leaves);
    QString html;
    QVERIFY(f.protocol.CreateItemHtml(5, html));
    QCOMPARE(html, wholeBody(node(QStringLiteral("<a href=\"%1\">Уравнивание</a>").arg(path), leaves) +
                             importNode));

    run(enums::Adjust);
    QVERIFY(f.protocol.CreateItemHtml(5, html));
    QCOMPARE(html, wholeBody(node(protocolLink(enums::Adjust, QStringLiteral("Уравнивание")), leaves) +
                             importNode));
}

QTEST_GUILESS_MAIN(TestItemPage)
#include "tst_itempage.moc"
