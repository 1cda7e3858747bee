#include "Orvel/store/COrvel.h"
#include "host/enums/EnumData.h"
#include "host/model/CItemManager.h"
#include "tests/support/OrvelTestAccess.h"
#include "tests/support/ProtocolFixture.h"

#include <QtTest>

#include <functional>
#include <limits>

using Access = OrvelTestAccess;

namespace {

/// The item link for `id`; a word about it when the links for other threads are not the same.
QString itemLink(const COrvel& protocol, LONGID id, const QString& text)
{
    const std::wstring link = protocol.GetItemLink(id, text.toStdWString());
    const std::wstring sameLink = protocol.GetItemLinks()->makeLink(id, text.toStdWString());
    return link == sameLink ? QString::fromStdWString(link)
                            : QStringLiteral("differs: ") + QString::fromStdWString(sameLink);
}

/// What lies in `linkText` where the operation doesn't touch it.
const QString& kUntouched()
{
    static const QString text = QStringLiteral("untouched");
    return text;
}

} // namespace

class TestLinks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itemLinkOfAnElement();
    void itemLinkOfAManagedItem();
    void itemLinkOfAnUnknownItem();
    void itemLinkOfATypeWithoutARecord();
    void modelWithoutAProjectHasAnEmptyName();
    void itemIdIsASignedDecimal_data();
    void itemIdIsASignedDecimal();
    void projectNameIsPercentEncoded_data();
    void projectNameIsPercentEncoded();
    void itemLinkTakesTheTextAsItIs_data();
    void itemLinkTakesTheTextAsItIs();
    void partsOfALinkAreNeverExpandedAgain();
    void takenLinksKnowWhenTheyAreOutOfDate();
    void linksOfAnUnknownManagerCannotBeTaken();

    void elementLinkIsThatOfItsId();
    void elementLinkOfNothingIsTheText();

    void linkInAMessage_data();
    void linkInAMessage();
    void linkForANegativeId();
    void ownLinkIsFoundInAMessage();

    void messageOfAnUnknownKindHasABareStyle();
};

void TestLinks::itemLinkOfAnElement()
{
    ProtocolFixture f(QStringLiteral("line"));
    f.addItem(42, kSectionItemType);
    QCOMPARE(itemLink(f.protocol, 42, QStringLiteral("Р1 – Р2")),
             QStringLiteral("<a href=\"survey://locate-item?type=Section&id=42&project=line\">Р1 – Р2</a>"));
}

void TestLinks::itemLinkOfAManagedItem()
{
    struct Item : tervo::IItem
    {
        LONGID getId() const override { return 9; }
        qint64 getType() const override { return Q_INT64_C(0x16DCD3704); }
        QString getName() const override { return QString(); }
    };
    ProtocolFixture f(QStringLiteral("line"));
    auto manager = std::make_unique<tervo::CItemManager>();
    manager->addItem(std::make_unique<Item>());
    f.model.setTervoObject(std::move(manager));
    QCOMPARE(itemLink(f.protocol, 9, QStringLiteral("1-2")),
             QStringLiteral("<a href=\"survey://locate-item?type=Section&id=9&project=line\">1-2</a>"));
}

void TestLinks::itemLinkOfAnUnknownItem()
{
    ProtocolFixture f(QStringLiteral("line"));
    QCOMPARE(itemLink(f.protocol, 404, QStringLiteral("?")),
             QStringLiteral("<a href=\"survey://locate-item?type=Undefined&id=404&project=line\">?</a>"));
}

void TestLinks::itemLinkOfATypeWithoutARecord()
{
    ProtocolFixture f(QStringLiteral("line"));
    f.addItem(5, 0x11223344);
    QCOMPARE(itemLink(f.protocol, 5, QStringLiteral("x")),
             QStringLiteral("<a href=\"survey://locate-item?type=&id=5&project=line\">x</a>"));
}

void TestLinks::modelWithoutAProjectHasAnEmptyName()
{
    ProtocolFixture f(QStringLiteral("line"));
    CCommonTervoModel model(nullptr);
    COrvel protocol(&model, QStringLiteral("survey"));
    QCOMPARE(itemLink(protocol, 404, QStringLiteral("?")),
             QStringLiteral("<a href=\"survey://locate-item?type=Undefined&id=404&project=\">?</a>"));

    Access::AddTitleInfo(protocol, enums::Import);
    QCOMPARE(Access::messages(protocol).at(enums::Import).back().text, QStringLiteral("Проект: "));
}

void TestLinks::itemIdIsASignedDecimal_data()
{
    QTest::addColumn<LONGID>("id");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << LONGID(0) << "0";
    QTest::newRow("negative") << LONGID(-7) << "-7";
    QTest::newRow("largest") << std::numeric_limits<LONGID>::max() << "9223372036854775807";
    QTest::newRow("above 2^63") << static_cast<LONGID>(Q_UINT64_C(0x8000000000000001))
                                << "-9223372036854775807";
}

void TestLinks::itemIdIsASignedDecimal()
{
    QFETCH(LONGID, id);
    QFETCH(QString, text);
    ProtocolFixture f(QStringLiteral("line"));
    QCOMPARE(itemLink(f.protocol, id, QStringLiteral("x")),
             QStringLiteral("<a href=\"survey://locate-item?type=Undefined&id=") + text +
                 QStringLiteral("&project=line\">x</a>"));
}

void TestLinks::projectNameIsPercentEncoded_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("encoded");
    QTest::newRow("Cyrillic with a blank") << "Проект 1"
                                           << "%D0%9F%D1%80%D0%BE%D0%B5%D0%BA%D1%82%201";
    QTest::newRow("unreserved") << "azAZ09-._~"
                                << "azAZ09-._~";
    QTest::newRow("reserved") << "&=?/#+:@\"'<>!*()"
                              << "%26%3D%3F%2F%23%2B%3A%40%22%27%3C%3E%21%2A%28%29";
    QTest::newRow("percent") << "50%1"
                             << "50%251";
    QTest::newRow("other plane") << "😀"
                                 << "%F0%9F%98%80";
    QTest::newRow("empty") << ""
                           << "";
}

void TestLinks::projectNameIsPercentEncoded()
{
    QFETCH(QString, name);
    QFETCH(QString, encoded);
    ProtocolFixture f(name);
    QCOMPARE(itemLink(f.protocol, 1, QStringLiteral("x")),
             QStringLiteral("<a href=\"survey://locate-item?type=Undefined&id=1&project=") + encoded +
                 QStringLiteral("\">x</a>"));
}

void TestLinks::itemLinkTakesTheTextAsItIs_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << "";
    QTest::newRow("mark-up") << "<b>a & \"b\"</b></a>";
    QTest::newRow("other plane") << "😀 Рп";
    QTest::newRow("placeholders") << "%1 %5 %%2 100%";
    QTest::newRow("line break") << "a\nb";
}

void TestLinks::itemLinkTakesTheTextAsItIs()
{
    QFETCH(QString, text);
    ProtocolFixture f(QStringLiteral("line"));
    QCOMPARE(itemLink(f.protocol, 1, text),
             QStringLiteral("<a href=\"survey://locate-item?type=Undefined&id=1&project=line\">") + text +
                 QStringLiteral("</a>"));
}

void TestLinks::partsOfALinkAreNeverExpandedAgain()
{
    ProtocolFixture f(QStringLiteral("%5"), QStringLiteral("s%2"));
    registerEnumData(EnumData(0x11223355, "T%3%4", "", ""));
    f.addItem(5, 0x11223355);
    QCOMPARE(itemLink(f.protocol, 5, QStringLiteral("%1%5")),
             QStringLiteral("<a href=\"s%2://locate-item?type=T%3%4&id=5&project=%255\">%1%5</a>"));
}

void TestLinks::takenLinksKnowWhenTheyAreOutOfDate()
{
    ProtocolFixture f(QStringLiteral("line"));
    qor::ItemLinksPtr links;
    const auto areCurrentAfter = [&](const std::function<void()>& change) {
        links = f.protocol.GetItemLinks();
        change();
        return links->isCurrent();
    };
    QVERIFY(areCurrentAfter([] {}));
    QVERIFY(areCurrentAfter(
        [&] { f.protocol.AddMessageRaw(QStringLiteral("line"), enums::Adjust, COVMessage::Error); }));
    QVERIFY(!areCurrentAfter([&] { f.addItem(42, kSectionItemType); }));
    QVERIFY(!areCurrentAfter([&] { f.model.findItemAnywhere(42)->setId(43); }));
    QVERIFY(!areCurrentAfter([&] { f.model.removeItem(43); }));
    QVERIFY(!areCurrentAfter([&] { f.project.setName(QStringLiteral("other")); }));
    QVERIFY(!areCurrentAfter([&] { f.model.setTervoObject(std::make_unique<tervo::CItemManager>()); }));
    QVERIFY(!areCurrentAfter([] { registerEnumData(EnumData(0x11223355, "a", "b", "c")); }));
    QVERIFY(!areCurrentAfter([&] {
        const COrvel other(&f.model, QStringLiteral("geodesy"));
        f.protocol = other;
    }));
    QCOMPARE(itemLink(f.protocol, 1, QStringLiteral("x")),
             QStringLiteral("<a href=\"geodesy://locate-item?type=Undefined&id=1&project=other\">x</a>"));
}

void TestLinks::linksOfAnUnknownManagerCannotBeTaken()
{
    struct Manager : tervo::IItemManager
    {
        tervo::IItem* findItem(LONGID /*id*/) const override { return nullptr; }
    };
    ProtocolFixture f(QStringLiteral("line"));
    QVERIFY(f.protocol.GetItemLinks() != nullptr);
    f.model.setTervoObject(std::make_unique<Manager>());
    QVERIFY(f.protocol.GetItemLinks() == nullptr);
}

void TestLinks::elementLinkIsThatOfItsId()
{
    ProtocolFixture f(QStringLiteral("line"));
    CModelElement* element = f.addItem(42, kPointItemType);
    QCOMPARE(f.protocol.GetModelElementLink(element, L"Рп"), f.protocol.GetItemLink(42, L"Рп"));
    QCOMPARE(QString::fromStdWString(f.protocol.GetModelElementLink(element, L"Рп")),
             QStringLiteral("<a href=\"survey://locate-item?type=Point&id=42&project=line\">Рп</a>"));

    // The type is the model's, which does not know this one.
    TypedElement stranger(kPointItemType);
    stranger.setId(43);
    QCOMPARE(QString::fromStdWString(f.protocol.GetModelElementLink(&stranger, L"Рп")),
             QStringLiteral("<a href=\"survey://locate-item?type=Undefined&id=43&project=line\">Рп</a>"));
}

void TestLinks::elementLinkOfNothingIsTheText()
{
    ProtocolFixture f;
    QCOMPARE(f.protocol.GetModelElementLink(nullptr, L"<b>Рп</b>"), std::wstring(L"<b>Рп</b>"));
}

void TestLinks::linkInAMessage_data()
{
    const QString& untouched = kUntouched();
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("id");
    QTest::addColumn<QString>("link");
    QTest::addColumn<QString>("linkText");

    QTest::newRow("empty") << "" << 5 << "" << untouched;
    QTest::newRow("no link") << "id=5" << 5 << "" << untouched;
    QTest::newRow("whole text") << "<a href=\"id=5\">abc</a>" << 5 << "<a href=\"id=5\">abc</a>"
                                << ">abc";
    QTest::newRow("within a text") << "от <a href=\"id=5\">abc</a> до" << 5 << "<a href=\"id=5\">abc</a>"
                                   << ">abc";
    QTest::newRow("other item") << "<a href=\"id=6\">abc</a>" << 5 << "" << untouched;
    QTest::newRow("second link") << "<a href=\"id=6\">a</a><a href=\"id=5\">b</a>" << 5
                                 << "<a href=\"id=5\">b</a>"
                                 << ">b";
    QTest::newRow("first of two") << "<a href=\"id=5\">a</a> <a href=\"id=5\">b</a>" << 5
                                  << "<a href=\"id=5\">a</a>"
                                  << ">a";
    QTest::newRow("id that begins alike")
        << "<a href=\"id=123\">a</a> <a href=\"id=12\">b</a>" << 12 << "<a href=\"id=123\">a</a>"
        << ">a";
    QTest::newRow("id at the end of a longer name")
        << "<a href=\"uid=5\">a</a>" << 5 << "<a href=\"uid=5\">a</a>"
        << ">a";
    QTest::newRow("id in the visible text") << "<a href=\"#\">id=5</a>" << 5 << "<a href=\"#\">id=5</a>"
                                            << ">id=5";
    QTest::newRow("upper-case needle") << "<a href=\"ID=5\">a</a>" << 5 << "" << untouched;
    QTest::newRow("upper-case link") << "<A HREF=\"id=5\">a</A>" << 5 << "" << untouched;
    QTest::newRow("unfinished") << "<a href=\"id=5\">a" << 5 << "" << untouched;
    QTest::newRow("no visible text") << "<a href=\"id=5\"></a>" << 5 << "<a href=\"id=5\"></a>"
                                     << ">";
    QTest::newRow("bracket in the visible text")
        << "<a href=\"id=5\">a > b</a>" << 5 << "<a href=\"id=5\">a > b</a>"
        << "> b";
    QTest::newRow("mark-up in the visible text")
        << "<a href=\"id=5\">a<b>c</b></a>" << 5 << "<a href=\"id=5\">a<b>c</b></a>"
        << ">";
    QTest::newRow("no end of the opening tag") << "<a id=5</a>" << 5 << "<a id=5</a>" << untouched;
    QTest::newRow("nested") << "<a href=\"id=1\">x<a href=\"id=5\">y</a>z</a>" << 5
                            << "<a href=\"id=1\">x<a href=\"id=5\">y</a>"
                            << ">y";
    QTest::newRow("over line breaks") << "<a\nhref=\"id=5\">a\nb</a>" << 5 << "<a\nhref=\"id=5\">a\nb</a>"
                                      << ">a\nb";
    QTest::newRow("placeholders") << "<a href=\"id=5\">%1</a>" << 5 << "<a href=\"id=5\">%1</a>"
                                  << ">%1";
}

void TestLinks::linkInAMessage()
{
    QFETCH(QString, text);
    QFETCH(int, id);
    QFETCH(QString, link);
    QFETCH(QString, linkText);
    QString foundText = kUntouched();
    const QString found = COrvel::GetMessageItemLink(text, id, foundText);
    QCOMPARE(found, link);
    QCOMPARE(found.isNull(), link.isEmpty());
    QCOMPARE(foundText, linkText);
}

void TestLinks::linkForANegativeId()
{
    QString linkText;
    QCOMPARE(COrvel::GetMessageItemLink(QStringLiteral("<a href=\"id=7\">a</a><a href=\"id=-7\">b</a>"), -7,
                                        linkText),
             QStringLiteral("<a href=\"id=-7\">b</a>"));
    QCOMPARE(linkText, QStringLiteral(">b"));
}

void TestLinks::ownLinkIsFoundInAMessage()
{
    ProtocolFixture f;
    f.addItem(42, kPointItemType);
    const QString link = itemLink(f.protocol, 42, QStringLiteral("abc"));
    QString linkText;
    QCOMPARE(COrvel::GetMessageItemLink(QStringLiteral("Невязка в ") + link, 42, linkText), link);
    QCOMPARE(linkText, QStringLiteral(">abc"));
    QCOMPARE(linkText.size(), 4);
}

void TestLinks::messageOfAnUnknownKindHasABareStyle()
{
    ProtocolFixture f;
    COVMessage message(enums::Adjust, 99, 0, kGeneralItemType, QStringLiteral("line"), 0);
    QCOMPARE(COrvel::GetMessageStyleClass(message), QString());
    QString html;
    Access::GetHtmlList(f.protocol, {&message}, html);
    QVERIFY2(html.contains(QStringLiteral("\n<div class=\"Content \">line</div>\n")), qUtf8Printable(html));
}

QTEST_GUILESS_MAIN(TestLinks)
#include "tst_links.moc"
