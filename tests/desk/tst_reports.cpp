#include "apps/desk/Translation.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/reports/DeskReports.h"
#include "apps/desk/reports/ReportHtml.h"
#include "tests/desk/ReportNetwork.h"
#include "tests/support/ExpectedFile.h"

#include <QTest>

using namespace orvel::desk;
using namespace orvel::test;

/// What the reports say, and how they stand in HTML.
class TestReports : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wholePages_data();
    void wholePages();
    void everyKindHasItsName();
    void allSectionsAreInTheBook();
    void longListsAreCutOff();
    void warningStandsFirst();
    void pictureIsAllowedAndNothingElse();
    void sameInputGivesTheSame();
    // Last, because there is no way back to Russian.
    void wholePagesInEnglish_data();
    void wholePagesInEnglish();

private:
    static void addReports();
    static QString compare(const QString& name, const QString& language);
};

void TestReports::addReports()
{
    QTest::addColumn<QString>("name");
    for (const deskreports::Report& report : deskreports::getReports())
        QTest::newRow(qPrintable(report.name)) << report.name;
}

QString TestReports::compare(const QString& name, const QString& language)
{
    const QString page = reporthtml::make(deskreports::findByName(name)->make(makeReportNetwork()));
    return compareWithFile(page, QStringLiteral(DESK_EXPECTED "/reports/%1-%2.html").arg(name, language));
}

void TestReports::wholePages_data()
{
    addReports();
}

void TestReports::wholePages()
{
    QFETCH(QString, name);
    QCOMPARE(compare(name, QStringLiteral("ru")), QString());
}

void TestReports::everyKindHasItsName()
{
    QStringList names;
    for (const deskreports::Report& report : deskreports::getReports()) {
        names.append(report.name);
        QCOMPARE(deskreports::find(report.type)->name, report.name);
        QCOMPARE(deskreports::findByName(report.name)->type, report.type);
    }
    QCOMPARE(names.join(QLatin1Char(' ')), QStringLiteral("catalogue residuals lines sections"));
    QVERIFY(!deskreports::findByName(QStringLiteral("nothing")));
    QVERIFY(!deskreports::find(0));
}

void TestReports::allSectionsAreInTheBook()
{
    const ReportInput input = makeReportNetwork();
    const ReportContent report = deskreports::find(kSectionBook)->make(input);
    QStringList named;
    for (const ReportTable::Row& row : report.tables.front().rows) {
        if (row.kind != ReportTable::Row::Kind::Heading)
            named.append(row.cells.front());
    }
    QStringList measured = input.snapshot->sectionNames;
    std::sort(named.begin(), named.end());
    std::sort(measured.begin(), measured.end());
    QCOMPARE(named, measured);
}

void TestReports::longListsAreCutOff()
{
    ReportInput input = makeLongLine(60);
    auto snapshot = std::make_shared<NetworkSnapshot>(*input.snapshot);
    for (int i = 1; i <= 25; ++i)
        snapshot->network.sources.append(QStringLiteral("f%1").arg(i));
    input.snapshot = snapshot;
    const ReportContent report = deskreports::find(kLineList)->make(input);
    QCOMPARE(report.lines[2], QStringLiteral("Файлы измерений: f1, f2, f3, f4, f5, f6, f7, f8, f9, f10, f11, "
                                             "f12, f13, f14, f15, f16, f17, f18, f19, f20 и ещё 5"));
    const QString way = report.tables.front().rows.front().cells[4];
    QVERIFY2(way.startsWith(QStringLiteral("P1, P2, ")) && way.endsWith(QStringLiteral(", P50 и ещё 9")),
             qPrintable(way));
}

void TestReports::warningStandsFirst()
{
    ReportContent report;
    report.title = QStringLiteral("T");
    report.warning = QStringLiteral("Старое <b>");
    report.lines = QStringList{QStringLiteral("L")};
    QVERIFY(reporthtml::make(report).contains(
        QStringLiteral("<h1>T</h1>\n<p class=\"warning\">Старое &lt;b&gt;</p>\n<p>L</p>\n")));
}

void TestReports::pictureIsAllowedAndNothingElse()
{
    ReportContent report;
    QVERIFY(!reporthtml::make(report).contains(QStringLiteral("img-src")));
    report.picture = QByteArrayLiteral("<svg/>");
    const QString page = reporthtml::make(report);
    QVERIFY(page.contains(QStringLiteral("'; img-src data:\">")));
    QVERIFY(page.contains(
        QStringLiteral("<img alt=\"Схема сети\" src=\"data:image/svg+xml;base64,PHN2Zy8+\">\n")));
}

void TestReports::sameInputGivesTheSame()
{
    for (const deskreports::Report& report : deskreports::getReports())
        QCOMPARE(reporthtml::make(report.make(makeReportNetwork())),
                 reporthtml::make(report.make(makeReportNetwork())));
}

void TestReports::wholePagesInEnglish_data()
{
    addReports();
}

void TestReports::wholePagesInEnglish()
{
    QFETCH(QString, name);
    installLanguage(QStringLiteral("en"));
    QCOMPARE(compare(name, QStringLiteral("en")), QString());
}

QTEST_GUILESS_MAIN(TestReports)
#include "tst_reports.moc"
