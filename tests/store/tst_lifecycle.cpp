#include "Orvel/store/COrvel.h"
#include "host/enums/EnumData.h"
#include "host/files/CFileException.h"
#include "host/files/CQtArchive.h"
#include "tests/support/MessageText.h"
#include "tests/support/OrvelTestAccess.h"
#include "tests/support/ProtocolFixture.h"
#include "tests/support/TestFiles.h"

#include <QBuffer>
#include <QFileInfo>
#include <QtTest>

#include <type_traits>

using Access = OrvelTestAccess;

namespace {

using Paths = std::map<int, QString>;

/// A message without items.
COVMessage makeMessage(int protocolType, const QString& text, int stage = 0)
{
    return COVMessage(protocolType, COVMessage::Message, 0, kGeneralItemType, text, stage);
}

/// How a message of makeMessage() is described.
QString described(int protocolType, const QString& text, int stage = 0)
{
    return describe(makeMessage(protocolType, text, stage));
}

QStringList storedMessages(COrvel& protocol)
{
    return describe(Access::messages(protocol));
}

QByteArray saved(COrvel& protocol)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    CQtArchive archive(&buffer, CQtArchive::Save);
    protocol.serialize(archive);
    return buffer.data();
}

void load(COrvel& protocol, QByteArray data)
{
    QBuffer buffer(&data);
    buffer.open(QIODevice::ReadOnly);
    CQtArchive archive(&buffer, CQtArchive::Load);
    protocol.serialize(archive);
}

/// Code and description of the exception that loading throws; "none" without one.
QString loadFailure(COrvel& protocol, const QByteArray& data)
{
    try {
        load(protocol, data);
    } catch (const qor::CFileException& error) {
        return QStringLiteral("%1:%2")
            .arg(error.getCode())
            .arg(QString::fromStdWString(error.getDescription()));
    }
    return QStringLiteral("none");
}

/// What `write` puts into an archive.
template<typename Write>
QByteArray archived(Write write)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    CQtArchive archive(&buffer, CQtArchive::Save);
    write(archive);
    return buffer.data();
}

/// Gives every field a value of its own.
void fill(ProtocolFixture& f)
{
    f.protocol.setId(77);
    f.protocol.setName(QStringLiteral("Протокол"));
    f.protocol.addReportTypes(enums::Adjust, {1, 2});
    Access::itemGroupNames(f.protocol)[5] = QStringLiteral("Пять");
    Access::dataFilePath(f.protocol) = QStringLiteral("/data.xml");
    f.addMessages({makeMessage(enums::Adjust, QStringLiteral("line"))});
    Access::protocolFiles(f.protocol)[enums::Adjust] = QStringLiteral("/page.html");
    Access::spareMessages(f.protocol)[3].push_back(makeMessage(3, QStringLiteral("spare")));
    Access::idList(f.protocol) = {4, 5};
    Access::templateFileName(f.protocol) = QStringLiteral("other.html");
    Access::currentStage(f.protocol) = 6;
    Access::nextStage(f.protocol) = 7;
}

/// Every field that fill() sets, and the element's own.
QStringList fields(COrvel& protocol)
{
    QStringList lines;
    lines << QString::number(protocol.getId()) << protocol.getName();
    for (const auto& [type, reports] : Access::reportTypes(protocol))
        lines << QStringLiteral("reports %1: %2").arg(type).arg(reports.size());
    for (const auto& [type, heading] : Access::itemGroupNames(protocol))
        lines << QStringLiteral("group %1: %2").arg(type).arg(heading);
    lines << Access::dataFilePath(protocol) << storedMessages(protocol);
    for (const auto& [type, path] : Access::protocolFiles(protocol))
        lines << QStringLiteral("page %1: %2").arg(type).arg(path);
    lines << describe(Access::spareMessages(protocol));
    for (const LONGID id : Access::idList(protocol))
        lines << QStringLiteral("id %1").arg(id);
    lines << Access::templateFileName(protocol) << Access::uriScheme(protocol);
    lines << QStringLiteral("stages %1, %2")
                 .arg(Access::currentStage(protocol))
                 .arg(Access::nextStage(protocol));
    return lines;
}

} // namespace

class TestLifecycle : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void templateFolderIsEmptyAtLoad();

    void aNewProtocolIsEmpty();
    void isAModelElementOfItsType();
    void isUsableThroughEachInterfaceOfAnElement();

    void groupsAreNamedAfterTheItemTypes();
    void initRefreshesTheGroupNames();
    void initDropsMessagesAndPages();

    void copyHasEveryField();
    void assignmentReplacesEveryField();
    void copyOwnsItsMessagesAndSharesTheModel();

    void beginMakesADataFilePath();
    void beginKeepsTheDataFilePath();
    void dataFileIsGoneWhenTheApplicationEnds();
    void beginDropsTheTypesMessagesOnly();
    void beginDropsWhatIsOnlyInMemory();
    void beginWithAnUnreadableFileStartsEmpty();
    void beginDropsTheTypesPageOnly();
    void beginResetsTheStages();

    void endAddsTheClosingLinesAndWritesTheFile();
    void endRebuildsTheIds();
    void endLeavesTheStageOpen();
    void endWithoutBeginKeepsTheMessages();
    void aRunKeepsTheLinesOfOtherTypes();

    void stageHeadingCarriesItsNumber();
    void secondStartIsIgnoredWhileAStageIsOpen();
    void stagesAreNumberedOnThroughARun();
    void lineCarriesTheOpenStage();
    void stagesAreSharedByAllTypes();
    void aNewRunNumbersItsStagesFromOne();
    void finishWithoutAStageDoesNothing();

    void clearDropsMessagesAndPagesOnly();
    void clearByTypeDropsThatTypeOnly();
    void clearKeepsTheMentionedIds();

    void reportTypesAreReplaced();
    void mentionedIdsAreThoseOfTheLastUpdate();

    void savesIdsPagesAndPath();
    void savesNothingOfANewProtocol();
    void loadsWhatWasSaved();
    void loadingReplacesWhatWasThere();
    void loadingKeepsTheFirstOfRepeatedPages();
    void loadsAMillionIds();
    void refusesMoreThanAMillionIds();
    void loadsAHundredPages();
    void refusesMoreThanAHundredPages();
    void loadingATruncatedStateFails();
    void aReloadedProtocolFindsItsMessages();
};

void TestLifecycle::templateFolderIsEmptyAtLoad()
{
    QVERIFY(COrvel::s_sysTemplateProtocolPath.isEmpty());
}

void TestLifecycle::aNewProtocolIsEmpty()
{
    ProtocolFixture f(QStringLiteral("Проект"), QStringLiteral("levels"));
    // What the groups are called has a test of its own.
    Access::itemGroupNames(f.protocol).clear();
    const QString noId = QStringLiteral("0");
    const QString noName;
    const QString noPath;
    QCOMPARE(fields(f.protocol), (QStringList{noId, noName, noPath, QStringLiteral("protocol.html"),
                                              QStringLiteral("levels"), QStringLiteral("stages 0, 1")}));
    QCOMPARE(Access::model(f.protocol), &f.model);
    QCOMPARE(f.protocol.getParent(), nullptr);
}

void TestLifecycle::isAModelElementOfItsType()
{
    ProtocolFixture f;
    const CModelElement& element = f.protocol;
    QCOMPARE(element.getType(), 305487616);
    QCOMPARE(kOrvelItemType, 0x12355F00);
    QVERIFY(std::has_virtual_destructor_v<COrvel>);

    // Found as the host's other modules find it.
    auto* system = new COrvel(&f.model, QStringLiteral("survey"));
    f.model.addSystemItem(system, {});
    QCOMPARE(dynamic_cast<COrvel*>(f.model.getFirstItem(0x12355F00)), system);
}

void TestLifecycle::isUsableThroughEachInterfaceOfAnElement()
{
    struct Observer : IObserver
    {
        void subjectChanged(const ISubject& subject) override { last = &subject; }
        const ISubject* last = nullptr;
    };
    ProtocolFixture f;

    ISubject& subject = f.protocol;
    QCOMPARE(static_cast<void*>(&subject), static_cast<void*>(&f.protocol));
    Observer observer;
    subject.attach(&observer);
    f.protocol.setName(QStringLiteral("Протокол"));
    QCOMPARE(observer.last, &subject);
    subject.detach(&observer);

    f.protocol.setId(12);
    const qor::IIdentifiable& identifiable = f.protocol;
    QCOMPARE(identifiable.getId(), LONGID(12));

    Property::IPropertyHolder& properties = f.protocol;
    QVERIFY(properties.setProperty(7, QStringLiteral("value")));
    QCOMPARE(properties.getProperty(7), QVariant(QStringLiteral("value")));

    const qor::CGuardedPtr<COrvel> guarded(f.owner.get());
    QCOMPARE(guarded.get(), &f.protocol);
    f.owner.reset();
    QVERIFY(!guarded);
}

void TestLifecycle::groupsAreNamedAfterTheItemTypes()
{
    ProtocolFixture f;
    const std::map<int, QString> wanted = {
        {1842165504, QStringLiteral("Пункты")},   {1842165507, QStringLiteral("Станции")},
        {1842165508, QStringLiteral("Секции")},   {1842165512, QStringLiteral("Ходы")},
        {1842165521, QStringLiteral("Полигоны")}, {1842165519, QStringLiteral("Марки")},
        {1842165531, QStringLiteral("Рейки")},    {1842165532, QString()},
        {1710060288, QStringLiteral("Общие")},
    };
    QCOMPARE(Access::itemGroupNames(f.protocol), wanted);
}

void TestLifecycle::initRefreshesTheGroupNames()
{
    ProtocolFixture f;
    Access::itemGroupNames(f.protocol)[kGeneralItemType] = QStringLiteral("?");
    registerEnumData(EnumData(kPointItemType, "Point", "репер", "реперы"));
    QCOMPARE(f.protocol.GetItemGroupName(kPointItemType), QStringLiteral("Пункты"));

    f.protocol.InitProtocol();
    QCOMPARE(f.protocol.GetItemGroupName(kPointItemType), QStringLiteral("Реперы"));
    QCOMPARE(f.protocol.GetItemGroupName(kGeneralItemType), QStringLiteral("Общие"));
}

void TestLifecycle::initDropsMessagesAndPages()
{
    ProtocolFixture f;
    fill(f);
    f.protocol.InitProtocol();
    QVERIFY(Access::messages(f.protocol).empty());
    QVERIFY(Access::protocolFiles(f.protocol).empty());
    QCOMPARE(f.protocol.GetItemGroupName(5), QStringLiteral("Пять"));
    QVERIFY(f.protocol.IsMessages(4));
}

void TestLifecycle::copyHasEveryField()
{
    ProtocolFixture f;
    fill(f);
    COrvel copy(f.protocol);
    QCOMPARE(fields(copy), fields(f.protocol));
    QCOMPARE(copy.getType(), 0x12355F00);
    QCOMPARE(copy.getParent(), nullptr);
}

void TestLifecycle::assignmentReplacesEveryField()
{
    ProtocolFixture f;
    fill(f);
    CProjectModel otherModel(&f.project);
    COrvel target(&otherModel, QStringLiteral("other"));
    Access::reportTypes(target)[enums::Import] = {9};
    Access::idList(target) = {1000};
    target = f.protocol;
    QCOMPARE(fields(target), fields(f.protocol));
    QCOMPARE(Access::model(target), &f.model);
}

void TestLifecycle::copyOwnsItsMessagesAndSharesTheModel()
{
    ProtocolFixture f;
    f.addMessages({makeMessage(enums::Adjust, QStringLiteral("line"))});
    COrvel copy(f.protocol);
    QCOMPARE(Access::model(copy), &f.model);

    Access::messages(copy).at(enums::Adjust).front().text = QStringLiteral("changed");
    copy.AddMessageRaw(QStringLiteral("more"), enums::Adjust, COVMessage::Message);
    QCOMPARE(storedMessages(f.protocol), QStringList(described(enums::Adjust, QStringLiteral("line"))));
    f.protocol.ClearProtocol();
    QCOMPARE(storedMessages(copy), (QStringList{described(enums::Adjust, QStringLiteral("changed")),
                                                described(enums::Adjust, QStringLiteral("more"))}));
}

void TestLifecycle::beginMakesADataFilePath()
{
    ProtocolFixture f;
    f.protocol.ProtocolBegin(enums::Adjust);
    const QFileInfo info(Access::dataFilePath(f.protocol));
    QCOMPARE(info.absolutePath(), Application::getTempFolder());
    const QString name = info.fileName();
    QVERIFY2(QRegularExpression(QStringLiteral("^protocoldata_[^%]+\\.xml$")).match(name).hasMatch(),
             qUtf8Printable(name));
    QVERIFY(!info.exists());
}

void TestLifecycle::beginKeepsTheDataFilePath()
{
    ProtocolFixture f;
    f.protocol.ProtocolBegin(enums::Adjust);
    const QString path = Access::dataFilePath(f.protocol);
    f.protocol.ProtocolEnd(enums::Adjust);
    f.protocol.ProtocolBegin(enums::Import);
    QCOMPARE(Access::dataFilePath(f.protocol), path);
}

void TestLifecycle::dataFileIsGoneWhenTheApplicationEnds()
{
    QString path;
    {
        ProtocolFixture f;
        f.protocol.ProtocolBegin(enums::Adjust);
        f.protocol.ProtocolEnd(enums::Adjust);
        path = Access::dataFilePath(f.protocol);
        QVERIFY(QFile::exists(path));
    }
    QVERIFY(!QFile::exists(path));
}

void TestLifecycle::beginDropsTheTypesMessagesOnly()
{
    ProtocolFixture f;
    f.saveMessages({makeMessage(enums::Compile, QStringLiteral("compiled")),
                    makeMessage(enums::Adjust, QStringLiteral("adjusted")),
                    makeMessage(enums::Import, QStringLiteral("imported"))});
    f.protocol.ProtocolBegin(enums::Adjust);
    QCOMPARE(storedMessages(f.protocol), (QStringList{described(enums::Compile, QStringLiteral("compiled")),
                                                      described(enums::Import, QStringLiteral("imported"))}));
    QCOMPARE(Access::messages(f.protocol).count(enums::Adjust), std::size_t(0));
}

void TestLifecycle::beginDropsWhatIsOnlyInMemory()
{
    ProtocolFixture f;
    f.addMessages({makeMessage(enums::Import, QStringLiteral("never written"))});
    f.protocol.ProtocolBegin(enums::Adjust);
    QVERIFY(Access::messages(f.protocol).empty());
}

void TestLifecycle::beginWithAnUnreadableFileStartsEmpty()
{
    ProtocolFixture f;
    f.saveMessages({makeMessage(enums::Import, QStringLiteral("imported"))});
    writeFile(Access::dataFilePath(f.protocol), "no protocol");
    f.protocol.ProtocolBegin(enums::Adjust);
    QVERIFY(Access::messages(f.protocol).empty());
    QCOMPARE(f.application.getWarnings(), QStringList());
}

void TestLifecycle::beginDropsTheTypesPageOnly()
{
    ProtocolFixture f;
    Access::protocolFiles(f.protocol) = {{enums::Adjust, QStringLiteral("/a.html")},
                                         {enums::Import, QStringLiteral("/i.html")}};
    f.protocol.ProtocolBegin(enums::Adjust);
    QCOMPARE(Access::protocolFiles(f.protocol), (Paths{{enums::Import, QStringLiteral("/i.html")}}));
}

void TestLifecycle::beginResetsTheStages()
{
    ProtocolFixture f;
    Access::currentStage(f.protocol) = 4;
    Access::nextStage(f.protocol) = 5;
    f.protocol.ProtocolBegin(enums::Adjust);
    QCOMPARE(Access::currentStage(f.protocol), 0);
    QCOMPARE(Access::nextStage(f.protocol), 1);
}

void TestLifecycle::endAddsTheClosingLinesAndWritesTheFile()
{
    ProtocolFixture f(QStringLiteral("Ход 7"));
    f.protocol.ProtocolBegin(enums::Adjust);
    f.protocol.AddMessageRaw(QStringLiteral("line"), enums::Adjust, COVMessage::Message);
    f.protocol.ProtocolEnd(enums::Adjust);
    QVERIFY(Access::messages(f.protocol).empty());

    QVERIFY(Access::ReadXML(f.protocol));
    const QString noItem = QStringLiteral("stage=0 ids=0 types=1710060288 text=");
    QCOMPARE(
        withoutDates(storedMessages(f.protocol).join(QLatin1Char('\n'))),
        (QStringList{QStringLiteral("ptype=305510146 mtype=5 ") + noItem + QStringLiteral("line"),
                     QStringLiteral("ptype=305510146 mtype=0 ") + noItem + QStringLiteral("Уравнивание"),
                     QStringLiteral("ptype=305510146 mtype=1 ") + noItem + QStringLiteral("DATE"),
                     QStringLiteral("ptype=305510146 mtype=1 ") + noItem + QStringLiteral("Проект: Ход 7")})
            .join(QLatin1Char('\n')));
}

void TestLifecycle::endRebuildsTheIds()
{
    ProtocolFixture f;
    f.saveMessages({COVMessage(enums::Import, COVMessage::Error, 31, kPointItemType, QString(), 0)});
    Access::idList(f.protocol) = {999};
    f.protocol.ProtocolBegin(enums::Adjust);
    f.protocol.AddMessageRaw(QStringLiteral("<a href=\"id=42\">42</a>"), enums::Adjust, COVMessage::Error);
    f.protocol.ProtocolEnd(enums::Adjust);
    // 0 comes with the closing lines.
    QCOMPARE(Access::idList(f.protocol), (std::set<LONGID>{0, 31, 42}));
}

void TestLifecycle::endLeavesTheStageOpen()
{
    ProtocolFixture f;
    f.protocol.ProtocolBegin(enums::Adjust);
    f.protocol.startProtocolStage(QStringLiteral("Этап"), enums::Adjust);
    f.protocol.ProtocolEnd(enums::Adjust);
    QCOMPARE(Access::currentStage(f.protocol), 1);
    QCOMPARE(Access::nextStage(f.protocol), 2);
}

void TestLifecycle::endWithoutBeginKeepsTheMessages()
{
    ProtocolFixture f(QStringLiteral("Ход 7"));
    f.protocol.ProtocolEnd(enums::UndefProtocol);
    // Without a path there is nowhere to write to.
    const QString noItem = QStringLiteral("ptype=305510144 mtype=1 stage=0 ids=0 types=1710060288 text=");
    QCOMPARE(withoutDates(storedMessages(f.protocol).join(QLatin1Char('\n'))),
             noItem + QStringLiteral("DATE\n") + noItem + QStringLiteral("Проект: Ход 7"));
    QVERIFY(f.protocol.IsMessages(0));
    QCOMPARE(f.application.getWarnings(), QStringList());
}

void TestLifecycle::aRunKeepsTheLinesOfOtherTypes()
{
    ProtocolFixture f;
    for (const int type : {enums::Import, enums::Adjust, enums::Adjust}) {
        f.protocol.ProtocolBegin(type);
        f.protocol.AddMessageRaw(QStringLiteral("line"), type, COVMessage::Message);
        f.protocol.ProtocolEnd(type);
    }
    QVERIFY(Access::ReadXML(f.protocol));
    const Access::MessageStore& store = Access::messages(f.protocol);
    QCOMPARE(store.size(), std::size_t(2));
    // One line and the three closing ones each: the second adjustment replaced the first.
    QCOMPARE(store.at(enums::Import).size(), std::size_t(4));
    QCOMPARE(store.at(enums::Adjust).size(), std::size_t(4));
}

void TestLifecycle::stageHeadingCarriesItsNumber()
{
    ProtocolFixture f;
    f.protocol.startProtocolStage(QStringLiteral("Состав\nсети"), enums::Adjust);
    QCOMPARE(storedMessages(f.protocol),
             QStringList(QStringLiteral("ptype=305510146 mtype=6 stage=1 ids=0 types=1710060288 "
                                        "text=Состав<br>сети")));
    QCOMPARE(Access::currentStage(f.protocol), 1);
    QCOMPARE(Access::nextStage(f.protocol), 2);
}

void TestLifecycle::secondStartIsIgnoredWhileAStageIsOpen()
{
    ProtocolFixture f;
    f.protocol.startProtocolStage(QStringLiteral("first"), enums::Adjust);
    f.protocol.startProtocolStage(QStringLiteral("second"), enums::Adjust);
    QCOMPARE(Access::messages(f.protocol).at(enums::Adjust).size(), std::size_t(1));
    QCOMPARE(Access::currentStage(f.protocol), 1);
    QCOMPARE(Access::nextStage(f.protocol), 2);

    f.protocol.finishProtocolStage();
    f.protocol.startProtocolStage(QStringLiteral("third"), enums::Adjust);
    QCOMPARE(Access::messages(f.protocol).at(enums::Adjust).back().text, QStringLiteral("third"));
    QCOMPARE(Access::messages(f.protocol).at(enums::Adjust).back().stage, 2);
}

void TestLifecycle::stagesAreNumberedOnThroughARun()
{
    ProtocolFixture f;
    f.protocol.ProtocolBegin(enums::Adjust);
    for (int stage = 1; stage <= 3; ++stage) {
        f.protocol.startProtocolStage(QStringLiteral("Этап"), enums::Adjust);
        QCOMPARE(Access::currentStage(f.protocol), stage);
        QCOMPARE(Access::messages(f.protocol).at(enums::Adjust).back().stage, stage);
        f.protocol.finishProtocolStage();
        QCOMPARE(Access::currentStage(f.protocol), 0);
        QCOMPARE(Access::nextStage(f.protocol), stage + 1);
    }
}

void TestLifecycle::lineCarriesTheOpenStage()
{
    ProtocolFixture f;
    f.protocol.AddMessageRaw(QStringLiteral("before"), enums::Adjust, COVMessage::Message);
    f.protocol.startProtocolStage(QStringLiteral("stage"), enums::Adjust);
    f.protocol.AddMessageRaw(QStringLiteral("inside"), enums::Adjust, COVMessage::Message);
    f.protocol.finishProtocolStage();
    f.protocol.AddMessageRaw(QStringLiteral("after"), enums::Adjust, COVMessage::Message);
    const std::vector<COVMessage>& list = Access::messages(f.protocol).at(enums::Adjust);
    std::vector<int> stages;
    stages.reserve(list.size());
    for (const COVMessage& message : list)
        stages.push_back(message.stage);
    QCOMPARE(stages, (std::vector<int>{0, 1, 1, 0}));
}

void TestLifecycle::stagesAreSharedByAllTypes()
{
    ProtocolFixture f;
    f.protocol.startProtocolStage(QStringLiteral("stage"), enums::Adjust);
    f.protocol.AddMessageRaw(QStringLiteral("line"), enums::Import, COVMessage::Message);
    QCOMPARE(Access::messages(f.protocol).at(enums::Import).front().stage, 1);
    f.protocol.startProtocolStage(QStringLiteral("ignored"), enums::Import);
    QCOMPARE(Access::messages(f.protocol).at(enums::Import).size(), std::size_t(1));
}

void TestLifecycle::aNewRunNumbersItsStagesFromOne()
{
    ProtocolFixture f;
    f.protocol.ProtocolBegin(enums::Adjust);
    f.protocol.startProtocolStage(QStringLiteral("old"), enums::Adjust);
    f.protocol.finishProtocolStage();
    f.protocol.startProtocolStage(QStringLiteral("left open"), enums::Adjust);
    f.protocol.ProtocolEnd(enums::Adjust);

    f.protocol.ProtocolBegin(enums::Adjust);
    f.protocol.startProtocolStage(QStringLiteral("new"), enums::Adjust);
    QCOMPARE(storedMessages(f.protocol),
             QStringList(QStringLiteral("ptype=305510146 mtype=6 stage=1 ids=0 types=1710060288 text=new")));
}

void TestLifecycle::finishWithoutAStageDoesNothing()
{
    ProtocolFixture f;
    f.protocol.finishProtocolStage();
    QCOMPARE(Access::currentStage(f.protocol), 0);
    QCOMPARE(Access::nextStage(f.protocol), 1);
}

void TestLifecycle::clearDropsMessagesAndPagesOnly()
{
    ProtocolFixture f;
    fill(f);
    QStringList wanted = fields(f.protocol);
    wanted.removeOne(described(enums::Adjust, QStringLiteral("line")));
    wanted.removeOne(QStringLiteral("page 305510146: /page.html"));

    f.protocol.ClearProtocol();
    QCOMPARE(fields(f.protocol), wanted);
    QVERIFY(Access::messages(f.protocol).empty());
    QVERIFY(Access::protocolFiles(f.protocol).empty());
}

void TestLifecycle::clearByTypeDropsThatTypeOnly()
{
    ProtocolFixture f;
    fill(f);
    f.addMessages({makeMessage(enums::Import, QStringLiteral("imported"))});
    Access::protocolFiles(f.protocol)[enums::Import] = QStringLiteral("/import.html");
    QStringList wanted = fields(f.protocol);
    wanted.removeOne(described(enums::Adjust, QStringLiteral("line")));
    wanted.removeOne(QStringLiteral("page 305510146: /page.html"));

    f.protocol.ClearProtocolByType(enums::Adjust);
    QCOMPARE(fields(f.protocol), wanted);
    QCOMPARE(Access::messages(f.protocol).count(enums::Adjust), std::size_t(0));
    f.protocol.ClearProtocolByType(enums::Export);
    QCOMPARE(fields(f.protocol), wanted);
}

void TestLifecycle::clearKeepsTheMentionedIds()
{
    ProtocolFixture f;
    f.addMessages({COVMessage(enums::Adjust, COVMessage::Error, 31, kPointItemType, QString(), 0)});
    f.protocol.UpdateIDList();
    f.protocol.ClearProtocol();
    QVERIFY(f.protocol.IsMessages(31));
    f.protocol.UpdateIDList();
    QVERIFY(!f.protocol.IsMessages(31));
}

void TestLifecycle::reportTypesAreReplaced()
{
    ProtocolFixture f;
    std::map<int, std::vector<int>>& reports = Access::reportTypes(f.protocol);
    f.protocol.addReportTypes(enums::Adjust, {3, 1, 3});
    f.protocol.addReportTypes(enums::Import, {7});
    QCOMPARE(reports.at(enums::Adjust), (std::vector<int>{3, 1, 3}));
    f.protocol.addReportTypes(enums::Adjust, {5});
    QCOMPARE(reports.at(enums::Adjust), std::vector<int>{5});
    f.protocol.addReportTypes(enums::Adjust, {});
    QCOMPARE(reports.at(enums::Adjust), std::vector<int>());
    QCOMPARE(reports.at(enums::Import), std::vector<int>{7});
}

void TestLifecycle::mentionedIdsAreThoseOfTheLastUpdate()
{
    ProtocolFixture f;
    f.protocol.AddMessageRaw(QStringLiteral("<a href=\"id=5\">5</a>"), enums::Adjust, COVMessage::Error);
    QVERIFY(!f.protocol.IsMessages(5));
    f.protocol.UpdateIDList();
    QVERIFY(f.protocol.IsMessages(5));
    QVERIFY(!f.protocol.IsMessages(0));

    f.protocol.AddMessageRaw(QStringLiteral("plain"), enums::Adjust, COVMessage::Error);
    QVERIFY(!f.protocol.IsMessages(0));
    f.protocol.UpdateIDList();
    QVERIFY(f.protocol.IsMessages(0));
}

void TestLifecycle::savesIdsPagesAndPath()
{
    ProtocolFixture f;
    fill(f);
    Access::idList(f.protocol) = {300, -2, 0};
    Access::protocolFiles(f.protocol) = {{enums::Import, QStringLiteral("/и.html")},
                                         {enums::Compile, QStringLiteral("/c.html")}};
    const QByteArray wanted = archived([](CQtArchive& archive) {
        archive << quint32(3) << LONGID(-2) << LONGID(0) << LONGID(300);
        archive << quint32(2) << int(enums::Compile) << QStringLiteral("/c.html") << int(enums::Import)
                << QStringLiteral("/и.html");
        archive << QStringLiteral("/data.xml");
    });
    QCOMPARE(saved(f.protocol), wanted);
}

void TestLifecycle::savesNothingOfANewProtocol()
{
    ProtocolFixture f;
    const QByteArray wanted =
        archived([](CQtArchive& archive) { archive << quint32(0) << quint32(0) << QString(); });
    QCOMPARE(saved(f.protocol), wanted);
}

void TestLifecycle::loadsWhatWasSaved()
{
    ProtocolFixture f;
    fill(f);
    Access::idList(f.protocol) = {std::numeric_limits<LONGID>::min(), -2, 0,
                                  std::numeric_limits<LONGID>::max()};
    COrvel loaded(&f.model, QStringLiteral("survey"));
    load(loaded, saved(f.protocol));
    QCOMPARE(Access::idList(loaded), Access::idList(f.protocol));
    QCOMPARE(Access::protocolFiles(loaded), Access::protocolFiles(f.protocol));
    QCOMPARE(Access::dataFilePath(loaded), QStringLiteral("/data.xml"));
    // Nothing else is saved, not even what other elements save.
    QCOMPARE(loaded.getId(), LONGID(0));
    QCOMPARE(loaded.getName(), QString());
    QVERIFY(Access::messages(loaded).empty());
    QVERIFY(Access::reportTypes(loaded).empty());
}

void TestLifecycle::loadingReplacesWhatWasThere()
{
    ProtocolFixture f;
    const QByteArray empty = saved(f.protocol);
    fill(f);
    load(f.protocol, empty);
    QVERIFY(Access::idList(f.protocol).empty());
    QVERIFY(Access::protocolFiles(f.protocol).empty());
    QCOMPARE(Access::dataFilePath(f.protocol), QString());
}

void TestLifecycle::loadingKeepsTheFirstOfRepeatedPages()
{
    ProtocolFixture f;
    load(f.protocol, archived([](CQtArchive& archive) {
             archive << quint32(3) << LONGID(8) << LONGID(3) << LONGID(8);
             archive << quint32(3) << 5 << QStringLiteral("first") << 4 << QStringLiteral("other") << 5
                     << QStringLiteral("second");
             archive << QStringLiteral("path");
         }));
    QCOMPARE(Access::idList(f.protocol), (std::set<LONGID>{3, 8}));
    QCOMPARE(Access::protocolFiles(f.protocol),
             (Paths{{4, QStringLiteral("other")}, {5, QStringLiteral("first")}}));
    QCOMPARE(Access::dataFilePath(f.protocol), QStringLiteral("path"));
}

void TestLifecycle::loadsAMillionIds()
{
    ProtocolFixture f;
    QByteArray data = archived([](CQtArchive& archive) {
        archive << quint32(1000000);
        for (LONGID id = 1; id <= 1000000; ++id)
            archive << id;
        archive << quint32(0) << QString();
    });
    load(f.protocol, data);
    QCOMPARE(Access::idList(f.protocol).size(), std::size_t(1000000));
    QVERIFY(f.protocol.IsMessages(1000000));
}

void TestLifecycle::refusesMoreThanAMillionIds()
{
    ProtocolFixture f;
    fill(f);
    const QByteArray data = archived([](CQtArchive& archive) {
        archive << quint32(1000001);
        for (LONGID id = 1; id <= 1000001; ++id)
            archive << id;
        archive << quint32(0) << QString();
    });
    QCOMPARE(loadFailure(f.protocol, data), QStringLiteral("1:"));
    QVERIFY(Access::idList(f.protocol).empty());
    // What comes behind the count is not touched.
    QCOMPARE(Access::protocolFiles(f.protocol).size(), std::size_t(1));
    QCOMPARE(Access::dataFilePath(f.protocol), QStringLiteral("/data.xml"));

    const QByteArray huge = archived([](CQtArchive& archive) { archive << quint32(0xFFFFFFFF); });
    QCOMPARE(loadFailure(f.protocol, huge), QStringLiteral("1:"));
}

void TestLifecycle::loadsAHundredPages()
{
    ProtocolFixture f;
    load(f.protocol, archived([](CQtArchive& archive) {
             archive << quint32(0) << quint32(100);
             for (int type = 1; type <= 100; ++type)
                 archive << type << QStringLiteral("/%1.html").arg(type);
             archive << QString();
         }));
    QCOMPARE(Access::protocolFiles(f.protocol).size(), std::size_t(100));
    QCOMPARE(Access::protocolFiles(f.protocol).at(100), QStringLiteral("/100.html"));
}

void TestLifecycle::refusesMoreThanAHundredPages()
{
    ProtocolFixture f;
    fill(f);
    const QByteArray data = archived([](CQtArchive& archive) {
        archive << quint32(1) << LONGID(55) << quint32(101);
        for (int type = 1; type <= 101; ++type)
            archive << type << QString();
        archive << QString();
    });
    QCOMPARE(loadFailure(f.protocol, data), QStringLiteral("1:"));
    QCOMPARE(Access::idList(f.protocol), std::set<LONGID>{55});
    QVERIFY(Access::protocolFiles(f.protocol).empty());
    QCOMPARE(Access::dataFilePath(f.protocol), QStringLiteral("/data.xml"));
}

void TestLifecycle::loadingATruncatedStateFails()
{
    ProtocolFixture f;
    fill(f);
    const QByteArray whole = saved(f.protocol);
    QCOMPARE(loadFailure(f.protocol, whole), QStringLiteral("none"));
    for (int size = 0; size < whole.size(); ++size)
        QVERIFY2(loadFailure(f.protocol, whole.left(size)) != QLatin1String("none"),
                 qPrintable(QString::number(size)));
}

void TestLifecycle::aReloadedProtocolFindsItsMessages()
{
    ProtocolFixture f;
    f.protocol.ProtocolBegin(enums::Import);
    f.protocol.AddMessageRaw(QStringLiteral("line"), enums::Import, COVMessage::Message);
    f.protocol.ProtocolEnd(enums::Import);

    COrvel loaded(&f.model, QStringLiteral("survey"));
    load(loaded, saved(f.protocol));
    QVERIFY(loaded.IsMessages(0));
    loaded.ProtocolBegin(enums::Adjust);
    QCOMPARE(storedMessages(loaded).first(), described(enums::Import, QStringLiteral("line")));
}

QTEST_GUILESS_MAIN(TestLifecycle)
#include "tst_lifecycle.moc"
