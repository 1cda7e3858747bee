#include "levelling/TemplateReader.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <ctime>

using namespace levelling;

Q_DECLARE_METATYPE(levelling::TableTemplate)
Q_DECLARE_METATYPE(levelling::TemplateFault::Kind)

/// Networks from text files: what rows give, and what becomes of those that give nothing.
class TestTemplateReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void sectionsInTheirUnits_data();
    void sectionsInTheirUnits();
    void rowsTellEverything();
    void weights();
    void pointsAreHeldOrObserved();
    void placesOfPoints();
    void unusableCells_data();
    void unusableCells();
    void skippedRowsAreCounted();
    void onlyFirstSkippedLinesAreListed();
    void repeatedRowsAreTold();
    void doubtfulUnits_data();
    void doubtfulUnits();
    void steepSectionsAreTold();
    void surplusCellsAreTold();
    void undecodedTextIsTold();
    void tableWithoutRows();
    void faultsOfTemplates_data();
    void faultsOfTemplates();
    void rolesHaveNames();
    void tooLongLineGivesNothing();
    void missingFileGivesNothing();
    void stopGivesNothing();
    void hundredThousandRowsAreLinear();
};

namespace {

TableTemplate sectionTable(std::vector<ColumnRole> columns = {ColumnRole::From, ColumnRole::To,
                                                              ColumnRole::Difference, ColumnRole::Length})
{
    TableTemplate format;
    format.columns = std::move(columns);
    return format;
}

TableTemplate pointTable()
{
    return sectionTable({ColumnRole::Point, ColumnRole::Height, ColumnRole::Sigma});
}

TableResult readText(QByteArray text, const TableTemplate& format, const Parameters& parameters = {})
{
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    return TemplateReader::read(buffer, format, parameters);
}

/// The problem as "line kind: arguments", the kind being its number.
QString toText(const Problem& problem)
{
    const QStringList severities{QStringLiteral("fatal"), QStringLiteral("error"), QStringLiteral("warning")};
    return QStringLiteral("%1 %2 %3: %4")
        .arg(QString::number(problem.line), severities[static_cast<int>(problem.severity)],
             QString::number(static_cast<int>(problem.kind)), problem.arguments.join(QLatin1Char('|')));
}

QStringList toTexts(const std::vector<Problem>& problems)
{
    QStringList texts;
    for (const Problem& problem : problems)
        texts.append(toText(problem));
    return texts;
}

QString expected(qint64 line, const char* severity, ProblemKind kind, const char* arguments)
{
    return QStringLiteral("%1 %2 %3: %4")
        .arg(QString::number(line), QLatin1String(severity), QString::number(static_cast<int>(kind)),
             QString::fromUtf8(arguments));
}

} // namespace

void TestTemplateReader::sectionsInTheirUnits_data()
{
    QTest::addColumn<QByteArray>("row");
    QTest::addColumn<int>("differenceUnit");
    QTest::addColumn<int>("lengthUnit");
    QTest::addColumn<QChar>("decimal");
    const auto row = [](const char* name, const char* text, DifferenceUnit difference, LengthUnit length,
                        char decimal) {
        QTest::newRow(name) << QByteArray(text) << static_cast<int>(difference) << static_cast<int>(length)
                            << QChar(QLatin1Char(decimal));
    };
    row("m, km", "A;B;-1.25;0.5", DifferenceUnit::Metre, LengthUnit::Kilometre, '.');
    row("cm, m", "A;B;-125;500", DifferenceUnit::Centimetre, LengthUnit::Metre, '.');
    row("mm", "A;B;-1250;500", DifferenceUnit::Millimetre, LengthUnit::Metre, '.');
    row("decimal comma", "A;B;-1,25;0,5", DifferenceUnit::Metre, LengthUnit::Kilometre, ',');
    row("minus sign", "A;B;\u22121,25;0,5", DifferenceUnit::Metre, LengthUnit::Kilometre, ',');
    row("exponent", "A;B;-125e-2;5E-1", DifferenceUnit::Metre, LengthUnit::Kilometre, '.');
}

void TestTemplateReader::sectionsInTheirUnits()
{
    QFETCH(QByteArray, row);
    QFETCH(int, differenceUnit);
    QFETCH(int, lengthUnit);
    QFETCH(QChar, decimal);
    TableTemplate format = sectionTable();
    format.differenceUnit = static_cast<DifferenceUnit>(differenceUnit);
    format.lengthUnit = static_cast<LengthUnit>(lengthUnit);
    format.decimal = decimal;
    const TableResult result = readText(row, format);
    QCOMPARE(toTexts(result.problems), QStringList());
    QCOMPARE(result.network.sections.size(), std::size_t(1));
    const Section& section = result.network.sections[0];
    QCOMPARE(section.difference, -1.25);
    QCOMPARE(*section.distance, 0.5);
    QCOMPARE(section.sigma, 10.0 * std::sqrt(0.5));
    QCOMPARE(section.line, qint64(1));
}

void TestTemplateReader::rowsTellEverything()
{
    const TableTemplate format =
        sectionTable({ColumnRole::Note, ColumnRole::Skip, ColumnRole::To, ColumnRole::From, ColumnRole::Sigma,
                      ColumnRole::Stations, ColumnRole::Date, ColumnRole::Difference, ColumnRole::Length});
    const TableResult result = readText("ветер;#;Rp 1;М2;0.8;12;01.05.2026;1.5;1.2\n", format);
    QCOMPARE(toTexts(result.problems), QStringList());
    const Section& section = result.network.sections[0];
    QCOMPARE(result.network.points[static_cast<std::size_t>(section.from)].id, QStringLiteral("М2"));
    QCOMPARE(result.network.points[static_cast<std::size_t>(section.to)].id, QStringLiteral("Rp 1"));
    QCOMPARE(section.note, QStringLiteral("ветер"));
    QCOMPARE(section.date, QStringLiteral("01.05.2026"));
    QCOMPARE(*section.stations, 12);
    QCOMPARE(*section.stdev, 0.8);
    QCOMPARE(section.sigma, 0.8);
    QCOMPARE(*section.distance, 1.2);
    QVERIFY(!result.network.points[0].declared);
}

void TestTemplateReader::weights()
{
    const TableTemplate format = sectionTable({ColumnRole::From, ColumnRole::To, ColumnRole::Difference,
                                               ColumnRole::Length, ColumnRole::Stations, ColumnRole::Sigma});
    Parameters parameters;
    parameters.sigmaApriori = 4.0;
    const TableResult result = readText("A;B;1;4;9;0.5\n"
                                        "A;B;2;4;9;\n"
                                        "A;B;3;;90\n"
                                        "A;B;4\n",
                                        format, parameters);
    QCOMPARE(result.network.sections[0].sigma, 0.5);
    QCOMPARE(result.network.sections[1].sigma, 8.0);
    QCOMPARE(result.network.sections[2].sigma, 12.0);
    QCOMPARE(result.network.sections[3].sigma, 4.0);
    QCOMPARE(result.counts.weighedByStations, qint64(1));
    QCOMPARE(toTexts(result.problems),
             QStringList(expected(4, "warning", ProblemKind::RowWithoutWeight, "A|B")));
    QCOMPARE(result.network.parameters.sigmaApriori, 4.0);
}

void TestTemplateReader::pointsAreHeldOrObserved()
{
    const TableResult result = readText("A;100.5;\n"
                                        "B;101.5;2\n"
                                        "C;102.5;0\n"
                                        "D;103.5;-1\n"
                                        "A;100.6;3\n",
                                        pointTable());
    const std::vector<Point>& points = result.network.points;
    QCOMPARE(points.size(), std::size_t(4));
    QVERIFY(points[0].observed && !points[0].fixed);
    QCOMPARE(*points[0].height, 100.6);
    QVERIFY(points[1].observed);
    QVERIFY(points[2].fixed && !points[2].observed);
    QVERIFY(points[3].fixed);
    QCOMPARE(toTexts(result.problems),
             QStringList({expected(4, "error", ProblemKind::PointSigmaUnusable, "D|-1"),
                          expected(5, "warning", ProblemKind::PointRepeated, "A|1")}));
    const std::vector<ObservedHeights>& observed = result.network.observedHeights;
    QCOMPARE(observed.size(), std::size_t(2));
    QCOMPARE(observed[0].points, std::vector<int>{0});
    QCOMPARE(observed[0].covariance, std::vector<double>{9.0});
    QCOMPARE(observed[1].points, std::vector<int>{1});
    QCOMPARE(observed[1].covariance, std::vector<double>{4.0});
}

void TestTemplateReader::placesOfPoints()
{
    const TableTemplate format =
        sectionTable({ColumnRole::Point, ColumnRole::X, ColumnRole::Y, ColumnRole::Height});
    const TableResult result = readText("A;10.5;-20.5;100\n"
                                        "B;11;21;\n"
                                        "C;;;102\n"
                                        "D;13;;103\n"
                                        "E;;;\n"
                                        "F;x;2;104\n",
                                        format);
    const std::vector<Point>& points = result.network.points;
    QCOMPARE(points.size(), std::size_t(3));
    QCOMPARE(*points[0].x, 10.5);
    QCOMPARE(*points[0].y, -20.5);
    QVERIFY(points[0].fixed);
    QCOMPARE(*points[1].x, 11.0);
    QVERIFY(!points[1].declared && !points[1].fixed && !points[1].height);
    QVERIFY(points[2].fixed && !points[2].x);
    QCOMPARE(toTexts(result.problems),
             QStringList({expected(4, "error", ProblemKind::RowCellMissing, "y"),
                          expected(5, "error", ProblemKind::RowCellMissing, "height"),
                          expected(6, "error", ProblemKind::RowCellMissing, "x")}));
}

void TestTemplateReader::unusableCells_data()
{
    QTest::addColumn<QByteArray>("row");
    QTest::addColumn<QString>("problem");
    QTest::addColumn<int>("sections");
    const auto row = [](const char* name, const char* text, const QString& problem, int sections) {
        QTest::newRow(name) << QByteArray(text) << problem << sections;
    };
    row("no name", ";B;1;1", expected(1, "error", ProblemKind::RowCellMissing, "from"), 0);
    row("short row", "A;B", expected(1, "error", ProblemKind::RowCellMissing, "dh"), 0);
    row("no number", "A;B;1x;1", expected(1, "error", ProblemKind::RowCellUnusable, "dh|1x"), 0);
    row("too large", "A;B;1e10;1", expected(1, "error", ProblemKind::RowCellUnusable, "dh|1e10"), 0);
    row("no finite number", "A;B;nan;1", expected(1, "error", ProblemKind::RowCellUnusable, "dh|nan"), 0);
    row("other decimal sign", "A;B;1,5;1", expected(1, "error", ProblemKind::RowDecimalSign, "dh|1,5|."), 0);
    row("groups of digits", "A;B;1 000;1", expected(1, "error", ProblemKind::RowCellUnusable, "dh|1 000"), 0);
    row("same ends", "A;A;1;1", expected(1, "error", ProblemKind::SectionSameEnds, "A|A"), 0);
    row("open quote", "\"A;B;1;1", expected(1, "error", ProblemKind::RowQuoteOpen, ""), 0);
    row("length is no number", "A;B;1;x;2", expected(1, "error", ProblemKind::DistanceUnusable, "A|B|x"), 1);
    row("length of zero", "A;B;1;0;2", expected(1, "error", ProblemKind::DistanceUnusable, "A|B|0"), 1);
    row("half a station", "A;B;1;1;1.5", expected(1, "error", ProblemKind::StationsUnusable, "A|B|1.5"), 1);
    row("negative sigma", "A;B;1;1;;-1", expected(1, "error", ProblemKind::StdevUnusable, "A|B|-1"), 1);
}

void TestTemplateReader::unusableCells()
{
    QFETCH(QByteArray, row);
    QFETCH(QString, problem);
    QFETCH(int, sections);
    const TableTemplate format = sectionTable({ColumnRole::From, ColumnRole::To, ColumnRole::Difference,
                                               ColumnRole::Length, ColumnRole::Stations, ColumnRole::Sigma});
    const TableResult result = readText(row, format);
    QCOMPARE(static_cast<int>(result.network.sections.size()), sections);
    QCOMPARE(result.counts.refused, qint64(1 - sections));
    QStringList problems(problem);
    if (sections == 0)
        problems.prepend(expected(0, "error", ProblemKind::NoRows, ""));
    QCOMPARE(toTexts(result.problems), problems);
}

void TestTemplateReader::skippedRowsAreCounted()
{
    TableTemplate format = sectionTable();
    format.syntax.skipRows = 2;
    const TableResult result = readText("title\nfrom;to\n# c\n\nA;B;1;1\n\nA;B\n#\nB;C;1;1", format);
    QCOMPARE(result.counts.used, qint64(2));
    QCOMPARE(result.counts.refused, qint64(1));
    QCOMPARE(result.counts.headings, qint64(2));
    QCOMPARE(result.counts.empty, qint64(2));
    QCOMPARE(result.counts.emptyLines, (std::vector<qint64>{4, 6}));
    QCOMPARE(result.counts.comments, qint64(2));
    QCOMPARE(result.counts.commentLines, (std::vector<qint64>{3, 8}));
}

void TestTemplateReader::onlyFirstSkippedLinesAreListed()
{
    const TableResult result = readText("A;B;1;1\n" + QByteArray(1000, '\n'), sectionTable());
    QCOMPARE(result.counts.empty, qint64(1000));
    QCOMPARE(result.counts.emptyLines.size(), TemplateReader::kListedLines);
    QCOMPARE(result.counts.emptyLines.back(), qint64(21));
}

void TestTemplateReader::repeatedRowsAreTold()
{
    // Levelled back it is another measurement, and so it is with another result.
    const TableResult result = readText("A;B;1;1\nA;B;1.001;1\nB;A;-1;1\nA;B;1;1\nA;B;1;2\n", sectionTable());
    QCOMPARE(result.network.sections.size(), std::size_t(5));
    QCOMPARE(toTexts(result.problems),
             QStringList({expected(4, "warning", ProblemKind::RowRepeated, "A|B|1"),
                          expected(5, "warning", ProblemKind::RowRepeated, "A|B|1")}));
}

void TestTemplateReader::doubtfulUnits_data()
{
    QTest::addColumn<int>("differenceUnit");
    QTest::addColumn<int>("lengthUnit");
    QTest::addColumn<QByteArray>("rows");
    QTest::addColumn<QStringList>("problems");
    const auto row = [](const char* name, DifferenceUnit difference, LengthUnit length, const char* rows,
                        const QStringList& problems) {
        QTest::newRow(name) << static_cast<int>(difference) << static_cast<int>(length) << QByteArray(rows)
                            << problems;
    };
    row("m, km", DifferenceUnit::Metre, LengthUnit::Kilometre, "A;B;1;1\nB;C;-20;2\nC;D;3;3\n", {});
    row("mm taken for m", DifferenceUnit::Metre, LengthUnit::Kilometre,
        "A;B;1234;1\nB;C;-2345;2\nC;D;3456;3\n",
        {expected(0, "warning", ProblemKind::UnitDoubtful, "dh|m|2345")});
    row("m taken for mm", DifferenceUnit::Millimetre, LengthUnit::Kilometre,
        "A;B;1.234;1\nB;C;-2.5;2\nC;D;3.456;3\n",
        {expected(0, "warning", ProblemKind::UnitDoubtful, "dh|mm|2.5")});
    row("m taken for km", DifferenceUnit::Metre, LengthUnit::Kilometre,
        "A;B;1.234;500\nB;C;-2.345;600\nC;D;3.456;700\n",
        {expected(0, "warning", ProblemKind::UnitDoubtful, "length|km|600")});
    row("km taken for m", DifferenceUnit::Metre, LengthUnit::Metre,
        "A;B;1.234;0.5\nB;C;-2.345;0.6\nC;D;3.456;0.7\n",
        {expected(0, "warning", ProblemKind::UnitDoubtful, "length|m|0.6")});
    row("too few rows", DifferenceUnit::Metre, LengthUnit::Kilometre, "A;B;234;1\nB;C;-345;2\n", {});
}

void TestTemplateReader::doubtfulUnits()
{
    QFETCH(int, differenceUnit);
    QFETCH(int, lengthUnit);
    QFETCH(QByteArray, rows);
    QFETCH(QStringList, problems);
    TableTemplate format = sectionTable();
    format.differenceUnit = static_cast<DifferenceUnit>(differenceUnit);
    format.lengthUnit = static_cast<LengthUnit>(lengthUnit);
    QCOMPARE(toTexts(readText(rows, format).problems), problems);
}

void TestTemplateReader::steepSectionsAreTold()
{
    const TableResult byLength =
        readText("A;B;1.5;0.5\nB;C;1234;0.5\nC;D;500;0.5\nD;E;1;1\nE;F;1;1\n", sectionTable());
    QCOMPARE(toTexts(byLength.problems),
             QStringList(expected(2, "warning", ProblemKind::SectionTooSteep, "B|C|1234|500")));
    const TableTemplate format =
        sectionTable({ColumnRole::From, ColumnRole::To, ColumnRole::Difference, ColumnRole::Stations});
    QCOMPARE(toTexts(readText("A;B;-10.5;2\nB;C;10;2\n", format).problems),
             QStringList(expected(1, "warning", ProblemKind::SectionTooSteep, "A|B|-10.5|10")));
}

void TestTemplateReader::surplusCellsAreTold()
{
    QCOMPARE(toTexts(readText("A;B;1;1;;\nA;C;1;1;x\nA;D;1;1;;y\n", sectionTable()).problems),
             QStringList(expected(2, "warning", ProblemKind::RowsTooLong, "2|4")));
}

void TestTemplateReader::undecodedTextIsTold()
{
    const TableResult result = readText("A;B;1;1\n\xCF;C;1;1\n\xD0;D;1;1\n", sectionTable());
    QCOMPARE(toTexts(result.problems),
             QStringList(expected(2, "warning", ProblemKind::RowsUndecoded, "2|UTF-8")));
    TableTemplate format = sectionTable();
    format.syntax.encoding = "windows-1251";
    QCOMPARE(toTexts(readText("\xEF\xBB\xBF"
                              "A;B;1;1\n",
                              format)
                         .problems),
             QStringList(expected(0, "warning", ProblemKind::EncodingMarked, "UTF-8|windows-1251")));
}

void TestTemplateReader::tableWithoutRows()
{
    const QStringList nothing(expected(0, "error", ProblemKind::NoRows, ""));
    QCOMPARE(toTexts(readText("", sectionTable()).problems), nothing);
    QCOMPARE(toTexts(readText("# A;B;1;1\n", pointTable()).problems), nothing);
}

void TestTemplateReader::faultsOfTemplates_data()
{
    QTest::addColumn<TableTemplate>("format");
    QTest::addColumn<TemplateFault::Kind>("kind");
    QTest::addColumn<int>("role");
    using Kind = TemplateFault::Kind;
    const auto row = [](const char* name, const TableTemplate& format, Kind kind, ColumnRole role) {
        QTest::newRow(name) << format << kind << static_cast<int>(role);
    };
    row("no columns", sectionTable({}), Kind::RoleMissing, ColumnRole::From);
    row("no difference", sectionTable({ColumnRole::From, ColumnRole::To}), Kind::RoleMissing,
        ColumnRole::Difference);
    row("no name", sectionTable({ColumnRole::Height}), Kind::RoleMissing, ColumnRole::Point);
    row("no height", sectionTable({ColumnRole::Point}), Kind::RoleMissing, ColumnRole::Height);
    row("deviation of no height",
        sectionTable({ColumnRole::Point, ColumnRole::X, ColumnRole::Y, ColumnRole::Sigma}), Kind::RoleMissing,
        ColumnRole::Height);
    row("half a place", sectionTable({ColumnRole::Point, ColumnRole::X}), Kind::RoleMissing, ColumnRole::Y);
    row("twice", sectionTable({ColumnRole::From, ColumnRole::To, ColumnRole::From}), Kind::RoleRepeated,
        ColumnRole::From);
    row("mixed", sectionTable({ColumnRole::From, ColumnRole::To, ColumnRole::Difference, ColumnRole::Height}),
        Kind::RolesMixed, ColumnRole::Height);
    TableTemplate format = sectionTable();
    format.syntax.widths = {1, 2};
    row("widths", format, Kind::WidthCount, ColumnRole::Skip);
    for (const char separator : {'a', '1', '-', '.', '"', '\n'}) {
        format = sectionTable();
        format.syntax.separator = QLatin1Char(separator);
        row(qPrintable(QStringLiteral("separator %1").arg(static_cast<int>(separator))), format,
            Kind::SeparatorUnusable, ColumnRole::Skip);
    }
}

void TestTemplateReader::faultsOfTemplates()
{
    QFETCH(TableTemplate, format);
    QFETCH(TemplateFault::Kind, kind);
    QFETCH(int, role);
    const std::optional<TemplateFault> fault = findFault(format);
    QVERIFY(fault);
    QCOMPARE(fault->kind, kind);
    QCOMPARE(static_cast<int>(fault->role), role);
}

void TestTemplateReader::rolesHaveNames()
{
    for (const ColumnRole role : getRoles())
        QVERIFY(findRole(getRoleName(role)) == role);
    QVERIFY(!findRole(QStringLiteral("DH")));
    for (const char separator : {';', ',', '\t', '|', ' ', ':', '#'}) {
        TableTemplate format = sectionTable();
        format.syntax.separator = QLatin1Char(separator);
        QVERIFY2(!findFault(format), &separator);
    }
    QVERIFY(!findFault(sectionTable({ColumnRole::Skip, ColumnRole::Point, ColumnRole::Skip, ColumnRole::X,
                                     ColumnRole::Y, ColumnRole::Note})));
}

void TestTemplateReader::tooLongLineGivesNothing()
{
    const TableResult result = readText("A;B;1;1\n" + QByteArray(20000, 'x'), sectionTable());
    QCOMPARE(toText(*result.fatal), expected(2, "fatal", ProblemKind::LineTooLong, "10000"));
    QVERIFY(result.network.sections.empty() && result.network.points.empty() && result.problems.empty());
}

void TestTemplateReader::missingFileGivesNothing()
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("missing.csv")));
    QVERIFY(!file.open(QIODevice::ReadOnly));
    const TableResult result = TemplateReader::readFile(file, sectionTable());
    QVERIFY(result.fatal->kind == ProblemKind::FileNotReadable);
    QCOMPARE(result.fatal->arguments, QStringList(file.errorString()));
}

void TestTemplateReader::stopGivesNothing()
{
    QByteArray text = QByteArray("A;B;1;1\n").repeated(100000);
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    int questions = 0;
    const TableResult result =
        TemplateReader::read(buffer, sectionTable(), {}, [&questions] { return ++questions == 3; });
    QVERIFY(result.isStopped);
    QVERIFY(!result.fatal);
    QVERIFY(result.network.sections.empty());
    QCOMPARE(questions, 3);
}

void TestTemplateReader::hundredThousandRowsAreLinear()
{
    const auto measure = [](int count) {
        QByteArray text;
        for (int i = 0; i < count; ++i)
            text += "P" + QByteArray::number(i) + ";P" + QByteArray::number(i + 1) + ";1.234;0.5\n";
        // Processor time: the short one may have a processor to itself where the long one has to share it.
        const std::clock_t start = std::clock();
        const TableResult result = readText(text, sectionTable());
        const qint64 elapsed = std::clock() - start;
        if (result.counts.used != count || !result.problems.empty())
            qFatal("all rows are used");
        return elapsed;
    };
    // What is quickest of several says least of the other work of the machine.
    const auto measureBest = [&measure](int count) {
        qint64 best = measure(count);
        for (int i = 0; i < 4; ++i)
            best = std::min(best, measure(count));
        return best;
    };
    const qint64 tenth = measureBest(10000);
    const qint64 whole = measureBest(100000);
    // Ten times as much, and more where the caches end; a time that grew with the square would be a hundred.
    QVERIFY2(whole < 40 * tenth,
             qPrintable(QStringLiteral("%1, %2 of %3 a second").arg(tenth).arg(whole).arg(CLOCKS_PER_SEC)));
}

QTEST_GUILESS_MAIN(TestTemplateReader)
#include "tst_templatereader.moc"
