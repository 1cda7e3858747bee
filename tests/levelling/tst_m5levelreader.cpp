#include "levelling/M5LevelReader.h"
#include "tests/levelling/LevelTexts.h"

#include <QBuffer>
#include <QFile>
#include <QTest>

using namespace levelling;
using namespace orvel::test;

Q_DECLARE_METATYPE(levelling::LevelMethod)

namespace {

LevelResult readM5(QByteArray content)
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    return m5levelreader::readM5(buffer, {});
}

LevelResult readRec(QByteArray content)
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    return m5levelreader::readRec(buffer, {});
}

QByteArray line(const QByteArray& type, const QByteArray& information, const QByteArray& first = {},
                const QByteArray& second = {}, const QByteArray& third = {})
{
    return "For M5|Adr     1|" + type.leftJustified(4) + information.leftJustified(27) + '|' +
           first.leftJustified(22) + '|' + second.leftJustified(22) + '|' + third.leftJustified(22) +
           "| \r\n";
}

QByteArray text(const char* words)
{
    return line("TO", words);
}

QByteArray value(const char* type, const char* number, const char* unit = "m")
{
    return QByteArray(type).leftJustified(3) + QByteArray(number).rightJustified(14) + ' ' +
           QByteArray(unit).leftJustified(4);
}

/// A reading with a distance of 20 m.
QByteArray reading(const char* type, const char* point, const char* number, const char* mark = "")
{
    return line("KD1", QByteArray(point).rightJustified(8) + ' ' + mark, value(type, number),
                value("HD", "20.000"));
}

QByteArray height(const char* point, const char* number)
{
    return line("KD1", QByteArray(point).rightJustified(8), "", "", value("Z", number));
}

} // namespace

/// Lines and sections from the M5 and REC_E files of levels.
class TestM5LevelReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lineBecomesASection();
    void ordersAreRead_data();
    void ordersAreRead();
    void germanIdentifiersGiveTheSame();
    void recordsWithoutColumnsGiveTheSame();
    void intermediateSightHasItsHeightBesideIt();
    void repeatedMeasurementReplacesTheEarlier();
    void repeatedIntermediateSightReplacesTheEarlier();
    void unusableReadingIsNotTakenBackTwice_data();
    void unusableReadingIsNotTakenBackTwice();
    void stationsMayBeTakenBackBehindAnIntermediateSight();
    void heightBehindALostReadingMakesNoBenchmark_data();
    void heightBehindALostReadingMakesNoBenchmark();
    void repeatedStationReplacesTheEarlier();
    void markedRecordsAreNotTakenBackTwice();
    void sumsOfTheLineAreNoHeights();
    void unitsAreConverted();
    void unusableRecordsAreTold();
    void sampleIsRead();
};

void TestM5LevelReader::lineBecomesASection()
{
    const LevelResult result =
        readM5(text("JOB7") + text("Start-Line         BF     1") + height("BM1", "100.00000") +
               reading("Rb", "BM1", "1.52300") + reading("Rf", "1", "1.21100") + height("1", "100.31200") +
               reading("Rb", "1", "0.98750") + reading("Rf", "BM2", "1.88420") + height("BM2", "99.41540") +
               text("End-Line             1"));
    QCOMPARE(problemsOf(result), QStringList());
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("BM1-BM2 -0.58470 m, 80.0 m, 2 st.")));
    QVERIFY(result.file.network.points[0].fixed);
    QCOMPARE(*result.file.network.points[0].height, 100.0);
    QCOMPARE(result.file.network.sections[0].line, qint64(4));
    QCOMPARE(result.findings.lines[0].comparedHeights, 2);
    QCOMPARE(int(result.findings.checks.size()), 1);
    QCOMPARE(result.findings.checks[0].kind, LevelCheckKind::StatedHeight);
    QCOMPARE(result.findings.checks[0].line, qint64(9));
    QCOMPARE(result.findings.checks[0].first, 99.4154);
}

void TestM5LevelReader::ordersAreRead_data()
{
    QTest::addColumn<QByteArray>("method");
    QTest::addColumn<QByteArray>("order");
    QTest::addColumn<LevelMethod>("read");
    QTest::newRow("BFFB") << QByteArray("BFFB") << QByteArray("bffb") << LevelMethod::BackForeForeBack;
    QTest::newRow("aBFFB") << QByteArray("aBFFB") << QByteArray("fbbf")
                           << LevelMethod::AlternateBackForeForeBack;
    QTest::newRow("BFBF") << QByteArray("BFBF") << QByteArray("bfbf") << LevelMethod::OtherDouble;
}

void TestM5LevelReader::ordersAreRead()
{
    QFETCH(QByteArray, method);
    QFETCH(QByteArray, order);
    QFETCH(LevelMethod, read);
    QByteArray content =
        text(QByteArray("Start-Line   " + method + " 1").constData()) + height("A", "0.00000");
    int backs = 0;
    int fores = 0;
    for (const char sight : order) {
        if (sight == 'b')
            content += reading("Rb", "A", backs++ == 0 ? "1.50000" : "1.50010");
        else
            content += reading("Rf", "B", fores++ == 0 ? "1.00000" : "1.00030");
    }
    const LevelResult result = readM5(content + height("B", "0.49990"));
    QCOMPARE(problemsOf(result), QStringList());
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("A-B 0.49990 m, 40.0 m, 1 st.")));
    QCOMPARE(QString::number(*result.file.network.sections[0].readingDifference, 'f', 3),
             QStringLiteral("0.200"));
    QCOMPARE(result.findings.lines[0].method, read);
    QCOMPARE(result.findings.lines[0].averagedReadings, 0);
    QCOMPARE(int(result.findings.checks.size()), 0);
}

void TestM5LevelReader::germanIdentifiersGiveTheSame()
{
    const auto german = [](const char* type, const char* point, const char* number) {
        return line("KD1", QByteArray(point).rightJustified(8), value(type, number), value("E", "20.000"));
    };
    const LevelResult result = readM5(text("Start-Line BF 1") + height("A", "0.00000") +
                                      german("Lr", "A", "1.50000") + german("Lv", "B", "-1.00000"));
    QCOMPARE(problemsOf(result), QStringList());
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("A-B 2.50000 m, 40.0 m, 1 st.")));
}

void TestM5LevelReader::recordsWithoutColumnsGiveTheSame()
{
    const LevelResult result =
        readRec("     64 Curva ON/Refract ON\n"
                "     65 Start-Line       BFFB    101\n"
                "     66     5090    0            101                     Z   2174.002\n"
                "     67     5090    0            101 Rb        2.384 HD        23.21\n"
                "     68        1    0            101 Rf        1.126 HD        28.01\n"
                "     69        1    0            101 Rf        1.127 HD        28.00\n"
                "     70     5090    0            101 Rb        2.385 HD        23.27\n"
                "     71        1    0            101                     Z   2175.260\n"
                "     72        1    0            101 Sr     23.2 Sv     28.0 Z   2175.999\n"
                "     73 End-Line                 101\n");
    QCOMPARE(problemsOf(result), QStringList());
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("5090-1 1.25800 m, 51.2 m, 1 st.")));
    QCOMPARE(*result.file.network.points[0].height, 2174.002);
    QVERIFY(!result.file.network.points[1].fixed);
    QCOMPARE(result.findings.lines[0].method, LevelMethod::BackForeForeBack);
    QCOMPARE(int(result.findings.checks.size()), 0);
    QVERIFY(readRec("1 Measurement units ft\n2 Start-Line BF 1\n3 A 1 Rb 5.0 HD 100\n4 B 1 Rf 4.0 HD 100\n")
                .findings.isInFeet);
}

void TestM5LevelReader::intermediateSightHasItsHeightBesideIt()
{
    const QByteArray content =
        text("Start-Line BF 1") + height("A", "10.00000") + reading("Rb", "A", "1.50000") +
        reading("Rf", "B", "1.00000") + height("B", "10.50000") + text("Intermediate sight.       1") +
        line("KD1", "      K1", value("Rz", "1.20000"), value("HD", "10.000"), value("Z", "10.30100")) +
        text("End of interm. sight.     1");
    const LevelResult result = readM5(content);
    QCOMPARE(problemsOf(result), QStringList());
    QCOMPARE(sectionsOf(result), QStringList({QStringLiteral("A-K1 0.30000 m, 30.0 m, 1 st."),
                                              QStringLiteral("A-B 0.50000 m, 40.0 m, 1 st.")}));
    QCOMPARE(int(result.findings.checks.size()), 1);
    QCOMPARE(result.findings.checks[0].kind, LevelCheckKind::SightHeight);
    QCOMPARE(result.findings.checks[0].first, 10.301);
    QCOMPARE(result.findings.checks[0].station, 1);
}

void TestM5LevelReader::repeatedMeasurementReplacesTheEarlier()
{
    const LevelResult result =
        readM5(text("Start-Line BF 1") + height("A", "0.00000") + reading("Rb", "A", "1.90000") +
               text("Measurement repeated") + reading("Rb", "A", "1.50000") + reading("Rf", "B", "1.00000"));
    QCOMPARE(problemsOf(result), QStringList());
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("A-B 0.50000 m, 40.0 m, 1 st.")));
    QCOMPARE(int(result.findings.checks.size()), 0);
}

void TestM5LevelReader::repeatedIntermediateSightReplacesTheEarlier()
{
    const auto sight = [](const char* number) {
        return line("KD1", "      K1", value("Rz", number), value("HD", "10.000"));
    };
    const LevelResult result = readM5(
        text("Start-Line BF 1") + height("A", "10.00000") + reading("Rb", "A", "1.50000") + sight("1.90000") +
        text("Measurement repeated") + sight("1.20000") + reading("Rf", "B", "1.00000"));
    QCOMPARE(problemsOf(result), QStringList());
    QCOMPARE(sectionsOf(result), QStringList({QStringLiteral("A-K1 0.30000 m, 30.0 m, 1 st."),
                                              QStringLiteral("A-B 0.50000 m, 40.0 m, 1 st.")}));
    QCOMPARE(result.findings.lines[0].sideShots, 1);
}

void TestM5LevelReader::unusableReadingIsNotTakenBackTwice_data()
{
    QTest::addColumn<QByteArray>("unusable");
    QTest::addColumn<QString>("told");
    QTest::newRow("no number") << line("KD1", "       B", value("Rf", "1.4x"))
                               << problem(ProblemKind::ReadingUnusable, 4, "B|1.4x m");
    QTest::newRow("beyond all measure")
        << reading("Rf", "B", "1400.0") << problem(ProblemKind::ReadingUnusable, 4, "B|1400");
    QTest::newRow("cut off") << QByteArray("For M5|Adr\r\n") << problem(ProblemKind::LineUnreadable, 4);
}

void TestM5LevelReader::unusableReadingIsNotTakenBackTwice()
{
    QFETCH(QByteArray, unusable);
    QFETCH(QString, told);
    const LevelResult result =
        readM5(text("Start-Line BF 1") + height("A", "0.00000") + reading("Rb", "A", "1.50000") + unusable +
               text("Measurement repeated") + reading("Rf", "B", "1.00000"));
    QCOMPARE(problemsOf(result), QStringList(told));
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("A-B 0.50000 m, 40.0 m, 1 st.")));
}

/// An intermediate sight from a station that is taken back, and then the one before, too.
void TestM5LevelReader::stationsMayBeTakenBackBehindAnIntermediateSight()
{
    const LevelResult result = readM5(
        text("Start-Line BF 1") + height("A", "10.00000") + reading("Rb", "A", "1.50000") +
        reading("Rf", "B", "1.00000") + height("B", "10.50000") + reading("Rb", "B", "1.00000") +
        line("KD1", "      K1", value("Rz", "1.20000"), value("HD", "10.000")) + text("Station repeated") +
        text("Station repeated") + reading("Rb", "A", "1.60000") + reading("Rf", "B", "1.00000"));
    QCOMPARE(problemsOf(result), QStringList());
    QCOMPARE(sectionsOf(result), QStringList({QStringLiteral("B-K1 -0.20000 m, 30.0 m, 1 st."),
                                              QStringLiteral("A-B 0.60000 m, 40.0 m, 1 st.")}));
    const LevelResult cut =
        readM5(text("Start-Line BF 1") + height("A", "10.00000") + reading("Rb", "A", "1.50000") +
               reading("Rf", "B", "1.00000") + reading("Rb", "B", "1.00000") +
               line("KD1", "      K1", value("Rz", "1.20000"), value("HD", "10.000")) +
               text("Station repeated") + text("Station repeated"));
    QCOMPARE(sectionsOf(cut), QStringList(QStringLiteral("B-K1 -0.20000 m, 30.0 m, 1 st.")));
}

/// The height of a station of which a reading cannot be read is none that somebody has entered.
void TestM5LevelReader::heightBehindALostReadingMakesNoBenchmark_data()
{
    QTest::addColumn<QByteArray>("first");
    QTest::addColumn<QByteArray>("second");
    QTest::addColumn<QStringList>("told");
    QTest::newRow("back lost") << QByteArray("lost\r\n") << reading("Rf", "1", "1.00000")
                               << QStringList({problem(ProblemKind::LineUnreadable, 3),
                                               problem(ProblemKind::StationWithoutBack, 4, "1")});
    QTest::newRow("fore lost") << reading("Rb", "A", "1.50000") << QByteArray("lost\r\n")
                               << QStringList({problem(ProblemKind::StationWithoutFore, 3, "A"),
                                               problem(ProblemKind::LineUnreadable, 4)});
}

void TestM5LevelReader::heightBehindALostReadingMakesNoBenchmark()
{
    QFETCH(QByteArray, first);
    QFETCH(QByteArray, second);
    QFETCH(QStringList, told);
    const LevelResult result =
        readM5(text("Start-Line BF 1") + height("A", "10.00000") + first + second + height("1", "10.50000") +
               reading("Rb", "1", "1.50000") + reading("Rf", "B", "1.20000") + height("B", "10.80000"));
    QCOMPARE(problemsOf(result), told);
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("1-B 0.30000 m, 40.0 m, 1 st.")));
    QStringList benchmarks;
    for (const Point& point : result.file.network.points) {
        if (point.fixed)
            benchmarks.append(point.id);
    }
    QCOMPARE(benchmarks, QStringList(QStringLiteral("A")));
    QCOMPARE(result.findings.lines[0].comparedHeights, 1);
}

void TestM5LevelReader::repeatedStationReplacesTheEarlier()
{
    const LevelResult result =
        readM5(text("Start-Line BF 1") + height("A", "10.00000") + reading("Rb", "A", "1.90000") +
               reading("Rf", "1", "1.00000") + height("1", "10.90000") + text("Station repeated") +
               reading("Rb", "A", "1.50000") + reading("Rf", "1", "1.00000") + height("1", "10.50000"));
    QCOMPARE(problemsOf(result), QStringList());
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("A-1 0.50000 m, 40.0 m, 1 st.")));
    QCOMPARE(int(result.findings.checks.size()), 0);
    QCOMPARE(result.findings.lines[0].comparedHeights, 2);
}

void TestM5LevelReader::markedRecordsAreNotTakenBackTwice()
{
    const LevelResult result = readM5(text("Start-Line BF 1") + height("A", "0.00000") +
                                      reading("Rb", "A", "1.50000") + reading("Rf", "B", "1.40000", "#####") +
                                      text("Measurement repeated") + reading("Rf", "B", "1.00000"));
    QCOMPARE(problemsOf(result), QStringList(problem(ProblemKind::RecordMarked, 4, "B")));
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("A-B 0.50000 m, 40.0 m, 1 st.")));
}

void TestM5LevelReader::sumsOfTheLineAreNoHeights()
{
    const LevelResult result = readM5(
        text("Start-Line BF 1") + height("A", "10.00000") + reading("Rb", "A", "1.50000") +
        reading("Rf", "B", "1.00000") + height("B", "10.50000") + text("End-Line 1") +
        line("KD1", "       B", value("Sh", "0.50000"), value("dz", "0.00000"), value("Z", "11.00000")));
    QVERIFY(!result.file.network.points[1].fixed);
    QCOMPARE(int(result.findings.checks.size()), 0);
    QStringList unused;
    for (const UnusedEntries& entries : result.findings.unused)
        unused.append(entries.what);
    QCOMPARE(unused, QStringList({QStringLiteral("Sh"), QStringLiteral("dz"), QStringLiteral("Z")}));
}

void TestM5LevelReader::unitsAreConverted()
{
    const LevelResult result =
        readM5(text("Start-Line BF 1") +
               line("KD1", "       A", value("Rb", "5.0", "ft"), value("HD", "100.0", "ft")) +
               line("KD1", "       B", value("Rf", "4.0", "ft"), value("HD", "100.0", "ft")));
    QVERIFY(result.findings.isInFeet);
    QCOMPARE(sectionsOf(result), QStringList(QStringLiteral("A-B 0.30480 m, 61.0 m, 1 st.")));
}

void TestM5LevelReader::unusableRecordsAreTold()
{
    const LevelResult result =
        readM5(text("Start-Line XX 1") + "noise\r\n" +
               line("KD1", "       A", value("Rb", "1.5x", "m"), value("HD", "20.0", "m")) +
               line("KD1", "       A", value("Rf", "1.5", "gon")) +
               line("KD1", "       A", value("R", "1.5")) + line("KD1", "       A", "", "", value("Z", "?")));
    QCOMPARE(
        problemsOf(result),
        QStringList({problem(ProblemKind::NoSections, 0), problem(ProblemKind::MethodUnknown, 1, "XX"),
                     problem(ProblemKind::LineWithoutStations, 1), problem(ProblemKind::LineUnreadable, 2),
                     problem(ProblemKind::ReadingUnusable, 3, "A|1.5x m"),
                     problem(ProblemKind::ReadingUnusable, 4, "A|1.5 gon"),
                     problem(ProblemKind::ReadingOutsideLine, 5, "A|R"),
                     problem(ProblemKind::HeightUnusable, 6, "A|? m")}));
}

void TestM5LevelReader::sampleIsRead()
{
    QFile file(QStringLiteral(ORVEL_SAMPLES_DIR "/level-lines.m5"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const LevelResult result = m5levelreader::readM5(file, {});
    QCOMPARE(problemsOf(result), QStringList(problem(ProblemKind::RecordMarked, 9, "1")));
    QCOMPARE(sectionsOf(result), QStringList({QStringLiteral("RP1-M1 0.78797 m, 221.6 m, 4 st."),
                                              QStringLiteral("M1-K1 -0.16331 m, 95.6 m, 2 st."),
                                              QStringLiteral("M1-RP2 -1.22318 m, 173.2 m, 3 st."),
                                              QStringLiteral("RP2-RP1 0.43537 m, 258.2 m, 4 st.")}));
    QCOMPARE(int(result.findings.checks.size()), 0);
}

QTEST_APPLESS_MAIN(TestM5LevelReader)
#include "tst_m5levelreader.moc"
