#include "apps/desk/document/NetworkItems.h"
#include "apps/desk/runs/AdjustRun.h"
#include "apps/desk/runs/ChainsRun.h"
#include "apps/desk/runs/CompileRun.h"
#include "apps/desk/runs/ExportRun.h"
#include "apps/desk/runs/FixedPointsRun.h"
#include "apps/desk/runs/ImportRun.h"
#include "apps/desk/runs/L1Run.h"
#include "apps/desk/runs/NetworkExportRun.h"
#include "tests/desk/DeskFixture.h"
#include "tests/desk/LineCollector.h"
#include "tests/levelling/SyntheticNetwork.h"
#include "tests/support/TestFiles.h"

#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <memory>
#include <string>

using namespace orvel::desk;
using namespace orvel::test;

Q_DECLARE_METATYPE(orvel::desk::LevellingClass)

/// What runs write about networks that whole files do not show: each edge by itself.
class TestRuns : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void compileOfEmptyProject();
    void compileWithoutLengthsTakesThreeSigma();
    void toleranceItselfIsNotExceeded();
    void compileMakesLoopsOfMeans();
    void compileWithoutSurplusWarns();
    void compileNamesLonelyBenchmark();
    void surveyedPointsNeedNoSections();
    void adjustmentWithoutDatum();
    void adjustmentWithoutSurplus();
    void adjustmentChecksAbsoluteTerms();
    void absoluteTermsThatNobodyCanTellApart();
    void adjustmentOfTwoComponentsGivesBothFits();
    void sectionsOfOneLoopAreNamedTogether();
    void freeNetworkKeepsTheMeanHeight();
    void veryDifferentSigmasAreNamed();
    void sigmasOfObservedHeightsCount();
    void sigmaOfWeightsByDeviationHasNoKilometre();
    void l1WithoutDatum();
    void l1SaysWhenNotUnique();
    void stoppedRunsEndAtOnce();
    void importStopsWhileItReads();
    void itemsOfANetworkAreMadeUntilTheStop();
    void exportWithCoordinates();
    void exportQuotesNames();
    void exportToMissingFolder();
    void fixedPointsNamesWhatToExclude();
    void fixedPointsOfTwoThatDisagree();
    void fixedPointsLeavesOpenWhatCannotBeDecided();
    void fixedPointsOfOneBenchmark();
    void fixedPointsOfSeveralParts();
    void fixedPointsOfBadMeasurements();
    void fixedPointsOfManyBenchmarks();
    void chainsOfEveryKind();
    void chainsOverTheToleranceComeFirst();
    void chainOfThousandsOfPointsIsCut();
    void chainsOfEmptyProject();
    void networkExportTellsWhatItChanged();
    void networkExportOfEmptyProject();
    void networkExportToMissingFolder();
    void fieldFileIsTold_data();
    void fieldFileIsTold();
    void fileOfNoKnownKindIsRefused();
    void linesOfALevelAreSummedUp();
    void sigmaComesFromTheClassOrTheSettings();
    void twoReadingsAreComparedByTheClass_data();
    void twoReadingsAreComparedByTheClass();
    void everyProblemHasItsSentence_data();
    void everyProblemHasItsSentence();

private:
    /// Imports a file of that content.
    QString import(const QByteArray& content, const ImportSettings& settings = {});
    int addPoint(const char* name, std::optional<double> fixedHeight = std::nullopt);
    void addSection(int from, int to, double difference, std::optional<double> distance);
    /// A section from A, which may be fixed, to B.
    void addLine(std::optional<double> fixedHeight);
    bool has(const char* line) const { return monitor.lines.contains(QString::fromUtf8(line)); }

    NetworkSnapshot snapshot;
    LineCollector monitor;
};

void TestRuns::init()
{
    snapshot = NetworkSnapshot();
    snapshot.network.parameters.sigmaApriori = 2.0;
    monitor = LineCollector();
}

int TestRuns::addPoint(const char* name, std::optional<double> fixedHeight)
{
    levelling::Point point;
    point.id = QString::fromUtf8(name);
    point.fixed = fixedHeight.has_value();
    point.height = fixedHeight;
    snapshot.network.points.push_back(point);
    snapshot.pointIds.push_back(10 + static_cast<LONGID>(snapshot.pointIds.size()));
    return static_cast<int>(snapshot.network.points.size()) - 1;
}

void TestRuns::addSection(int from, int to, double difference, std::optional<double> distance)
{
    levelling::Section section;
    section.from = from;
    section.to = to;
    section.difference = difference;
    section.distance = distance;
    section.sigma = 2.0;
    snapshot.network.sections.push_back(section);
    snapshot.sectionIds.push_back(50 + static_cast<LONGID>(snapshot.sectionIds.size()));
    snapshot.sectionNames.append(QStringLiteral("s%1").arg(snapshot.sectionNames.size()));
}

void TestRuns::addLine(std::optional<double> fixedHeight)
{
    const int a = addPoint("A", fixedHeight);
    const int b = addPoint("B");
    addSection(a, b, 1.0, 1.0);
}

void TestRuns::compileOfEmptyProject()
{
    runCompile(monitor, snapshot, LevellingClass::IV);
    QCOMPARE(monitor.lines,
             QStringList(QStringLiteral("error:В проекте нет ни одной секции, или все они отключены.")));
}

void TestRuns::compileWithoutLengthsTakesThreeSigma()
{
    const int a = addPoint("A", 10.0);
    const int b = addPoint("B");
    addSection(a, b, 1.0, std::nullopt);
    addSection(a, b, 1.010, std::nullopt);
    runCompile(monitor, snapshot, LevellingClass::I);
    // 3 * 2 mm * sqrt(2) = 8.49 mm
    QVERIFY(has("error:Повторные измерения [50:s0], [51:s1]: расхождение 10,00\u00A0мм, больше допуска "
                "8,49\u00A0мм"));
    QVERIFY(monitor.lines.filter(QStringLiteral("Полигон")).isEmpty());
}

void TestRuns::toleranceItselfIsNotExceeded()
{
    const int a = addPoint("A", 10.0);
    const int b = addPoint("B");
    addSection(a, b, 1.0, 1.0);
    addSection(b, a, -1.02, 1.0);
    runCompile(monitor, snapshot, LevellingClass::IV);
    QVERIFY(has(
        "message:Прямой и обратный ход [50:s0], [51:s1]: расхождение 20,00\u00A0мм, допуск 20,00\u00A0мм"));
}

void TestRuns::compileMakesLoopsOfMeans()
{
    const int a = addPoint("A", 10.0);
    const int b = addPoint("B");
    const int c = addPoint("C");
    addSection(a, b, 1.000, 1.0);
    addSection(b, a, -1.008, 1.0);
    addSection(b, c, 2.000, 1.0);
    addSection(c, a, -3.000, 2.0);
    runCompile(monitor, snapshot, LevellingClass::Technical);
    QVERIFY(has("service:Допуск невязок ходов и полигонов и расхождений измерений секции: ±50\u00A0мм·√L "
                "(техническое "
                "нивелирование), L — длина, км; без длины — 3 СКО"));
    // d = 8 mm over 1 km: 8 / sqrt(2) and 8 / 2.
    QVERIFY(has(
        "message:Случайная СКО на 1\u00A0км по расхождениям прямых и обратных ходов, секций: 1; одного хода "
        "5,66\u00A0мм, "
        "среднего из двух 4,00\u00A0мм"));
    QVERIFY(has(
        "message:Прямой и обратный ход [50:s0], [51:s1]: расхождение 8,00\u00A0мм, допуск 50,00\u00A0мм"));
    QVERIFY(has("message:Полигон [10:A] → [11:B] → [12:C] → [10:A]: невязка +4,00\u00A0мм, допуск "
                "±100,00\u00A0мм, длина 4,000\u00A0"
                "км; секции: [50:s0], [51:s1], [52:s2], [53:s3]"));
    QCOMPARE(monitor.lines.filter(QStringLiteral("Полигон")).size(), 1);
}

void TestRuns::compileWithoutSurplusWarns()
{
    addLine(10.0);
    runCompile(monitor, snapshot, LevellingClass::IV);
    QVERIFY(
        has("warning:В части 1 нет избыточных измерений, ошибки в ней не обнаруживаются: [10:A], [11:B]"));
}

void TestRuns::compileNamesLonelyBenchmark()
{
    addLine(10.0);
    addPoint("C", 12.0);
    runCompile(monitor, snapshot, LevellingClass::IV);
    QVERIFY(has("warning:Исходный репер [12:C] не связан ни с одной секцией"));
}

void TestRuns::surveyedPointsNeedNoSections()
{
    addLine(10.0);
    addSection(0, 1, 1.001, 1.0);
    addPoint("detail");
    snapshot.network.points.back().surveyed = true;
    runCompile(monitor, snapshot, LevellingClass::IV);
    QVERIFY(
        has("service:Пунктов: 3, исходных реперов: 1, секций: 2, частей сети: 1, избыточных измерений: 1"));
    runAdjust(monitor, snapshot);
    runL1Analysis(monitor, snapshot);
    QCOMPARE(monitor.lines.filter(QStringLiteral("[12:detail]")), QStringList());
    snapshot.network.points.back().surveyed = false;
    runCompile(monitor, snapshot, LevellingClass::IV);
    QVERIFY(has("error:Пункт [12:detail] не связан ни с одной секцией, его высоту определить нельзя"));
}

void TestRuns::adjustmentWithoutDatum()
{
    addLine(std::nullopt);
    const auto adjustment = runAdjust(monitor, snapshot);
    QVERIFY(adjustment);
    QVERIFY(adjustment->status == levelling::AdjustmentStatus::NothingToAdjust);
    QVERIFY(
        has("error:Уравнивать нечего: ни одна секция не ведёт от исходного репера к определяемому пункту"));
    QVERIFY(has(
        "error:Высота пункта [11:B] не определяется: в его части сети нет ни исходного репера, ни пункта с "
        "высотой"));
    QCOMPARE(monitor.lines.count(QStringLiteral("stage end")), 1);
}

void TestRuns::adjustmentWithoutSurplus()
{
    addLine(10.0);
    QVERIFY(runAdjust(monitor, snapshot));
    QVERIFY(has(
        "warning:Часть 1, СКО единицы веса μ на 1\u00A0км хода: априорная 2,000\u00A0мм; апостериорная не "
        "определяется, так как избыточных измерений нет"));
    QVERIFY(has("message:Пункт [11:B]: H = 11,00000\u00A0м, СКО априорная 2,00\u00A0мм, апостериорная не "
                "определяется"));
    QVERIFY(has("warning:Секция [50:s0]: h = 1,00000\u00A0м, v = +0,00\u00A0мм, не контролируется другими "
                "измерениями"));
    QCOMPARE(monitor.lines.count(QStringLiteral("stage end")), 3);
}

void TestRuns::adjustmentChecksAbsoluteTerms()
{
    snapshot.network.parameters.toleranceAbsolute = 100.0;
    const int a = addPoint("A", 10.0);
    const int b = addPoint("B");
    addSection(a, b, 1.3, 1.0); // carries the approximate height unless it is found to be the bad one
    addSection(a, b, 1.0, 1.0);
    addSection(a, b, 1.001, 1.0);
    QVERIFY(runAdjust(monitor, snapshot));
    QVERIFY(has(
        "warning:Секция [50:s0]: измеренное превышение отличается от вычисленного по приближённым высотам на "
        "+300,00\u00A0мм, допуск ±100\u00A0мм (tol-abs)"));
    QCOMPARE(monitor.lines.filter(QStringLiteral("tol-abs")).size(), 1);
}

void TestRuns::absoluteTermsThatNobodyCanTellApart()
{
    snapshot.network.parameters.toleranceAbsolute = 100.0;
    const int a = addPoint("A", 10.0);
    const int b = addPoint("B");
    addSection(a, b, 1.0, 1.0);
    addSection(a, b, 1.2, 1.0);
    QVERIFY(runAdjust(monitor, snapshot));
    QCOMPARE(
        monitor.lines.filter(QStringLiteral("tol-abs")),
        QStringList(QStringLiteral(
            "warning:В одной из секций [50:s0], [51:s1] измеренное превышение отличается от вычисленного по "
            "приближённым высотам на \u2212200,00\u00A0мм, допуск ±100\u00A0мм (tol-abs); измерения не "
            "различают, в "
            "которой")));
}

void TestRuns::adjustmentOfTwoComponentsGivesBothFits()
{
    for (const char* name : {"A", "C"}) {
        const int benchmark = addPoint(name, 10.0);
        const int point = addPoint("x");
        addSection(benchmark, point, 1.0, 1.0);
        addSection(benchmark, point, name[0] == 'A' ? 1.002 : 1.2, 1.0);
    }
    QVERIFY(runAdjust(monitor, snapshot));
    QVERIFY(has("message:Часть 1: неизвестных 1, избыточных измерений 1, [pvv] = 0,50000 (веса 1/σ²)"));
    // The limits are the roots of the 2.5 % and the 97.5 % quantile of chi-square.
    QVERIFY(has("message:Часть 1, СКО единицы веса μ на 1\u00A0км хода: априорная 2,000\u00A0мм, "
                "апостериорная 1,414\u00A0мм, "
                "отношение 0,707, пределы 0,031 и 2,241 (критерий χ², доверительная вероятность 0,95)"));
    QVERIFY(
        has("warning:Часть 2, СКО единицы веса μ на 1\u00A0км хода: априорная 2,000\u00A0мм, апостериорная "
            "141,421\u00A0мм, "
            "отношение 70,711, больше верхнего предела, пределы 0,031 и 2,241 (критерий χ², доверительная "
            "вероятность 0,95); проверьте L1-анализом и априорную СКО"));
    // The blunder of the one part says nothing about the other.
    QVERIFY(has(
        "message:Пункт [11:x]: H = 11,00100\u00A0м, СКО априорная 1,41\u00A0мм, апостериорная 1,00\u00A0мм"));
}

void TestRuns::sectionsOfOneLoopAreNamedTogether()
{
    const int a = addPoint("A", 10.0);
    const int b = addPoint("B");
    const int c = addPoint("C");
    addSection(a, b, 1.0, 1.0);
    addSection(b, c, 1.0, 5.0);
    addSection(c, a, -1.95, 1.0);
    QVERIFY(runAdjust(monitor, snapshot));
    // w = 50 / sqrt(3 * 4) = 14.43; the test finds (1.96 + 0.84) * sqrt(12) mm.
    const QStringList errors = monitor.lines.filter(QStringLiteral("error:"));
    QCOMPARE(
        errors,
        QStringList(
            {QStringLiteral("error:Наибольшая нормированная поправка 14,43, больше предела 1,96: одинакова "
                            "у секций [50:s0], [51:s1], [52:s2]"),
             QStringLiteral("error:Ошибка в одной из секций [50:s0], [51:s1], [52:s2]: измерения их не "
                            "различают; нормированная поправка 14,43, больше предела 1,96; оценка ошибки "
                            "+50,00\u00A0мм, обнаруживается от 9,70\u00A0мм")}));
    monitor = LineCollector();
    runL1Analysis(monitor, snapshot);
    QCOMPARE(monitor.lines.filter(QStringLiteral("error:")),
             QStringList(QStringLiteral(
                 "error:Грубая ошибка в одной из секций [50:s0], [51:s1], [52:s2]: измерения их "
                 "не различают, оценка +50,00\u00A0мм, нормированная поправка 14,43, больше предела "
                 "1,96")));
}

void TestRuns::freeNetworkKeepsTheMeanHeight()
{
    const int a = addPoint("A");
    const int b = addPoint("B");
    snapshot.network.points[0].height = 10.0;
    snapshot.network.points[1].height = 11.2;
    addSection(a, b, 1.0, 1.0);
    QVERIFY(runAdjust(monitor, snapshot));
    QVERIFY(has(
        "warning:Часть 1 — свободная сеть без исходных реперов; сохраняется средняя высота (минимум следа) "
        "всех пунктов, у которых есть высота: [10:A], [11:B]"));
    QVERIFY(has("message:Пункт [10:A]: H = 10,10000\u00A0м, СКО априорная 1,00\u00A0мм, апостериорная не "
                "определяется"));
    QVERIFY(has("message:Пункт [11:B]: H = 11,10000\u00A0м, СКО априорная 1,00\u00A0мм, апостериорная не "
                "определяется"));
    snapshot.network.points[0].constrained = true;
    QVERIFY(runAdjust(monitor, snapshot));
    QVERIFY(has(
        "message:Часть 1 — свободная сеть без исходных реперов; сохраняется средняя высота (минимум следа) "
        "пунктов с adj=\"Z\": [10:A]"));
    QVERIFY(has("message:Пункт [11:B]: H = 11,00000\u00A0м, СКО априорная 2,00\u00A0мм, апостериорная не "
                "определяется"));
}

void TestRuns::veryDifferentSigmasAreNamed()
{
    const int a = addPoint("A", 10.0);
    const int b = addPoint("B");
    addSection(a, b, 1.0, 1.0);
    addSection(a, b, 1.001, 1.0);
    snapshot.network.sections[1].sigma = 6e6;
    QVERIFY(runAdjust(monitor, snapshot));
    QVERIFY(has("warning:Часть 1: СКО измерений различаются в 3000000\u00A0раз, от 2,00\u00A0мм ([50:s0]) до "
                "6000000\u00A0мм ([51:s1]); "
                "последние цифры высот и СКО недостоверны, проверьте эти СКО"));
}

void TestRuns::sigmasOfObservedHeightsCount()
{
    const int a = addPoint("A", 10.0);
    const int b = addPoint("B");
    snapshot.network.points[0].fixed = false;
    snapshot.network.points[0].observed = true;
    snapshot.network.observedHeights.push_back({{a}, {1e-8}});
    addSection(a, b, 1.0, 1.0);
    snapshot.network.sections[0].sigma = 20.0;
    QVERIFY(runAdjust(monitor, snapshot));
    QVERIFY(
        has("warning:Часть 1: СКО измерений различаются в 200000\u00A0раз, от 0,000100\u00A0мм ([10:A]) до "
            "20,0\u00A0мм ([50:s0]); последние цифры высот и СКО недостоверны, проверьте эти СКО"));
}

void TestRuns::sigmaOfWeightsByDeviationHasNoKilometre()
{
    addLine(10.0);
    snapshot.network.sections[0].stdev = 2.0;
    QVERIFY(runAdjust(monitor, snapshot));
    QVERIFY(has("warning:Часть 1, СКО единицы веса μ: априорная 2,000\u00A0мм; апостериорная не "
                "определяется, так как "
                "избыточных измерений нет"));
}

void TestRuns::l1WithoutDatum()
{
    addLine(std::nullopt);
    runL1Analysis(monitor, snapshot);
    QVERIFY(has(
        "error:Анализировать нечего: ни одна секция не ведёт от исходного репера к определяемому пункту"));
    QVERIFY(has("warning:Пункт [10:A] не участвует: его высота не определяется"));
}

void TestRuns::l1SaysWhenNotUnique()
{
    const int a = addPoint("A", 10.0);
    const int b = addPoint("B");
    addSection(a, b, 1.0, 1.0);
    addSection(a, b, 1.1, 1.0);
    runL1Analysis(monitor, snapshot);
    QVERIFY(has(
        "warning:Решение не единственное: ту же сумму дают и другие высоты, например этих пунктов: [11:B]"));
    QVERIFY(has("message:Σ|v|/σ = 50,0000; секций с ненулевой поправкой: 1, с нулевой: 1"));
}

void TestRuns::stoppedRunsEndAtOnce()
{
    addLine(10.0);
    monitor.isRunning = false;
    QVERIFY(!runAdjust(monitor, snapshot));
    runCompile(monitor, snapshot, LevellingClass::IV);
    runL1Analysis(monitor, snapshot);
    QVERIFY(monitor.lines.filter(QStringLiteral("H = ")).isEmpty());
    QVERIFY(monitor.lines.filter(QStringLiteral("Полигон")).isEmpty());
    monitor.lines.clear();
    QCOMPARE(runFixedPoints(monitor, snapshot, LevellingClass::IV), QString());
    QCOMPARE(monitor.lines.filter(QStringLiteral("service:")), monitor.lines);
    monitor.lines.clear();
    QCOMPARE(runChains(monitor, snapshot, LevellingClass::IV), QString());
    QCOMPARE(monitor.lines.filter(QStringLiteral("service:")), monitor.lines);
}

void TestRuns::importStopsWhileItReads()
{
    struct StoppingMonitor : LineCollector
    {
        bool isProcessRunning() const override { return ++questions < stopAt; }

        int stopAt = 0;
        mutable int questions = 0;
    };
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("long.gkf"));
    writeFile(path, "<gama-local><!--" + QByteArray(100000, 'x') + "--></gama-local>");
    for (int stopAt = 1; stopAt <= 10; ++stopAt) {
        StoppingMonitor stopping;
        stopping.stopAt = stopAt;
        bool isTaken = false;
        const QString failure =
            runImport(stopping, {{path, std::nullopt}}, {},
                      [&isTaken](const levelling::Network& /*network*/, const auto& /*fieldBook*/) {
                          isTaken = true;
                          return nullptr;
                      });
        QCOMPARE(failure, QString());
        QCOMPARE(stopping.questions, stopAt);
        QCOMPARE(stopping.lines, QStringList());
        QVERIFY(!isTaken);
    }
}

void TestRuns::itemsOfANetworkAreMadeUntilTheStop()
{
    const levelling::Network network = networks::synthetic(10000, 20000);
    const NetworkItems known = NetworkItems::make(network, NetworkSnapshot(), 1);
    int questions = 0;
    const auto makeUntil = [&](int stopAt) {
        questions = 0;
        return NetworkItems::make(network, *known.snapshot, 1, [&] { return ++questions == stopAt; });
    };
    QVERIFY(makeUntil(0));
    // The known items, the new ones and their network are 90,000 steps.
    const int all = questions;
    QCOMPARE(all, 90000 / 4096);
    for (int stopAt = 1; stopAt <= all; ++stopAt) {
        QVERIFY(!makeUntil(stopAt));
        QCOMPARE(questions, stopAt);
    }
}

namespace {

tacheometry::Position atHeight(double height)
{
    return {std::nullopt, std::nullopt, height};
}

} // namespace

void TestRuns::exportWithCoordinates()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("points.csv"));
    QCOMPARE(runExport(monitor,
                       {{QStringLiteral("A"), 1, {1000.25, -20.5, 150.0}, 0.5},
                        {QStringLiteral("=B"), 2, {0.0, 1.00004, std::nullopt}, std::nullopt},
                        {QStringLiteral("C"), 3, atHeight(12.0), 2.0},
                        {QStringLiteral("D"), 4, {}, std::nullopt}},
                       false, path),
             QString());
    QCOMPARE(readFile(path), QByteArray("point,x_m,y_m,height_m,sigma_mm\n"
                                        "A,1000.2500,-20.5000,150.00000,0.500\n"
                                        "'=B,0.0000,1.0000,,\n"
                                        "C,,,12.00000,2.000\n"));
    QVERIFY(has("warning:Пункт [4:D] не экспортирован: его высота не определена"));
}

void TestRuns::exportQuotesNames()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("heights.csv"));
    QCOMPARE(runExport(monitor,
                       {{QStringLiteral("a,b"), 1, atHeight(1.5), 0.5},
                        {QStringLiteral("say \"x\""), 2, atHeight(-1.0), 2.0},
                        {QStringLiteral("none"), 3, {}, std::nullopt}},
                       true, path),
             QString());
    QCOMPARE(readFile(path), QByteArray("point,height_m,sigma_mm\n"
                                        "\"a,b\",1.50000,0.500\n"
                                        "\"say \"\"x\"\"\",-1.00000,2.000\n"));
    QVERIFY(has("warning:Пункт [3:none] не экспортирован: его высота не определена"));
}

void TestRuns::exportToMissingFolder()
{
    const QString failure = runExport(monitor, {{QStringLiteral("A"), 1, atHeight(1.5), 0.5}}, true,
                                      QStringLiteral("/no/such/folder.csv"));
    QVERIFY(failure.contains(QStringLiteral("/no/such/folder.csv")));
    QCOMPARE(monitor.lines, QStringList(QStringLiteral("error:") + failure));
}

void TestRuns::fixedPointsNamesWhatToExclude()
{
    snapshot.network.parameters.sigmaAct = levelling::SigmaAct::Apriori;
    const int r1 = addPoint("R1", 10.0);
    const int r2 = addPoint("<b>", 11.0);
    const int r3 = addPoint("R3", 12.1);
    addSection(r1, r2, 1.0, 1.0);
    addSection(r2, r3, 1.0, 1.0);
    QCOMPARE(runFixedPoints(monitor, snapshot, LevellingClass::IV), QString());
    // Freed, R3 is 100 mm too high, with the 2 mm of one section.
    QCOMPARE(
        monitor.lines,
        QStringList(
            {QStringLiteral(
                 "service:Измерения уравнены без исходных отметок (свободная сеть); верные отметки "
                 "отличаются от её высот все на одну величину. Доверительная вероятность 0,95"),
             QStringLiteral(
                 "service:Допуск невязок ходов между реперами: ±20\u00A0мм·√L (IV класс), L — длина, "
                 "км; без длины — 3 СКО"),
             QStringLiteral(
                 "error:Исходные отметки не согласуются, отношение дисперсий 1250,00, больше предела "
                 "3,68. Исключите из исходных или проверьте: [12:R3] (отметка больше на "
                 "100,00\u00A0мм, СКО 2,00\u00A0мм). Остальные согласуются, реперов 2"),
             QStringLiteral("message:Измерения друг друга не проверяют, СКО взяты априорные; расхождение "
                            "отметок может быть и ошибкой измерения"),
             QStringLiteral("0%"),
             QStringLiteral(
                 "error:Ход [11:&lt;b&gt;] → [12:R3]: Σh = +1,00000\u00A0м, по отметкам "
                 "+1,10000\u00A0м, невязка \u2212100,00\u00A0мм, больше допуска ±20,00\u00A0мм, длина "
                 "1,000\u00A0км"),
             QStringLiteral("20%"),
             QStringLiteral(
                 "error:Репер [12:R3]: отметка 12,10000\u00A0м, по всем другим реперам "
                 "12,00000\u00A0м, сдвиг +100,00\u00A0мм, СКО 2,00\u00A0мм, критерий 50,00, больше "
                 "предела 2,63; в свободной сети 12,00000\u00A0м, разность +100,00\u00A0мм, СКО "
                 "2,24\u00A0мм"),
             QStringLiteral("40%"),
             QStringLiteral(
                 "message:Репер [11:&lt;b&gt;]: отметка 11,00000\u00A0м, по всем другим реперам "
                 "11,05000\u00A0м, сдвиг \u221250,00\u00A0мм, СКО 1,41\u00A0мм, критерий 35,36, больше "
                 "предела 2,63 (из-за исключённых реперов); в свободной сети 11,00000\u00A0м, разность "
                 "+0,00\u00A0мм, СКО 1,00\u00A0мм"),
             QStringLiteral("60%"),
             QStringLiteral(
                 "message:Репер [10:R1]: отметка 10,00000\u00A0м, по всем другим реперам "
                 "10,00000\u00A0м, сдвиг +0,00\u00A0мм, СКО 2,00\u00A0мм, критерий 0,00, предел 2,63; "
                 "в свободной сети 10,00000\u00A0м, разность +0,00\u00A0мм, СКО 1,00\u00A0мм"),
             QStringLiteral("80%"),
             QStringLiteral("message:Ход [10:R1] → [11:&lt;b&gt;]: Σh = +1,00000\u00A0м, по отметкам "
                            "+1,00000\u00A0м, невязка +0,00\u00A0мм, допуск ±20,00\u00A0мм, длина "
                            "1,000\u00A0км")}));
}

void TestRuns::fixedPointsOfTwoThatDisagree()
{
    const int r1 = addPoint("R1", 10.0);
    const int r2 = addPoint("R2", 11.01);
    addSection(r1, r2, 1.0, 1.0);
    runFixedPoints(monitor, snapshot, LevellingClass::IV);
    QVERIFY(has("error:Отметки двух исходных реперов расходятся: [11:R2] относительно [10:R1] на "
                "+10,00\u00A0мм, СКО 2,00\u00A0мм, критерий 5,00, больше предела 1,96. Какая неверна, решить "
                "нельзя: нужен третий репер"));
    // 10 mm are within the tolerance of 1 km.
    QVERIFY(has("message:Ход [10:R1] → [11:R2]: Σh = +1,00000\u00A0м, по отметкам +1,01000\u00A0м, невязка "
                "\u221210,00\u00A0мм, допуск ±20,00\u00A0мм, длина 1,000\u00A0км"));
    QCOMPARE(monitor.lines.filter(QStringLiteral("warning:Репер")).size(), 2);
}

void TestRuns::fixedPointsLeavesOpenWhatCannotBeDecided()
{
    const int a = addPoint("A");
    for (const char* name : {"R1", "R2", "R3", "R4"})
        addSection(a, addPoint(name, name[1] > '2' ? 0.05 : 0.0), 0.0, 1.0);
    runFixedPoints(monitor, snapshot, LevellingClass::IV);
    QVERIFY(has("error:Исходные отметки не согласуются, отношение дисперсий 208,33, больше предела 3,11, но "
                "какие неверны, измерения не решают: остальные согласуются без [11:R1], [12:R2], или без "
                "[13:R3], [14:R4]. Свяжите их с другими реперами или проверьте отметки"));

    init();
    const int b = addPoint("B");
    for (const char* name : {"R1", "R2", "R3"})
        addSection(b, addPoint(name, 0.05 * (name[1] - '1')), 0.0, 1.0);
    runFixedPoints(monitor, snapshot, LevellingClass::IV);
    QVERIFY(
        has("error:Никакие два исходных репера не согласуются, отношение дисперсий 625,00, больше предела "
            "3,68: [11:R1], [12:R2], [13:R3]. Проверьте отметки, их систему высот и имена пунктов"));
}

void TestRuns::fixedPointsOfOneBenchmark()
{
    addLine(1.0);
    addPoint("R2", 5.0);
    const int c = addPoint("C");
    addSection(c, addPoint("D"), 1.0, 1.0);
    QCOMPARE(runFixedPoints(monitor, snapshot, LevellingClass::IV), QString());
    QCOMPARE(
        monitor.lines.mid(2),
        QStringList({QStringLiteral("warning:Исходный репер один, [10:A]: его отметку сравнить не с чем; "
                                    "чтобы найти ошибочную, нужны хотя бы три"),
                     QStringLiteral("warning:Исходный репер [12:R2] не связан ни с одной секцией"),
                     QStringLiteral("warning:В части сети с пунктом [13:C] нет исходных реперов")}));
    init();
    addLine(std::nullopt);
    QCOMPARE(runFixedPoints(monitor, snapshot, LevellingClass::IV),
             QStringLiteral("Анализировать нечего: в сети нет исходных реперов"));
    addPoint("R", 1.0);
    QCOMPARE(runFixedPoints(monitor, snapshot, LevellingClass::IV),
             QStringLiteral("Анализировать нечего: ни одна секция не ведёт к исходному реперу"));
}

void TestRuns::fixedPointsOfSeveralParts()
{
    for (const char* part : {"A", "B"}) {
        const int first = addPoint((std::string(part) + "1").c_str(), 0.0);
        const int second = addPoint((std::string(part) + "2").c_str(), 1.0);
        addSection(first, second, 1.001, 1.0);
    }
    runFixedPoints(monitor, snapshot, LevellingClass::IV);
    QVERIFY(has("message:Часть сети с репером [10:A1]. Исходные отметки согласуются, реперов 2; отношение "
                "дисперсий 0,25, предел 3,84"));
    QVERIFY(has("message:Часть сети с репером [12:B1]. Исходные отметки согласуются, реперов 2; отношение "
                "дисперсий 0,25, предел 3,84"));
}

void TestRuns::fixedPointsOfBadMeasurements()
{
    const int a = addPoint("A", 0.0);
    const int b = addPoint("B", 1.0);
    addSection(a, b, 1.0, 1.0);
    addSection(a, b, 1.020, 1.0);
    runFixedPoints(monitor, snapshot, LevellingClass::IV);
    QVERIFY(has("warning:Свободное уравнивание: избыточных измерений 1, μ апостериорная к априорной 7,071, "
                "больше предела 2,241: измерения не согласуются и без исходных отметок, сначала найдите их "
                "ошибки L1-анализом; СКО вычислены по априорной"));
}

void TestRuns::fixedPointsOfManyBenchmarks()
{
    int last = addPoint("R0", 0.0);
    for (int number = 1; number < 40; ++number) {
        const int next = addPoint(QByteArray("R" + QByteArray::number(number)).constData(), 0.0);
        addSection(last, next, 0.0, 1.0);
        last = next;
    }
    runFixedPoints(monitor, snapshot, LevellingClass::IV);
    QVERIFY(has("message:Исходных реперов много: ходы показаны только между соседними, числом 39"));
    QCOMPARE(monitor.lines.filter(QStringLiteral("message:Ход")).size(), 39);
}

void TestRuns::chainsOfEveryKind()
{
    const int r1 = addPoint("R1", 10.0);
    const int r2 = addPoint("R2", 12.0);
    const int a = addPoint("<b>");
    const int n = addPoint("N");
    const int h = addPoint("H");
    addSection(r1, a, 1.0, 1.0);
    addSection(a, r1, -1.002, 1.0);
    addSection(a, r2, 1.002, 1.0);
    addSection(r1, n, 1.0, 1.0);
    addSection(n, r2, 1.004, 1.0);
    addSection(n, h, 1.0, std::nullopt);
    for (levelling::Section& section : snapshot.network.sections)
        section.stations = 5;
    const int x = addPoint("X");
    addSection(x, addPoint("Y"), 1.0, 1.0);
    addPoint("Z");
    QCOMPARE(runChains(monitor, snapshot, LevellingClass::IV), QString());
    QCOMPARE(
        monitor.lines.mid(1).filter(QRegularExpression(QStringLiteral("^[a-z]+:"))),
        QStringList(
            {QStringLiteral(
                 "service:Допуск невязок ходов: ±20\u00A0мм·√L (IV класс), L — длина, км; без длины — "
                 "3 СКО"),
             QStringLiteral(
                 "service:Ходов: 5 (между исходными реперами 1, от репера к узловому пункту 2, "
                 "висячих 1, отдельных 1); узловых пунктов: 1; секций: 6, каждая входит в один ход"),
             QStringLiteral(
                 "warning:Висячий ход [13:N] – [14:H]: не контролируется, Σh = +1,00000\u00A0м, длина "
                 "не задана, секций 1, станций 5"),
             QStringLiteral("warning:Отдельный ход [15:X] – [16:Y]: не связан с исходными реперами, Σh = "
                            "+1,00000\u00A0м, длина 1,000\u00A0км, секций 1"),
             QStringLiteral("warning:Пункт [17:Z] не связан ни с одной секцией"),
             QStringLiteral(
                 "message:Ход между исходными реперами [10:R1] – [11:R2]: невязка +3,00\u00A0мм, "
                 "допуск ±28,28\u00A0мм, отношение 0,11, Σh = +2,00300\u00A0м, длина 2,000\u00A0км, "
                 "секций 2, измерений 3, станций 10; пункты: [10:R1] → [12:&lt;b&gt;] → [11:R2]"),
             QStringLiteral("message:Ход от исходного репера к узловому пункту [10:R1] – [13:N]: Σh = "
                            "+1,00000\u00A0м, длина 1,000\u00A0км, секций 1, станций 5"),
             QStringLiteral("message:Ход от исходного репера к узловому пункту [11:R2] – [13:N]: Σh = "
                            "\u22121,00400\u00A0м, длина 1,000\u00A0км, секций 1, станций 5"),
             QStringLiteral(
                 "message:Узловой пункт [13:N]: уравненная H = 10,99800\u00A0м, по ходам с размахом "
                 "4,00\u00A0мм: от [10:R1] 11,00000\u00A0м (+2,00\u00A0мм, допуск ±20,00\u00A0мм), от "
                 "[11:R2] 10,99600\u00A0м (\u22122,00\u00A0мм, допуск ±20,00\u00A0мм)")}));
}

void TestRuns::chainsOverTheToleranceComeFirst()
{
    const int r1 = addPoint("R1", 10.0);
    const int r2 = addPoint("R2", 11.0);
    const int r3 = addPoint("R3", 12.0);
    addSection(r1, r2, 1.021, 1.0);
    addSection(r2, r3, 0.9, 1.0);
    addSection(r1, addPoint("A"), 1.0, 1.0);
    const int b = addPoint("B");
    const int c = addPoint("C");
    const int d = addPoint("D");
    addSection(b, c, 1.0, 1.0);
    addSection(c, d, 1.0, 1.0);
    addSection(d, b, 1.0, 1.0);
    runChains(monitor, snapshot, LevellingClass::IV);
    QStringList starts;
    for (const QString& line : monitor.lines.filter(QStringLiteral(", секций ")))
        starts.append(line.section(QLatin1Char(','), 0, 0));
    QCOMPARE(starts,
             QStringList(
                 {QStringLiteral("error:Кольцевой ход без узлов [14:B]: не связан с исходными реперами"),
                  QStringLiteral("error:Ход между исходными реперами [11:R2] – [12:R3]: невязка \u2212100"),
                  QStringLiteral("error:Ход между исходными реперами [10:R1] – [11:R2]: невязка +21"),
                  QStringLiteral("warning:Висячий ход [10:R1] – [13:A]: не контролируется")}));
}

void TestRuns::chainOfThousandsOfPointsIsCut()
{
    int last = addPoint("P0", 0.0);
    for (int number = 1; number <= 1500; ++number) {
        const int next = addPoint(QByteArray("P" + QByteArray::number(number)).constData());
        addSection(last, next, 0.0, 1.0);
        last = next;
    }
    snapshot.network.points.back().fixed = true;
    snapshot.network.points.back().height = 0.0;
    runChains(monitor, snapshot, LevellingClass::IV);
    const QString line = monitor.lines.filter(QStringLiteral("; пункты:")).value(0);
    QVERIFY(line.startsWith(QStringLiteral("message:Ход между исходными реперами [10:P0] – [1510:P1500]:")));
    QVERIFY(line.endsWith(QStringLiteral("[1009:P999] … и ещё 501")));
}

void TestRuns::chainsOfEmptyProject()
{
    const QString failure = QStringLiteral("В проекте нет ни одной секции, или все они отключены.");
    QCOMPARE(runChains(monitor, snapshot, LevellingClass::IV), failure);
    QCOMPARE(monitor.lines, QStringList(QStringLiteral("error:") + failure));
}

void TestRuns::networkExportTellsWhatItChanged()
{
    const int a = addPoint("A\x01", 1.0);
    const int b = addPoint("<b>");
    addSection(a, b, 1.0, 1.0);
    addSection(a, b, 1.0, std::nullopt);
    snapshot.network.sections[0].stations = 4;
    snapshot.network.sections[1].stations = 5;
    snapshot.network.sections[1].readingDifference = 0.1;
    snapshot.network.sections[1].date = QStringLiteral("2026-05-04");
    snapshot.network.sections[0].note = QStringLiteral("wind");
    snapshot.network.points[0].x = snapshot.network.points[0].y = 5.0;
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a&b.gkf"));
    QCOMPARE(runNetworkExport(monitor, snapshot, path), QString());
    QCOMPARE(
        monitor.lines,
        QStringList({QStringLiteral("warning:Пункт [10:A\x01] записан под именем «A\uFFFD»: его имя в "
                                    "XML не записывается"),
                     QStringLiteral("message:Секций, вес которых записан как СКО (stdev): 1; в сети он "
                                    "задан иначе"),
                     QStringLiteral(
                         "message:В формате .gkf этому нет места, в файл не вошли: число станций секций (2), "
                         "расхождения отсчётов (1), даты (1), примечания (1), координаты пунктов (1)"),
                     QStringLiteral("message:Записано пунктов: 2, секций: 2, файл: ") + path.toHtmlEscaped(),
                     QStringLiteral("100%")}));
}

void TestRuns::networkExportOfEmptyProject()
{
    QCOMPARE(runNetworkExport(monitor, snapshot, QStringLiteral("/no/such/folder.gkf")),
             QStringLiteral("Экспортировать нечего: в проекте нет сети. Импортируйте нивелирную сеть."));
}

void TestRuns::networkExportToMissingFolder()
{
    addLine(1.0);
    const QString failure = runNetworkExport(monitor, snapshot, QStringLiteral("/no/such/folder.gkf"));
    QVERIFY(failure.contains(QStringLiteral("/no/such/folder.gkf")));
    QCOMPARE(monitor.lines, QStringList(QStringLiteral("error:") + failure));
}

void TestRuns::everyProblemHasItsSentence_data()
{
    QTest::addColumn<QString>("xml");
    QTest::addColumn<QString>("line");
    const auto row = [](const char* name, const char* xml, const char* line) {
        QTest::newRow(name) << QString::fromUtf8(xml) << QString::fromUtf8(line);
    };
    row("unknown element", "<tilt/>",
        "warning:Строка файла 3: неизвестный элемент &lt;tilt&gt; внутри &lt;points-observations&gt; "
        "пропущен со "
        "всем "
        "содержимым");
    row("point without a name", "<point z=\"1\"/>", "error:Строка файла 3: пункт без имени (id) пропущен");
    row("point declared again", "<point id=\"A\" z=\"3\" fix=\"z\"/>",
        "warning:Строка файла 3: пункт [1:A] объявлен повторно (впервые в строке файла 2), действует "
        "последнее объявление");
    row("no role", "<point id=\"X\"/>",
        "warning:Строка файла 3: пункт [3:X] не назван ни исходным (fix), ни определяемым (adj), считается "
        "определяемым");
    row("both roles", "<point id=\"X\" z=\"1\" fix=\"z\" adj=\"z\"/>",
        "warning:Строка файла 3: пункт [3:X] назван и исходным (fix), и определяемым (adj), считается "
        "исходным");
    row("fixed without height", "<point id=\"X\" fix=\"z\"/>",
        "error:Строка файла 3: у исходного репера [3:X] нет отметки, считается определяемым пунктом");
    row("bad height", "<point id=\"X\" z=\"&lt;b&gt;\" adj=\"z\"/>",
        "error:Строка файла 3: пункт [3:X]: непригодная высота «&lt;b&gt;», считается не заданной");
    row("no end", "<height-differences><dh from=\"A\" val=\"1\" dist=\"1\"/></height-differences>",
        "error:Строка файла 3: секция «[1:A]» – «» без начального или конечного пункта пропущена");
    row("same ends",
        "<height-differences><dh from=\"A\" to=\"A\" val=\"1\" dist=\"1\"/></height-differences>",
        "error:Строка файла 3: секция [1:A] – [1:A] начинается и кончается на одном пункте, пропущена");
    row("bad value",
        "<height-differences><dh from=\"A\" to=\"B\" val=\"x\" dist=\"1\"/></height-differences>",
        "error:Строка файла 3: секция [1:A] – [2:B]: непригодное превышение «x», секция пропущена");
    row("no weight", "<height-differences><dh from=\"A\" to=\"B\" val=\"1\"/></height-differences>",
        "error:Строка файла 3: секция [1:A] – [2:B]: нет ни длины (dist), ни СКО (stdev), секция пропущена");
    row("bad length",
        "<height-differences><dh from=\"A\" to=\"B\" val=\"1\" dist=\"-1\" "
        "stdev=\"1\"/></height-differences>",
        "error:Строка файла 3: секция [1:A] – [2:B]: непригодная длина «-1», считается не заданной");
    row("bad deviation",
        "<height-differences><dh from=\"A\" to=\"B\" val=\"1\" dist=\"1\" stdev=\"0\"/></height-differences>",
        "error:Строка файла 3: секция [1:A] – [2:B]: непригодная СКО «0», считается не заданной");
    row("another measurement", "<obs from=\"A\"><distance to=\"B\" val=\"1\"/></obs>",
        "error:Строка файла 3: измерение &lt;distance&gt; («A» – «B») не является превышением, пропущено");
}

QString TestRuns::import(const QByteArray& content, const ImportSettings& settings)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("network.gkf"));
    writeFile(path, content);
    return runImport(
        monitor, {{path, std::nullopt}}, {},
        [this](const levelling::Network& network, const auto& /*fieldBook*/) {
            const auto taken = std::make_shared<NetworkSnapshot>();
            taken->network = network;
            for (std::size_t i = 0; i < network.points.size(); ++i)
                taken->pointIds.push_back(static_cast<LONGID>(i) + 1);
            for (std::size_t i = 0; i < network.sections.size(); ++i) {
                taken->sectionIds.push_back(static_cast<LONGID>(i) + 51);
                taken->sectionNames.append(QStringLiteral("s%1").arg(i));
            }
            snapshot = *taken;
            return taken;
        },
        settings);
}

void TestRuns::fieldFileIsTold_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("line");
    const auto row = [](const char* name, const char* content, const char* line) {
        QTest::newRow(name) << QByteArray(content) << QString::fromUtf8(line);
    };
    const char* const start = "410001+?......2\n110002+0000000A 83..58+01000000\n";
    const auto add = [&](const char* name, const char* content, const char* line) {
        row(name, (QByteArray(start) + content).constData(), line);
    };
    // A station from A to B, each line of it on its own.
    const char* const a1 = "110003+0000000A 32...8+02000000 331.08+00150000\n";
    const char* const b1 = "110004+0000000B 32...8+02000000 332.08+00100000\n";
    const char* const b2 = "110005+0000000B 32...8+02000000 336.08+00100000\n";
    const char* const a2 = "110006+0000000A 32...8+02000000 335.08+00150000\n";
    const QByteArray station = QByteArray(a1) + b1 + b2 + a2;

    add("height", (station + "110007+0000000B 83..08+01050100\n").constData(),
        "error:Строка файла 7: ход 1, станция 1 ([1:A] – [2:B]), секция [51:s0]: высота по прибору "
        "10,50100\u00A0м, по "
        "отсчётам "
        "10,50000\u00A0м, разность +1,00\u00A0мм, округление объясняет 0,02\u00A0мм; взято превышение по "
        "отсчётам, "
        "проверьте запись");
    add("two readings",
        (QByteArray(a1) + b1 + b2 + "110006+0000000A 32...8+02000000 335.08+00150800\n").constData(),
        "error:Строка файла 3: ход 1, станция 1 ([1:A] – [2:B]), секция [51:s0]: превышение по первым "
        "отсчётам "
        "0,50000\u00A0м, по "
        "вторым 0,50800\u00A0м, разность −8,00\u00A0мм при допуске 5,00\u00A0мм; взято среднее, повторите "
        "станцию");
    add("repeated reading", ("110003+0000000A 331.08+00120000\n" + station).constData(),
        "error:Строка файла 4: ход 1, станция 1 (рейка на [1:A]), секция [51:s0]: отсчёт 1,20000\u00A0м, при "
        "повторении "
        "1,50000\u00A0м, разность −300,00\u00A0мм при допуске 5,00\u00A0мм; взят последний, проверьте "
        "запись");
    add("entered height",
        (station + "410007+?......2\n110008+0000000A 83..58+01000500\n" + station).constData(),
        "warning:Строка файла 8: пункту [1:A] введена отметка 10,00500\u00A0м, прежде — 10,00000\u00A0м; "
        "действует "
        "последняя");
    add("word", (station + "331.06+\n").constData(),
        "error:Строка файла 7: строка не похожа на запись прибора, пропущена");
    add("part of a line", (station + "110007+0000000B <b>x 83..08+01050000\n").constData(),
        "error:Строка файла 7: слово «&lt;b&gt;x» не читается, пропущено");
    add("reading", (station + "110007+0000000B 331.08+0001?000\n").constData(),
        "error:Строка файла 7: пункт [2:B]: непригодный отсчёт «0001?000», пропущен");
    add("reading alone", (station + "110007+<i>%1</i> 330.08+00010000\n").constData(),
        "warning:Строка файла 7: пункт &lt;i&gt;%1&lt;/i&gt;: отсчёт «330» не относится к ходу (отдельное "
        "измерение "
        "или вынос), пропущен");
    row("no start", station.constData(),
        "warning:Строка файла 1: отсчёты без начала хода, приняты за новый ход");
    add("no stations", (station + "410007+?......2\n").constData(),
        "warning:Строка файла 7: ход начат, но станций в нём нет");
    add("method", (station + "410007+?......9\n" + station).constData(),
        "warning:Строка файла 7: неизвестный порядок отсчётов «9», отсчёты взяты по их словам");
    add("check", (station + "410007+?.....10\n").constData(),
        "warning:Строка файла 7: поверка нивелира, её отсчёты в ход не входят");
    add("no reading back", (station + "410007+?......2\n" + b1).constData(),
        "error:Строка файла 8: станция с передней рейкой на [2:B] не имеет отсчёта назад, пропущена");
    add("no reading fore", (station + "410007+?......2\n" + a1).constData(),
        "error:Строка файла 8: станция с задней рейкой на [1:A] не имеет отсчёта вперёд, пропущена");
    add("both staffs on one point",
        (station + "410007+?......2\n" + a1 + "110004+0000000A 332.08+00150000\n").constData(),
        "error:Строка файла 8: обе рейки станции на пункте [1:A], станция пропущена");
    add("one reading", (QByteArray(a1) + b1).constData(),
        "warning:Строка файла 3: станция [1:A] – [2:B]: нет второго отсчёта, превышение взято по имеющимся");
    add("station again",
        (QByteArray(a1) + "110004+00000001 332.08+00100000\n110004+00000001 83..08+01050000\n" + a1 + b1)
            .constData(),
        "warning:Строка файла 6: станция повторена, прежняя [1:A] – 1 (строка файла 3) не использована");
    add("interruption",
        (station + "110007+0000000C 331.08+00100000\n110007+0000000D 332.08+00100000\n").constData(),
        "warning:Строка файла 7: разрыв хода: предыдущая станция кончается на [2:B], следующая начинается на "
        "[3:C]");
    add("sight", (QByteArray("110003+0000000K 333.08+00100000\n") + station).constData(),
        "error:Строка файла 3: промежуточная точка K без отсчёта назад пропущена");
    add("distances", "110003+0000000A 331.08+00150000\n110004+0000000B 332.08+00100000\n",
        "warning:Строка файла 1: у станций без расстояний (1 из 1) длина принята 100,0\u00A0м");
    add("feet",
        (station + "410007+?......2\n110003+0000000A 331.07+00150000\n110004+0000000B 332.07+00100000\n")
            .constData(),
        "message:Длины в футах или дюймах пересчитаны в метры: 1\u00A0фут = 12\u00A0дюймов = 0,3048\u00A0м");
    row("no heights", ("410001+?......2\n" + station).constData(),
        "warning:Высоты относительные, так как отметок реперов нет; отметка ноль у пунктов: [1:A]. Введите "
        "отметки "
        "на приборе или добавьте их другим файлом");
    add("codes", (station + "41....+00000007 42....+00000003\n95....+00000021\n").constData(),
        "message:Не использованы слова и записи без отсчётов хода: 41, 42 (по 1, впервые в строке 7); 95 (по "
        "1, "
        "впервые в строке 8)");
    row("marked record",
        "For M5|Adr     1|TO  Start-Line BF 1            |                      |                      |"
        "                      |\n"
        "For M5|Adr     2|KD1        A #####             |Rb        1.50000 m   |                      |"
        "                      |\n"
        "For M5|Adr     3|KD1        A                   |Rb        1.50000 m   |                      |"
        "                      |\n"
        "For M5|Adr     4|KD1        B                   |Rf        1.50000 m   |                      |"
        "                      |\n",
        "warning:Строка файла 2: пункт [1:A]: запись помечена прибором как повторённая или ошибочная, "
        "пропущена");
}

void TestRuns::fieldFileIsTold()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, line);
    QCOMPARE(import(content), QString());
    QVERIFY2(monitor.lines.contains(line), qUtf8Printable(monitor.lines.join(QLatin1Char('\n'))));
}

void TestRuns::fileOfNoKnownKindIsRefused()
{
    QVERIFY(
        import("point;height\n")
            .endsWith(QStringLiteral(
                "network.gkf: формат не распознан: нужны gama-local XML (.gkf) или файл прибора, нивелира "
                "(GSI, M5, REC_E) или тахеометра (GSI, M5); текст со столбцами читается по шаблону")));
    QVERIFY(
        import("410001+?......1\n" + QByteArray(100000, ' ') + "11")
            .endsWith(QStringLiteral("network.gkf, строка 2: строка длиннее 65536 знаков, файл не прочитан; "
                                     "проверьте, что это текст, и его кодировку")));
}

void TestRuns::linesOfALevelAreSummedUp()
{
    QCOMPARE(import(readFile(samplePath(QStringLiteral("level-loop.gsi")))), QString());
    QVERIFY(has("message:Формат: GSI цифрового нивелира"));
    QVERIFY(has("message:Ходов: 5, станций: 22; с высотами прибора сверено: 23, из них расходится: 1"));
    QVERIFY(has(
        "message:Ход 3 (строки файла 56–84): [3:M2] → [1:RP1], BFFB: станций 5, длина 0,268\u00A0км; "
        "превышение "
        "+0,86918\u00A0м; Σ разностей двух отсчётов +8,10\u00A0мм, на станции до 8,11\u00A0мм; с прибором "
        "расходится до 0,005\u00A0мм; переходные точки 9…12 (4); промежуточных точек 1; секции [53:s2], "
        "[54:s3]"));
    QVERIFY(
        has("error:Строка файла 63: ход 3, станция 2 (9 – 10), секция [54:s3]: превышение по первым отсчётам "
            "0,19394\u00A0м, по вторым 0,18583\u00A0м, разность +8,11\u00A0мм при допуске 5,00\u00A0мм; "
            "взято среднее, "
            "повторите станцию"));
    QCOMPARE(snapshot.network.sources, QStringList(QStringLiteral("network.gkf")));
    monitor = LineCollector();
    // A loop of 40 m, whose tolerance in class I is 0.6 mm.
    const QByteArray loop = "410001+?......1\n110002+0000000A 83..58+01000000\n"
                            "110003+0000000A 32...8+01000000 331.08+00150000\n"
                            "110004+00000001 32...8+01000000 332.08+00100000\n"
                            "110005+00000001 32...8+01000000 331.08+00100000\n"
                            "110006+0000000A 32...8+01000000 332.08+00149900\n";
    QCOMPARE(import(loop, {LevellingClass::I, std::nullopt}), QString());
    QVERIFY(has("error:Ход 1 (строки файла 1–6): [1:A] → [1:A], BF: станций 2, длина 0,040\u00A0км; невязка "
                "замкнутого "
                "хода +1,00\u00A0мм при допуске 0,60\u00A0мм (I класс); переходная точка 1; секции [51:s0], "
                "[52:s1]"));
    QCOMPARE(snapshot.network.points[1].id, QStringLiteral("1 (network.gkf:1)"));
}

void TestRuns::sigmaComesFromTheClassOrTheSettings()
{
    const QByteArray sample = readFile(samplePath(QStringLiteral("level-loop.gsi")));
    import(sample, {LevellingClass::II, std::nullopt});
    QVERIFY(has("message:СКО секций приняты по классу нивелирования (II класс): 2,5\u00A0мм·√L"));
    QCOMPARE(snapshot.network.parameters.sigmaApriori, 2.5);
    monitor = LineCollector();
    import(sample, {LevellingClass::II, SectionSigma { 0.2, 1.5 }});
    QVERIFY(has("message:СКО секций заданы: √(0,2² + 1,5²·L)\u00A0мм"));
    QVERIFY(snapshot.network.sections[0].stdev);
}

void TestRuns::twoReadingsAreComparedByTheClass_data()
{
    QTest::addColumn<LevellingClass>("levellingClass");
    QTest::addColumn<int>("limit"); // 0.01 mm
    QTest::addColumn<QString>("text");
    QTest::newRow("I") << LevellingClass::I << 50 << "0,50";
    QTest::newRow("II") << LevellingClass::II << 70 << "0,70";
    QTest::newRow("III") << LevellingClass::III << 300 << "3,00";
    QTest::newRow("IV") << LevellingClass::IV << 500 << "5,00";
    QTest::newRow("technical") << LevellingClass::Technical << 500 << "5,00";
}

void TestRuns::twoReadingsAreComparedByTheClass()
{
    QFETCH(LevellingClass, levellingClass);
    QFETCH(int, limit);
    QFETCH(QString, text);
    const auto importStation = [&](int difference) {
        monitor = LineCollector();
        const QByteArray secondBack = QByteArray::number(150000 - difference).rightJustified(8, '0');
        return import("410001+?......2\n110002+0000000A 83..58+01000000\n"
                      "110003+0000000A 32...8+01000000 331.08+00150000\n"
                      "110004+0000000B 32...8+01000000 332.08+00100000\n"
                      "110005+0000000B 32...8+01000000 336.08+00100000\n"
                      "110006+0000000A 32...8+01000000 335.08+" +
                          secondBack + "\n",
                      {levellingClass, std::nullopt});
    };
    const auto countErrors = [this] {
        return std::count_if(monitor.lines.begin(), monitor.lines.end(),
                             [](const QString& line) { return line.startsWith(QLatin1String("error:")); });
    };
    QCOMPARE(importStation(limit), QString());
    QCOMPARE(countErrors(), 0);
    QCOMPARE(importStation(limit + 1), QString());
    QCOMPARE(countErrors(), 1);
    QVERIFY2(!monitor.lines.filter(QStringLiteral("при допуске %1\u00A0мм").arg(text)).isEmpty(),
             qUtf8Printable(monitor.lines.join(QLatin1Char('\n'))));
}

void TestRuns::everyProblemHasItsSentence()
{
    QFETCH(QString, xml);
    QFETCH(QString, line);
    const QByteArray content =
        QStringLiteral("<gama-local><network><points-observations>\n"
                       "<point id=\"A\" z=\"1\" fix=\"z\"/><point id=\"B\" adj=\"z\"/>\n"
                       "%1\n"
                       "<height-differences><dh from=\"A\" to=\"B\" val=\"1\" dist=\"1\"/>"
                       "</height-differences></points-observations></network></gama-local>\n")
            .arg(xml)
            .toUtf8();
    const QString failure = import(content);
    QCOMPARE(failure, QString());
    QVERIFY2(monitor.lines.contains(line), qUtf8Printable(monitor.lines.join(QLatin1Char('\n'))));
}

QTEST_GUILESS_MAIN(TestRuns)
#include "tst_runs.moc"
