#include "Orvel/store/COrvel.h"
#include "host/enums/EnumData.h"
#include "host/model/CItemManager.h"
#include "tests/reference/RegExpLinks.h"
#include "tests/support/MessageText.h"
#include "tests/support/OrvelTestAccess.h"
#include "tests/support/ProtocolFixture.h"

#include <QDateTime>
#include <QtTest>

#include <limits>
#include <random>

using Access = OrvelTestAccess;

namespace {

using Ids = std::vector<LONGID>;
using Types = std::vector<int>;

/// An object of an item manager, outside of the tree.
class ManagedItem : public tervo::IItem
{
public:
    ManagedItem(LONGID itemId, qint64 itemType) : id(itemId), type(itemType) {}

    LONGID getId() const override { return id; }
    qint64 getType() const override { return type; }
    QString getName() const override { return QString(); }

private:
    LONGID id;
    qint64 type;
};

/// The message that a raw line becomes.
COVMessage takenIn(COrvel& protocol, const QString& line)
{
    protocol.AddMessageRaw(line, enums::Adjust, COVMessage::Warning);
    return Access::messages(protocol).at(enums::Adjust).back();
}

} // namespace

class TestIntake : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lineBreaksBecomeHtml_data();
    void lineBreaksBecomeHtml();
    void lineIsFiledUnderItsTypeAndKind();
    void everyKindIsAccepted();
    void linesKeepTheOrderOfTheirAddition();
    void textTakesNoMoreRoomThanItNeeds();

    void lineWithoutALinkRefersToNoItem_data();
    void lineWithoutALinkRefersToNoItem();
    void idsOfALine_data();
    void idsOfALine();
    void linkOverALineBreak();
    void linkWithoutAnIdRefersToNothingAtAll();
    void linkWithoutAnIdBesideOneWithAnId();
    void idsAreThoseOfTheRegularExpressions();
    void unfinishedLinksAreScannedOnce();

    void typesAreThoseOfTheModelsItems();
    void typeOfALinkedItemIsTakenOnce();
    void typeOfAManagedItem();
    void typeOfAManagedItemHas32Bits();
    void elementComesBeforeManagedItem();
    void typeOfAnUnknownItemIsGeneral();
    void typeIsGeneralWithoutAnItemManager();
    void typeIsGeneralInAModelWithoutItemManagers();
    void typeOfASystemItem();

    void messageIsCopiedToTheEndOfItsType();

    void closingLines();
    void closingLinesOfATypeWithoutATitle();
    void closingLinesOfAnUnknownType();
    void closingLinesCarryNoStage();
    void closingLinesComeLast();
    void projectNameIsInsertedAsItIs();
    void dateLineIsNow();

    void idListIsRebuiltFromAllTypes();
    void idListHasNoSpareMessages();
    void idListOfAnEmptyStoreIsEmpty();
};

void TestIntake::lineBreaksBecomeHtml_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("text");
    QTest::newRow("none") << "одна строка"
                          << "одна строка";
    QTest::newRow("one") << "две\nстроки"
                         << "две<br>строки";
    QTest::newRow("all") << "\na\n\nb\n"
                         << "<br>a<br><br>b<br>";
    QTest::newRow("carriage return stays") << "a\r\nb\rc"
                                           << "a\r<br>b\rc";
    QTest::newRow("nothing is escaped") << "<b>a & b</b>"
                                        << "<b>a & b</b>";
    QTest::newRow("empty") << ""
                           << "";
}

void TestIntake::lineBreaksBecomeHtml()
{
    QFETCH(QString, line);
    QFETCH(QString, text);
    ProtocolFixture f;
    QCOMPARE(takenIn(f.protocol, line).text, text);
}

void TestIntake::lineIsFiledUnderItsTypeAndKind()
{
    ProtocolFixture f;
    f.protocol.AddMessageRaw(QStringLiteral("line"), enums::Import, COVMessage::Statistics);
    QCOMPARE(describe(Access::messages(f.protocol)),
             QStringList(QStringLiteral("ptype=305510148 mtype=2 stage=0 ids=0 types=1710060288 text=line")));
}

void TestIntake::everyKindIsAccepted()
{
    ProtocolFixture f;
    for (int kind = 0; kind <= 6; ++kind) {
        f.protocol.AddMessageRaw(QStringLiteral("line"), enums::Import,
                                 static_cast<COVMessage::MessageType>(kind));
        QCOMPARE(int(Access::messages(f.protocol).at(enums::Import).back().messageType), kind);
    }
}

void TestIntake::linesKeepTheOrderOfTheirAddition()
{
    ProtocolFixture f;
    f.protocol.AddMessageRaw(QStringLiteral("b"), enums::Import, COVMessage::Message);
    f.protocol.AddMessageRaw(QStringLiteral("x"), enums::Adjust, COVMessage::Message);
    f.protocol.AddMessageRaw(QStringLiteral("a"), enums::Import, COVMessage::Error);
    f.protocol.AddMessageRaw(QStringLiteral("b"), enums::Import, COVMessage::Message);
    QStringList texts;
    for (const COVMessage& message : Access::messages(f.protocol).at(enums::Import))
        texts.append(message.text);
    QCOMPARE(texts, (QStringList{QStringLiteral("b"), QStringLiteral("a"), QStringLiteral("b")}));
}

void TestIntake::textTakesNoMoreRoomThanItNeeds()
{
    ProtocolFixture f;
    const QString text(300, QChar(0x043F));
    const COVMessage message = takenIn(f.protocol, QString::fromStdWString(text.toStdWString()));
    QCOMPARE(message.text, text);
    QCOMPARE(message.text.capacity(), text.size());
}

void TestIntake::lineWithoutALinkRefersToNoItem_data()
{
    QTest::addColumn<QString>("line");
    QTest::newRow("empty") << "";
    QTest::newRow("plain") << "Невязка 3 мм";
    QTest::newRow("id without a link") << "id=5";
    QTest::newRow("upper case") << "<A HREF=\"id=5\">5</A>";
    QTest::newRow("upper-case end") << "<a href=\"id=5\">5</A>";
    QTest::newRow("unfinished") << "<a href=\"id=5\">5";
    QTest::newRow("end only") << "id=5</a>";
}

void TestIntake::lineWithoutALinkRefersToNoItem()
{
    QFETCH(QString, line);
    ProtocolFixture f;
    f.addItem(5, kPointItemType);
    const COVMessage message = takenIn(f.protocol, line);
    QCOMPARE(message.itemIds, Ids{0});
    QCOMPARE(message.itemTypes, Types{1710060288});
    QCOMPARE(message.text, line);
}

void TestIntake::idsOfALine_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("ids");
    QTest::newRow("one") << "<a href=\"survey://locate-item?type=Point&id=5&project=1\">5</a>"
                         << "5";
    QTest::newRow("two links") << "от <a href=\"id=5\">a</a> до <a href=\"id=7\">b</a>"
                               << "5,7";
    QTest::newRow("descending") << "<a href=\"id=7\">b</a><a href=\"id=5\">a</a>"
                                << "7,5";
    QTest::newRow("same item twice") << "<a href=\"id=5\">a</a> <a href=\"id=5\">b</a>"
                                     << "5,5";
    QTest::newRow("two ids in a link") << "<a href=\"x?id=12&subid=13\">a</a>"
                                       << "12,13";
    QTest::newRow("id in the visible text") << "<a href=\"id=1\">id=2</a>"
                                            << "1,2";
    QTest::newRow("id between links") << "<a href=\"id=1\">a</a> id=2 <a href=\"id=3\">b</a>"
                                      << "1,3";
    QTest::newRow("leading zeros") << "<a href=\"id=007\">a</a>"
                                   << "7";
    QTest::newRow("negative is no id") << "<a href=\"id=-7&id=8\">a</a>"
                                       << "8";
    QTest::newRow("zero") << "<a href=\"id=0\">a</a>"
                          << "0";
    QTest::newRow("largest") << "<a href=\"id=9223372036854775807\">a</a>"
                             << "9223372036854775807";
    QTest::newRow("too large") << "<a href=\"id=9223372036854775808\">a</a>"
                               << "0";
    QTest::newRow("far too large") << "<a href=\"id=99999999999999999999999\">a</a>"
                                   << "0";
    QTest::newRow("digits of another script") << "<a href=\"id=1\u0662\">a</a>"
                                              << "0";
    QTest::newRow("nested") << "<a href=\"id=1\"><a href=\"id=2\">a</a> id=3</a>"
                            << "1,2";
    QTest::newRow("upper-case name") << "<a href=\"ID=1&id=2\">a</a>"
                                     << "2";
    QTest::newRow("another element that begins alike") << "<abbr title=\"id=4\"></abbr></a>"
                                                       << "4";
}

void TestIntake::idsOfALine()
{
    QFETCH(QString, line);
    QFETCH(QString, ids);
    ProtocolFixture f;
    const COVMessage message = takenIn(f.protocol, line);
    QStringList found;
    for (const LONGID id : message.itemIds)
        found.append(QString::number(id));
    QCOMPARE(found.join(QLatin1Char(',')), ids);
    QCOMPARE(message.itemTypes, Types(message.itemIds.size(), kGeneralItemType));
    QCOMPARE(message.text, line);
}

void TestIntake::linkOverALineBreak()
{
    ProtocolFixture f;
    const COVMessage message = takenIn(f.protocol, QStringLiteral("<a\nhref=\"id=5\">1\n2</a>"));
    QCOMPARE(message.itemIds, Ids{5});
    QCOMPARE(message.text, QStringLiteral("<a<br>href=\"id=5\">1<br>2</a>"));
    // A number is cut where the line break was.
    QCOMPARE(takenIn(f.protocol, QStringLiteral("<a href=\"id=1\n2\"></a>")).itemIds, Ids{1});
}

void TestIntake::linkWithoutAnIdRefersToNothingAtAll()
{
    ProtocolFixture f;
    const COVMessage message = takenIn(f.protocol, QStringLiteral("<a href=\"help.html\">help</a>"));
    QCOMPARE(message.itemIds, Ids());
    QCOMPARE(message.itemTypes, Types());
}

void TestIntake::linkWithoutAnIdBesideOneWithAnId()
{
    ProtocolFixture f;
    const COVMessage message =
        takenIn(f.protocol, QStringLiteral("<a href=\"help\">?</a> <a href=\"id=4\">4</a>"));
    QCOMPARE(message.itemIds, Ids{4});
    QCOMPARE(message.itemTypes, Types{kGeneralItemType});
}

void TestIntake::idsAreThoseOfTheRegularExpressions()
{
    const QStringList pieces = {
        QStringLiteral("<a "),    QStringLiteral("<a "),
        QStringLiteral("</a>"),   QStringLiteral("</a>"),
        QStringLiteral("</a"),    QStringLiteral("<A"),
        QStringLiteral("id="),    QStringLiteral("id="),
        QStringLiteral("id=17"),  QStringLiteral("4"),
        QStringLiteral("25"),     QStringLiteral("-"),
        QStringLiteral("&"),      QStringLiteral("\n"),
        QStringLiteral("\u0663"), QStringLiteral("9876543210987654321"),
    };
    std::mt19937 engine(19790101);
    std::uniform_int_distribution<int> length(0, 20);
    std::uniform_int_distribution<int> choice(0, static_cast<int>(pieces.size()) - 1);
    const auto makeLine = [&] {
        QString line;
        for (int n = length(engine); n > 0; --n)
            line += pieces[choice(engine)];
        return line;
    };

    ProtocolFixture f;
    int withIds = 0;
    for (int i = 0; i < 30000; ++i) {
        const QString line = makeLine();
        const COVMessage message = takenIn(f.protocol, line);
        const QString text = QString(line).replace(QLatin1Char('\n'), QLatin1String("<br>"));
        const Ids wanted = reference::findAnchors(text).isEmpty() ? Ids{0} : reference::findIds(text);
        QVERIFY2(message.itemIds == wanted && message.itemTypes.size() == wanted.size(),
                 qUtf8Printable(text));
        withIds += !wanted.empty() && wanted != Ids{0} ? 1 : 0;
    }
    // The lines must be worth the comparison.
    QVERIFY(withIds > 2000);
}

void TestIntake::unfinishedLinksAreScannedOnce()
{
    // Where each "<a" is followed to the end of the line, this takes hours instead of milliseconds.
    ProtocolFixture f;
    QCOMPARE(takenIn(f.protocol, QStringLiteral("<a ").repeated(1000000)).itemIds, Ids{0});
}

void TestIntake::typesAreThoseOfTheModelsItems()
{
    ProtocolFixture f;
    f.addItem(5, kPointItemType);
    f.addItem(7, kSectionItemType);
    const COVMessage message = takenIn(
        f.protocol, QStringLiteral("<a href=\"id=7\">b</a> <a href=\"id=6\">?</a> <a href=\"id=5\">a</a>"));
    QCOMPARE(message.itemIds, (Ids{7, 6, 5}));
    QCOMPARE(message.itemTypes, (Types{kSectionItemType, kGeneralItemType, kPointItemType}));
}

void TestIntake::typeOfALinkedItemIsTakenOnce()
{
    ProtocolFixture f;
    f.addItem(5, kPointItemType);
    takenIn(f.protocol, QStringLiteral("<a href=\"id=5\">a</a>"));
    QVERIFY(f.model.removeItem(5));
    QCOMPARE(Access::messages(f.protocol).at(enums::Adjust).front().itemTypes, Types{kPointItemType});
    QCOMPARE(takenIn(f.protocol, QStringLiteral("<a href=\"id=5\">a</a>")).itemTypes,
             Types{kGeneralItemType});
}

void TestIntake::typeOfAManagedItem()
{
    ProtocolFixture f;
    auto manager = std::make_unique<tervo::CItemManager>();
    manager->addItem(std::make_unique<ManagedItem>(31, kStationItemType));
    f.model.setTervoObject(std::move(manager));
    QCOMPARE(Access::GetItemTypeByID(f.protocol, 31), kStationItemType);
    QCOMPARE(Access::GetItemTypeByID(f.protocol, 32), kGeneralItemType);
    QCOMPARE(takenIn(f.protocol, QStringLiteral("<a href=\"id=31\">a</a>")).itemTypes,
             Types{kStationItemType});
}

void TestIntake::typeOfAManagedItemHas32Bits()
{
    ProtocolFixture f;
    auto manager = std::make_unique<tervo::CItemManager>();
    manager->addItem(std::make_unique<ManagedItem>(31, Q_INT64_C(0x776DCD3704)));
    manager->addItem(std::make_unique<ManagedItem>(32, Q_INT64_C(0x1FFFFFFFF)));
    f.model.setTervoObject(std::move(manager));
    QCOMPARE(Access::GetItemTypeByID(f.protocol, 31), 0x6DCD3704);
    QCOMPARE(Access::GetItemTypeByID(f.protocol, 32), -1);
}

void TestIntake::elementComesBeforeManagedItem()
{
    ProtocolFixture f;
    auto manager = std::make_unique<tervo::CItemManager>();
    manager->addItem(std::make_unique<ManagedItem>(31, kStationItemType));
    f.model.setTervoObject(std::move(manager));
    f.addItem(31, kPointItemType);
    QCOMPARE(Access::GetItemTypeByID(f.protocol, 31), kPointItemType);
}

void TestIntake::typeOfAnUnknownItemIsGeneral()
{
    ProtocolFixture f;
    QCOMPARE(Access::GetItemTypeByID(f.protocol, 0), kGeneralItemType);
    QCOMPARE(Access::GetItemTypeByID(f.protocol, 404), kGeneralItemType);
    QCOMPARE(Access::GetItemTypeByID(f.protocol, std::numeric_limits<LONGID>::min()), kGeneralItemType);
}

void TestIntake::typeIsGeneralWithoutAnItemManager()
{
    ProtocolFixture f;
    QCOMPARE(f.model.getTervoObject(), nullptr);
    QCOMPARE(Access::GetItemTypeByID(f.protocol, 31), kGeneralItemType);
}

void TestIntake::typeIsGeneralInAModelWithoutItemManagers()
{
    ProtocolFixture f;
    CProjectModel plainModel(&f.project);
    auto item = std::make_unique<TypedElement>(kPointItemType);
    item->setId(5);
    plainModel.addItem(std::move(item));
    const COrvel protocol(&plainModel, QStringLiteral("survey"));
    QCOMPARE(Access::GetItemTypeByID(protocol, 5), kPointItemType);
    QCOMPARE(Access::GetItemTypeByID(protocol, 6), kGeneralItemType);
}

void TestIntake::typeOfASystemItem()
{
    ProtocolFixture f;
    auto* item = new TypedElement(kForeignItemType);
    item->setId(81);
    f.model.addSystemItem(item, {});
    QCOMPARE(Access::GetItemTypeByID(f.protocol, 81), kForeignItemType);
}

void TestIntake::messageIsCopiedToTheEndOfItsType()
{
    ProtocolFixture f;
    COVMessage message(enums::Import, COVMessage::Error, 5, kPointItemType, QStringLiteral("first"), 4);
    Access::AddMessage(f.protocol, message);
    message.text = QStringLiteral("second");
    Access::AddMessage(f.protocol, message);
    message.protocolType = 7;
    Access::AddMessage(f.protocol, message);
    QCOMPARE(describe(Access::messages(f.protocol)),
             (QStringList{
                 QStringLiteral("ptype=7 mtype=3 stage=4 ids=5 types=1842165504 text=second"),
                 QStringLiteral("ptype=305510148 mtype=3 stage=4 ids=5 types=1842165504 text=first"),
                 QStringLiteral("ptype=305510148 mtype=3 stage=4 ids=5 types=1842165504 text=second"),
             }));
}

void TestIntake::closingLines()
{
    ProtocolFixture f(QStringLiteral("Ход 7"));
    Access::AddTitleInfo(f.protocol, enums::Import);
    QCOMPARE(withoutDates(describe(Access::messages(f.protocol)).join(QLatin1Char('\n'))),
             QStringLiteral("ptype=305510148 mtype=0 stage=0 ids=0 types=1710060288 text=Импорт\n"
                            "ptype=305510148 mtype=1 stage=0 ids=0 types=1710060288 text=DATE\n"
                            "ptype=305510148 mtype=1 stage=0 ids=0 types=1710060288 text=Проект: Ход 7"));
}

void TestIntake::closingLinesOfATypeWithoutATitle()
{
    ProtocolFixture f(QStringLiteral("Ход 7"));
    Access::AddTitleInfo(f.protocol, enums::UndefProtocol);
    QCOMPARE(withoutDates(describe(Access::messages(f.protocol)).join(QLatin1Char('\n'))),
             QStringLiteral("ptype=305510144 mtype=1 stage=0 ids=0 types=1710060288 text=DATE\n"
                            "ptype=305510144 mtype=1 stage=0 ids=0 types=1710060288 text=Проект: Ход 7"));
}

void TestIntake::closingLinesOfAnUnknownType()
{
    ProtocolFixture f;
    Access::AddTitleInfo(f.protocol, 4711);
    QCOMPARE(Access::messages(f.protocol).at(4711).size(), std::size_t(2));

    registerEnumData(EnumData(4712, "Own", "Свой", ""));
    Access::AddTitleInfo(f.protocol, 4712);
    QCOMPARE(Access::messages(f.protocol).at(4712).front().text, QStringLiteral("Свой"));
}

void TestIntake::closingLinesCarryNoStage()
{
    ProtocolFixture f;
    f.protocol.startProtocolStage(QStringLiteral("stage"), enums::Import);
    Access::AddTitleInfo(f.protocol, enums::Adjust);
    for (const COVMessage& message : Access::messages(f.protocol).at(enums::Adjust))
        QCOMPARE(message.stage, 0);
}

void TestIntake::closingLinesComeLast()
{
    ProtocolFixture f;
    f.protocol.AddMessageRaw(QStringLiteral("line"), enums::Adjust, COVMessage::Error);
    Access::AddTitleInfo(f.protocol, enums::Adjust);
    std::vector<int> kinds;
    for (const COVMessage& message : Access::messages(f.protocol).at(enums::Adjust))
        kinds.push_back(message.messageType);
    QCOMPARE(kinds, (std::vector<int>{3, 0, 1, 1}));
}

void TestIntake::projectNameIsInsertedAsItIs()
{
    ProtocolFixture f(QStringLiteral("<b>%1</b> id=5 %2"));
    Access::AddTitleInfo(f.protocol, enums::UndefProtocol);
    const COVMessage& line = Access::messages(f.protocol).at(enums::UndefProtocol).back();
    QCOMPARE(line.text, QStringLiteral("Проект: <b>%1</b> id=5 %2"));
    QCOMPARE(line.itemIds, Ids{0});
}

void TestIntake::dateLineIsNow()
{
    ProtocolFixture f;
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
    Access::AddTitleInfo(f.protocol, enums::UndefProtocol);
    const QDateTime after = QDateTime::currentDateTime();

    const QString text = Access::messages(f.protocol).at(enums::UndefProtocol).front().text;
    QCOMPARE(withoutDates(text), QStringLiteral("DATE"));
    const QDateTime date = QDateTime::fromString(text, QStringLiteral("dd.MM.yyyy hh:mm:ss"));
    QVERIFY2(date >= before && date <= after, qUtf8Printable(text));
}

void TestIntake::idListIsRebuiltFromAllTypes()
{
    ProtocolFixture f;
    Access::idList(f.protocol) = {1000};
    f.addMessages({
        COVMessage(enums::Import, COVMessage::Error, Ids{9, 4, 9}, Types{}, QString(), 0),
        COVMessage(enums::Adjust, COVMessage::Stage, Ids{-3}, Types{}, QString(), 0),
        COVMessage(enums::Adjust, COVMessage::Message, Ids{}, Types{}, QString(), 0),
    });
    f.protocol.UpdateIDList();
    QCOMPARE(Access::idList(f.protocol), (std::set<LONGID>{-3, 4, 9}));

    f.protocol.AddMessageRaw(QStringLiteral("plain"), enums::Export, COVMessage::Message);
    f.protocol.UpdateIDList();
    QCOMPARE(Access::idList(f.protocol), (std::set<LONGID>{-3, 0, 4, 9}));
}

void TestIntake::idListHasNoSpareMessages()
{
    ProtocolFixture f;
    Access::spareMessages(f.protocol)[enums::Import] = {
        COVMessage(enums::Import, COVMessage::Error, 5, kPointItemType, QString(), 0)};
    f.protocol.UpdateIDList();
    QVERIFY(Access::idList(f.protocol).empty());
}

void TestIntake::idListOfAnEmptyStoreIsEmpty()
{
    ProtocolFixture f;
    Access::idList(f.protocol) = {1, 2};
    f.protocol.UpdateIDList();
    QVERIFY(Access::idList(f.protocol).empty());
}

QTEST_GUILESS_MAIN(TestIntake)
#include "tst_intake.moc"
