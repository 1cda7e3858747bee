#include "apps/desk/Translation.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/print/ReportFile.h"
#include "apps/desk/print/ReportPaper.h"
#include "apps/desk/print/SheetLayout.h"
#include "apps/desk/reports/DeskReports.h"
#include "tests/desk/ReportNetwork.h"
#include "tests/support/TestFiles.h"

#include <QImage>
#include <QPdfWriter>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace orvel::desk;
using namespace orvel::test;

/// Reports on paper, read by another program.
class TestReportPaper : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everySheetHasHeadAndNumber();
    void roomToSpareIsForTexts();
    void nothingOfManyRowsIsLost();
    void marksAndSignatures();
    void tallCellGoesOn();
    void wideTableLiesAcross();
    void pictureIsPrinted();
    void pictureAloneFillsASheet();
    void warningIsPrinted();
    void rangeOfSheets();
    void workCanBeStopped();
    void progressGoesToTheEnd();
    void sameReportGivesTheSameBytes();
    void emptyTableIsPrinted();
    void suffixTellsTheKind();
    // Last, because there is no way back to Russian.
    void numbersOfSheetsInEnglish();

private:
    /// What the program says about a document.
    /// @param target  file that it writes; the standard output if empty
    QString ask(const QString& program, const QStringList& arguments, const QByteArray& pdf,
                const QString& target = QStringLiteral("-")) const;
    /// The first sheet, a dot for each millimetre.
    QImage rasterise(const QByteArray& pdf) const;
    /// The text of the sheets.
    QStringList readSheets(const QByteArray& pdf) const;

    QTemporaryDir folder;
};

namespace {

ReportContent makeReport(int type, const ReportInput& input)
{
    return deskreports::find(type)->make(input);
}

ReportContent makeTable(const QStringList& titles, const std::vector<QStringList>& rows)
{
    ReportContent report;
    report.title = QStringLiteral("Title");
    report.project = QStringLiteral("Project");
    report.date = QStringLiteral("12.05.2026");
    ReportTable table;
    for (const QString& title : titles)
        table.columns.push_back({title, true});
    for (const QStringList& cells : rows)
        table.rows.push_back({cells, ReportTable::Row::Kind::Plain});
    report.tables.push_back(table);
    return report;
}

QString getLastLine(const QString& sheet)
{
    return sheet.trimmed().section(QLatin1Char('\n'), -1).trimmed();
}

} // namespace

QString TestReportPaper::ask(const QString& program, const QStringList& arguments, const QByteArray& pdf,
                             const QString& target) const
{
    const QString file = folder.filePath(QStringLiteral("report.pdf"));
    writeFile(file, pdf);
    QProcess process;
    process.start(program, arguments + QStringList{file, target});
    process.waitForFinished(-1); // a busy machine takes long over hundreds of sheets
    return QString::fromUtf8(process.readAllStandardOutput());
}

QImage TestReportPaper::rasterise(const QByteArray& pdf) const
{
    const QString target = folder.filePath(QStringLiteral("sheet"));
    ask(QStringLiteral(PDFTOPPM),
        {QStringLiteral("-r"), QStringLiteral("25.4"), QStringLiteral("-png"), QStringLiteral("-singlefile")},
        pdf, target);
    return QImage(target + QStringLiteral(".png"));
}

QStringList TestReportPaper::readSheets(const QByteArray& pdf) const
{
    QStringList sheets =
        ask(QStringLiteral(PDFTOTEXT), {QStringLiteral("-layout")}, pdf).split(QLatin1Char('\f'));
    sheets.removeLast();
    return sheets;
}

#define SKIP_WITHOUT_READER()                                                                                \
    if (QByteArrayLiteral(PDFTOTEXT).isEmpty())                                                              \
    QSKIP("poppler-utils is not installed", 0)

void TestReportPaper::everySheetHasHeadAndNumber()
{
    SKIP_WITHOUT_READER();
    const QStringList sheets =
        readSheets(reportpaper::makePdf(makeReport(kHeightCatalogue, makeLongLine(200))));
    QVERIFY(sheets.size() > 2);
    int number = 0;
    for (const QString& sheet : sheets) {
        const QString head = sheet.trimmed().section(QLatin1Char('\n'), 0, 0).simplified();
        QCOMPARE(head, QStringLiteral("Каталог высот · Линия 14 12.05.2026"));
        QCOMPARE(getLastLine(sheet), QStringLiteral("Лист %1 из %2").arg(++number).arg(sheets.size()));
        QCOMPARE(sheet.count(QStringLiteral("Высота, м")), 1);
    }
}

void TestReportPaper::roomToSpareIsForTexts()
{
    QImage device(100, 100, QImage::Format_ARGB32);
    const PaperFont bold(9.0, true, device);
    ReportTable table;
    table.columns = {{QStringLiteral("№")}, {QStringLiteral("Изменение"), true}};
    table.rows.push_back({{QStringLiteral("1"), QStringLiteral("x")}, ReportTable::Row::Kind::Plain});
    const std::vector<qreal> widths = ColumnLayout(table, bold).share(1000.0);
    QVERIFY(widths[0] < 100.0);
    QCOMPARE(widths[0] + widths[1], 1000.0);
}

void TestReportPaper::nothingOfManyRowsIsLost()
{
    SKIP_WITHOUT_READER();
    constexpr int count = 20000;
    const ReportInput input = makeLongLine(count);
    for (const int type : {kResidualList, kSectionBook}) {
        const QStringList sheets = readSheets(reportpaper::makePdf(makeReport(type, input)));
        QVERIFY(sheets.size() > 100);
        const QRegularExpression name(QStringLiteral("(?:R1|P[0-9]+) – (?:P([0-9]+)|R2) "));
        int expected = 1;
        int number = 0;
        for (const QString& sheet : sheets) {
            QCOMPARE(getLastLine(sheet), QStringLiteral("Лист %1 из %2").arg(++number).arg(sheets.size()));
            auto match = name.globalMatch(sheet);
            while (match.hasNext()) {
                const QString to = match.next().captured(1);
                QCOMPARE(to, expected == count ? QString() : QString::number(expected));
                ++expected;
            }
        }
        QCOMPARE(expected, count + 1);
    }
}

void TestReportPaper::marksAndSignatures()
{
    SKIP_WITHOUT_READER();
    const QString text =
        readSheets(reportpaper::makePdf(makeReport(kResidualList, makeReportNetwork()))).join(QChar());
    for (const char* expected : {"больше", "не контролируется", "Выполнил", "Проверил", "подпись",
                                 "фамилия, инициалы", "критерий χ²", "Проект: Линия 14, файл line14.orvel"})
        QVERIFY2(text.contains(QString::fromUtf8(expected)), expected);
}

void TestReportPaper::tallCellGoesOn()
{
    SKIP_WITHOUT_READER();
    QStringList words;
    for (int i = 1; i <= 3000; ++i)
        words.append(QStringLiteral("w%1").arg(i));
    const ReportContent report = makeTable({QStringLiteral("Name"), QStringLiteral("Words")},
                                           {{QStringLiteral("before"), QString()},
                                            {QStringLiteral("tall"), words.join(QLatin1Char(' '))},
                                            {QStringLiteral("after"), QString()}});
    const QStringList sheets = readSheets(reportpaper::makePdf(report));
    QVERIFY(sheets.size() > 1);
    QStringList found;
    auto match = QRegularExpression(QStringLiteral("\\bw[0-9]+\\b")).globalMatch(sheets.join(QChar()));
    while (match.hasNext())
        found.append(match.next().captured());
    QCOMPARE(found, words);
    for (const QString& sheet : sheets)
        QCOMPARE(sheet.count(QStringLiteral("Words")), 1);
    QVERIFY(sheets.last().contains(QStringLiteral("after")));
}

void TestReportPaper::wideTableLiesAcross()
{
    SKIP_WITHOUT_READER();
    const auto isWide = [this](int type) {
        const QSize size = rasterise(reportpaper::makePdf(makeReport(type, makeReportNetwork()))).size();
        return size.width() > size.height();
    };
    QVERIFY(!isWide(kHeightCatalogue));
    QVERIFY(isWide(kResidualList));
}

void TestReportPaper::pictureIsPrinted()
{
    SKIP_WITHOUT_READER();
    ReportContent report = makeReport(kHeightCatalogue, makeReportNetwork());
    report.picture =
        QByteArrayLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"400\" height=\"300\">"
                          "<rect width=\"400\" height=\"300\" fill=\"#ff0000\"/></svg>");
    const QImage sheet = rasterise(reportpaper::makePdf(report));
    QRect red;
    for (int y = 0; y < sheet.height(); ++y) {
        for (int x = 0; x < sheet.width(); ++x) {
            if (sheet.pixelColor(x, y) == QColor(Qt::red))
                red |= QRect(x, y, 1, 1);
        }
    }
    // As wide as the sheet between its margins, below the general data.
    QVERIFY2(red.left() >= 15 && red.right() <= 195 && red.width() >= 178,
             qPrintable(QString::number(red.width())));
    QVERIFY2(red.top() > 60 && red.height() >= 133, qPrintable(QString::number(red.height())));
}

void TestReportPaper::pictureAloneFillsASheet()
{
    SKIP_WITHOUT_READER();
    ReportContent report = makeTable({}, {});
    report.tables.clear();
    const auto draw = [&](int width, int height) {
        report.picture = QStringLiteral("<svg xmlns='http://www.w3.org/2000/svg' width='%1' height='%2' "
                                        "viewBox='0 0 %1 %2'><rect width='%1' height='%2' fill='red'/></svg>")
                             .arg(width)
                             .arg(height)
                             .toUtf8();
        const QByteArray pdf = reportpaper::makePdf(report);
        const QStringList sheets = readSheets(pdf);
        const QImage image = rasterise(pdf);
        int reds = 0;
        for (int y = 0; y < image.height(); ++y)
            reds += image.pixelColor(image.width() / 2, y) == QColor(Qt::red) ? 1 : 0;
        return QStringLiteral("%1, sheets %2, %3, %4 mm of red")
            .arg(image.width() > image.height() ? QStringLiteral("across") : QStringLiteral("upright"))
            .arg(sheets.size())
            .arg(getLastLine(sheets.value(0)))
            .arg(reds);
    };
    QCOMPARE(draw(100, 200), QStringLiteral("upright, sheets 1, Лист 1 из 1, 240 mm of red"));
    QCOMPARE(draw(300, 200), QStringLiteral("across, sheets 1, Лист 1 из 1, 153 mm of red"));
}

void TestReportPaper::warningIsPrinted()
{
    SKIP_WITHOUT_READER();
    ReportContent report = makeReport(kHeightCatalogue, makeReportNetwork());
    report.warning = QStringLiteral("Результаты устарели");
    const QString sheet = readSheets(reportpaper::makePdf(report)).front();
    QVERIFY(sheet.indexOf(report.warning) > 0);
    QVERIFY(sheet.indexOf(report.warning) < sheet.indexOf(QStringLiteral("Дата:")));
}

void TestReportPaper::rangeOfSheets()
{
    SKIP_WITHOUT_READER();
    const ReportContent report = makeReport(kHeightCatalogue, makeLongLine(400));
    const QString file = folder.filePath(QStringLiteral("range.pdf"));
    {
        QPdfWriter writer(file);
        QVERIFY(reportpaper::paint(report, writer, {2, 3}));
    }
    const QStringList sheets = readSheets(readFile(file));
    QCOMPARE(sheets.size(), 2);
    QVERIFY(getLastLine(sheets[0]).startsWith(QStringLiteral("Лист 2 из ")));
    QVERIFY(getLastLine(sheets[1]).startsWith(QStringLiteral("Лист 3 из ")));
}

void TestReportPaper::workCanBeStopped()
{
    const ReportContent report = makeReport(kHeightCatalogue, makeLongLine(1000));
    // While sheets are counted, and while they are painted.
    for (const int last : {10, 60}) {
        int latest = 0;
        QVERIFY(
            reportpaper::makePdf(report, [&](int percent) { return (latest = percent) < last; }).isEmpty());
        QVERIFY2(latest >= last && latest < last + 10, qPrintable(QString::number(latest)));
    }
}

void TestReportPaper::progressGoesToTheEnd()
{
    std::vector<int> percents;
    reportpaper::makePdf(makeReport(kHeightCatalogue, makeLongLine(1000)), [&](int percent) {
        percents.push_back(percent);
        return true;
    });
    QVERIFY(std::is_sorted(percents.begin(), percents.end()));
    QVERIFY(percents.front() < 10);
    QVERIFY(percents.back() > 90 && percents.back() <= 100);
}

void TestReportPaper::sameReportGivesTheSameBytes()
{
    const auto make = [] {
        QByteArray pdf = reportpaper::makePdf(makeReport(kSectionBook, makeReportNetwork()));
        const int date = pdf.indexOf("/CreationDate");
        return pdf.remove(date, pdf.indexOf('\n', date) - date);
    };
    QVERIFY(make() == make());
}

void TestReportPaper::emptyTableIsPrinted()
{
    SKIP_WITHOUT_READER();
    const QStringList sheets = readSheets(reportpaper::makePdf(makeTable({QStringLiteral("Only")}, {})));
    QCOMPARE(sheets.size(), 1);
    QVERIFY(sheets.front().contains(QStringLiteral("Only")));
}

void TestReportPaper::suffixTellsTheKind()
{
    const ReportContent report = makeReport(kHeightCatalogue, makeReportNetwork());
    QVERIFY(reportfile::isKnown(QStringLiteral("a/b.PDF")));
    QVERIFY(reportfile::isKnown(QStringLiteral("b.html")));
    QVERIFY(!reportfile::isKnown(QStringLiteral("b.txt")));
    QVERIFY(!reportfile::isKnown(QString()));
    QVERIFY(reportfile::make(report, QStringLiteral("b.PDF")).startsWith("%PDF-"));
    QVERIFY(reportfile::make(report, QStringLiteral("b.html")).startsWith("<!DOCTYPE html>"));
}

void TestReportPaper::numbersOfSheetsInEnglish()
{
    SKIP_WITHOUT_READER();
    installLanguage(QStringLiteral("en"));
    const QStringList sheets =
        readSheets(reportpaper::makePdf(makeReport(kHeightCatalogue, makeReportNetwork())));
    QCOMPARE(sheets.size(), 1);
    QCOMPARE(getLastLine(sheets.front()), QStringLiteral("Sheet 1 of 1"));
    QVERIFY(sheets.front().contains(QStringLiteral("Catalogue of heights")));
}

QTEST_MAIN(TestReportPaper)
#include "tst_reportpaper.moc"
