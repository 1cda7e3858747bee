#include "Orvel/store/COrvel.h"
#include "host/enums/EnumData.h"
#include "host/reports/ReportsGeneratorItem.h"
#include "tests/support/FileSizeLimit.h"
#include "tests/support/MessageText.h"
#include "tests/support/OrvelTestAccess.h"
#include "tests/support/ProtocolFixture.h"
#include "tests/support/TestFiles.h"

#include <QDir>
#include <QtTest>

#include <sys/resource.h>
#include <unistd.h>

using Access = OrvelTestAccess;

namespace {

// Report types of the tests.
constexpr int kHeightsReport = 0x2C070001;
constexpr int kResidualsReport = 0x2C070002;
constexpr int kNamelessReport = 0x2C070003;

COVMessage makeMessage(int protocolType, int kind, const QString& text, int stage = 0)
{
    return COVMessage(protocolType, kind, 0, kGeneralItemType, text, stage);
}

/// An adjustment's message.
COVMessage adjustMessage(int kind, const QString& text, int stage)
{
    return makeMessage(enums::Adjust, kind, text, stage);
}

/// Leaves the process one file that it can have open at a time, while the object lives.
class OneFileAtATime
{
public:
    OneFileAtATime()
    {
        getrlimit(RLIMIT_NOFILE, &oldLimit);
        const int lowestFree = dup(STDIN_FILENO);
        close(lowestFree);
        rlimit limit = oldLimit;
        limit.rlim_cur = static_cast<rlim_t>(lowestFree) + 1;
        setrlimit(RLIMIT_NOFILE, &limit);
    }

    OneFileAtATime(const OneFileAtATime&) = delete;
    OneFileAtATime& operator=(const OneFileAtATime&) = delete;

    ~OneFileAtATime() { setrlimit(RLIMIT_NOFILE, &oldLimit); }

private:
    rlimit oldLimit{};
};

/// The content of the page of `type`, without a template, from messages in the store.
QString content(ProtocolFixture& f, int type, const std::vector<COVMessage>& messages = {})
{
    f.addMessages(messages);
    QString html;
    Access::GetHtmlProtocolData(f.protocol, type, html);
    return html;
}

/// The service block of the page of an import that has neither lines nor anything else.
QString serviceBlock(ProtocolFixture& f)
{
    return content(f, enums::Import);
}

struct SplitTemplate
{
    QString head = QStringLiteral("head before");
    QString tail = QStringLiteral("tail before");
};

SplitTemplate parsed(const ProtocolFixture& f)
{
    SplitTemplate split;
    Access::ParseHtmlTemplate(f.protocol, split.head, split.tail);
    return split;
}

} // namespace

class TestPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    // The template
    void templateIsSplitAtItsLastDiv_data();
    void templateIsSplitAtItsLastDiv();
    void missingTemplateLeavesBothParts();
    void unreadableTemplateLeavesBothParts();
    void templateWithoutADivHasNoHead();
    void templateIsReadAsText();
    void templateNameIsThatOfTheField();

    // The service block
    void pageOfNothingHasAnOpenServiceBlock();
    void serviceBlockStaysOpenWithoutAGenerator();
    void serviceBlockStaysOpenWithoutARealGenerator();
    void serviceBlockIsClosedWithoutReportTypes();
    void serviceBlockHasTheReportLinks();
    void emptyListOfReportsIsShownEmpty();
    void reportWithoutANameIsSkipped();
    void reportLinksExpandNothingAgain();

    // Titles and statistics
    void titlesServiceLinesAndStatistics();
    void textsAreInsertedAsTheyAre();
    void contentIsAppended();
    void contentIsOfOneType();

    // The body
    void plainBodyIsAFlatList_data();
    void plainBodyIsAFlatList();
    void plainBodyShowsProblemsAndMessagesOnly();
    void compileBodyIsGrouped();
    void adjustBodyHasABlockForEachStage();
    void adjustLinesWithoutAStageAreNotInTheBody();
    void stageOfHeadingsOnlyHasABareCaption();
    void stageWithoutAHeadingHasItsCountOnly();
    void firstHeadingOfAStageWins();
    void resultStageShowsEveryKind();
    void otherStagesCountEveryKind();
    void stagesAscendBySign();

    // The page as a string
    void wholePageInATemplate();
    void pageReplacesTheString();
    void pageShowsTheDataFileAndKeepsIt();
    void pageOfADamagedDataFileIsEmpty();
    void pageBeforeTheFirstRunIsEmpty();
    void pageWithoutATemplateIsTheContent();
    void pageOfATemplateWithoutADivIsTheContent();

    // The page as a file
    void fileHoldsThePageInUtf8();
    void longPageIsTheSameInAFile();
    void filePathIsRemembered();
    void fileIsReplacedWhole();
    void emptyPathDoesNothing();
    void unwritablePathGivesFalse_data();
    void unwritablePathGivesFalse();
    void fullDiskGivesFalseAndKeepsTheOldPage();
    void dataFileIsClosedBeforeThePageIsOpened();
};

void TestPage::initTestCase()
{
    registerEnumData(EnumData(kHeightsReport, "Heights", "Ведомость высот", ""));
    registerEnumData(EnumData(kResidualsReport, "Residuals", "Поправки & <остатки>", ""));
    registerEnumData(EnumData(kNamelessReport, "Nameless", "", "only plural"));
}

void TestPage::templateIsSplitAtItsLastDiv_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("head");
    QTest::addColumn<QString>("tail");
    QTest::newRow("one") << QByteArray("<body><div>a</div></body>\n") << "<body><div>a"
                         << "</div></body>\n";
    QTest::newRow("several") << QByteArray("<div>a</div><div>b</div>c") << "<div>a</div><div>b"
                             << "</div>c";
    QTest::newRow("at the end") << QByteArray("<div>a</div>") << "<div>a"
                                << "</div>";
    QTest::newRow("at the begin") << QByteArray("</div>a") << ""
                                  << "</div>a";
    QTest::newRow("capitals") << QByteArray("<div>a</div><DIV>b</DIV>c") << "<div>a</div><DIV>b"
                              << "</DIV>c";
    QTest::newRow("mixed case") << QByteArray("<div>a</dIV>c") << "<div>a"
                                << "</dIV>c";
    QTest::newRow("placeholders") << QByteArray("%1<div>%2</div>%3") << "%1<div>%2"
                                  << "</div>%3";
}

void TestPage::templateIsSplitAtItsLastDiv()
{
    QFETCH(QByteArray, content);
    ProtocolFixture f;
    f.writeTemplate(content);
    const SplitTemplate split = parsed(f);
    QTEST(split.head, "head");
    QTEST(split.tail, "tail");
}

void TestPage::missingTemplateLeavesBothParts()
{
    const ProtocolFixture f;
    const SplitTemplate split = parsed(f);
    QCOMPARE(split.head, QStringLiteral("head before"));
    QCOMPARE(split.tail, QStringLiteral("tail before"));
}

void TestPage::unreadableTemplateLeavesBothParts()
{
    const ProtocolFixture f;
    QVERIFY(QDir().mkpath(f.tempPath(QStringLiteral("protocol.html"))));
    const SplitTemplate split = parsed(f);
    QCOMPARE(split.head, QStringLiteral("head before"));
    QCOMPARE(split.tail, QStringLiteral("tail before"));
}

void TestPage::templateWithoutADivHasNoHead()
{
    const ProtocolFixture f;
    for (const QByteArray& content : {QByteArray("<body></body>"), QByteArray("<div>"), QByteArray("")}) {
        f.writeTemplate(content);
        const SplitTemplate split = parsed(f);
        QCOMPARE(split.head, QString());
        QCOMPARE(split.tail, QStringLiteral("tail before"));
    }
}

void TestPage::templateIsReadAsText()
{
    const ProtocolFixture f;
    f.writeTemplate("<div>\r\na\nb</div>\r\n");
    const SplitTemplate split = parsed(f);
    QCOMPARE(split.head, QStringLiteral("<div>\na\nb"));
    QCOMPARE(split.tail, QStringLiteral("</div>\n"));
}

void TestPage::templateNameIsThatOfTheField()
{
    ProtocolFixture f;
    writeFile(f.tempPath(QStringLiteral("other.html")), "<div>other</div>");
    Access::templateFileName(f.protocol) = QStringLiteral("other.html");
    QCOMPARE(parsed(f).head, QStringLiteral("<div>other"));
}

void TestPage::pageOfNothingHasAnOpenServiceBlock()
{
    for (const int type : {int(enums::Compile), int(enums::Adjust), int(enums::Import), 4711}) {
        ProtocolFixture f;
        QCOMPARE(content(f, type), QStringLiteral("<div class='serviceinfoblock'>\n"));
    }
}

void TestPage::serviceBlockStaysOpenWithoutAGenerator()
{
    ProtocolFixture f;
    f.protocol.addReportTypes(enums::Import, {kHeightsReport});
    QCOMPARE(serviceBlock(f), QStringLiteral("<div class='serviceinfoblock'>\n"));
}

void TestPage::serviceBlockStaysOpenWithoutARealGenerator()
{
    ProtocolFixture f;
    f.protocol.addReportTypes(enums::Import, {kHeightsReport});
    f.model.addSystemItem(new TypedElement(reports::kReportsGeneratorType), {});
    QCOMPARE(serviceBlock(f), QStringLiteral("<div class='serviceinfoblock'>\n"));
}

void TestPage::serviceBlockIsClosedWithoutReportTypes()
{
    ProtocolFixture f;
    f.addReportGenerator();
    f.protocol.addReportTypes(enums::Export, {kHeightsReport});
    QCOMPARE(serviceBlock(f), QStringLiteral("<div class='serviceinfoblock'>\n</div>\n"));
}

void TestPage::serviceBlockHasTheReportLinks()
{
    ProtocolFixture f;
    f.addReportGenerator();
    f.protocol.addReportTypes(enums::Import, {kResidualsReport, kHeightsReport});
    const QString project = QStringLiteral("%D0%9F%D1%80%D0%BE%D0%B5%D0%BA%D1%82%201");
    QCOMPARE(serviceBlock(f),
             QStringLiteral("<div class='serviceinfoblock'>\n"
                            "<div class='reportsblock'>\n"
                            "<p class='service'>Ведомости:</p>"
                            "<ul class='service'>"
                            "<li><a href=\"survey://generate-report?id=738656258&project=") +
                 project +
                 QStringLiteral("\">Поправки & <остатки></a></li>"
                                "<li><a href=\"survey://generate-report?id=738656257&project=") +
                 project +
                 QStringLiteral("\">Ведомость высот</a></li>"
                                "</ul>\n"
                                "</div>\n"
                                "</div>\n"));
}

void TestPage::emptyListOfReportsIsShownEmpty()
{
    ProtocolFixture f;
    f.addReportGenerator();
    f.protocol.addReportTypes(enums::Import, {});
    QCOMPARE(serviceBlock(f), QStringLiteral("<div class='serviceinfoblock'>\n"
                                             "<div class='reportsblock'>\n"
                                             "<p class='service'>Ведомости:</p>"
                                             "<ul class='service'>"
                                             "</ul>\n"
                                             "</div>\n"
                                             "</div>\n"));
}

void TestPage::reportWithoutANameIsSkipped()
{
    ProtocolFixture f(QStringLiteral("line"));
    f.addReportGenerator();
    f.protocol.addReportTypes(enums::Import, {kNamelessReport, kHeightsReport, 0x2C07FFFF, kHeightsReport});
    const QString heights = QStringLiteral(
        "<li><a href=\"survey://generate-report?id=738656257&project=line\">Ведомость высот</a></li>");
    QCOMPARE(serviceBlock(f), QStringLiteral("<div class='serviceinfoblock'>\n"
                                             "<div class='reportsblock'>\n"
                                             "<p class='service'>Ведомости:</p>"
                                             "<ul class='service'>") +
                                  heights + heights +
                                  QStringLiteral("</ul>\n"
                                                 "</div>\n"
                                                 "</div>\n"));
}

void TestPage::reportLinksExpandNothingAgain()
{
    constexpr int kReport = 0x2C070004;
    registerEnumData(EnumData(kReport, "Odd", "%1 %2 %3", ""));
    ProtocolFixture f(QStringLiteral("%4"), QStringLiteral("s%3"));
    f.addReportGenerator();
    f.protocol.addReportTypes(enums::Import, {kReport});
    const QString html = serviceBlock(f);
    QVERIFY2(html.contains(QStringLiteral(
                 "<li><a href=\"s%3://generate-report?id=738656260&project=%254\">%1 %2 %3</a></li></ul>\n")),
             qUtf8Printable(html));
}

void TestPage::titlesServiceLinesAndStatistics()
{
    ProtocolFixture f;
    QCOMPARE(content(f, enums::Export,
                     {
                         makeMessage(enums::Export, COVMessage::Statistics, QStringLiteral("s1")),
                         makeMessage(enums::Export, COVMessage::Service, QStringLiteral("v1")),
                         makeMessage(enums::Export, COVMessage::Title, QStringLiteral("t1")),
                         makeMessage(enums::Export, COVMessage::Stage, QStringLiteral("no")),
                         makeMessage(enums::Export, COVMessage::Service, QStringLiteral("v2")),
                         makeMessage(enums::Export, COVMessage::Title, QStringLiteral("t2")),
                         makeMessage(enums::Export, COVMessage::Statistics, QStringLiteral("s2")),
                     }),
             QStringLiteral("<h1>t1</h1>\n"
                            "<h1>t2</h1>\n"
                            "<div class='serviceinfoblock'>\n"
                            "<p class='service'>v1</p>\n"
                            "<p class='service'>v2</p>\n"
                            "<p>s1</p>\n"
                            "<p>s2</p>\n"));
}

void TestPage::textsAreInsertedAsTheyAre()
{
    ProtocolFixture f;
    f.addReportGenerator();
    const QString text = QStringLiteral("<b>%1</b> & %2");
    QCOMPARE(content(f, enums::Export,
                     {makeMessage(enums::Export, COVMessage::Title, text),
                      makeMessage(enums::Export, COVMessage::Service, text),
                      makeMessage(enums::Export, COVMessage::Statistics, text)}),
             QStringLiteral("<h1><b>%1</b> & %2</h1>\n"
                            "<div class='serviceinfoblock'>\n"
                            "<p class='service'><b>%1</b> & %2</p>\n"
                            "</div>\n"
                            "<p><b>%1</b> & %2</p>\n"));
}

void TestPage::contentIsAppended()
{
    ProtocolFixture f;
    QString html = QStringLiteral("before\n");
    QVERIFY(Access::GetHtmlProtocolData(f.protocol, enums::Import, html));
    QCOMPARE(html, QStringLiteral("before\n<div class='serviceinfoblock'>\n"));
}

void TestPage::contentIsOfOneType()
{
    ProtocolFixture f;
    QCOMPARE(content(f, enums::Export,
                     {makeMessage(enums::Import, COVMessage::Title, QStringLiteral("other")),
                      makeMessage(enums::Import, COVMessage::Error, QStringLiteral("other")),
                      makeMessage(enums::Export, COVMessage::Title, QStringLiteral("own"))}),
             QStringLiteral("<h1>own</h1>\n<div class='serviceinfoblock'>\n"));
}

void TestPage::plainBodyIsAFlatList_data()
{
    QTest::addColumn<int>("type");
    QTest::newRow("undefined") << 0x1235B700;
    QTest::newRow("L1 analysis") << 0x1235B703;
    QTest::newRow("import") << 0x1235B704;
    QTest::newRow("export") << 0x1235B705;
    QTest::newRow("tacheometry") << 0x1235B709;
    QTest::newRow("unknown") << 4711;
}

void TestPage::plainBodyIsAFlatList()
{
    QFETCH(int, type);
    ProtocolFixture f;
    f.addMessages({makeMessage(type, COVMessage::Message, QStringLiteral("m"), 1),
                   makeMessage(type, COVMessage::Warning, QStringLiteral("w"), 2),
                   makeMessage(type, COVMessage::Error, QStringLiteral("e"))});
    QString html;
    QVERIFY(Access::GetHtmlProtocolData(f.protocol, type, html));
    QCOMPARE(html, QStringLiteral(R"(<div class='serviceinfoblock'>
<ul class="Container">
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content message">m</div>
</li>
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content warning">w</div>
</li>
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content error">e</div>
</li>
</ul>
)"));
}

void TestPage::plainBodyShowsProblemsAndMessagesOnly()
{
    ProtocolFixture f;
    QCOMPARE(content(f, enums::Import,
                     {makeMessage(enums::Import, COVMessage::Stage, QStringLiteral("no")),
                      makeMessage(enums::Import, 7, QStringLiteral("no")),
                      makeMessage(enums::Import, COVMessage::Statistics, QStringLiteral("s"))}),
             QStringLiteral("<div class='serviceinfoblock'>\n<p>s</p>\n"));
}

void TestPage::compileBodyIsGrouped()
{
    ProtocolFixture f;
    f.addMessages({makeMessage(enums::Compile, COVMessage::Message, QStringLiteral("m")),
                   makeMessage(enums::Compile, COVMessage::Stage, QStringLiteral("no"), 1),
                   makeMessage(enums::Compile, COVMessage::Error, QStringLiteral("e"), 1)});
    QString html;
    QVERIFY(Access::GetHtmlProtocolData(f.protocol, enums::Compile, html));
    QCOMPARE(html, QStringLiteral(R"(<div class='serviceinfoblock'>
<div class='errorblock'>
<ul class="Container">
<li class="IsRoot IsLast ExpandOpen">
<div class="Expand"></div>
<div class="Content">Ошибки и предупреждения (1)</div>
<ul class="Container">
<li class="Node ExpandOpen">
<div class="Expand"></div>
<div class="Content">Общие (1)</div>
<ul class="Container">
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content error">e</div>
</li>
</ul>
</li>
</ul>
</li>
</ul>
</div>
<div class='messageblock'>
<ul class="Container">
<li class="IsRoot IsLast ExpandOpen">
<div class="Expand"></div>
<div class="Content">Сообщения (1)</div>
<ul class="Container">
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content message">m</div>
</li>
</ul>
</li>
</ul>
</div>
)"));
}

void TestPage::adjustBodyHasABlockForEachStage()
{
    ProtocolFixture f;
    f.addMessages({
        adjustMessage(COVMessage::Stage, QStringLiteral("Состав %1"), 1),
        adjustMessage(COVMessage::Message, QStringLiteral("m1"), 1),
        adjustMessage(COVMessage::Error, QStringLiteral("e1"), 1),
        adjustMessage(COVMessage::Stage, QStringLiteral("Результаты"), 2),
        adjustMessage(COVMessage::Error, QStringLiteral("e2"), 2),
        adjustMessage(COVMessage::Stage, QStringLiteral("Поправки"), 3),
        adjustMessage(COVMessage::Message, QStringLiteral("m3"), 3),
    });
    QString html;
    QVERIFY(!Access::GetHtmlProtocolData(f.protocol, enums::Adjust, html));
    QCOMPARE(html, QStringLiteral(R"(<div class='serviceinfoblock'>
<div class='stageblock'>
<ul class="Container">
<li class="IsRoot IsLast ExpandClosed">
<div class="Expand"></div>
<div class="Content">Состав %1 (2)</div>
<div class='errorblock'>
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
<div class="Content error">e1</div>
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
<div class="Content message">m1</div>
</li>
</ul>
</li>
</ul>
</div>
</li>
</ul>
</div>
<div class='stageblock'>
<ul class="Container">
<li class="IsRoot IsLast ExpandOpen">
<div class="Expand"></div>
<div class="Content">Результаты (1)</div>
<ul class="Container">
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content error">e2</div>
</li>
</ul>
</li>
</ul>
</div>
<div class='stageblock'>
<ul class="Container">
<li class="IsRoot IsLast ExpandClosed">
<div class="Expand"></div>
<div class="Content">Поправки (1)</div>
<div class='messageblock'>
<ul class="Container">
<li class="Node IsLast ExpandOpen">
<div class="Expand"></div>
<div class="Content">Сообщения (1)</div>
<ul class="Container">
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content message">m3</div>
</li>
</ul>
</li>
</ul>
</div>
</li>
</ul>
</div>
)"));
}

void TestPage::adjustLinesWithoutAStageAreNotInTheBody()
{
    ProtocolFixture f;
    QCOMPARE(content(f, enums::Adjust,
                     {adjustMessage(COVMessage::Error, QStringLiteral("no"), 0),
                      adjustMessage(COVMessage::Stage, QStringLiteral("no"), 0),
                      adjustMessage(COVMessage::Title, QStringLiteral("t"), 0),
                      adjustMessage(COVMessage::Service, QStringLiteral("v"), 0),
                      adjustMessage(COVMessage::Statistics, QStringLiteral("s"), 0)}),
             QStringLiteral("<h1>t</h1>\n"
                            "<div class='serviceinfoblock'>\n"
                            "<p class='service'>v</p>\n"
                            "<p>s</p>\n"));
}

void TestPage::stageOfHeadingsOnlyHasABareCaption()
{
    ProtocolFixture f;
    QCOMPARE(content(f, enums::Adjust,
                     {adjustMessage(COVMessage::Stage, QStringLiteral("Состав"), 1),
                      adjustMessage(COVMessage::Stage, QStringLiteral("Результаты"), 2)}),
             QStringLiteral(R"(<div class='serviceinfoblock'>
<div class='stageblock'>
<ul class="Container">
<li class="IsRoot IsLast ExpandClosed">
<div class="Expand"></div>
<div class="Content">Состав</div>
</li>
</ul>
</div>
<div class='stageblock'>
<ul class="Container">
<li class="IsRoot IsLast ExpandOpen">
<div class="Expand"></div>
<div class="Content">Результаты</div>
</li>
</ul>
</div>
)"));
}

void TestPage::stageWithoutAHeadingHasItsCountOnly()
{
    ProtocolFixture f;
    QCOMPARE(content(f, enums::Adjust, {adjustMessage(COVMessage::Message, QStringLiteral("m"), 2)}),
             QStringLiteral(R"(<div class='serviceinfoblock'>
<div class='stageblock'>
<ul class="Container">
<li class="IsRoot IsLast ExpandOpen">
<div class="Expand"></div>
<div class="Content"> (1)</div>
<ul class="Container">
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content message">m</div>
</li>
</ul>
</li>
</ul>
</div>
)"));
}

void TestPage::firstHeadingOfAStageWins()
{
    ProtocolFixture f;
    const QString html = content(f, enums::Adjust,
                                 {adjustMessage(COVMessage::Stage, QStringLiteral("first"), 1),
                                  adjustMessage(COVMessage::Stage, QStringLiteral("other stage"), 3),
                                  adjustMessage(COVMessage::Stage, QStringLiteral("second"), 1)});
    QCOMPARE(html.count(QStringLiteral("<div class=\"Content\">first</div>\n")), 1);
    QVERIFY(!html.contains(QStringLiteral("second")));
    QCOMPARE(html.count(QStringLiteral("<div class=\"Content\">other stage</div>\n")), 1);
}

void TestPage::resultStageShowsEveryKind()
{
    ProtocolFixture f;
    const QString html = content(f, enums::Adjust,
                                 {adjustMessage(COVMessage::Service, QStringLiteral("v"), 2),
                                  adjustMessage(COVMessage::Stage, QStringLiteral("Результаты"), 2),
                                  adjustMessage(COVMessage::Warning, QStringLiteral("w"), 2)});
    QCOMPARE(html, QStringLiteral(R"(<div class='serviceinfoblock'>
<p class='service'>v</p>
<div class='stageblock'>
<ul class="Container">
<li class="IsRoot IsLast ExpandOpen">
<div class="Expand"></div>
<div class="Content">Результаты (2)</div>
<ul class="Container">
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content service">v</div>
</li>
<li class="Node ExpandLeaf IsLast">
<div class="Expand"></div>
<div class="Content warning">w</div>
</li>
</ul>
</li>
</ul>
</div>
)"));
}

void TestPage::otherStagesCountEveryKind()
{
    ProtocolFixture f;
    QCOMPARE(content(f, enums::Adjust,
                     {adjustMessage(COVMessage::Service, QStringLiteral("v"), 1),
                      adjustMessage(COVMessage::Statistics, QStringLiteral("s"), 1)}),
             QStringLiteral(R"(<div class='serviceinfoblock'>
<p class='service'>v</p>
<p>s</p>
<div class='stageblock'>
<ul class="Container">
<li class="IsRoot IsLast ExpandClosed">
<div class="Expand"></div>
<div class="Content"> (2)</div>
</li>
</ul>
</div>
)"));
}

void TestPage::stagesAscendBySign()
{
    ProtocolFixture f;
    const QString html = content(f, enums::Adjust,
                                 {adjustMessage(COVMessage::Stage, QStringLiteral("ten"), 10),
                                  adjustMessage(COVMessage::Stage, QStringLiteral("nine"), 9),
                                  adjustMessage(COVMessage::Stage, QStringLiteral("minus"), -1)});
    const int minus = html.indexOf(QStringLiteral(">minus<"));
    const int nine = html.indexOf(QStringLiteral(">nine<"));
    const int ten = html.indexOf(QStringLiteral(">ten<"));
    QVERIFY2(0 < minus && minus < nine && nine < ten, qUtf8Printable(html));
}

void TestPage::wholePageInATemplate()
{
    // A run from its begin to the page, the closing lines of the run included.
    ProtocolFixture f(QStringLiteral("Ход 7"));
    f.writeTemplate("<!DOCTYPE html>\n<body>\n<div id=\"page\">\n</div>\n</body>\n");
    f.addItem(5, kPointItemType);
    f.protocol.ProtocolBegin(enums::Import);
    const QString link = QString::fromStdWString(f.protocol.GetItemLink(5, L"Рп5"));
    f.protocol.AddMessageRaw(QStringLiteral("Пункт ") + link + QStringLiteral("\nнеизвестен"), enums::Import,
                             COVMessage::Warning);
    f.protocol.ProtocolEnd(enums::Import);

    QString html;
    QVERIFY(f.protocol.CreateProtocolHtml(enums::Import, html));
    QCOMPARE(withoutDates(html), QStringLiteral("<!DOCTYPE html>\n"
                                                "<body>\n"
                                                "<div id=\"page\">\n"
                                                "<h1>Импорт</h1>\n"
                                                "<div class='serviceinfoblock'>\n"
                                                "<p class='service'>DATE</p>\n"
                                                "<p class='service'>Проект: Ход 7</p>\n"
                                                "<ul class=\"Container\">\n"
                                                "<li class=\"Node ExpandLeaf IsLast\">\n"
                                                "<div class=\"Expand\"></div>\n"
                                                "<div class=\"Content warning\">Пункт ") +
                                     link +
                                     QStringLiteral("<br>неизвестен</div>\n"
                                                    "</li>\n"
                                                    "</ul>\n"
                                                    "</div>\n"
                                                    "</body>\n"));
}

void TestPage::pageReplacesTheString()
{
    ProtocolFixture f;
    QString html = QStringLiteral("old");
    QVERIFY(f.protocol.CreateProtocolHtml(enums::Import, html));
    QCOMPARE(html, QStringLiteral("<div class='serviceinfoblock'>\n"));
    f.writeTemplate("<div></div>");
    QVERIFY(f.protocol.CreateProtocolHtml(enums::Import, html));
    QCOMPARE(html, QStringLiteral("<div><div class='serviceinfoblock'>\n</div>"));
}

void TestPage::pageShowsTheDataFileAndKeepsIt()
{
    ProtocolFixture f;
    f.saveMessages({makeMessage(enums::Import, COVMessage::Title, QStringLiteral("filed")),
                    makeMessage(enums::Export, COVMessage::Title, QStringLiteral("other"))});
    const QByteArray data = readFile(Access::dataFilePath(f.protocol));
    f.addMessages({makeMessage(enums::Import, COVMessage::Title, QStringLiteral("in memory only"))});

    QString html;
    QVERIFY(f.protocol.CreateProtocolHtml(enums::Import, html));
    QCOMPARE(html, QStringLiteral("<h1>filed</h1>\n<div class='serviceinfoblock'>\n"));
    QVERIFY(Access::messages(f.protocol).empty());
    QCOMPARE(readFile(Access::dataFilePath(f.protocol)), data);
    // A string is no page that could be linked to.
    QVERIFY(Access::protocolFiles(f.protocol).empty());
}

void TestPage::pageOfADamagedDataFileIsEmpty()
{
    ProtocolFixture f;
    f.saveMessages({});
    const QByteArray empty = readFile(Access::dataFilePath(f.protocol));
    writeFile(Access::dataFilePath(f.protocol), "<messagelist>");
    QString html;
    QVERIFY(f.protocol.CreateProtocolHtml(enums::Import, html));
    QCOMPARE(html, QStringLiteral("<div class='serviceinfoblock'>\n"));
    // The damaged file is not kept.
    QCOMPARE(readFile(Access::dataFilePath(f.protocol)), empty);
}

void TestPage::pageBeforeTheFirstRunIsEmpty()
{
    ProtocolFixture f;
    f.addMessages({makeMessage(enums::Import, COVMessage::Title, QStringLiteral("in memory only"))});
    QString html;
    QVERIFY(f.protocol.CreateProtocolHtml(enums::Import, html));
    QCOMPARE(html, QStringLiteral("<div class='serviceinfoblock'>\n"));
    QVERIFY(Access::messages(f.protocol).empty());
    QCOMPARE(Access::dataFilePath(f.protocol), QString());
}

void TestPage::pageWithoutATemplateIsTheContent()
{
    ProtocolFixture f;
    f.saveMessages({makeMessage(enums::Import, COVMessage::Title, QStringLiteral("t"))});
    QString html;
    f.protocol.CreateProtocolHtml(enums::Import, html);
    QCOMPARE(html, QStringLiteral("<h1>t</h1>\n<div class='serviceinfoblock'>\n"));
}

void TestPage::pageOfATemplateWithoutADivIsTheContent()
{
    ProtocolFixture f;
    f.writeTemplate("<body>no division</body>");
    f.saveMessages({makeMessage(enums::Import, COVMessage::Title, QStringLiteral("t"))});
    QString html;
    f.protocol.CreateProtocolHtml(enums::Import, html);
    QCOMPARE(html, QStringLiteral("<h1>t</h1>\n<div class='serviceinfoblock'>\n"));
}

void TestPage::fileHoldsThePageInUtf8()
{
    ProtocolFixture f;
    f.writeTemplate("<div></DIV>\n");
    f.saveMessages({makeMessage(enums::Import, COVMessage::Title, QStringLiteral("Импорт 😀"))});
    const QByteArray data = readFile(Access::dataFilePath(f.protocol));
    const QString path = f.tempPath(QStringLiteral("page.html"));
    QVERIFY(f.protocol.CreateProtocolFile(enums::Import, path));
    QCOMPARE(readFile(path),
             QByteArray("<div><h1>\xD0\x98\xD0\xBC\xD0\xBF\xD0\xBE\xD1\x80\xD1\x82 \xF0\x9F\x98\x80"
                        "</h1>\n<div class='serviceinfoblock'>\n</DIV>\n"));
    QVERIFY(Access::messages(f.protocol).empty());
    QCOMPARE(readFile(Access::dataFilePath(f.protocol)), data);
}

void TestPage::longPageIsTheSameInAFile()
{
    ProtocolFixture f;
    f.writeTemplate("<div></div>");
    std::vector<COVMessage> messages;
    messages.reserve(40);
    for (int i = 0; i < 40; ++i)
        messages.push_back(makeMessage(enums::Import, COVMessage::Error,
                                       QString(i, QLatin1Char('x')) + QStringLiteral("😀").repeated(3000)));
    f.saveMessages(messages);
    QString html;
    QVERIFY(f.protocol.CreateProtocolHtml(enums::Import, html));
    const QString path = f.tempPath(QStringLiteral("page.html"));
    QVERIFY(f.protocol.CreateProtocolFile(enums::Import, path));
    QVERIFY(html.contains(QStringLiteral("😀</div>\n</li>\n</ul>\n</div>")));
    QCOMPARE(readFile(path), html.toUtf8());
}

void TestPage::filePathIsRemembered()
{
    ProtocolFixture f;
    const QString first = f.tempPath(QStringLiteral("first.html"));
    const QString second = f.tempPath(QStringLiteral("second.html"));
    QVERIFY(f.protocol.CreateProtocolFile(enums::Import, first));
    QCOMPARE(Access::protocolFiles(f.protocol), (std::map<int, QString>{{enums::Import, first}}));
    QVERIFY(f.protocol.CreateProtocolFile(enums::Import, second));
    QVERIFY(f.protocol.CreateProtocolFile(enums::Adjust, first));
    QCOMPARE(Access::protocolFiles(f.protocol),
             (std::map<int, QString>{{enums::Adjust, first}, {enums::Import, second}}));
}

void TestPage::fileIsReplacedWhole()
{
    ProtocolFixture f;
    const QString path = f.tempPath(QStringLiteral("page.html"));
    writeFile(path, QByteArray(10000, 'x'));
    QVERIFY(f.protocol.CreateProtocolFile(enums::Import, path));
    QCOMPARE(readFile(path), QByteArray("<div class='serviceinfoblock'>\n"));
}

void TestPage::emptyPathDoesNothing()
{
    ProtocolFixture f;
    f.saveMessages({makeMessage(enums::Import, COVMessage::Title, QStringLiteral("filed"))});
    const QByteArray data = readFile(Access::dataFilePath(f.protocol));
    f.addMessages({makeMessage(enums::Import, COVMessage::Title, QStringLiteral("in memory"))});
    QVERIFY(!f.protocol.CreateProtocolFile(enums::Import, QString()));
    // Had the data file been read or written, this would be gone.
    QCOMPARE(Access::messages(f.protocol).at(enums::Import).front().text, QStringLiteral("in memory"));
    QCOMPARE(readFile(Access::dataFilePath(f.protocol)), data);
    QVERIFY(Access::protocolFiles(f.protocol).empty());
}

void TestPage::unwritablePathGivesFalse_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("folder") << "folder";
    QTest::newRow("in a missing folder") << "no folder/page.html";
}

void TestPage::unwritablePathGivesFalse()
{
    QFETCH(QString, name);
    ProtocolFixture f;
    f.saveMessages({makeMessage(enums::Import, COVMessage::Title, QStringLiteral("filed"))});
    const QByteArray data = readFile(Access::dataFilePath(f.protocol));
    const QString earlier = f.tempPath(QStringLiteral("page.html"));
    QVERIFY(f.protocol.CreateProtocolFile(enums::Adjust, earlier));

    QVERIFY(QDir().mkpath(f.tempPath(QStringLiteral("folder"))));
    f.addMessages({makeMessage(enums::Import, COVMessage::Title, QStringLiteral("in memory"))});
    QVERIFY(!f.protocol.CreateProtocolFile(enums::Import, f.tempPath(name)));
    QVERIFY(!f.protocol.CreateProtocolFile(enums::Adjust, f.tempPath(name)));
    QCOMPARE(Access::protocolFiles(f.protocol), (std::map<int, QString>{{enums::Adjust, earlier}}));
    // Read and written all the same.
    QVERIFY(Access::messages(f.protocol).empty());
    QCOMPARE(readFile(Access::dataFilePath(f.protocol)), data);
    QCOMPARE(f.application.getWarnings(), QStringList());
}

void TestPage::fullDiskGivesFalseAndKeepsTheOldPage()
{
    ProtocolFixture f;
    const QString path = f.tempPath(QStringLiteral("page.html"));
    writeFile(path, "old");
    // The template makes the page large, the data file stays small.
    f.writeTemplate(QByteArray(1000000, 'x') + "</div>");
    bool result = true;
    {
        const FileSizeLimit limit(4096);
        result = f.protocol.CreateProtocolFile(enums::Import, path);
    }
    QVERIFY(!result);
    QCOMPARE(readFile(path), QByteArray("old"));
    // The path was stored behind the write call, whose own result does not count.
    QCOMPARE(Access::protocolFiles(f.protocol), (std::map<int, QString>{{enums::Import, path}}));
}

void TestPage::dataFileIsClosedBeforeThePageIsOpened()
{
    ProtocolFixture f;
    f.writeTemplate("<div></div>");
    f.saveMessages({makeMessage(enums::Import, COVMessage::Title, QStringLiteral("filed"))});
    const QByteArray data = readFile(Access::dataFilePath(f.protocol));
    const QString path = f.tempPath(QStringLiteral("page.html"));
    bool result = false;
    {
        const OneFileAtATime limit;
        result = f.protocol.CreateProtocolFile(enums::Import, path);
    }
    QCOMPARE(f.application.getWarnings(), QStringList());
    QVERIFY(result);
    QVERIFY(readFile(path).contains("<h1>filed</h1>"));
    QCOMPARE(readFile(Access::dataFilePath(f.protocol)), data);
}

QTEST_GUILESS_MAIN(TestPage)
#include "tst_page.moc"
