#include "levelling/Adjustment.h"
#include "levelling/GkfReader.h"

#include <QBuffer>
#include <QtTest>

#include <algorithm>
#include <cmath>

using namespace levelling;

namespace {

/// The network of a text of points and sections, a line each: "id height role", where the role is that of the
/// gama-local format ("fix", "adj", "adj Z"), and "from to difference stdev".
Network networkOf(const QByteArray& sigmaApriori, const char* points, const char* sections,
                  const QByteArray& coordinates = {})
{
    QByteArray text = "<gama-local><network><parameters sigma-apr='" + sigmaApriori +
                      "' conf-pr='0.95' sigma-act='aposteriori'/><points-observations>";
    for (const QByteArray& line : QByteArray(points).split('\n')) {
        const QList<QByteArray> fields = line.split(' ');
        text += "<point id='" + fields[0] + "' z='" + fields[1] +
                (fields[2] == "fix" ? "' fix='z'/>" : "' adj='" + fields[2] + "'/>");
    }
    text += "<height-differences>";
    for (const QByteArray& line : QByteArray(sections).split('\n')) {
        const QList<QByteArray> fields = line.split(' ');
        text += "<dh from='" + fields[0] + "' to='" + fields[1] + "' val='" + fields[2] + "' stdev='" +
                fields[3] + "'/>";
    }
    text += "</height-differences>" + coordinates + "</points-observations></network></gama-local>";
    QBuffer buffer(&text);
    buffer.open(QIODevice::ReadOnly);
    const GkfResult result = GkfReader::read(buffer);
    return result.fatal || !result.problems.empty() ? Network() : result.network;
}

/// "id height sigma" of all points that are not fixed, heights in 0.01 mm and a posteriori sigmas in 0.01 mm.
QStringList results(const Network& network)
{
    const Adjustment adjustment = adjust(network);
    QStringList lines;
    for (std::size_t index = 0; index < network.points.size(); ++index) {
        const auto& point = adjustment.points[index];
        if (!network.points[index].fixed)
            lines.append(QStringLiteral("%1 %2 %3")
                             .arg(network.points[index].id, QString::number(point->height, 'f', 5),
                                  QString::number(point->sigma * point->sigmaScale, 'f', 2)));
    }
    return lines;
}

double largestStatistic(const Adjustment& adjustment)
{
    double largest = 0.0;
    for (const auto& section : adjustment.sections)
        largest = std::max(largest, std::abs(section->statistic.value_or(0.0)));
    return largest;
}

QString digits(double value, int decimals)
{
    return QString::number(value, 'f', decimals);
}

constexpr const char* kNiemeierSections = "1 2 -8.206 0.788110\n1 3 -5.734 1.097643\n2 3 2.481 0.671156\n"
                                          "2 4 -4.433 0.894427\n3 4 -6.909 1.000000\n3 5 -18.872 1.048285\n"
                                          "3 6 4.035 0.663723\n4 5 -11.962 0.848189\n5 6 22.904 0.912871";

} // namespace

/// Networks of textbooks with their published results (collected by F. Krumm, Geodetic Network Adjustment
/// Examples, Geodätisches Institut Universität Stuttgart, 2020).
class TestPublishedNetworks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void niemeierFree();
    void niemeierFixed();
    void krummDynamic();
    void krummFixed();
    void baumann();
    void ghilani();
};

void TestPublishedNetworks::niemeierFree()
{
    const Network network = networkOf(
        "1", "1 68.927 Z\n2 60.712 z\n3 63.193 Z\n4 56.286 z\n5 44.324 Z\n6 67.228 z", kNiemeierSections);
    QCOMPARE(results(network),
             QStringList({QStringLiteral("1 68.92487 1.75"), QStringLiteral("2 60.71666 1.65"),
                          QStringLiteral("3 63.19517 1.13"), QStringLiteral("4 56.28523 1.94"),
                          QStringLiteral("5 44.32396 1.60"), QStringLiteral("6 67.22940 2.00")}));
    const Adjustment adjustment = adjust(network);
    const PartFit& fit = *adjustment.fits[0];
    QCOMPARE(fit.unknowns, 6);
    QCOMPARE(fit.defect, 1);
    QCOMPARE(fit.redundancy, 4);
    QCOMPARE(digits(fit.pvv, 4), QStringLiteral("46.0817"));
    QCOMPARE(digits(*fit.getSigma0(), 5), QStringLiteral("3.39418"));
    QCOMPARE(digits(*fit.lowerRatio, 3), QStringLiteral("0.348"));
    QCOMPARE(digits(*fit.upperRatio, 3), QStringLiteral("1.669"));
    // Studentised: far below the limit, though every normalised one is three times as large.
    QCOMPARE(digits(largestStatistic(adjustment), 3), QStringLiteral("1.807"));
    QVERIFY(fit.isStudentised);
    QVERIFY(fit.errorLimit > 1.807);
    QCOMPARE(digits(*adjustment.sections[2]->grossError, 3), QStringLiteral("6.809"));
}

void TestPublishedNetworks::niemeierFixed()
{
    const Network network = networkOf(
        "1", "1 68.927 z\n2 60.712 z\n3 63.193 z\n4 56.286 z\n5 44.324 z\n6 67.228 fix", kNiemeierSections);
    QCOMPARE(results(network),
             QStringList({QStringLiteral("1 68.92347 3.12"), QStringLiteral("2 60.71525 2.60"),
                          QStringLiteral("3 63.19376 1.97"), QStringLiteral("4 56.28382 2.63"),
                          QStringLiteral("5 44.32255 2.30")}));
}

void TestPublishedNetworks::krummDynamic()
{
    const Network network =
        networkOf("1000", "6 105.64 z\n7 115.711 z\n8 112.885 z",
                  "2 8 5.128 836.660027\n3 6 2.183 707.106781\n3 7 12.254 707.106781\n6 7 10.071 894.427191\n"
                  "8 7 2.824 894.427191",
                  "<coordinates><point id='2' z='107.7541'/><point id='3' z='103.4535'/>"
                  "<cov-mat dim='2' band='1'>2500 -1500 3600</cov-mat></coordinates>");
    const Adjustment adjustment = adjust(network);
    QCOMPARE(adjustment.fits[0]->redundancy, 2);
    QStringList heights;
    for (const QString& line : results(network))
        heights.append(line);
    std::sort(heights.begin(), heights.end());
    // Published: 107.7541 0.04, 103.4535 0.04, 105.6364 0.43, 115.7072 0.39, 112.8826 0.48
    QCOMPARE(heights, QStringList({QStringLiteral("2 107.75410 0.04"), QStringLiteral("3 103.45350 0.04"),
                                   QStringLiteral("6 105.63639 0.43"), QStringLiteral("7 115.70723 0.39"),
                                   QStringLiteral("8 112.88263 0.48")}));
    QStringList residuals;
    for (const auto& section : adjustment.sections)
        residuals.append(digits(section->residual, 2));
    QCOMPARE(residuals, QStringList({QStringLiteral("0.52"), QStringLiteral("-0.10"), QStringLiteral("-0.27"),
                                     QStringLiteral("-0.17"), QStringLiteral("0.60")}));
}

void TestPublishedNetworks::krummFixed()
{
    const Network network = networkOf(
        "5", "1 93.459 z\n2 107.759 z\n3 103.459 z\n4 100.459 z\n5 110.956 fix",
        "1 2 14.301 4.743416\n1 3 9.995 4.472136\n1 4 7.006 5\n1 5 17.5 6.123724\n3 2 4.299 3.535534");
    QCOMPARE(results(network),
             QStringList({QStringLiteral("1 93.45600 5.78"), QStringLiteral("2 107.75414 6.73"),
                          QStringLiteral("3 103.45355 6.69"), QStringLiteral("4 100.46200 7.46")}));
    const Adjustment adjustment = adjust(network);
    QCOMPARE(digits(*adjustment.fits[0]->getSigma0() * 5.0, 4), QStringLiteral("4.7194"));
    QVERIFY(!adjustment.fits[0]->isStudentised);
    // The three sections of the loop cannot be told apart, the two spurs are not checked.
    QCOMPARE(adjustment.seriesOfSection, (std::vector<int>{0, 0, -1, -1, 0}));
}

void TestPublishedNetworks::baumann()
{
    const Network network = networkOf(
        "1",
        "1 199.295 z\n10 210.880 z\n11 211.380 z\n12 204.400 z\n13 199.890 z\n14 197.862 fix\n2 199.910 z\n"
        "3 207.640 z\n4 226.578 fix\n5 218.380 z\n6 213.951 fix\n7 212.900 z\n8 209.124 fix\n9 203.771 fix",
        "1 2 0.6235 1.581139\n1 2 0.6240 1.949359\n2 3 7.7292 2.236068\n5 4 8.2021 1.949359\n6 5 4.4254 "
        "0.948683\n"
        "7 6 1.0502 0.774597\n8 7 3.7782 1.264911\n3 8 1.4813 1.341641\n9 8 5.3523 1.549193\n10 5 7.4945 "
        "1.341641\n"
        "10 7 2.0179 1.000000\n10 11 0.4950 1.140175\n8 11 2.2530 1.000000\n13 11 11.4908 1.095445\n"
        "12 8 4.7158 1.549193\n2 9 3.8582 1.264911\n9 12 0.6374 1.732051\n13 12 4.5218 1.303840\n"
        "14 13 2.0246 1.095445\n14 13 2.0251 1.183216");
    QCOMPARE(results(network),
             QStringList({QStringLiteral("1 199.28923 0.74"), QStringLiteral("10 210.88257 0.35"),
                          QStringLiteral("11 211.37733 0.31"), QStringLiteral("12 204.40838 0.40"),
                          QStringLiteral("13 199.88670 0.29"), QStringLiteral("2 199.91293 0.50"),
                          QStringLiteral("3 207.64255 0.53"), QStringLiteral("5 218.37653 0.33"),
                          QStringLiteral("7 212.90097 0.27")}));
    const Adjustment adjustment = adjust(network);
    QCOMPARE(digits(*adjustment.fits[0]->getSigma0(), 4), QStringLiteral("0.4424"));
    // The a priori value is too large, by the two-sided test; the largest residual is studentised.
    QVERIFY(*adjustment.fits[0]->getSigma0() < *adjustment.fits[0]->lowerRatio);
    QCOMPARE(digits(largestStatistic(adjustment), 3), QStringLiteral("2.505"));
}

void TestPublishedNetworks::ghilani()
{
    const Network network =
        networkOf("1000", "A 437.596 fix\nB 448.105 z\nC 453.465 z\nD 444.942 z",
                  "A B 10.509 6\nB C 5.360 4\nC D -8.523 5\nD A -7.348 3\nB D -3.167 4\nA C 15.881 12");
    QCOMPARE(results(network),
             QStringList({QStringLiteral("B 448.10871 2.30"), QStringLiteral("C 453.46847 2.64"),
                          QStringLiteral("D 444.94361 1.76")}));
    QCOMPARE(digits(*adjust(network).fits[0]->getSigma0(), 5), QStringLiteral("0.65118"));
}

QTEST_APPLESS_MAIN(TestPublishedNetworks)
#include "tst_publishednetworks.moc"
