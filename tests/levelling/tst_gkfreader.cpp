#include "TestNetworks.h"
#include "levelling/GkfReader.h"

#include <QBuffer>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>

using namespace levelling;
using namespace orvel::test;

Q_DECLARE_METATYPE(levelling::ProblemKind)
Q_DECLARE_METATYPE(levelling::Severity)

namespace {

GkfResult readText(QByteArray text)
{
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    return GkfReader::read(buffer);
}

/// A file whose first content line is line 4.
QByteArray fileWith(const QByteArray& content)
{
    return "<gama-local xmlns=\"http://www.gnu.org/software/gama/gama-local\">\n"
           "<network>\n"
           "<points-observations>\n" +
           content +
           "\n</points-observations>\n"
           "</network>\n"
           "</gama-local>\n";
}

/// Content whose first section is on line 7: a fixed R and two points to be determined, A and B.
QByteArray sections(const QByteArray& lines)
{
    return fileWith("<point id='R' z='10' fix='z'/><point id='A' adj='z'/><point id='B' adj='z'/>\n"
                    "\n"
                    "<height-differences>\n" +
                    lines + "\n</height-differences>");
}

/// Content with one good section, so that points stand in a network that is otherwise without problems.
QByteArray points(const QByteArray& lines)
{
    return fileWith(lines +
                    "\n<point id='P' adj='z'/><point id='Q' adj='z'/>"
                    "<height-differences><dh from='P' to='Q' val='1' dist='1'/></height-differences>");
}

QByteArray withParameters(const QByteArray& attributes)
{
    return "<gama-local><network>\n<parameters " + attributes +
           "/>\n<points-observations><point id='P' adj='z'/><point id='Q' adj='z'/>"
           "<height-differences><dh from='P' to='Q' val='1' dist='4'/></height-differences>"
           "</points-observations></network></gama-local>";
}

QString describe(const Problem& problem)
{
    static const QMap<ProblemKind, QString> kinds{
        {ProblemKind::FileNotReadable, QStringLiteral("FileNotReadable")},
        {ProblemKind::MalformedXml, QStringLiteral("MalformedXml")},
        {ProblemKind::WrongRoot, QStringLiteral("WrongRoot")},
        {ProblemKind::FileTooLarge, QStringLiteral("FileTooLarge")},
        {ProblemKind::TooManyEntries, QStringLiteral("TooManyEntries")},
        {ProblemKind::TooManyProblems, QStringLiteral("TooManyProblems")},
        {ProblemKind::NestedTooDeeply, QStringLiteral("NestedTooDeeply")},
        {ProblemKind::PieceTooLong, QStringLiteral("PieceTooLong")},
        {ProblemKind::AttributeTooLong, QStringLiteral("AttributeTooLong")},
        {ProblemKind::TextTooLong, QStringLiteral("TextTooLong")},
        {ProblemKind::TooManyCovariances, QStringLiteral("TooManyCovariances")},
        {ProblemKind::UnknownElement, QStringLiteral("UnknownElement")},
        {ProblemKind::ParameterUnusable, QStringLiteral("ParameterUnusable")},
        {ProblemKind::PointWithoutId, QStringLiteral("PointWithoutId")},
        {ProblemKind::PointRepeated, QStringLiteral("PointRepeated")},
        {ProblemKind::PointUndeclared, QStringLiteral("PointUndeclared")},
        {ProblemKind::PointWithoutRole, QStringLiteral("PointWithoutRole")},
        {ProblemKind::PointFixedAndAdjusted, QStringLiteral("PointFixedAndAdjusted")},
        {ProblemKind::FixedPointWithoutHeight, QStringLiteral("FixedPointWithoutHeight")},
        {ProblemKind::HeightUnusable, QStringLiteral("HeightUnusable")},
        {ProblemKind::SectionWithoutPoint, QStringLiteral("SectionWithoutPoint")},
        {ProblemKind::SectionSameEnds, QStringLiteral("SectionSameEnds")},
        {ProblemKind::SectionWithoutValue, QStringLiteral("SectionWithoutValue")},
        {ProblemKind::SectionWithoutWeight, QStringLiteral("SectionWithoutWeight")},
        {ProblemKind::SectionValueMissing, QStringLiteral("SectionValueMissing")},
        {ProblemKind::ObservedPointFixed, QStringLiteral("ObservedPointFixed")},
        {ProblemKind::ObservedPointRepeated, QStringLiteral("ObservedPointRepeated")},
        {ProblemKind::ObservedHeightMissing, QStringLiteral("ObservedHeightMissing")},
        {ProblemKind::ObservedWithoutCovariance, QStringLiteral("ObservedWithoutCovariance")},
        {ProblemKind::DistanceUnusable, QStringLiteral("DistanceUnusable")},
        {ProblemKind::StdevUnusable, QStringLiteral("StdevUnusable")},
        {ProblemKind::VarianceUnusable, QStringLiteral("VarianceUnusable")},
        {ProblemKind::CovarianceUnusable, QStringLiteral("CovarianceUnusable")},
        {ProblemKind::CorrelationsIgnored, QStringLiteral("CorrelationsIgnored")},
        {ProblemKind::OtherObservation, QStringLiteral("OtherObservation")},
        {ProblemKind::NoSections, QStringLiteral("NoSections")},
    };
    static const QMap<Severity, QString> severities{{Severity::Fatal, QStringLiteral("fatal")},
                                                    {Severity::Error, QStringLiteral("error")},
                                                    {Severity::Warning, QStringLiteral("warning")}};
    return QStringLiteral("%1 %2 %3 (%4)")
        .arg(QString::number(problem.line), severities.value(problem.severity), kinds.value(problem.kind),
             problem.arguments.join(QStringLiteral("; ")));
}

/// "line severity kind (arguments)" of each problem.
QStringList describeProblems(const GkfResult& result)
{
    QStringList lines;
    for (const Problem& problem : result.problems)
        lines.append(describe(problem));
    return lines;
}

} // namespace

class TestGkfReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsPoints();
    void readsSections();
    void readsParametersAndDescription();
    void missingParametersAreTheDefaults();
    void samplesHaveNoProblems();
    void blunderSampleHasItsProblems();
    void problems_data();
    void problems();
    void malformedFilesGiveOneFatalProblem_data();
    void malformedFilesGiveOneFatalProblem();
    void malformedFileHandsOutNothing();
    void unreadableFileIsFatal();
    void directoryIsFatal();
    void failedReadIsFatal();
    void stdevWinsOverDistance();
    void varianceWinsOverStdev();
    void sigmaComesFromDistanceAndSigmaApriori();
    void parametersAfterTheSectionsCountToo();
    void badStdevFallsBackToDistance();
    void diagonalCovarianceGivesSigmas();
    void bandedCovarianceGivesSigmas();
    void unusableCovarianceLeavesTheOwnWeights();
    void laterPointWins();
    void laterPointKeepsWhatItDoesNotState();
    void fixBeatsAdj();
    void otherCoordinatesDoNotCount();
    void undeclaredPointIsUsed();
    void numbersMayHoldBlanks();
    void numbersDoNotDependOnTheLocale();
    void entityBombIsFatal();
    void nestingUpToTheLimit_data();
    void nestingUpToTheLimit();
    void longPieces_data();
    void longPieces();
    void covariancesInPieces();
    void textOfNestedElementsIsTheirs();
    void capitalLettersCarryTheDatum();
    void readsObservedHeights();
    void observedHeightsAmongOtherCoordinates();
    void readsTheConfidence();
    void everyPointIsRead();
    void stopsWhenAsked_data();
    void stopsWhenAsked();
};

void TestGkfReader::readsPoints()
{
    const Network network = networks::sample(QStringLiteral("two-benchmarks.gkf"));
    QCOMPARE(networks::ids(network, {0, 1, 2, 3, 4}), QStringLiteral("BMX-BMY-A-B-C"));
    const Point& benchmark = network.points[1];
    QVERIFY(benchmark.fixed && benchmark.declared);
    QCOMPARE(*benchmark.height, 107.5);
    QCOMPARE(benchmark.line, 12);
    QVERIFY(!network.points[2].fixed);
    QVERIFY(!network.points[2].height);
}

void TestGkfReader::readsSections()
{
    const Network network = networks::sample(QStringLiteral("two-benchmarks.gkf"));
    QCOMPARE(network.sections.size(), std::size_t(7));
    const Section& section = network.sections[3];
    QCOMPARE(networks::ids(network, {section.from, section.to}), QStringLiteral("C-BMX"));
    QCOMPARE(section.difference, -6.13);
    QCOMPARE(*section.distance, 3.0);
    QVERIFY(!section.stdev);
    QCOMPARE(section.sigma, std::sqrt(3.0));
    QCOMPARE(section.line, 20);
}

void TestGkfReader::readsParametersAndDescription()
{
    const GkfResult result =
        readText("<gama-local><network><description> Line <b>5</b> </description>"
                 "<parameters sigma-apr=' 2.5 ' tol-abs='50' sigma-act='apriori' conf-pr='0.9' future='1'/>"
                 "</network></gama-local>");
    QCOMPARE(result.network.description, QStringLiteral("Line 5"));
    QCOMPARE(result.network.parameters.sigmaApriori, 2.5);
    QCOMPARE(result.network.parameters.toleranceAbsolute, 50.0);
    QCOMPARE(result.network.parameters.sigmaAct, SigmaAct::Apriori);
    QCOMPARE(readText(withParameters("sigma-act='aposteriori'")).network.parameters.sigmaAct,
             SigmaAct::Aposteriori);
}

void TestGkfReader::missingParametersAreTheDefaults()
{
    const Parameters parameters = readText(withParameters("")).network.parameters;
    QCOMPARE(parameters.sigmaApriori, 10.0);
    QCOMPARE(parameters.toleranceAbsolute, 1000.0);
    QCOMPARE(parameters.sigmaAct, SigmaAct::Aposteriori);
}

void TestGkfReader::samplesHaveNoProblems()
{
    for (const QString& name : {QStringLiteral("two-benchmarks.gkf"), QStringLiteral("one-benchmark.gkf")}) {
        const GkfResult result = GkfReader::readFile(QStringLiteral(ORVEL_SAMPLES_DIR "/") + name);
        QVERIFY(!result.fatal);
        QCOMPARE(describeProblems(result), QStringList());
    }
}

void TestGkfReader::blunderSampleHasItsProblems()
{
    const GkfResult result = GkfReader::readFile(QStringLiteral(ORVEL_SAMPLES_DIR "/blunder.gkf"));
    QVERIFY(!result.fatal);
    QCOMPARE(describeProblems(result),
             QStringList({QStringLiteral("37 warning PointUndeclared (М7)"),
                          QStringLiteral("39 error SectionValueMissing (М4; М5)")}));
    QCOMPARE(result.network.points.size(), std::size_t(12));
    QCOMPARE(result.network.sections.size(), std::size_t(19));
}

void TestGkfReader::problems_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QStringList>("expected");
    const auto row = [](const char* name, const QByteArray& text, const QStringList& expected) {
        QTest::newRow(name) << text << expected;
    };
    const auto one = [](const char* line) { return QStringList(QString::fromUtf8(line)); };

    row("no problem", sections("<dh from='R' to='A' val='1' dist='1'/>"), {});
    row("no sections", fileWith("<point id='A' adj='z'/>"), one("0 error NoSections ()"));
    row("no network", "<gama-local/>", one("0 error NoSections ()"));
    row("unknown element", points("<ponit id='A' adj='z'/>"),
        one("4 warning UnknownElement (ponit; points-observations)"));
    row("unknown element in network",
        "<gama-local><network>\n<nets/><points-observations><point id='A' adj='z'/><point id='B' adj='z'/>"
        "<height-differences><dh from='A' to='B' val='1' "
        "dist='1'/></height-differences></points-observations>"
        "</network></gama-local>",
        one("2 warning UnknownElement (nets; network)"));
    row("unknown element in root", "<gama-local>\n\n<networks><point id='A'/></networks></gama-local>",
        {QStringLiteral("0 error NoSections ()"),
         QStringLiteral("3 warning UnknownElement (networks; gama-local)")});
    row("unknown element in cluster",
        sections("<dh from='R' to='A' val='1' dist='1'/>\n<hd from='A' to='B'/>"),
        one("8 warning UnknownElement (hd; height-differences)"));
    row("element in a point", points("<point id='A' adj='z'><dh/></point>"),
        one("4 warning UnknownElement (dh; point)"));
    row("element in a section", sections("<dh from='R' to='A' val='1' dist='1'>\n<x><y/></x></dh>"),
        one("8 warning UnknownElement (x; dh)"));

    row("bad sigma-apr", withParameters("sigma-apr='0'"), one("2 warning ParameterUnusable (sigma-apr; 0)"));
    row("bad tol-abs", withParameters("tol-abs='-1'"), one("2 warning ParameterUnusable (tol-abs; -1)"));
    row("bad sigma-act", withParameters("sigma-act='both'"),
        one("2 warning ParameterUnusable (sigma-act; both)"));

    row("point without id", points("<point z='1' fix='z'/>"), one("4 error PointWithoutId ()"));
    row("point with blank id", points("\n<point id='  '/>"), one("5 error PointWithoutId ()"));
    row("point repeated", points("<point id='A' adj='z'/>\n<point id='A' adj='z'/>\n<point id='A' adj='z'/>"),
        {QStringLiteral("5 warning PointRepeated (A; 4)"), QStringLiteral("6 warning PointRepeated (A; 5)")});
    row("point undeclared",
        sections("<dh from='R' to='A' val='1' dist='1'/>\n<dh from='X' to='A' val='1' dist='1'/>\n"
                 "<dh from='B' to='X' val='1' dist='1'/>"),
        one("8 warning PointUndeclared (X)"));
    row("point without role", points("<point id='A' z='5'/>"), one("4 warning PointWithoutRole (A)"));
    row("point with another role", points("<point id='A' z='5' fix='xy' adj='XY'/>"),
        one("4 warning PointWithoutRole (A)"));
    row("fixed and adjusted", points("<point id='A' z='5' fix='xyz' adj='Z'/>"),
        one("4 warning PointFixedAndAdjusted (A)"));
    row("fixed without height", points("<point id='A' fix='z'/>"),
        one("4 error FixedPointWithoutHeight (A)"));
    row("fixed with bad height", points("<point id='A' z='high' fix='z'/>"),
        {QStringLiteral("4 error HeightUnusable (A; high)"),
         QStringLiteral("4 error FixedPointWithoutHeight (A)")});
    row("bad approximate height", points("<point id='A' z='inf' adj='z'/>"),
        one("4 error HeightUnusable (A; inf)"));

    const auto section = [&](const char* name, const QByteArray& line, const QStringList& expected) {
        row(name, sections("<dh from='R' to='B' val='1' dist='1'/>\n" + line), expected);
    };
    section("no start", "<dh to='A' val='1' dist='1'/>", one("8 error SectionWithoutPoint (; A)"));
    section("no end", "<dh from='A' val='1' dist='1'/>", one("8 error SectionWithoutPoint (A; )"));
    section("same ends", "<dh from='A' to=' A ' val='1' dist='1'/>", one("8 error SectionSameEnds (A; A)"));
    section("no value", "<dh from='R' to='A' dist='1'/>", one("8 error SectionValueMissing (R; A)"));
    section("value is no number", "<dh from='R' to='A' val='1,5' dist='1'/>",
            one("8 error SectionWithoutValue (R; A; 1,5)"));
    section("value is nan", "<dh from='R' to='A' val='nan' dist='1'/>",
            one("8 error SectionWithoutValue (R; A; nan)"));
    section("value is infinite", "<dh from='R' to='A' val='-inf' dist='1'/>",
            one("8 error SectionWithoutValue (R; A; -inf)"));
    section("value overflows", "<dh from='R' to='A' val='1e999' dist='1'/>",
            one("8 error SectionWithoutValue (R; A; 1e999)"));
    section("value beyond the Earth", "<dh from='R' to='A' val='2e9' dist='1'/>",
            one("8 error SectionWithoutValue (R; A; 2e9)"));
    section("no weight", "<dh from='R' to='A' val='1'/>", one("8 error SectionWithoutWeight (R; A)"));
    section("distance zero", "<dh from='R' to='A' val='1' dist='0'/>",
            {QStringLiteral("8 error DistanceUnusable (R; A; 0)"),
             QStringLiteral("8 error SectionWithoutWeight (R; A)")});
    section("distance negative", "<dh from='R' to='A' val='1' dist='-1' stdev='2'/>",
            one("8 error DistanceUnusable (R; A; -1)"));
    section("distance nan", "<dh from='R' to='A' val='1' dist='NaN' stdev='2'/>",
            one("8 error DistanceUnusable (R; A; NaN)"));
    section("stdev zero", "<dh from='R' to='A' val='1' dist='1' stdev='0.0'/>",
            one("8 error StdevUnusable (R; A; 0.0)"));
    section("stdev negative", "<dh from='R' to='A' val='1' stdev='-3'/>",
            {QStringLiteral("8 error StdevUnusable (R; A; -3)"),
             QStringLiteral("8 error SectionWithoutWeight (R; A)")});
    section("stdev infinite", "<dh from='R' to='A' val='1' dist='1' stdev='inf'/>",
            one("8 error StdevUnusable (R; A; inf)"));
    section("stdev vanishing", "<dh from='R' to='A' val='1' dist='1' stdev='1e-300'/>",
            one("8 error StdevUnusable (R; A; 1e-300)"));

    const QByteArray two = "<dh from='R' to='A' val='1' dist='1'/>\n<dh from='A' to='B' val='1' dist='1'/>\n";
    row("covariance of another size", sections(two + "<cov-mat dim='3' band='0'>1 2 3</cov-mat>"),
        one("9 error CovarianceUnusable (3; 0; 2)"));
    row("covariance with too few numbers", sections(two + "<cov-mat dim='2' band='1'>1 2</cov-mat>"),
        one("9 error CovarianceUnusable (2; 1; 2)"));
    row("covariance with too wide a band", sections(two + "<cov-mat dim='2' band='2'>1 2 3</cov-mat>"),
        one("9 error CovarianceUnusable (2; 2; 2)"));
    row("covariance without dim", sections(two + "<cov-mat band='0'>1 2</cov-mat>"),
        one("9 error CovarianceUnusable (; 0; 2)"));
    row("covariance with bad band", sections(two + "<cov-mat dim='2' band='-1'>1 2</cov-mat>"),
        one("9 error CovarianceUnusable (2; -1; 2)"));
    row("negative variance", sections(two + "<cov-mat dim='2' band='0'>1 -2</cov-mat>"),
        one("8 error VarianceUnusable (A; B; -2)"));
    row("correlations", sections(two + "<cov-mat dim='2' band='1'>1 0.5 2</cov-mat>"),
        one("9 warning CorrelationsIgnored (1)"));
    row("correlations that are zero", sections(two + "<cov-mat dim='2' band='1'>1 0.0 2</cov-mat>"), {});

    row("other observations",
        points("<obs from='S'><direction to='A' val='1'/>\n<distance to='B' val='2'/><z-angle from='T' "
               "to='C' val='3'/>"
               "\n<cov-mat dim='3' band='0'>1 1 1</cov-mat></obs>"),
        {QStringLiteral("4 error OtherObservation (direction; S; A)"),
         QStringLiteral("5 error OtherObservation (distance; S; B)"),
         QStringLiteral("5 error OtherObservation (z-angle; T; C)")});
    row("vectors", points("<vectors>\n<vec from='A' to='B' dx='1' dy='2' dz='3'/></vectors>"),
        one("5 error OtherObservation (vec; A; B)"));
    row("observed heights without covariances",
        points("<coordinates>\n\n<point id='A' z='1'/></coordinates>"),
        one("4 error ObservedWithoutCovariance (; ; 1)"));
    const auto coordinates = [](const QByteArray& content) {
        return points("<point id='F' z='1' fix='z'/><coordinates>" + content + "</coordinates>");
    };
    row("covariances of other heights",
        coordinates("<point id='A' z='1'/><point id='B' z='2'/>\n<cov-mat dim='1' band='0'>1</cov-mat>"),
        one("5 error ObservedWithoutCovariance (1; 0; 2)"));
    row("covariances that are no numbers",
        coordinates("<point id='A' z='1'/>\n<cov-mat dim='1' band='0'>x</cov-mat>"),
        one("5 error ObservedWithoutCovariance (1; 0; 1)"));
    row("covariances of nothing measured",
        coordinates("<point id='A' z='1'/><point id='B' z='2'/>\n<cov-mat dim='2' band='1'>1 2 1</cov-mat>"),
        one("5 error ObservedWithoutCovariance (2; 1; 2)"));
    row("observed height missing",
        coordinates("\n<point id='A' z='high'/>\n<cov-mat dim='1' band='0'>1</cov-mat>"),
        one("5 error ObservedHeightMissing (A)"));
    row("observed height repeated",
        coordinates("\n<point id='A' z='1'/>\n<point id='A' z='2'/><cov-mat dim='2' band='0'>1 1</cov-mat>"),
        one("6 warning ObservedPointRepeated (A)"));
    row("observed height of a fixed point",
        coordinates("<point id='F' z='1'/><cov-mat dim='1' band='0'>1</cov-mat>"),
        one("4 warning ObservedPointFixed (F)"));
}

void TestGkfReader::problems()
{
    QFETCH(QByteArray, text);
    QFETCH(QStringList, expected);
    const GkfResult result = readText(text);
    QVERIFY(!result.fatal);
    QCOMPARE(describeProblems(result), expected);
}

void TestGkfReader::malformedFilesGiveOneFatalProblem_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<qint64>("line");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char* name, const QByteArray& text, qint64 line, const char* reason) {
        QTest::newRow(name) << text << line << QString::fromUtf8(reason);
    };
    const QByteArray good = sections("<dh from='R' to='A' val='1' dist='1'/>");
    row("empty file", "", 1, "Premature end of document.");
    row("only blanks", "  \n ", 2, "Premature end of document.");
    row("no XML", "R A 1.0\n", 1, "Start tag expected.");
    row("cut in a tag", good.left(good.indexOf("val=")), 7, "Premature end of document.");
    row("cut between tags", good.left(good.indexOf("<dh")), 7, "Premature end of document.");
    row("crossed tags", "<gama-local>\n<network></gama-local></network>", 2,
        "Opening and ending tag mismatch.");
    row("two roots", good + "<gama-local/>", 12, "Extra content at end of document.");
    row("text after the root", good + "\nmore", 13, "Extra content at end of document.");
    row("attribute twice", sections("<dh from='R' from='A'/>"), 7, "Attribute 'from' redefined.");
    row("attribute without quotes", sections("\n<dh from=R/>"), 8,
        "Expected ''' or '\"', but got '[a-zA-Z]'.");
    row("bare ampersand", points("<point id='A&B'/>"), 4, "Expected ';', but got '''.");
    row("unknown entity", points("\n<point id='&nbsp;'/>"), 5, "Entity 'nbsp' not declared.");
    row("less-than in an attribute", points("<point id='<'/>"), 4, "Unexpected '<'.");
    row("control character", points("<point id='\x01'/>"), 4, "Unexpected ''.");
    row("broken UTF-8", "<gama-local>\n\xff\xfe</gama-local>", 1, "Encountered incorrectly encoded content.");
    row("unclosed comment", "<gama-local>\n<!-- ", 2, "Premature end of document.");
}

void TestGkfReader::malformedFilesGiveOneFatalProblem()
{
    QFETCH(QByteArray, text);
    QFETCH(qint64, line);
    QFETCH(QString, reason);
    const GkfResult result = readText(text);
    QVERIFY(result.fatal);
    QCOMPARE(describe(*result.fatal),
             QStringLiteral("%1 fatal MalformedXml (%2)").arg(QString::number(line), reason));
    QVERIFY(result.network.points.empty());
    QVERIFY(result.problems.empty());
}

void TestGkfReader::malformedFileHandsOutNothing()
{
    const QByteArray good = sections("<dh from='R' to='A' val='1' dist='1'/><dh/>");
    for (int size = 0; size < good.size() - 1; ++size) {
        const GkfResult result = readText(good.left(size));
        QVERIFY(result.fatal);
        QVERIFY(result.network.points.empty());
        QVERIFY(result.network.sections.empty());
        QVERIFY(result.problems.empty());
    }
    QVERIFY(!readText(good.left(good.size() - 1)).fatal);
}

void TestGkfReader::unreadableFileIsFatal()
{
    const QTemporaryDir folder;
    const GkfResult result = GkfReader::readFile(folder.filePath(QStringLiteral("none.gkf")));
    QVERIFY(result.fatal);
    QCOMPARE(describe(*result.fatal), QStringLiteral("0 fatal FileNotReadable (No such file or directory)"));
}

void TestGkfReader::directoryIsFatal()
{
    const QTemporaryDir folder;
    const GkfResult result = GkfReader::readFile(folder.path());
    QVERIFY(result.fatal);
    QCOMPARE(describe(*result.fatal),
             QStringLiteral("0 fatal FileNotReadable (file to open is a directory)"));
}

void TestGkfReader::failedReadIsFatal()
{
    // A file that opens, promises to go on, and gives an I/O error.
    const GkfResult result = GkfReader::readFile(QStringLiteral("/proc/self/mem"));
    QVERIFY(result.fatal);
    QCOMPARE(describe(*result.fatal), QStringLiteral("0 fatal FileNotReadable (Input/output error)"));
}

void TestGkfReader::stdevWinsOverDistance()
{
    const Section section =
        readText(sections("<dh from='R' to='A' val='1' dist='4' stdev='1.5'/>")).network.sections.front();
    QCOMPARE(section.sigma, 1.5);
    QCOMPARE(*section.stdev, 1.5);
    QCOMPARE(*section.distance, 4.0);
}

void TestGkfReader::varianceWinsOverStdev()
{
    const Section section = readText(sections("<dh from='R' to='A' val='1' dist='4' stdev='1.5'/>"
                                              "<cov-mat dim='1' band='0'>6.25</cov-mat>"))
                                .network.sections.front();
    QCOMPARE(section.sigma, 2.5);
}

void TestGkfReader::sigmaComesFromDistanceAndSigmaApriori()
{
    QCOMPARE(readText(withParameters("sigma-apr='3'")).network.sections.front().sigma, 6.0);
    QCOMPARE(readText(withParameters("")).network.sections.front().sigma, 20.0);
}

void TestGkfReader::parametersAfterTheSectionsCountToo()
{
    const GkfResult result =
        readText("<gama-local><network><points-observations><point id='P' adj='z'/><point id='Q' adj='z'/>"
                 "<height-differences><dh from='P' to='Q' val='1' dist='4'/></height-differences>"
                 "</points-observations><parameters sigma-apr='3'/></network></gama-local>");
    QCOMPARE(result.network.sections.front().sigma, 6.0);
}

void TestGkfReader::badStdevFallsBackToDistance()
{
    const Section section =
        readText(sections("<dh from='R' to='A' val='1' dist='4' stdev='0'/>")).network.sections.front();
    QCOMPARE(section.sigma, 20.0);
    QVERIFY(!section.stdev);
}

void TestGkfReader::diagonalCovarianceGivesSigmas()
{
    const Network network = readText(sections("<dh from='R' to='A' val='1'/><dh from='R' to='' val='1'/>"
                                              "<dh from='A' to='B' val='1'/>"
                                              "<cov-mat dim='3' band='0'>\n 4 9\n16 \n</cov-mat>"))
                                .network;
    QCOMPARE(network.sections.size(), std::size_t(2));
    QCOMPARE(network.sections[0].sigma, 2.0);
    QCOMPARE(network.sections[1].sigma, 4.0);
}

void TestGkfReader::bandedCovarianceGivesSigmas()
{
    const GkfResult result =
        readText(sections("<dh from='R' to='A' val='1'/><dh from='R' to='B' val='1'/>"
                          "<dh from='A' to='B' val='1'/><dh from='A' to='B' val='1'/>\n"
                          "<cov-mat dim='4' band='2'>1 .1 0  4 .2 .3  9 .4  16</cov-mat>"));
    QCOMPARE(describeProblems(result), QStringList(QStringLiteral("8 warning CorrelationsIgnored (4)")));
    QCOMPARE(result.network.sections[0].sigma, 1.0);
    QCOMPARE(result.network.sections[1].sigma, 2.0);
    QCOMPARE(result.network.sections[2].sigma, 3.0);
    QCOMPARE(result.network.sections[3].sigma, 4.0);
}

void TestGkfReader::unusableCovarianceLeavesTheOwnWeights()
{
    const Network network =
        readText(sections("<dh from='R' to='A' val='1' stdev='7'/><dh from='A' to='B' val='1'/>"
                          "<cov-mat dim='2' band='0'>4</cov-mat>"))
            .network;
    QCOMPARE(network.sections.size(), std::size_t(1));
    QCOMPARE(network.sections[0].sigma, 7.0);
}

void TestGkfReader::laterPointWins()
{
    const Network network =
        readText(points("<point id='A' z='1' fix='z'/>\n<point id='A' z='2' adj='z'/>")).network;
    QCOMPARE(network.points.size(), std::size_t(3));
    QCOMPARE(*network.points[0].height, 2.0);
    QVERIFY(!network.points[0].fixed);
    QCOMPARE(network.points[0].line, 5);
}

void TestGkfReader::laterPointKeepsWhatItDoesNotState()
{
    const Network network = readText(points("<point id='A' z='1.5'/>\n<point id='A' fix='z'/>"
                                            "<point id='B' z='1' fix='z'/><point id='B' z='3'/>"))
                                .network;
    QCOMPARE(*network.points[0].height, 1.5);
    QVERIFY(network.points[0].fixed);
    QCOMPARE(*network.points[1].height, 3.0);
    QVERIFY(network.points[1].fixed);
}

void TestGkfReader::fixBeatsAdj()
{
    QVERIFY(readText(points("<point id='A' z='1' fix='Z' adj='xyz'/>")).network.points[0].fixed);
}

void TestGkfReader::otherCoordinatesDoNotCount()
{
    QVERIFY(!readText(points("<point id='A' z='1' fix='XY' adj='z'/>")).network.points[0].fixed);
}

void TestGkfReader::undeclaredPointIsUsed()
{
    const Network network = readText(sections("<dh from='R' to='X' val='1' dist='1'/>")).network;
    QCOMPARE(network.sections.size(), std::size_t(1));
    QCOMPARE(network.points.back().id, QStringLiteral("X"));
    QVERIFY(!network.points.back().declared);
    QVERIFY(!network.points.back().fixed);
    QCOMPARE(network.points.back().line, 7);
}

void TestGkfReader::numbersMayHoldBlanks()
{
    const Network network =
        readText(sections("<dh from=' R ' to='A' val=' 25.42' dist='\t.5 ' stdev=' 1e1 '/>")).network;
    QCOMPARE(network.sections[0].difference, 25.42);
    QCOMPARE(*network.sections[0].distance, 0.5);
    QCOMPARE(network.sections[0].sigma, 10.0);
    QCOMPARE(network.points[static_cast<std::size_t>(network.sections[0].from)].id, QStringLiteral("R"));
}

void TestGkfReader::numbersDoNotDependOnTheLocale()
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::Russian));
    const Network network = readText(sections("<dh from='R' to='A' val='25.42' dist='1'/>")).network;
    QLocale::setDefault(before);
    QCOMPARE(network.sections[0].difference, 25.42);
}

void TestGkfReader::entityBombIsFatal()
{
    QByteArray text = "<!DOCTYPE g [<!ENTITY a0 'aaaaaaaaaa'>\n";
    for (int i = 1; i < 12; ++i) {
        const QByteArray inner = "&a" + QByteArray::number(i - 1) + ";";
        text += "<!ENTITY a" + QByteArray::number(i) + " '" + inner.repeated(10) + "'>\n";
    }
    text += "]><gama-local><network><description>&a11;</description></network></gama-local>";
    const GkfResult result = readText(text);
    QVERIFY(result.fatal);
    QCOMPARE(result.fatal->kind, ProblemKind::MalformedXml);
}

void TestGkfReader::nestingUpToTheLimit_data()
{
    QTest::addColumn<QByteArray>("before");
    QTest::addColumn<QByteArray>("behind");
    QTest::addColumn<int>("depth");
    QTest::addColumn<QString>("fatal");
    const QByteArray root = "<gama-local><network>\n";
    const QByteArray end = "</network></gama-local>";
    const QString message = QStringLiteral("2 fatal NestedTooDeeply (1000)");
    // The root, the network and the element around count, too.
    QTest::newRow("description, as deep as may be") << root + "<description>"
                                                    << "</description>" + end << 997 << QString();
    QTest::newRow("description, one more") << root + "<description>"
                                           << "</description>" + end << 998 << message;
    QTest::newRow("description, far more") << root + "<description>"
                                           << "</description>" + end << 1000000 << message;
    const QByteArray differences = root + "<points-observations><height-differences>";
    const QByteArray differencesEnd = "</height-differences></points-observations>" + end;
    QTest::newRow("covariances, as deep as may be") << differences + "<cov-mat>"
                                                    << "</cov-mat>" + differencesEnd << 995 << QString();
    QTest::newRow("covariances, far more") << differences + "<cov-mat>"
                                           << "</cov-mat>" + differencesEnd << 1000000 << message;
    QTest::newRow("section") << differences + "<dh>"
                             << "</dh>" + differencesEnd << 1000000 << message;
    QTest::newRow("network") << root << end << 1000000 << message;
    QTest::newRow("observations") << root + "<points-observations><obs>"
                                  << "</obs></points-observations>" + end << 1000000 << message;
}

void TestGkfReader::nestingUpToTheLimit()
{
    QFETCH(QByteArray, before);
    QFETCH(QByteArray, behind);
    QFETCH(int, depth);
    QFETCH(QString, fatal);
    const GkfResult result = readText(before + QByteArray("<a>").repeated(depth) + "1" +
                                      QByteArray("</a>").repeated(depth) + behind);
    QCOMPARE(result.fatal ? describe(*result.fatal) : QString(), fatal);
}

void TestGkfReader::longPieces_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("fatal");
    const QString piece = QStringLiteral("4 fatal PieceTooLong (256; 16)");
    QTest::newRow("attribute at the limit")
        << points("<point id='" + QByteArray(10000, 'x') + "' adj='z'/>") << QString();
    QTest::newRow("attribute over the limit")
        << points("<point id='" + QByteArray(10001, 'x') + "' adj='z'/>")
        << QStringLiteral("4 fatal AttributeTooLong (id; 10000)");
    QTest::newRow("quotes in an attribute")
        << points("<point id=\"" + QByteArray(1 << 24, '\'') + "\" adj='z'/>") << piece;
    QTest::newRow("attribute that never ends") << points("<point id=\"" + QByteArray(1 << 24, 'x')) << piece;
    QByteArray attributes;
    for (int i = 0; i < 200000; ++i)
        attributes += " a" + QByteArray::number(i) + "=''";
    QTest::newRow("many attributes") << points("<point" + attributes + "/>") << piece;
    QTest::newRow("comment") << points("<!--" + QByteArray(1 << 24, 'x') + "-->") << piece;
    QTest::newRow("long comment") << points("<!--" + QByteArray(200000, 'x') + "-->") << QString();
    QTest::newRow("many comments") << points(QByteArray("<!--" + QByteArray(200000, 'x') + "-->").repeated(9))
                                   << QString();
    QTest::newRow("description") << QByteArray("<gama-local><network>\n<description>") +
                                        QByteArray("<b>" + QByteArray(1000, 'x') + "</b>").repeated(101) +
                                        "</description></network></gama-local>"
                                 << QStringLiteral("2 fatal TextTooLong (description; 100000)");
    QTest::newRow("numbers") << sections("<cov-mat dim='1' band='0'>" + QByteArray("1 ").repeated(9000000) +
                                         "</cov-mat>")
                             << QStringLiteral("7 fatal PieceTooLong (256; 16)");
    QTest::newRow("numbers in a matrix")
        << sections("<cov-mat dim='1' band='0'>" + QByteArray("1 ").repeated(2000001) + "</cov-mat>")
        << QStringLiteral("7 fatal TooManyCovariances (2000000)");
    QTest::newRow("entities") << "<!DOCTYPE gama-local [<!ENTITY e \"" + QByteArray(1000, 'x') +
                                     "\">]><gama-local><network><description>&e;</description></network>"
                                     "</gama-local>"
                              << QStringLiteral(
                                     "1 fatal MalformedXml (Entity expands to more characters than "
                                     "the entity expansion limit.)");
}

void TestGkfReader::longPieces()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, fatal);
    const GkfResult result = readText(content);
    QCOMPARE(result.fatal ? describe(*result.fatal) : QString(), fatal);
}

void TestGkfReader::covariancesInPieces()
{
    const GkfResult result = readText(sections("<dh from='R' to='A' val='1' dist='1'/>"
                                               "<dh from='A' to='B' val='1' dist='1'/>"
                                               "<dh from='B' to='R' val='1' dist='1'/>"
                                               "<cov-mat dim='3' band='1'>4<!-- --> 0 <b>1<![CDATA[6]]></b>\n"
                                               "&#48; 25</cov-mat>"));
    QVERIFY(!result.fatal);
    QCOMPARE(describeProblems(result), QStringList());
    QCOMPARE(result.network.sections[0].sigma, 2.0);
    QCOMPARE(result.network.sections[1].sigma, 4.0);
    QCOMPARE(result.network.sections[2].sigma, 5.0);
}

void TestGkfReader::textOfNestedElementsIsTheirs()
{
    const GkfResult result = readText("<gama-local><network><description> a <b>bold<i>er</i></b> "
                                      "description </description></network></gama-local>");
    QVERIFY(!result.fatal);
    QCOMPARE(result.network.description, QStringLiteral("a bolder description"));
}

void TestGkfReader::capitalLettersCarryTheDatum()
{
    const GkfResult result = readText(points("<point id='A' z='1' adj='Z'/><point id='B' z='1' adj='z'/>"
                                             "<point id='C' z='1' adj='xyZ'/><point id='D' z='1' fix='Z'/>"));
    QCOMPARE(describeProblems(result), QStringList());
    const std::vector<Point>& read = result.network.points;
    QVERIFY(read[0].constrained && !read[1].constrained && read[2].constrained);
    QVERIFY(read[3].fixed && !read[3].constrained);
}

void TestGkfReader::readsObservedHeights()
{
    const GkfResult result =
        readText(points("<point id='F' z='5' fix='z'/><point id='B' z='1' adj='z'/><coordinates>"
                        "<point id='A' z='1.5'/><point id='B' z='2.5'/><point id='F' z='9'/>"
                        "<cov-mat dim='3' band='1'>4 1 9 0.5 16</cov-mat></coordinates>"));
    QCOMPARE(describeProblems(result), QStringList(QStringLiteral("4 warning ObservedPointFixed (F)")));
    const Network& network = result.network;
    QCOMPARE(network.observedHeights.size(), std::size_t(1));
    QCOMPARE(networks::ids(network, network.observedHeights[0].points), QStringLiteral("A-B"));
    QCOMPARE(network.observedHeights[0].covariance, (std::vector<double>{4.0, 1.0, 1.0, 9.0}));
    QVERIFY(network.points[0].fixed && !network.points[0].observed);
    QCOMPARE(*network.points[0].height, 5.0);
    QVERIFY(network.points[1].observed && network.points[2].observed);
    QCOMPARE(*network.points[1].height, 2.5); // of B, which was named first
    QCOMPARE(*network.points[2].height, 1.5);
}

void TestGkfReader::observedHeightsAmongOtherCoordinates()
{
    const GkfResult result = readText(
        points("<coordinates><point id='A' x='1' y='2' z='1.5'/><point id='B' x='1' y='2'/>"
               "<point id='C' z='2.5'/><cov-mat dim='6' band='3'>1 0 0 0  1 0 0 0  4 0 0 2  1 0 0  1 0  9"
               "</cov-mat></coordinates>"));
    QCOMPARE(describeProblems(result), QStringList());
    QCOMPARE(result.network.observedHeights.size(), std::size_t(1));
    QCOMPARE(networks::ids(result.network, result.network.observedHeights[0].points), QStringLiteral("A-C"));
    QCOMPARE(result.network.observedHeights[0].covariance, (std::vector<double>{4.0, 2.0, 2.0, 9.0}));
}

void TestGkfReader::readsTheConfidence()
{
    const auto confidence = [](const QByteArray& text) {
        return readText(withParameters("conf-pr='" + text + "'")).network.parameters.confidence;
    };
    QCOMPARE(readText(withParameters("")).network.parameters.confidence, 0.95);
    QCOMPARE(confidence(" 0.99 "), 0.99);
    QCOMPARE(confidence("1"), 0.95);
    QCOMPARE(confidence("0"), 0.95);
    QCOMPARE(describeProblems(readText(withParameters("conf-pr='95'"))),
             QStringList(QStringLiteral("2 warning ParameterUnusable (conf-pr; 95)")));
}

void TestGkfReader::everyPointIsRead()
{
    QByteArray lines;
    for (int i = 0; i < 20000; ++i)
        lines += "<point id='" + QByteArray::number(i) + "' adj='z'/>\n";
    const GkfResult result = readText(points(lines));
    QVERIFY(!result.fatal);
    QCOMPARE(result.network.points.size(), std::size_t(20002));
    QCOMPARE(result.network.points[12345].id, QStringLiteral("12345"));
    QCOMPARE(result.network.points[12345].line, 12349);
}

void TestGkfReader::stopsWhenAsked_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("questionsAtSections");
    QByteArray manyPoints;
    QByteArray manySections;
    QByteArray matrix;
    for (int i = 0; i < 5000; ++i) {
        const QByteArray number = QByteArray::number(i);
        manyPoints += "<point id='" + number + "' adj='z'/>\n";
        manySections += "<dh from='A' to='" + number + "' val='1' dist='1'/>\n";
        matrix += "1 0 ";
    }
    const QByteArray begin = "<height-differences>";
    const QByteArray end = "</height-differences>";
    // The content holds another section.
    QTest::newRow("points") << manyPoints << 1;
    QTest::newRow("sections") << begin + manySections + end << 1 + 2;
    QTest::newRow("covariances") << begin + "<dh from='A' to='B' val='1'/><cov-mat dim='1' band='0'>" +
                                        matrix + "</cov-mat>" + end
                                 << 1 + 1;
    QTest::newRow("unknown elements") << "<unknown>" + manyPoints + "</unknown>" << 1;
    QTest::newRow("comment") << "<!--" + QByteArray(100000, 'x') + "-->" << 1;
}

// Whenever it is told to stop, it asks no more, reads no more than the portion in hand, and gives nothing.
void TestGkfReader::stopsWhenAsked()
{
    QFETCH(QByteArray, content);
    QFETCH(int, questionsAtSections);
    constexpr qint64 portion = 8192;
    QByteArray file = points(content);
    QBuffer buffer(&file);
    const auto read = [&buffer](int stopAt, int& questions) {
        questions = 0;
        buffer.close();
        buffer.open(QIODevice::ReadOnly);
        return GkfReader::read(buffer, [stopAt, &questions] { return ++questions == stopAt; });
    };
    int all = 0;
    QVERIFY(!read(0, all).isStopped);
    QVERIFY2(all > file.size() / portion + questionsAtSections, qPrintable(QString::number(all)));
    for (int stopAt = 1; stopAt <= all; ++stopAt) {
        int questions = 0;
        const GkfResult result = read(stopAt, questions);
        QVERIFY(result.isStopped);
        QCOMPARE(questions, stopAt);
        QVERIFY2(buffer.pos() <= stopAt * portion, qPrintable(QString::number(buffer.pos())));
        QVERIFY(!result.fatal);
        QVERIFY(result.network.points.empty() && result.network.sections.empty());
        QVERIFY(result.problems.empty());
    }
}

QTEST_APPLESS_MAIN(TestGkfReader)
#include "tst_gkfreader.moc"
