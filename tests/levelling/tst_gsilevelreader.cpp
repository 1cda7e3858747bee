#include "levelling/GsiLevelReader.h"
#include "levelling/HeldPoints.h"
#include "tests/levelling/LevelTexts.h"

#include <QBuffer>
#include <QHash>
#include <QTest>

#include <cmath>

using namespace levelling;
using namespace orvel::test;

namespace {

LevelResult read(QByteArray content, const LevelSettings& settings = {})
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    return gsilevelreader::read(buffer, settings);
}

/// Writes a line of levelling as an instrument does, with heights that it carries on itself. Numbers are in
/// 0.01 mm.
class GsiWriter
{
public:
    QByteArray content;

    void start(const char* method, const char* point, int height, const char* mode = "5")
    {
        add("*41" + number() + "+00000000?......" + method);
        block(point, word("83.." + QByteArray(mode) + "8", height));
        heightHere = height;
    }

    /// A reading of a station in progress.
    void reading(int index, const char* point, int value, int distance = 2000000)
    {
        QByteArray words = distance == 0 ? QByteArray() : word("32...8", distance);
        block(point, words + word(QByteArray::number(index) + ".08", value));
    }

    /// A station of BFFB, whose readings differ by two small amounts.
    void station(const char* back, const char* fore, int b1, int f1, int b2, int f2)
    {
        reading(331, back, b1);
        reading(332, fore, f1);
        reading(336, fore, f2);
        reading(335, back, b2);
        close(fore, (b1 - f1 + b2 - f2) / 2);
    }

    /// A station of BF.
    void station(const char* back, const char* fore, int b, int f)
    {
        reading(331, back, b);
        reading(332, fore, f);
        close(fore, b - f);
    }

    void close(const char* fore, int difference)
    {
        heightHere += difference;
        block(fore, word("573..8", 0) + word("574..8", 4000000) + word("83..08", heightHere));
    }

    void block(const char* point, const QByteArray& words)
    {
        add("*11" + number() + '+' + QByteArray(point).rightJustified(16, '0') + ' ' + words);
    }

    void add(const QByteArray& line) { content += line + " \r\n"; }

    static QByteArray word(const QByteArray& head, int value)
    {
        return head + (value < 0 ? '-' : '+') + QByteArray::number(std::abs(value)).rightJustified(16, '0') +
               ' ';
    }

private:
    QByteArray number() { return QByteArray::number(++count).rightJustified(4, '0'); }

    int count = 0;
    int heightHere = 0;
};

} // namespace

/// Lines and sections from the GSI files of levels.
class TestGsiLevelReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lineBecomesASection();
    void shortWordsGiveTheSame();
    void namedPointsInsideALineAreMarks();
    void numberThatEndsAnotherLineIsAMark();
    void numberOfSeveralLinesIsNoMark();
    void loopKeepsItsMiddlePoint();
    void alternatingOrderIsRead();
    void invertedStaffHasNegativeReadings();
    void feetAreConverted();
    void repeatedReadingsAreAveraged();
    void repeatedReadingsThatDisagreeAreTold();
    void stationRepeatedWithTheInstrumentReplacesTheEarlier();
    void heightOfTheInstrumentIsChecked();
    void twoReadingsAreCompared();
    void stationWithoutHeightEndsWhereTheNextBegins();
    void secondReadingMayBeMissing();
    void abandonedStationsAreTold();
    void lostReadingCostsOneStation();
    void benchmarkOutsideTheLinesIsKept();
    void interruptedLineBecomesTwoParts();
    void intermediateSightIsASectionFromTheLastMark();
    void bookByRiseAndFallGivesItsLevels();
    void heightsThatWereEnteredAreBenchmarks();
    void partWithoutHeightsIsHeldAtAPoint();
    void distancesMayBeMissing();
    void severalJobsAreReadOneAfterTheOther();
    void checkOfTheInstrumentIsNoLine();
    void readingsWithoutALineStartOne();
    void readingBesideTheLineChangesNothing();
    void codesAndUnknownWordsAreCounted();
    void unusableTextIsTold();
    void sigmaHasAConstantPart();
    void sigmaIsThatOfTheLength();
    void endlessLineEndsTheReading();
    void stopIsObeyed();
};

void TestGsiLevelReader::lineBecomesASection()
{
    GsiWriter writer;
    writer.start("2", "A", 10000000);
    writer.station("A", "1", 150000, 100000, 150004, 100010);
    writer.station("1", "B", 120000, 140000, 120006, 140000);
    const LevelResult result = read(writer.content);
    QVERIFY(!result.file.fatal);
    QCOMPARE(problemsOf(result), QStringList());
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("A-B 0.30000 m, 80.0 m, 2 st.")));
    const Section& section = result.file.network.sections[0];
    QCOMPARE(*section.readingDifference, 0.0);
    QCOMPARE(section.line, qint64(3));
    QCOMPARE(section.sigma, 10.0 * std::sqrt(0.08));
    QVERIFY(!section.stdev);
    QCOMPARE(int(result.findings.lines.size()), 1);
    const LevelLine& line = result.findings.lines[0];
    QCOMPARE(line.firstLine, qint64(1));
    QCOMPARE(line.lastLine, qint64(12));
    QCOMPARE(line.method, LevelMethod::BackForeForeBack);
    QCOMPARE(line.comparedHeights, 2);
    QCOMPARE(line.turningPoints, 1);
    QCOMPARE(line.firstTurningPoint, QStringLiteral("1"));
    QCOMPARE(int(result.findings.checks.size()), 0);
    QVERIFY(result.file.network.points[0].fixed);
    QCOMPARE(*result.file.network.points[0].height, 100.0);
    QVERIFY(!result.file.network.points[1].height);
}

void TestGsiLevelReader::shortWordsGiveTheSame()
{
    const LevelResult result =
        read("410001+?......1\r\n"
             "110002+0000BM01 83...6+01000000 \r\n"
             "110003+0000BM01 32...6+00253400 331.06+00015230\r\n"
             "110004+00000001 32...6+00248700 332.06+00012110   \r\n"
             "110005+00000001 573..6+00004700 574..6+00502100 83..06+01003120\r\n"
             "\r\n"
             "110006+00000001 32...6+00301200 331.06+00009875\r\n"
             "110007+0000BM02 32...6+00296500 332.06+00018842\r\n"
             "110008+0000BM02 573..6+00009400 574..6+01099800 83..06+00994153\r\n\x1A");
    QCOMPARE(problemsOf(result), QStringList());
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("BM01-BM02 -0.58470 m, 110.0 m, 2 st.")));
    QVERIFY(!result.file.network.sections[0].readingDifference);
    QCOMPARE(int(result.findings.checks.size()), 0);
    QCOMPARE(result.findings.lines[0].method, LevelMethod::BackFore);
}

void TestGsiLevelReader::namedPointsInsideALineAreMarks()
{
    GsiWriter writer;
    writer.start("1", "A", 0);
    writer.station("A", "1", 150000, 100000);
    writer.station("1", "P7", 150000, 100000);
    writer.station("P7", "2", 150000, 100000);
    writer.station("2", "P7", 100000, 150000);
    writer.station("P7", "B", 150000, 100000);
    const LevelResult result = read(writer.content);
    QCOMPARE(sectionsOf(result), QStringList({QStringLiteral("A-P7 1.00000 m, 80.0 m, 2 st."),
                                              QStringLiteral("P7-2 (1) 0.50000 m, 40.0 m, 1 st."),
                                              QStringLiteral("2 (1)-P7 -0.50000 m, 40.0 m, 1 st."),
                                              QStringLiteral("P7-B 0.50000 m, 40.0 m, 1 st.")}));
    QCOMPARE(result.findings.lines[0].firstSection, 0);
    QCOMPARE(result.findings.lines[0].sectionCount, 4);
}

void TestGsiLevelReader::numberThatEndsAnotherLineIsAMark()
{
    GsiWriter writer;
    writer.start("1", "A", 0);
    writer.station("A", "1", 150000, 100000);
    writer.station("1", "501", 150000, 100000);
    writer.station("501", "2", 150000, 100000);
    writer.station("2", "B", 150000, 100000);
    writer.start("1", "501", 100000, "0");
    writer.station("501", "C", 150000, 100000);
    const LevelResult result = read(writer.content);
    QCOMPARE(sectionsOf(result), QStringList({QStringLiteral("A-501 1.00000 m, 80.0 m, 2 st."),
                                              QStringLiteral("501-B 1.00000 m, 80.0 m, 2 st."),
                                              QStringLiteral("501-C 0.50000 m, 40.0 m, 1 st.")}));
    QCOMPARE(problemsOf(result), QStringList());
}

void TestGsiLevelReader::numberOfSeveralLinesIsNoMark()
{
    GsiWriter writer;
    for (const char* start : {"A", "B"}) {
        writer.start("1", start, 0);
        writer.station(start, "1", 150000, 100000);
        writer.station("1", "2", 150000, 100000);
        writer.station("2", "C", 150000, 100000);
    }
    writer.start("1", "C", 0, "0");
    writer.station("C", "2", 150000, 100000);
    const LevelResult result = read(writer.content);
    QCOMPARE(sectionsOf(result), QStringList({QStringLiteral("A-C 1.50000 m, 120.0 m, 3 st."),
                                              QStringLiteral("B-C 1.50000 m, 120.0 m, 3 st."),
                                              QStringLiteral("C-2 0.50000 m, 40.0 m, 1 st.")}));
    QCOMPARE(problemsOf(result), QStringList(problem(ProblemKind::NumberEndsLine, 23, "2")));
}

void TestGsiLevelReader::loopKeepsItsMiddlePoint()
{
    GsiWriter writer;
    writer.start("1", "A", 10000000);
    writer.station("A", "1", 150000, 100000);
    writer.station("1", "2", 150000, 120000);
    writer.station("2", "A", 100000, 180020);
    LevelSettings settings;
    settings.sourceName = QStringLiteral("day.gsi");
    const LevelResult result = read(writer.content, settings);
    QCOMPARE(sectionsOf(result), QStringList({QStringLiteral("A-1 (day.gsi:1) 0.50000 m, 40.0 m, 1 st."),
                                              QStringLiteral("1 (day.gsi:1)-A -0.50020 m, 80.0 m, 2 st.")}));
    QCOMPARE(result.findings.lines[0].from, result.findings.lines[0].to);
    QCOMPARE(QString::number(result.findings.lines[0].difference, 'f', 5), QStringLiteral("-0.00020"));
}

void TestGsiLevelReader::alternatingOrderIsRead()
{
    GsiWriter writer;
    writer.start("4", "A", 10000000);
    writer.station("A", "1", 150000, 100000, 150000, 100000);
    writer.reading(332, "B", 140000);
    writer.reading(331, "1", 120000);
    writer.reading(335, "1", 120010);
    writer.reading(336, "B", 140000);
    writer.close("B", -19995);
    const LevelResult result = read(writer.content);
    QCOMPARE(problemsOf(result), QStringList());
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("A-B 0.30005 m, 80.0 m, 2 st.")));
    QCOMPARE(*result.file.network.sections[0].readingDifference, -0.1);
    QCOMPARE(result.findings.lines[0].method, LevelMethod::AlternateBackForeForeBack);
}

void TestGsiLevelReader::invertedStaffHasNegativeReadings()
{
    GsiWriter writer;
    writer.start("1", "A", 10000000);
    writer.station("A", "Roof", 150000, -230000);
    const LevelResult result = read(writer.content);
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("A-Roof 3.80000 m, 40.0 m, 1 st.")));
    QCOMPARE(int(result.findings.checks.size()), 0);
}

void TestGsiLevelReader::feetAreConverted()
{
    const LevelResult result = read("410001+?......1\n"
                                    "110002+0000BM01 83...7+01000000\n"
                                    "110003+0000BM01 32...1+00100000 331.07+00050000\n"
                                    "110004+0000BM02 32...1+00100000 332.07+00040000\n"
                                    "110005+0000BM02 83..07+01010000\n");
    QVERIFY(result.findings.isInFeet);
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("BM01-BM02 0.30480 m, 61.0 m, 1 st.")));
    QCOMPARE(*result.file.network.points[0].height, 30.48);
    QCOMPARE(int(result.findings.checks.size()), 0);
}

void TestGsiLevelReader::repeatedReadingsAreAveraged()
{
    GsiWriter writer;
    writer.start("1", "A", 10000000);
    writer.reading(331, "A", 150000);
    writer.reading(331, "A", 150004);
    writer.reading(332, "B", 100000);
    writer.close("B", 50002);
    const LevelResult result = read(writer.content);
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("A-B 0.50002 m, 40.0 m, 1 st.")));
    QCOMPARE(result.findings.lines[0].averagedReadings, 1);
    QCOMPARE(int(result.findings.checks.size()), 0);
}

void TestGsiLevelReader::repeatedReadingsThatDisagreeAreTold()
{
    GsiWriter writer;
    writer.start("1", "A", 10000000);
    writer.reading(331, "A", 150000);
    writer.reading(331, "A", 120000);
    writer.reading(332, "B", 100000);
    writer.close("B", 20000);
    const LevelResult result = read(writer.content);
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("A-B 0.20000 m, 40.0 m, 1 st.")));
    QCOMPARE(int(result.findings.checks.size()), 1);
    const LevelCheck& check = result.findings.checks[0];
    QCOMPARE(check.kind, LevelCheckKind::RepeatedReading);
    QCOMPARE(check.line, qint64(4));
    QCOMPARE(check.station, 1);
    QCOMPARE(check.from, QStringLiteral("A"));
    QCOMPARE(check.first, 1.5);
    QCOMPARE(check.second, 1.2);
    QCOMPARE(check.limit, 5.0);
}

void TestGsiLevelReader::stationRepeatedWithTheInstrumentReplacesTheEarlier()
{
    GsiWriter writer;
    writer.start("1", "A", 10000000);
    writer.station("A", "1", 150000, 100000);
    writer.reading(331, "A", 155000);
    writer.reading(332, "2", 100000);
    writer.block("2", GsiWriter::word("83..08", 10055000));
    writer.reading(331, "2", 150000);
    writer.reading(332, "B", 100000);
    writer.block("B", GsiWriter::word("83..08", 10105000));
    const LevelResult result = read(writer.content);
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("A-B 1.05000 m, 80.0 m, 2 st.")));
    QCOMPARE(problemsOf(result), QStringList(problem(ProblemKind::StationRepeated, 6, "A|1|3")));
}

void TestGsiLevelReader::heightOfTheInstrumentIsChecked()
{
    GsiWriter writer;
    writer.start("2", "A", 10000000);
    writer.station("A", "1", 150000, 100000, 150001, 100000); // half a digit is rounded
    writer.reading(331, "1", 150000);
    writer.reading(332, "B", 100000);
    writer.reading(336, "B", 100000);
    writer.reading(335, "1", 150000);
    writer.close("B", 50003);
    const LevelResult result = read(writer.content);
    QCOMPARE(int(result.findings.checks.size()), 1);
    const LevelCheck& check = result.findings.checks[0];
    QCOMPARE(check.kind, LevelCheckKind::StatedHeight);
    QCOMPARE(check.line, qint64(12));
    QCOMPARE(check.levelLine, 0);
    QCOMPARE(check.station, 2);
    QCOMPARE(check.from, QStringLiteral("1"));
    QCOMPARE(check.to, QStringLiteral("B"));
    QCOMPARE(check.first, 101.00003);
    QCOMPARE(check.second, 101.0);
    QCOMPARE(QString::number(check.limit, 'f', 6), QStringLiteral("0.020000"));
    QCOMPARE(QString::number(result.findings.lines[0].largestHeightDeviation, 'f', 3),
             QStringLiteral("0.030"));
    QCOMPARE(result.findings.lines[0].comparedHeights, 2);
}

void TestGsiLevelReader::twoReadingsAreCompared()
{
    GsiWriter writer;
    writer.start("2", "A", 10000000);
    writer.station("A", "1", 150000, 100000, 150500, 100000); // the limit itself
    writer.station("1", "B", 150000, 100000, 150502, 100000);
    const LevelResult result = read(writer.content);
    QCOMPARE(int(result.findings.checks.size()), 1);
    const LevelCheck& check = result.findings.checks[0];
    QCOMPARE(check.kind, LevelCheckKind::TwoReadings);
    QCOMPARE(check.line, qint64(8));
    QCOMPARE(check.station, 2);
    QCOMPARE(check.first, 0.5);
    QCOMPARE(QString::number(check.second, 'f', 5), QStringLiteral("0.50502"));
    QCOMPARE(check.limit, 5.0);
    QCOMPARE(QString::number(*result.file.network.sections[0].readingDifference, 'f', 2),
             QStringLiteral("-10.02"));
}

void TestGsiLevelReader::stationWithoutHeightEndsWhereTheNextBegins()
{
    GsiWriter writer;
    writer.start("1", "A", 10000000);
    writer.reading(331, "A", 150000);
    writer.reading(332, "1", 100000);
    writer.reading(331, "1", 150000);
    writer.reading(332, "B", 100000);
    const LevelResult result = read(writer.content);
    QCOMPARE(problemsOf(result), QStringList());
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("A-B 1.00000 m, 80.0 m, 2 st.")));
    QCOMPARE(result.findings.lines[0].comparedHeights, 0);
}

void TestGsiLevelReader::secondReadingMayBeMissing()
{
    GsiWriter writer;
    writer.start("2", "A", 10000000);
    writer.reading(331, "A", 150000);
    writer.reading(332, "B", 100000);
    writer.reading(336, "B", 100010);
    writer.close("B", 49995);
    const LevelResult result = read(writer.content);
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("A-B 0.49995 m, 40.0 m, 1 st.")));
    QCOMPARE(problemsOf(result), QStringList(problem(ProblemKind::StationSecondMissing, 3, "A|B")));
    QVERIFY(!result.file.network.sections[0].readingDifference);
}

void TestGsiLevelReader::abandonedStationsAreTold()
{
    GsiWriter writer;
    writer.start("1", "A", 10000000);
    writer.station("A", "1", 150000, 100000);
    writer.reading(331, "1", 130000);
    writer.start("1", "B", 0);
    writer.reading(332, "C", 120000);
    writer.start("1", "D", 0);
    const LevelResult result = read(writer.content);
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("A-1 0.50000 m, 40.0 m, 1 st.")));
    QCOMPARE(problemsOf(result), QStringList({
                                     problem(ProblemKind::StationWithoutFore, 6, "1"),
                                     problem(ProblemKind::LineWithoutStations, 7),
                                     problem(ProblemKind::StationWithoutBack, 9, "C"),
                                     problem(ProblemKind::LineWithoutStations, 10),
                                 }));
}

/// One reading back that is lost costs one station, whether the instrument states heights or not.
void TestGsiLevelReader::lostReadingCostsOneStation()
{
    for (const bool hasHeights : {true, false}) {
        GsiWriter gsi;
        gsi.start("1", "A", 1000000);
        gsi.reading(332, "1", 100000);
        if (hasHeights)
            gsi.close("1", 50000);
        gsi.reading(331, "1", 150000);
        gsi.reading(332, "2", 120000);
        if (hasHeights)
            gsi.close("2", 30000);
        gsi.reading(331, "2", 150000);
        gsi.reading(332, "B", 110000);
        const LevelResult result = read(gsi.content);
        QCOMPARE(problemsOf(result), QStringList(problem(ProblemKind::StationWithoutBack, 3, "1")));
        QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("1-B 0.70000 m, 80.0 m, 2 st.")));
    }
}

/// A height that was entered counts also where no line of this file leads.
void TestGsiLevelReader::benchmarkOutsideTheLinesIsKept()
{
    GsiWriter gsi;
    gsi.start("1", "A", 1000000);
    gsi.station("A", "B", 150000, 100000);
    gsi.block("C", GsiWriter::word("83..58", 1200000));
    const LevelResult result = read(gsi.content);
    QCOMPARE(problemsOf(result), QStringList());
    QCOMPARE(int(result.file.network.points.size()), 3);
    const Point& outside = result.file.network.points.back();
    QCOMPARE(outside.id, QStringLiteral("C"));
    QVERIFY(outside.fixed);
    QCOMPARE(*outside.height, 12.0);
    QCOMPARE(outside.line, qint64(6));
}

void TestGsiLevelReader::interruptedLineBecomesTwoParts()
{
    GsiWriter writer;
    writer.start("1", "A", 10000000);
    writer.station("A", "P", 150000, 100000);
    writer.station("Q", "B", 150000, 100000);
    const LevelResult result = read(writer.content);
    QCOMPARE(sectionsOf(result), QStringList({QStringLiteral("A-P 0.50000 m, 40.0 m, 1 st."),
                                              QStringLiteral("Q-B 0.50000 m, 40.0 m, 1 st.")}));
    QCOMPARE(problemsOf(result), QStringList(problem(ProblemKind::LineInterrupted, 6, "P|Q")));
    QVERIFY(result.findings.lines[0].isInterrupted);
}

void TestGsiLevelReader::intermediateSightIsASectionFromTheLastMark()
{
    GsiWriter writer;
    writer.start("1", "A", 10000000);
    writer.station("A", "1", 150000, 100000);
    writer.reading(331, "1", 140000);
    writer.reading(333, "Kerb", 90000, 1000000);
    writer.block("Kerb", GsiWriter::word("83..08", 10100000));
    writer.reading(332, "B", 110000);
    writer.close("B", 30000);
    writer.reading(333, "Step", 120000, 1500000);
    writer.block("Step", GsiWriter::word("83..08", 10070009));
    writer.reading(333, "17", 150000, 1500000); // its height is not stated
    const LevelResult result = read(writer.content);
    QCOMPARE(problemsOf(result), QStringList());
    QCOMPARE(sectionsOf(result), QStringList({QStringLiteral("A-Kerb 1.00000 m, 70.0 m, 2 st."),
                                              QStringLiteral("A-Step 0.70000 m, 75.0 m, 2 st."),
                                              QStringLiteral("A-17 0.40000 m, 75.0 m, 2 st."),
                                              QStringLiteral("A-B 0.80000 m, 80.0 m, 2 st.")}));
    QCOMPARE(result.findings.lines[0].sideShots, 3);
    QCOMPARE(int(result.findings.checks.size()), 1);
    QCOMPARE(result.findings.checks[0].kind, LevelCheckKind::SightHeight);
    QCOMPARE(result.findings.checks[0].station, 2);
    QCOMPARE(result.findings.checks[0].to, QStringLiteral("Step"));
    QCOMPARE(read("410001+?......1\n110002+00000P 32...8+00200000 333.08+00100000\n").file.problems.size(),
             std::size_t(3)); // the sight, the line, no section
}

void TestGsiLevelReader::bookByRiseAndFallGivesItsLevels()
{
    // A published level book with its reduced levels (rise and fall, askfilo.com, question 3430353738373636).
    // It prints 1.497 for the foresight on C; its sum of foresights, rise and levels are those of 1.496.
    GsiWriter writer;
    writer.start("1", "BM", 4987200);
    writer.reading(331, "BM", 219100);
    writer.reading(333, "A", 250700);
    writer.reading(333, "B", 232500);
    writer.reading(332, "C", 149600);
    writer.close("C", 69500);
    writer.reading(331, "C", 301900);
    writer.reading(333, "D", 251300);
    writer.reading(332, "E", 281100);
    writer.close("E", 20800);
    writer.station("E", "TBM", 175200, 381700);
    const LevelResult result = read(writer.content);
    QCOMPARE(problemsOf(result), QStringList());
    QCOMPARE(int(result.findings.checks.size()), 0);
    QHash<QString, double> levels{{QStringLiteral("BM"), 49.872}};
    for (const Section& section : result.file.network.sections)
        levels.insert(pointId(result, section.to),
                      levels.value(pointId(result, section.from)) + section.difference);
    QStringList texts;
    for (const char* name : {"A", "B", "C", "D", "E", "TBM"})
        texts.append(QString::number(levels.value(QLatin1String(name)), 'f', 3));
    // The bench mark at the end is given as 48.719: 9 mm of misclosure.
    QCOMPARE(texts.join(QLatin1Char(' ')), QStringLiteral("49.556 49.738 50.567 51.073 50.775 48.710"));
}

void TestGsiLevelReader::heightsThatWereEnteredAreBenchmarks()
{
    GsiWriter writer;
    writer.start("1", "A", 10000000);
    writer.station("A", "B", 150000, 100000);
    writer.start("1", "B", 10050000, "0"); // carried on
    writer.station("B", "C", 150000, 100000);
    writer.start("1", "C", 10100100, "1");
    writer.station("C", "A", 100000, 200000);
    writer.start("1", "A", 10000200);
    writer.station("A", "C", 200000, 100000);
    writer.start("1", "A", 0); // the instrument begins at zero; that is no height
    writer.station("A", "B", 150000, 100000);
    const LevelResult result = read(writer.content);
    const std::vector<Point>& points = result.file.network.points;
    QVERIFY(points[0].fixed);
    QCOMPARE(*points[0].height, 100.002);
    QVERIFY(!points[1].fixed);
    QVERIFY(!points[1].height);
    QVERIFY(points[2].fixed);
    QCOMPARE(*points[2].height, 101.001);
    QCOMPARE(int(result.findings.checks.size()), 1);
    QCOMPARE(result.findings.checks[0].kind, LevelCheckKind::EnteredHeight);
    QCOMPARE(result.findings.checks[0].line, qint64(17));
    QCOMPARE(result.findings.checks[0].first, 100.0);
    QCOMPARE(result.findings.checks[0].second, 100.002);
}

void TestGsiLevelReader::partWithoutHeightsIsHeldAtAPoint()
{
    GsiWriter writer;
    writer.start("1", "A", 0);
    writer.station("A", "B", 150000, 100000);
    writer.start("1", "C", 300000, "0");
    writer.station("C", "D", 150000, 100000);
    writer.start("1", "B", 0);
    writer.station("B", "A", 100000, 150000);
    Network network = read(writer.content).file.network;
    QVERIFY(!network.points[0].declared);
    QVERIFY(!network.points[0].height);
    // The first part only is concerned.
    QCOMPARE(holdPartsWithoutDatum(network, {true, false, false}), std::vector<int>({0}));
    QVERIFY(!network.points[2].constrained);
    QCOMPARE(holdPartsWithoutDatum(network, {true, true, true}), std::vector<int>({2}));
    QVERIFY(network.points[0].constrained);
    QVERIFY(!network.points[0].fixed);
    QCOMPARE(*network.points[0].height, 0.0);
    QVERIFY(!network.points[1].height);
    QVERIFY(network.points[2].constrained);
}

void TestGsiLevelReader::distancesMayBeMissing()
{
    GsiWriter writer;
    writer.start("1", "A", 0);
    writer.station("A", "1", 150000, 100000);
    writer.reading(331, "1", 150000, 0);
    writer.reading(332, "B", 100000);
    writer.start("1", "B", 0);
    writer.reading(331, "B", 150000, 0);
    writer.reading(332, "C", 100000, 0);
    const LevelResult result = read(writer.content);
    QCOMPARE(sectionsOf(result), QStringList({QStringLiteral("A-B 1.00000 m, 80.0 m, 2 st."),
                                              QStringLiteral("B-C 0.50000 m, 100.0 m, 1 st.")}));
    QCOMPARE(problemsOf(result), QStringList({problem(ProblemKind::DistancesMissing, 1, "1|2|40.0"),
                                              problem(ProblemKind::DistancesMissing, 8, "1|1|100.0")}));
}

void TestGsiLevelReader::severalJobsAreReadOneAfterTheOther()
{
    GsiWriter first;
    first.start("1", "A", 10000000);
    first.station("A", "1", 150000, 100000);
    first.station("1", "B", 150000, 100000);
    GsiWriter second;
    second.start("2", "B", 10100000, "0");
    second.station("B", "1", 150000, 100000, 150000, 100000);
    second.station("1", "C", 150000, 100000, 150000, 100000);
    const LevelResult result = read(first.content + second.content);
    QCOMPARE(problemsOf(result), QStringList());
    QCOMPARE(sectionsOf(result), QStringList({QStringLiteral("A-B 1.00000 m, 80.0 m, 2 st."),
                                              QStringLiteral("B-C 1.00000 m, 80.0 m, 2 st.")}));
    QCOMPARE(result.findings.lines[1].firstLine, qint64(9));
}

void TestGsiLevelReader::checkOfTheInstrumentIsNoLine()
{
    GsiWriter writer;
    writer.start("1", "A", 10000000);
    writer.station("A", "B", 150000, 100000);
    writer.add("*410009+00000000?.....10");
    writer.reading(331, "1", 150000);
    writer.reading(332, "2", 100000);
    writer.start("1", "B", 10050000, "0");
    writer.station("B", "C", 150000, 100000);
    const LevelResult result = read(writer.content);
    QCOMPARE(problemsOf(result), QStringList(problem(ProblemKind::InstrumentCheck, 6)));
    QCOMPARE(int(result.findings.lines.size()), 2);
}

void TestGsiLevelReader::readingsWithoutALineStartOne()
{
    GsiWriter writer;
    writer.reading(330, "X", 150000);
    writer.block("X", GsiWriter::word("83..08", 10070009));
    writer.station("A", "B", 150000, 100000);
    const LevelResult result = read(writer.content);
    QCOMPARE(problemsOf(result), QStringList({problem(ProblemKind::ReadingOutsideLine, 1, "X|330"),
                                              problem(ProblemKind::LineWithoutStart, 3)}));
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("A-B 0.50000 m, 40.0 m, 1 st.")));
}

void TestGsiLevelReader::readingBesideTheLineChangesNothing()
{
    GsiWriter writer;
    writer.start("1", "A", 10000000);
    writer.station("A", "1", 150000, 100000);
    writer.reading(330, "X", 150000);
    writer.block("X", GsiWriter::word("83..08", 10070009));
    writer.station("1", "B", 150000, 100000);
    const LevelResult result = read(writer.content);
    QCOMPARE(problemsOf(result), QStringList(problem(ProblemKind::ReadingOutsideLine, 6, "X|330")));
    QCOMPARE(result.findings.lines[0].comparedHeights, 2);
}

void TestGsiLevelReader::codesAndUnknownWordsAreCounted()
{
    GsiWriter writer;
    writer.add("*41....+0000000000000099 42....+000000000000TREE");
    writer.start("7", "A", 0);
    writer.reading(331, "A", 150000);
    writer.block("B", GsiWriter::word("32...8", 2000000) + GsiWriter::word("332.08", 100000) +
                          GsiWriter::word("95....", 21));
    writer.add("*42....+000000000000TREE");
    const LevelResult result = read(writer.content);
    QCOMPARE(problemsOf(result), QStringList(problem(ProblemKind::MethodUnknown, 2, "7")));
    QStringList unused;
    for (const UnusedEntries& entries : result.findings.unused)
        unused.append(
            QStringLiteral("%1 x%2 @%3")
                .arg(entries.what, QString::number(entries.count), QString::number(entries.firstLine)));
    QCOMPARE(unused, QStringList({QStringLiteral("41 x1 @1"), QStringLiteral("42 x2 @1"),
                                  QStringLiteral("95 x1 @5")}));
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("A-B 0.50000 m, 40.0 m, 1 st.")));
}

void TestGsiLevelReader::unusableTextIsTold()
{
    const LevelResult result = read("410001+?......1\n"
                                    "<b>noise</b>\n"
                                    "110002+0000BM01 noise 83...6+0100000x\n"
                                    "110003+0000BM01 32...6+00253400 331.06+0001?230\n"
                                    "32...6+00253400 331.06+00015230\n"
                                    "110003+0000BM01 32...6+00253400 331.08+20000000\n");
    QCOMPARE(problemsOf(result), QStringList({
                                     problem(ProblemKind::NoSections, 0),
                                     problem(ProblemKind::LineWithoutStations, 1),
                                     problem(ProblemKind::LineUnreadable, 2),
                                     problem(ProblemKind::WordUnreadable, 3, "noise"),
                                     problem(ProblemKind::HeightUnusable, 3, "BM01|0100000x"),
                                     problem(ProblemKind::ReadingUnusable, 4, "BM01|0001?230"),
                                     problem(ProblemKind::ReadingUnusable, 5, "|00015230"),
                                     problem(ProblemKind::ReadingUnusable, 6, "BM01|200"),
                                 }));
}

void TestGsiLevelReader::sigmaHasAConstantPart()
{
    GsiWriter writer;
    writer.start("1", "A", 10000000);
    writer.station("A", "B", 150000, 100000);
    LevelSettings settings;
    settings.sigmaConstant = 0.3;
    settings.sigmaPerKilometre = 2.0;
    const LevelResult result = read(writer.content, settings);
    QCOMPARE(result.file.network.sections[0].sigma, std::sqrt(0.09 + 4.0 * 0.04));
    QCOMPARE(*result.file.network.sections[0].stdev, 0.5);
    QCOMPARE(result.file.network.parameters.sigmaApriori, 2.0);
}

/// To the last bit, so that a file of the network can leave it to the length.
void TestGsiLevelReader::sigmaIsThatOfTheLength()
{
    for (const int sight : {2000000, 3330000, 4000000}) {
        GsiWriter writer;
        writer.start("1", "A", 10000000);
        writer.reading(331, "A", 150000, sight);
        writer.reading(332, "B", 100000, sight);
        const Section section = read(writer.content).file.network.sections[0];
        QVERIFY(!section.stdev);
        QVERIFY(section.sigma == 10.0 * std::sqrt(*section.distance));
    }
}

void TestGsiLevelReader::endlessLineEndsTheReading()
{
    const LevelResult result = read("410001+?......1\n" + QByteArray(1 << 20, '1'));
    QVERIFY(result.file.fatal);
    QCOMPARE(result.file.fatal->kind, ProblemKind::LineTooLong);
    QCOMPARE(result.file.fatal->line, qint64(2));
    QCOMPARE(result.file.fatal->arguments, QStringList(QStringLiteral("65536")));
    QVERIFY(result.file.network.points.empty());
}

void TestGsiLevelReader::stopIsObeyed()
{
    GsiWriter writer;
    writer.start("1", "A", 10000000);
    writer.station("A", "B", 150000, 100000);
    QBuffer buffer(&writer.content);
    buffer.open(QIODevice::ReadOnly);
    int questions = 0;
    QVERIFY(gsilevelreader::read(buffer, {}, [&] { return ++questions == 1; }).file.isStopped);
    buffer.seek(0);
    questions = 0;
    // After the last portion of the file the stations are gone through.
    const LevelResult result = gsilevelreader::read(buffer, {}, [&] { return ++questions == 3; });
    QVERIFY(result.file.isStopped);
    QVERIFY(result.file.network.sections.empty());
}

QTEST_APPLESS_MAIN(TestGsiLevelReader)
#include "tst_gsilevelreader.moc"
