#include "levelling/Adjustment.h"
#include "levelling/GkfReader.h"
#include "levelling/GkfWriter.h"
#include "tests/levelling/SyntheticNetwork.h"
#include "tests/levelling/TestNetworks.h"

#include <QBuffer>
#include <QtTest>

#include <random>

using namespace levelling;
using namespace orvel::test;

namespace {

GkfResult read(QByteArray text)
{
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    return GkfReader::read(buffer);
}

Point makePoint(const QString& id, std::optional<double> height = std::nullopt, bool isFixed = false)
{
    Point point;
    point.id = id;
    point.height = height;
    point.fixed = isFixed;
    point.declared = true;
    return point;
}

Section makeSection(int from, int to, double difference, std::optional<double> distance,
                    std::optional<double> stdev = std::nullopt)
{
    Section section;
    section.from = from;
    section.to = to;
    section.difference = difference;
    section.distance = distance;
    section.stdev = stdev;
    section.sigma = stdev.value_or(distance ? 10.0 * std::sqrt(*distance) : 1.0);
    return section;
}

/// Everything of a network that a file can state, each number with all its digits.
QStringList describe(const Network& network)
{
    const auto text = [](const std::optional<double>& value) {
        return value ? QString::number(*value, 'g', 17) : QStringLiteral("-");
    };
    const Parameters& parameters = network.parameters;
    QStringList lines{network.description, text(parameters.sigmaApriori), text(parameters.confidence),
                      text(parameters.toleranceAbsolute),
                      QString::number(static_cast<int>(parameters.sigmaAct))};
    for (const Point& point : network.points)
        lines.append(QStringLiteral("%1 %2 %3 %4 %5")
                         .arg(point.id, text(point.height), QString::number(point.fixed ? 1 : 0),
                              QString::number(point.observed ? 1 : 0),
                              QString::number(point.constrained ? 1 : 0)));
    for (const Section& section : network.sections)
        lines.append(QStringLiteral("%1 %2 %3 %4 %5 %6")
                         .arg(QString::number(section.from), QString::number(section.to),
                              text(section.difference), text(section.distance), text(section.stdev),
                              text(section.sigma)));
    for (const ObservedHeights& observed : network.observedHeights) {
        QString line;
        for (const int point : observed.points)
            line += QString::number(point) + QLatin1Char(' ');
        for (const double covariance : observed.covariance)
            line += text(covariance) + QLatin1Char(' ');
        lines.append(line);
    }
    return lines;
}

/// What is another network once it was written and read; empty if nothing is.
QString compareRead(const Network& network)
{
    const GkfResult result = read(writeGkf(network).text);
    if (result.fatal)
        return QStringLiteral("fatal: %1").arg(result.fatal->arguments.join(QLatin1Char(' ')));
    if (!result.problems.empty())
        return QStringLiteral("problem in line %1: %2")
            .arg(QString::number(result.problems.front().line),
                 result.problems.front().arguments.join(QLatin1Char(' ')));
    const QStringList written = describe(network);
    const QStringList back = describe(result.network);
    for (int line = 0; line < std::max(written.size(), back.size()); ++line) {
        if (written.value(line) != back.value(line))
            return QStringLiteral("%1 became %2").arg(written.value(line), back.value(line));
    }
    return QString();
}

} // namespace

/// A network as a gama-local file, which gives the same network again.
class TestGkfWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void wholeFileOfASmallNetwork();
    void samplesComeBackTheSame_data();
    void samplesComeBackTheSame();
    void randomNetworksComeBackTheSame();
    void hostileNamesComeBackTheSame_data();
    void hostileNamesComeBackTheSame();
    void namesThatXmlCannotHoldAreReplacedAndStayDifferent();
    void observedHeightsKeepTheirCovariances();
    void constrainedPointsStayConstrained();
    void parametersAndDescriptionStay();
    void sectionWithoutLengthAndDeviationKeepsItsWeight();
    void adjustmentOfTheFileIsTheSame();
    void hundredThousandPointsComeBackTheSame();
    void stoppedWritingGivesNothing();
};

void TestGkfWriter::wholeFileOfASmallNetwork()
{
    Network network;
    network.description = QStringLiteral("Line 14 & <15>");
    network.points = {makePoint(QStringLiteral("R<1>"), 100.5, true), makePoint(QStringLiteral("\"2\""))};
    network.sections = {makeSection(0, 1, -1.2345, 0.5), makeSection(1, 0, 1.25, std::nullopt, 0.75)};
    QCOMPARE(QString::fromUtf8(writeGkf(network).text),
             QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                            "<gama-local xmlns=\"http://www.gnu.org/software/gama/gama-local\">\n"
                            "  <network>\n"
                            "    <description>Line 14 &amp; &lt;15&gt;</description>\n"
                            "    <parameters sigma-apr=\"10\" conf-pr=\"0.95\" tol-abs=\"1000\" "
                            "sigma-act=\"aposteriori\"/>\n"
                            "    <points-observations>\n"
                            "      <point id=\"R&lt;1&gt;\" z=\"100.5\" fix=\"z\"/>\n"
                            "      <point id=\"&quot;2&quot;\" adj=\"z\"/>\n"
                            "      <height-differences>\n"
                            "        <dh from=\"R&lt;1&gt;\" to=\"&quot;2&quot;\" val=\"-1.2345\" "
                            "dist=\"0.5\"/>\n"
                            "        <dh from=\"&quot;2&quot;\" to=\"R&lt;1&gt;\" val=\"1.25\" "
                            "stdev=\"0.75\"/>\n"
                            "      </height-differences>\n"
                            "    </points-observations>\n"
                            "  </network>\n"
                            "</gama-local>\n"));
}

void TestGkfWriter::samplesComeBackTheSame_data()
{
    QTest::addColumn<QString>("file");
    for (const char* file : {"one-benchmark.gkf", "two-benchmarks.gkf"})
        QTest::newRow(file) << QString::fromLatin1(file);
}

void TestGkfWriter::samplesComeBackTheSame()
{
    QFETCH(QString, file);
    QCOMPARE(compareRead(networks::sample(file)), QString());
}

void TestGkfWriter::randomNetworksComeBackTheSame()
{
    std::mt19937 generator(7); // NOLINT(cert-msc32-c,cert-msc51-cpp): the same networks each time
    std::uniform_real_distribution<double> any(-1.0, 1.0);
    for (unsigned seed = 0; seed < 200; ++seed) {
        Network network = networks::random(seed, 12, 20, 3);
        network.parameters.sigmaApriori = std::exp(3.0 * any(generator));
        for (Section& section : network.sections) {
            section.difference = any(generator) * std::exp(8.0 * any(generator));
            section.distance = std::exp(4.0 * any(generator));
            section.sigma = network.parameters.sigmaApriori * std::sqrt(*section.distance);
            if (any(generator) < 0.0)
                section.stdev = section.sigma = std::exp(4.0 * any(generator));
            if (section.stdev && any(generator) < 0.0)
                section.distance.reset();
        }
        QCOMPARE(compareRead(network), QString());
    }
}

void TestGkfWriter::hostileNamesComeBackTheSame_data()
{
    QTest::addColumn<QString>("name");
    for (const char* name : {"<b>", "&amp;", "%1", "\"'\"", "]]>", "<!--", "orvel://locate-item?id=1", "a\tb",
                             "a\nb", "a\rb", "Ж–7", "𝛼", "=1+1", "-", "\xE2\x80\xAE"})
        QTest::newRow(name) << QString::fromUtf8(name);
}

void TestGkfWriter::hostileNamesComeBackTheSame()
{
    QFETCH(QString, name);
    Network network;
    network.description = name;
    network.points = {makePoint(name, 1.0, true), makePoint(QStringLiteral("B"))};
    network.sections = {makeSection(0, 1, 1.0, 1.0)};
    QCOMPARE(compareRead(network), QString());
    QVERIFY(writeGkf(network).renamedPoints.empty());
}

void TestGkfWriter::namesThatXmlCannotHoldAreReplacedAndStayDifferent()
{
    Network network;
    for (const QString& id :
         {QStringLiteral("a\x01"), QStringLiteral("a\x02"), QStringLiteral(" B"), QStringLiteral("B"),
          QStringLiteral(" "), QString(QChar(0xD800)), QString(QChar(0xFFFF))})
        network.points.push_back(makePoint(id));
    network.sections = {makeSection(0, 1, 1.0, 1.0)};
    const GkfText gkf = writeGkf(network);
    const QString bad(QChar::ReplacementCharacter);
    const QStringList names{QLatin1Char('a') + bad,    QLatin1Char('a') + bad + QStringLiteral("_2"),
                            QStringLiteral("B_2"),     QStringLiteral("B"),
                            QStringLiteral("_2"),      bad,
                            bad + QStringLiteral("_2")};
    QCOMPARE(gkf.names, names);
    QCOMPARE(gkf.renamedPoints, std::vector<int>({0, 1, 2, 4, 5, 6}));
    const GkfResult result = read(gkf.text);
    QStringList back;
    for (const Point& point : result.network.points)
        back.append(point.id);
    QCOMPARE(back, names);
}

void TestGkfWriter::observedHeightsKeepTheirCovariances()
{
    Network network;
    for (int index = 0; index < 5; ++index)
        network.points.push_back(makePoint(QStringLiteral("P%1").arg(index), 100.0 + index / 3.0));
    for (const int index : {3, 0, 1, 4})
        network.points[static_cast<std::size_t>(index)].observed = true;
    network.sections = {makeSection(0, 1, 1.0, 1.0)};
    network.observedHeights = {{{3, 0, 1}, {4.0, 0.0, 1.0 / 3.0, 0.0, 9.0, 0.0, 1.0 / 3.0, 0.0, 2.5}},
                               {{4}, {0.01}}};
    QCOMPARE(compareRead(network), QString());
}

void TestGkfWriter::constrainedPointsStayConstrained()
{
    Network network;
    network.points = {makePoint(QStringLiteral("A"), 1.0), makePoint(QStringLiteral("B"), 2.0)};
    network.points[1].constrained = true;
    network.sections = {makeSection(0, 1, 1.0, 1.0)};
    QCOMPARE(compareRead(network), QString());
}

void TestGkfWriter::parametersAndDescriptionStay()
{
    Network network;
    network.description = QStringLiteral("two\nlines");
    network.parameters = {1.0 / 3.0, SigmaAct::Apriori, 12.5, 0.999};
    network.points = {makePoint(QStringLiteral("A"), 1.0, true), makePoint(QStringLiteral("B"))};
    network.sections = {makeSection(0, 1, 1.0, std::nullopt, 2.0)};
    QCOMPARE(compareRead(network), QString());
}

void TestGkfWriter::sectionWithoutLengthAndDeviationKeepsItsWeight()
{
    Network network;
    network.points = {makePoint(QStringLiteral("A"), 1.0, true), makePoint(QStringLiteral("B"))};
    network.sections = {makeSection(0, 1, 1.0, std::nullopt), makeSection(0, 1, 1.0, 4.0)};
    network.sections[1].sigma = 3.0; // not that of its length
    const GkfText gkf = writeGkf(network);
    QCOMPARE(gkf.weightedSections, 2);
    const GkfResult result = read(gkf.text);
    QCOMPARE(result.network.sections[0].sigma, 1.0);
    QCOMPARE(result.network.sections[1].sigma, 3.0);
    QCOMPARE(*result.network.sections[1].distance, 4.0);
}

void TestGkfWriter::adjustmentOfTheFileIsTheSame()
{
    const Network network = networks::sample(QStringLiteral("two-benchmarks.gkf"));
    const Adjustment before = adjust(network);
    const Adjustment after = adjust(read(writeGkf(network).text).network);
    for (std::size_t index = 0; index < network.points.size(); ++index) {
        QCOMPARE(after.points[index]->height, before.points[index]->height);
        QCOMPARE(after.points[index]->sigma, before.points[index]->sigma);
    }
}

void TestGkfWriter::hundredThousandPointsComeBackTheSame()
{
    QCOMPARE(compareRead(networks::synthetic(100000, 200000)), QString());
}

void TestGkfWriter::stoppedWritingGivesNothing()
{
    const Network network = networks::synthetic(10000, 20000);
    for (int stopAt = 1; stopAt <= 3; ++stopAt) {
        int questions = 0;
        QVERIFY(writeGkf(network, [&] { return ++questions == stopAt; }).text.isEmpty());
        QCOMPARE(questions, stopAt);
    }
}

QTEST_APPLESS_MAIN(TestGkfWriter)
#include "tst_gkfwriter.moc"
