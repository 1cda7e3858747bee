#include "apps/desk/document/NetworkItems.h"
#include "apps/desk/runs/SurveyNetwork.h"
#include "apps/desk/runs/SurveyTexts.h"
#include "apps/desk/runs/TacheometryRun.h"
#include "tacheometry/Angles.h"
#include "tacheometry/M5TotalStationReader.h"
#include "tests/desk/DeskFixture.h"
#include "tests/desk/LineCollector.h"
#include "tests/support/TestFiles.h"

#include <QFile>
#include <QTest>

using namespace orvel::desk;
using namespace orvel::test;
using tacheometry::ProblemKind;

/// What the computation of tacheometry writes.
class TestTacheometryRun : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void sampleGivesItsLines();
    void emptyProjectHasNoResult();
    void stationsWithoutCoordinatesHaveNoResult();
    void orientationOverItsLimitIsAnError();
    void excludedDirectionIsNamed();
    void errorsOfTwoFacesAreNamed();
    void pointsWithoutResultAreNamed();
    void largestExcessComesFirst();
    void instrumentsOwnCoordinatesAreCutOff();
    void severalFilesAreNamed();
    void namesOfPointsAreText();
    void stoppedRunEndsAtOnce();
    void everyProblemHasItsSentence_data();
    void everyProblemHasItsSentence();
    void failuresNameTheLine();

private:
    /// Makes a project of what was read.
    void take(const tacheometry::FieldBookReading& reading);
    /// A set-up on S at (0, 0, 100), its circle set to the azimuth.
    tacheometry::Setup& addSetup();
    void addSight(const char* point, double degrees, double distance);
    TacheometryOutcome run();
    bool has(const char* line) const { return monitor.lines.contains(QString::fromUtf8(line)); }
    int count(const char* text) const { return monitor.lines.filter(QString::fromUtf8(text)).size(); }

    tacheometry::FieldBookReading survey;
    NetworkSnapshot snapshot;
    QHash<QString, tacheometry::Position> given;
    LineCollector monitor;
};

void TestTacheometryRun::init()
{
    survey = tacheometry::FieldBookReading();
    snapshot = NetworkSnapshot();
    given.clear();
    monitor = LineCollector();
}

void TestTacheometryRun::take(const tacheometry::FieldBookReading& reading)
{
    snapshot.network = makeSurveyNetwork(reading);
    for (const levelling::Point& point : snapshot.network.points) {
        snapshot.pointIds.push_back(10 + static_cast<LONGID>(snapshot.pointIds.size()));
        if (point.hasPlan() || point.height)
            given.insert(point.id, {point.x, point.y, point.height});
    }
    snapshot.fieldBook = std::make_shared<const tacheometry::FieldBook>(reading.book);
}

tacheometry::Setup& TestTacheometryRun::addSetup()
{
    survey.points.push_back({QStringLiteral("S"), QString(), {0.0, 0.0, 100.0}, 1});
    tacheometry::Setup setup;
    setup.station = QStringLiteral("S");
    setup.instrumentHeight = 1.5;
    setup.orientation = 0.0;
    setup.line = 1;
    survey.book.setups.push_back(setup);
    return survey.book.setups.back();
}

void TestTacheometryRun::addSight(const char* point, double degrees, double distance)
{
    tacheometry::Sight sight;
    sight.point = QString::fromUtf8(point);
    sight.direction = degrees * tacheometry::angles::kPi / 180.0;
    sight.zenith = tacheometry::angles::kPi / 2.0;
    sight.slopeDistance = distance;
    sight.line = 2 + static_cast<qint64>(survey.book.setups.back().sights.size());
    survey.book.setups.back().sights.push_back(sight);
}

TacheometryOutcome TestTacheometryRun::run()
{
    take(survey);
    return runTacheometry(monitor, snapshot, given);
}

void TestTacheometryRun::sampleGivesItsLines()
{
    QFile file(samplePath(QStringLiteral("tacheometry.m5")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    take(tacheometry::m5totalstation::read(file));
    const TacheometryOutcome outcome = runTacheometry(monitor, snapshot, given);
    QCOMPARE(outcome.failure, QString());
    QCOMPARE(outcome.computation.points.size(), std::size_t(13));
    QVERIFY(has("service:Станций: 3, из них не вычислено: 1; наведений: 22; вычислено пунктов: 13"));
    const QStringList findings =
        monitor.lines.filter(QRegularExpression(QStringLiteral("^(error|warning):")));
    QCOMPARE(
        findings.join(QLatin1Char('\n')),
        QString::fromUtf8(
            "error:Станция [27:9] (строка файла 59): нет координат станции, наведений без результата: 1. "
            "Импортируйте её координаты или измерьте её с другой станции\n"
            "error:Пункт [11:1] (строка файла 35) измерен с самого себя, расстояние до станции "
            "90,669\u00A0м: номер пункта ошибочен\n"
            "error:Пункт [14:102] измерен повторно (станция [10:2], строка файла 55; впервые станция "
            "[11:1], строка файла 15): расхождение по высоте +22\u00A0мм, в плане 251\u00A0мм (X +214, Y "
            "\u2212131), больше допуска 100\u00A0мм\n"
            "warning:Пункт [22:120] (станция [11:1], строка файла 37): расстояние 267,887\u00A0м, больше "
            "допуска 250\u00A0м\n"
            "warning:Пункт [26:130] (станция [10:2], строка файла 56) не вычислен: нет ни расстояния, ни "
            "координат для ориентирования по нему"));
    QVERIFY(has(
        "message:Станция [10:2] (строка файла 45): X = 1085,320, Y = 2042,170, H = 152,410\u00A0м, исходная; "
        "высота прибора 1,620\u00A0м; ориентирование прибора 0°00′00″, контроль по пунктам [11:1], [12:3]: "
        "наибольшее отклонение 0,0′, допуск 1,5′; наведений: 8"));
    QVERIFY(has("message:Станция [11:1]: сравнение с координатами прибора, пунктов: 12, наибольшее отличие "
                "0,5\u00A0мм (X 0,5, Y 0,5, H 0,4), допуск 2\u00A0мм"));
    QVERIFY(has(
        "message:Пункт [13:101] измерен повторно (станция [10:2], строка файла 54; впервые станция [11:1], "
        "строка файла 13): расхождение по высоте +6\u00A0мм, в плане 14\u00A0мм (X +12, Y \u22128), допуск "
        "100\u00A0мм"));
    QVERIFY(has(
        "message:Пункт [14:102]: X = 1032,214, Y = 2015,766, H = 149,463\u00A0м; станция [11:1], расстояние "
        "35,865\u00A0м"));
}

void TestTacheometryRun::emptyProjectHasNoResult()
{
    QCOMPARE(run().failure, QStringLiteral("В проекте нет тахеометрии. Импортируйте файл тахеометра."));
    QCOMPARE(monitor.lines,
             QStringList(QStringLiteral("error:В проекте нет тахеометрии. Импортируйте файл тахеометра.")));
}

void TestTacheometryRun::stationsWithoutCoordinatesHaveNoResult()
{
    addSetup();
    survey.points.clear();
    addSight("P", 0.0, 10.0);
    QVERIFY(run().failure.startsWith(QStringLiteral("Ни один пункт не вычислен")));
    QVERIFY(has("error:Станция [10:S] (строка файла 1): нет координат станции, наведений без результата: 1. "
                "Импортируйте её координаты или измерьте её с другой станции"));
}

void TestTacheometryRun::orientationOverItsLimitIsAnError()
{
    addSetup();
    survey.points.push_back({QStringLiteral("N"), QString(), {100.0, 0.0, std::nullopt}, 1});
    survey.points.push_back({QStringLiteral("E"), QString(), {0.0, 100.0, std::nullopt}, 1});
    addSight("N", 0.1, 100.0);
    addSight("E", 90.02, 100.0);
    run();
    QVERIFY(has(
        "error:Станция [10:S]: направление на пункт [11:N] (строка файла 2) отклоняется от ориентирования на "
        "\u22126,0′, больше допуска 1,5′; на расстоянии 100,000\u00A0м это 175\u00A0мм. Проверьте, тот ли "
        "это "
        "пункт и верны ли его координаты"));
    QCOMPARE(count("отклоняется от ориентирования"), 1);
    QVERIFY(has(
        "message:Станция [10:S] (строка файла 1): X = 0,000, Y = 0,000, H = 100,000\u00A0м, исходная; высота "
        "прибора 1,500\u00A0м; ориентирование прибора 0°00′00″, контроль по пунктам [11:N], [12:E]: "
        "наибольшее отклонение 6,0′, допуск 1,5′; наведений: 2"));
}

void TestTacheometryRun::excludedDirectionIsNamed()
{
    addSetup().orientation.reset();
    survey.points.push_back({QStringLiteral("N"), QString(), {100.0, 0.0, std::nullopt}, 1});
    survey.points.push_back({QStringLiteral("E"), QString(), {0.0, 100.0, std::nullopt}, 1});
    survey.points.push_back({QStringLiteral("W"), QString(), {0.0, -100.0, std::nullopt}, 1});
    addSight("N", 0.0, 100.0);
    addSight("E", 90.5, 100.0);
    addSight("W", 270.0, 100.0);
    run();
    QVERIFY(has(
        "error:Станция [10:S]: направление на пункт [12:E] (строка файла 3) отклоняется от ориентирования на "
        "\u221230,0′, больше допуска 1,5′; на расстоянии 100,000\u00A0м это 873\u00A0мм; из ориентирования "
        "исключено. Проверьте, тот ли это пункт и верны ли его координаты"));
    QCOMPARE(count("отклоняется от ориентирования"), 1);
}

void TestTacheometryRun::errorsOfTwoFacesAreNamed()
{
    addSetup();
    addSight("P", 10.0, 50.0);
    addSight("P", 190.1, 50.02);
    tacheometry::Sight& second = survey.book.setups[0].sights[1];
    second.zenith = 1.5 * tacheometry::angles::kPi + 0.001;
    run();
    QVERIFY(has("error:Пункт [11:P] (станция [10:S], строка файла 3): коллимационная ошибка +3,0′, больше "
                "допуска 1,0′. Проверьте, та ли это цель при другом круге"));
    QVERIFY(has("error:Пункт [11:P] (станция [10:S], строка файла 3): место нуля +1,7′, больше допуска 1,0′. "
                "Проверьте, та ли это цель при другом круге"));
    QVERIFY(
        has("error:Пункт [11:P] (станция [10:S], строка файла 3): расстояния при двух кругах расходятся на "
            "+20\u00A0мм, больше допуска 10\u00A0мм"));
    QCOMPARE(count("при двух кругах: 1, коллимационная ошибка +180″, место нуля +103″"), 1);
}

void TestTacheometryRun::pointsWithoutResultAreNamed()
{
    addSetup();
    addSight("P", 10.0, 50.0);
    addSight("Q", 10.0, 50.0);
    addSight("R", 10.0, 50.0);
    survey.book.setups[0].instrumentHeight.reset();
    survey.book.setups[0].sights[1].zenith.reset();
    survey.book.setups[0].sights[2].direction.reset();
    run();
    QVERIFY(
        has("warning:Пункт [12:Q] (станция [10:S], строка файла 3) не вычислен: нет зенитного расстояния, "
            "наклонное расстояние нельзя привести к горизонту"));
    QVERIFY(has("warning:Пункт [13:R] (станция [10:S], строка файла 4) не вычислен: нет горизонтального "
                "направления"));
    QVERIFY(has("message:Пункт [11:P]: X = 49,240, Y = 8,682\u00A0м, высота не определена; станция [10:S], "
                "расстояние "
                "50,000\u00A0м"));
}

void TestTacheometryRun::largestExcessComesFirst()
{
    addSetup();
    for (const double distance : {300.0, 500.0, 400.0})
        addSight(QByteArray::number(distance).constData(), 0.0, distance);
    run();
    const QStringList warnings = monitor.lines.filter(QStringLiteral("больше допуска 250"));
    QCOMPARE(warnings.size(), 3);
    QVERIFY(warnings[0].contains(QStringLiteral("500,000")));
    QVERIFY(warnings[1].contains(QStringLiteral("400,000")));
    QVERIFY(warnings[2].contains(QStringLiteral("300,000")));
}

void TestTacheometryRun::instrumentsOwnCoordinatesAreCutOff()
{
    addSetup();
    for (int i = 0; i < 60; ++i) {
        addSight(QByteArray::number(i).constData(), 0.0, 10.0 + i);
        survey.book.setups[0].sights.back().recorded = {10.0 + i + 0.003 + 0.0001 * i, 0.0, 101.5};
    }
    run();
    QCOMPARE(count("вычисленное отличается от координат прибора"), 50);
    QVERIFY(has("warning:Пункт [70:59] (станция [10:S], строка файла 61): вычисленное отличается от "
                "координат прибора "
                "на 8,9\u00A0мм (X \u22128,9, Y +0,0, H +0,3), больше допуска 2\u00A0мм"));
    QVERIFY(has("warning:Ещё 10 пунктов отличаются от координат прибора больше, чем допускается; проверьте "
                "постоянные "
                "прибора: "
                "призму, масштаб, проекцию"));
}

void TestTacheometryRun::severalFilesAreNamed()
{
    addSetup().source = 1;
    addSight("P", 10.0, 50.0);
    take(survey);
    snapshot.network.sources = QStringList{QStringLiteral("a.gsi"), QStringLiteral("<b>.m5")};
    runTacheometry(monitor, snapshot, given);
    QCOMPARE(count("Станция [10:S] (&lt;b&gt;.m5, строка 1): X = 0,000"), 1);
}

void TestTacheometryRun::namesOfPointsAreText()
{
    addSetup();
    addSight("<b>%1&\"id=5", 10.0, 50.0);
    run();
    QCOMPARE(count("Пункт [11:&lt;b&gt;%1&amp;&quot;id&#61;5]: X = 49,240, Y = 8,682, H = 101,500\u00A0м; "
                   "станция [10:S]"),
             1);
}

void TestTacheometryRun::stoppedRunEndsAtOnce()
{
    addSetup();
    addSight("P", 10.0, 50.0);
    monitor.isRunning = false;
    const TacheometryOutcome outcome = run();
    QCOMPARE(outcome.failure, QString());
    QVERIFY(outcome.computation.points.empty());
    QCOMPARE(monitor.lines, QStringList());
}

void TestTacheometryRun::everyProblemHasItsSentence_data()
{
    QTest::addColumn<int>("kind");
    for (int kind = static_cast<int>(ProblemKind::NothingUsable);
         kind <= static_cast<int>(ProblemKind::OffsetWithoutSight); ++kind)
        QTest::addRow("%d", kind) << kind;
}

void TestTacheometryRun::everyProblemHasItsSentence()
{
    QFETCH(int, kind);
    tacheometry::Problem problem;
    problem.kind = static_cast<ProblemKind>(kind);
    problem.line = 7;
    const QString text = surveytexts::describe(
        problem, {QStringLiteral("%2"), QStringLiteral("<two>"), QStringLiteral("three")});
    QVERIFY(text.startsWith(QStringLiteral("Строка файла 7: ")));
    QVERIFY(text.size() > 30);
}

void TestTacheometryRun::failuresNameTheLine()
{
    QCOMPARE(
        surveytexts::describeFailure(
            QStringLiteral("a.m5"),
            {ProblemKind::LineTooLong, tacheometry::Severity::Fatal, 8, {QStringLiteral("65536")}}),
        QStringLiteral("a.m5, строка 8: строка длиннее 65536 байт, файл не прочитан; проверьте, что это файл "
                       "тахеометра"));
}

QTEST_APPLESS_MAIN(TestTacheometryRun)
#include "tst_tacheometryrun.moc"
