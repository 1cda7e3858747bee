#include "apps/desk/runs/TacheometryRun.h"

#include "apps/desk/Desk.h"
#include "apps/desk/runs/NumberTexts.h"
#include "apps/desk/runs/RunLines.h"
#include "tacheometry/Angles.h"
#include "tacheometry/PolarReduction.h"

#include <QSet>
#include <QStringList>

#include <algorithm>
#include <cmath>

namespace orvel::desk {

namespace {

using tacheometry::Check;
using tacheometry::Computation;
using tacheometry::FacePair;
using tacheometry::OrientationSight;
using tacheometry::OrientationSource;
using tacheometry::Position;
using tacheometry::Setup;
using tacheometry::SetupFailure;
using tacheometry::SetupResult;
using tacheometry::Sight;
using tacheometry::SightFailure;
using tacheometry::SightKey;

constexpr double kMillimetres = 1000.0;
// So many points that differ from the instrument's own coordinates are named; the cause is one for all.
constexpr std::size_t kMostRecorded = 50;
// Differences of whole millimetres are not quite such in binary numbers, m.
constexpr double kRounding = 1e-9;

std::size_t toIndex(int number)
{
    return static_cast<std::size_t>(number);
}

QString toMillimetres(double metres)
{
    return numbers::fixed(metres * kMillimetres, 0);
}

/// A value beside its limit, to be told in the order of the excess.
struct Finding
{
    double excess = 0.0; ///< value over limit
    bool isError = false;
    QString text;
};

class TacheometryReport
{
public:
    TacheometryReport(qor::IProcessMonitor& runMonitor, const NetworkSnapshot& networkSnapshot,
                      const QHash<QString, Position>& givenPoints, WorstLine* worst)
        : monitor(runMonitor)
        , snapshot(networkSnapshot)
        , book(*networkSnapshot.fieldBook)
        , given(givenPoints)
        , lines(runMonitor, networkSnapshot, worst)
    {}

    TacheometryOutcome run()
    {
        if (book.isEmpty())
            return fail(Desk::tr("В проекте нет тахеометрии. Импортируйте файл тахеометра."));
        int index = 0;
        for (const levelling::Point& point : snapshot.network.points)
            indexOfPoint.insert(point.id, index++);
        monitor.startStage(Desk::tr("Вычисление координат").toStdWString());
        result = tacheometry::compute(book, given, limits, [this] { return !lines.isRunning(); });
        monitor.finishCurrentStage();
        if (result.isStopped)
            return {};
        writeConditions();
        monitor.startStage(Desk::tr("Контроль").toStdWString());
        writeFailedSetups();
        collectFindings();
        writeFindings();
        writeUnused();
        monitor.finishCurrentStage();
        monitor.startStage(Desk::tr("Результаты").toStdWString());
        writeSetups();
        writePoints();
        monitor.finishCurrentStage();
        if (!lines.isRunning())
            return {};
        if (result.points.empty() && result.checks.empty())
            return fail(Desk::tr("Ни один пункт не вычислен: ни одна станция не имеет координат и "
                                 "ориентирования. Импортируйте координаты исходных пунктов."));
        return {std::move(result), QString()};
    }

private:
    TacheometryOutcome fail(const QString& failure)
    {
        lines.error(failure);
        return {Computation(), failure};
    }

    QString point(const QString& name)
    {
        const auto index = indexOfPoint.constFind(name);
        return index == indexOfPoint.constEnd() ? RunLines::escape(name) : lines.point(*index);
    }

    const Setup& getSetup(int setup) const { return book.setups[toIndex(setup)]; }
    const Sight& getSight(const SightKey& key) const
    {
        return getSetup(key.setup).sights[toIndex(key.sight)];
    }

    /// Where something stands: its line, with the file where there are several.
    QString place(int setup, qint64 line) const
    {
        const int source = getSetup(setup).source;
        const QStringList& sources = snapshot.network.sources;
        if (sources.size() < 2 || source >= sources.size())
            return Desk::tr("строка файла %1").arg(QString::number(line));
        return Desk::tr("%1, строка %2").arg(RunLines::escape(sources[source]), QString::number(line));
    }

    QString place(const SightKey& key) const { return place(key.setup, getSight(key).line); }

    /// The set-up that a sight belongs to, and its line.
    QString stationOf(const SightKey& key)
    {
        return Desk::tr("станция %1, %2").arg(point(getSetup(key.setup).station), place(key));
    }

    void writeConditions()
    {
        const auto failed =
            std::count_if(result.setups.begin(), result.setups.end(),
                          [](const SetupResult& setup) { return setup.failure != SetupFailure::None; });
        lines.service(Desk::tr("Станций: %1, из них не вычислено: %2; наведений: %3; вычислено пунктов: %4")
                          .arg(QString::number(book.setups.size()), QString::number(failed),
                               QString::number(book.countSights()), QString::number(result.points.size())));
        lines.service(
            Desk::tr(
                "Допуски: расстояние до пункта %1\u00A0м, направление на исходный пункт %2, коллимационная "
                "ошибка и место нуля %3, расхождение определений пункта %4\u00A0мм в плане и %5\u00A0мм "
                "по высоте, расхождение с координатами прибора %6\u00A0мм")
                .arg(numbers::shortest(limits.distance), numbers::arcLimit(limits.orientation),
                     numbers::arcLimit(limits.collimation), toMillimetres(limits.plan),
                     toMillimetres(limits.height), toMillimetres(limits.recorded)));
        lines.service(
            Desk::tr(
                "Превышения исправлены за кривизну Земли и рефракцию (k = %1, R = %2\u00A0км); расстояния "
                "взяты с поправками прибора, к уровню моря и на плоскость проекции не приведены")
                .arg(numbers::shortest(tacheometry::polar::kRefraction),
                     numbers::shortest(tacheometry::polar::kEarthRadius / kMillimetres)));
    }

    void writeFailedSetups()
    {
        for (std::size_t i = 0; i < result.setups.size() && lines.isRunning(); ++i) {
            const Setup& setup = book.setups[i];
            const QString station = point(setup.station);
            const QString where = place(static_cast<int>(i), setup.line);
            const QString sights = QString::number(setup.sights.size());
            if (result.setups[i].failure == SetupFailure::NoCoordinates)
                lines.error(Desk::tr("Станция %1 (%2): нет координат станции, наведений без результата: %3. "
                                     "Импортируйте её координаты или измерьте её с другой станции")
                                .arg(station, where, sights));
            else if (result.setups[i].failure == SetupFailure::NoOrientation)
                lines.error(
                    Desk::tr("Станция %1 (%2): нет ориентирования, ни одно направление не ведёт на пункт "
                             "с координатами; наведений без результата: %3. Импортируйте координаты "
                             "исходных пунктов")
                        .arg(station, where, sights));
        }
    }

    void addFinding(double value, double limit, bool isError, const QString& text)
    {
        findings.push_back({std::abs(value) / limit, isError, text});
    }

    void collectFindings()
    {
        for (std::size_t i = 0; i < result.setups.size() && lines.isRunning(); ++i) {
            checkOrientation(static_cast<int>(i));
            checkFaces(static_cast<int>(i));
        }
        for (const Check& check : result.checks) {
            if (!lines.isRunning())
                return;
            checkPoint(check);
        }
        checkRecorded();
        for (const tacheometry::LongDistance& sight : result.longDistances) {
            if (!lines.isRunning())
                return;
            addFinding(sight.distance, limits.distance, false,
                       Desk::tr("Пункт %1 (%2): расстояние %3\u00A0м, больше допуска %4\u00A0м")
                           .arg(point(getSight(sight.sight).point), stationOf(sight.sight),
                                numbers::coordinate(sight.distance), numbers::shortest(limits.distance)));
        }
    }

    void checkOrientation(int setup)
    {
        const SetupResult& outcome = result.setups[toIndex(setup)];
        if (outcome.failure != SetupFailure::None || outcome.source == OrientationSource::RecordedTargets)
            return;
        for (const OrientationSight& sight : outcome.orientationSights) {
            if (std::abs(sight.deviation) <= limits.orientation)
                continue;
            addFinding(
                sight.deviation, limits.orientation, true,
                Desk::tr("Станция %1: направление на пункт %2 (%3) отклоняется от ориентирования на %4, "
                         "больше допуска %5; на расстоянии %6\u00A0м это %7\u00A0мм%8. Проверьте, тот ли это "
                         "пункт и верны ли его координаты")
                    .arg(point(getSetup(setup).station),
                         point(getSetup(setup).sights[toIndex(sight.sight)].point),
                         place({setup, sight.sight}), numbers::arcMinutes(sight.deviation),
                         numbers::arcLimit(limits.orientation), numbers::coordinate(sight.distance),
                         toMillimetres(std::abs(std::sin(sight.deviation)) * sight.distance),
                         sight.isExcluded ? Desk::tr("; из ориентирования исключено") : QString()));
        }
    }

    void checkFaces(int setup)
    {
        const SetupResult& outcome = result.setups[toIndex(setup)];
        for (const FacePair& pair : outcome.pairs) {
            const SightKey key{setup, pair.second};
            checkAngle(key, Desk::tr("коллимационная ошибка"), pair.collimation);
            checkAngle(key, Desk::tr("место нуля"), pair.index);
            const double difference = pair.distanceDifference.value_or(0.0);
            if (std::abs(difference) > limits.faceDistance + kRounding)
                addFinding(
                    difference, limits.faceDistance, true,
                    Desk::tr("Пункт %1 (%2): расстояния при двух кругах расходятся на %3\u00A0мм, больше "
                             "допуска %4\u00A0мм")
                        .arg(point(getSight(key).point), stationOf(key),
                             numbers::withSign(difference * kMillimetres, 0),
                             toMillimetres(limits.faceDistance)));
        }
    }

    void checkAngle(const SightKey& key, const QString& what, double angle)
    {
        if (std::abs(angle) <= limits.collimation)
            return;
        addFinding(
            angle, limits.collimation, true,
            Desk::tr("Пункт %1 (%2): %3 %4, больше допуска %5. Проверьте, та ли это цель при другом круге")
                .arg(point(getSight(key).point), stationOf(key), what, numbers::arcMinutes(angle),
                     numbers::arcLimit(limits.collimation)));
    }

    /// Both differences, the worse one last and beside its limit.
    QString describeDifferences(const Check& check, bool isExceeded) const
    {
        const double height = check.dh.value_or(0.0);
        const bool isHeightWorse = std::abs(height) / limits.height > check.getPlan() / limits.plan;
        const bool hasPlan = check.dx != 0.0 || check.dy != 0.0 || !check.dh;
        const QString limit =
            (isExceeded ? Desk::tr("больше допуска %1\u00A0мм") : Desk::tr("допуск %1\u00A0мм"))
                .arg(toMillimetres(isHeightWorse || !hasPlan ? limits.height : limits.plan));
        const QString heightText =
            check.dh ? Desk::tr("по высоте %1\u00A0мм").arg(numbers::withSign(height * kMillimetres, 0))
                     : QString();
        const QString planText =
            hasPlan ? Desk::tr("в плане %1\u00A0мм (X %2, Y %3)")
                          .arg(toMillimetres(check.getPlan()), numbers::withSign(check.dx * kMillimetres, 0),
                               numbers::withSign(check.dy * kMillimetres, 0))
                    : QString();
        QStringList texts =
            isHeightWorse ? QStringList{planText, heightText} : QStringList{heightText, planText};
        texts.removeAll(QString());
        texts.append(limit);
        return texts.join(QStringLiteral(", "));
    }

    void checkPoint(const Check& check)
    {
        const QString name = point(check.name);
        if (check.name == getSetup(check.sight.setup).station) {
            addFinding(
                check.getPlan(), limits.plan, true,
                Desk::tr("Пункт %1 (%2) измерен с самого себя, расстояние до станции %3\u00A0м: номер пункта "
                         "ошибочен")
                    .arg(name, place(check.sight), numbers::coordinate(check.getPlan())));
            return;
        }
        const double height = std::abs(check.dh.value_or(0.0));
        const double excess = std::max(check.getPlan() / limits.plan, height / limits.height);
        const bool isExceeded =
            check.getPlan() > limits.plan + kRounding || height > limits.height + kRounding;
        const QString differences = describeDifferences(check, isExceeded);
        const QString text =
            check.isGiven ? Desk::tr("Пункт %1 (%2): отличие измеренного от заданных координат %3")
                                .arg(name, stationOf(check.sight), differences)
                          : Desk::tr("Пункт %1 измерен повторно (%2; впервые %3): расхождение %4")
                                .arg(name, stationOf(check.sight), stationOf(check.origin), differences);
        std::vector<Finding>& list = isExceeded ? findings : agreements;
        list.push_back({excess, isExceeded, text});
    }

    void checkRecorded()
    {
        std::vector<tacheometry::RecordedDifference> over;
        for (const tacheometry::RecordedDifference& difference : result.recorded) {
            if (difference.getLargest() > limits.recorded + kRounding)
                over.push_back(difference);
        }
        const std::size_t named = std::min(over.size(), kMostRecorded);
        std::partial_sort(over.begin(), over.begin() + static_cast<std::ptrdiff_t>(named), over.end(),
                          [](const auto& a, const auto& b) { return a.getLargest() > b.getLargest(); });
        for (std::size_t i = 0; i < named; ++i) {
            const tacheometry::RecordedDifference& difference = over[i];
            addFinding(
                difference.getLargest(), limits.recorded, false,
                Desk::tr(
                    "Пункт %1 (%2): вычисленное отличается от координат прибора на %3\u00A0мм (X %4, Y %5, H "
                    "%6), больше допуска %7\u00A0мм")
                    .arg(point(getSight(difference.sight).point), stationOf(difference.sight),
                         numbers::fixed(difference.getLargest() * kMillimetres, 1),
                         numbers::withSign(difference.dx * kMillimetres, 1),
                         numbers::withSign(difference.dy * kMillimetres, 1),
                         numbers::withSign(difference.dh.value_or(0.0) * kMillimetres, 1),
                         toMillimetres(limits.recorded)));
        }
        if (over.size() > named)
            addFinding(0.0, 1.0, false,
                       Desk::tr("Ещё %1 пунктов отличаются от координат прибора больше, чем допускается; "
                                "проверьте постоянные прибора: призму, масштаб, проекцию")
                           .arg(QString::number(over.size() - named)));
    }

    static void sortByExcess(std::vector<Finding>& list)
    {
        std::stable_sort(list.begin(), list.end(), [](const Finding& a, const Finding& b) {
            return a.isError != b.isError ? a.isError : a.excess > b.excess;
        });
    }

    void writeFindings()
    {
        sortByExcess(findings);
        for (const Finding& finding : findings) {
            if (!lines.isRunning())
                return;
            if (finding.isError)
                lines.error(finding.text, finding.excess);
            else
                lines.warning(finding.text, finding.excess);
        }
    }

    static QString describe(SightFailure failure)
    {
        switch (failure) {
        case SightFailure::NoDistance:
            return Desk::tr("нет ни расстояния, ни координат для ориентирования по нему");
        case SightFailure::NoDirection:
            return Desk::tr("нет горизонтального направления");
        case SightFailure::NoZenith:
            break;
        }
        return Desk::tr("нет зенитного расстояния, наклонное расстояние нельзя привести к горизонту");
    }

    void writeUnused()
    {
        for (const tacheometry::UnusedSight& unused : result.unused) {
            if (!lines.isRunning())
                return;
            lines.warning(Desk::tr("Пункт %1 (%2) не вычислен: %3")
                              .arg(point(getSight(unused.sight).point), stationOf(unused.sight),
                                   describe(unused.failure)));
        }
    }

    /// The points with coordinates that the set-up has directions to, each once.
    QString listTargets(int setup)
    {
        std::vector<int> targets;
        QSet<int> known;
        for (const OrientationSight& sight : result.setups[toIndex(setup)].orientationSights) {
            const int target = indexOfPoint.value(getSetup(setup).sights[toIndex(sight.sight)].point, -1);
            if (target < 0 || known.contains(target))
                continue;
            known.insert(target);
            targets.push_back(target);
        }
        return lines.listPoints(targets);
    }

    QString describeWorst(const SetupResult& outcome) const
    {
        return Desk::tr("наибольшее отклонение %1, допуск %2")
            .arg(numbers::arcLimit(outcome.findWorst()->deviation), numbers::arcLimit(limits.orientation));
    }

    QString describeOrientation(int setup)
    {
        const SetupResult& outcome = result.setups[toIndex(setup)];
        const QString angle = numbers::direction(outcome.orientation);
        switch (outcome.source) {
        case OrientationSource::Instrument:
            return outcome.orientationSights.empty()
                       ? Desk::tr("ориентирование прибора %1, без контроля").arg(angle)
                       : Desk::tr("ориентирование прибора %1, контроль по пунктам %2: %3")
                             .arg(angle, listTargets(setup), describeWorst(outcome));
        case OrientationSource::RecordedTargets:
            return Desk::tr("ориентирование %1 по координатам, записанным прибором").arg(angle);
        default:
            break;
        }
        const QString text = outcome.source == OrientationSource::GivenPoints
                                 ? Desk::tr("ориентирование %1 по исходным пунктам %2")
                                 : Desk::tr("ориентирование %1 по вычисленным пунктам %2");
        const QString control =
            outcome.orientationSigma
                ? Desk::tr("СКО %1″, %2")
                      .arg(numbers::fixed(*outcome.orientationSigma * tacheometry::angles::kSecondsPerRadian,
                                          1),
                           describeWorst(outcome))
                : Desk::tr("без контроля");
        return text.arg(angle, listTargets(setup)) + QStringLiteral(", ") + control;
    }

    QString describePosition(const Position& position) const
    {
        const QString plan = QStringLiteral("X = %1, Y = %2")
                                 .arg(numbers::coordinate(*position.x), numbers::coordinate(*position.y));
        return position.height ? QStringLiteral("%1, H = %2\u00A0%3")
                                     .arg(plan, numbers::coordinate(*position.height), Desk::tr("м"))
                               : Desk::tr("%1\u00A0м, высота не определена").arg(plan);
    }

    void writeSetups()
    {
        const std::vector<RecordedSummary> summaries = summariseRecorded();
        for (std::size_t i = 0; i < result.setups.size() && lines.isRunning(); ++i) {
            if (result.setups[i].failure == SetupFailure::None)
                writeSetup(static_cast<int>(i), summaries[i]);
        }
    }

    /// How far the points of a set-up are from the instrument's own coordinates, m.
    struct RecordedSummary
    {
        std::size_t count = 0;
        double largestX = 0.0;
        double largestY = 0.0;
        double largestHeight = 0.0;
    };

    std::vector<RecordedSummary> summariseRecorded() const
    {
        std::vector<RecordedSummary> summaries(book.setups.size());
        for (const tacheometry::RecordedDifference& difference : result.recorded) {
            RecordedSummary& summary = summaries[toIndex(difference.sight.setup)];
            ++summary.count;
            summary.largestX = std::max(summary.largestX, std::abs(difference.dx));
            summary.largestY = std::max(summary.largestY, std::abs(difference.dy));
            summary.largestHeight = std::max(summary.largestHeight, std::abs(difference.dh.value_or(0.0)));
        }
        return summaries;
    }

    void writeSetup(int setup, const RecordedSummary& recorded)
    {
        const Setup& measured = getSetup(setup);
        const SetupResult& outcome = result.setups[toIndex(setup)];
        const QString height =
            measured.instrumentHeight
                ? Desk::tr("высота прибора %1\u00A0м").arg(numbers::coordinate(*measured.instrumentHeight))
                : Desk::tr("высота прибора не записана");
        QString text =
            Desk::tr("Станция %1 (%2): %3, %4; %5; %6; наведений: %7")
                .arg(point(measured.station), place(setup, measured.line), describePosition(outcome.station),
                     outcome.isStationComputed ? Desk::tr("вычислена") : Desk::tr("исходная"), height,
                     describeOrientation(setup), QString::number(measured.sights.size()));
        if (!outcome.pairs.empty())
            text = Desk::tr("%1; при двух кругах: %2, коллимационная ошибка %3, место нуля %4")
                       .arg(text, QString::number(outcome.pairs.size()),
                            numbers::arcSeconds(outcome.collimation), numbers::arcSeconds(outcome.index));
        lines.message(text);
        const double largest = std::max({recorded.largestX, recorded.largestY, recorded.largestHeight});
        if (recorded.count > 0)
            lines.message(Desk::tr("Станция %1: сравнение с координатами прибора, пунктов: %2, наибольшее "
                                   "отличие %3\u00A0мм "
                                   "(X %4, Y %5, H %6), допуск %7\u00A0мм")
                              .arg(point(measured.station), QString::number(recorded.count),
                                   numbers::fixed(largest * kMillimetres, 1),
                                   numbers::fixed(recorded.largestX * kMillimetres, 1),
                                   numbers::fixed(recorded.largestY * kMillimetres, 1),
                                   numbers::fixed(recorded.largestHeight * kMillimetres, 1),
                                   toMillimetres(limits.recorded)));
    }

    void writePoints()
    {
        sortByExcess(agreements);
        for (const Finding& agreement : agreements) {
            if (!lines.isRunning())
                return;
            lines.message(agreement.text);
        }
        std::size_t done = 0;
        for (const tacheometry::ComputedPoint& computed : result.points) {
            if (!lines.isRunning())
                return;
            lines.message(Desk::tr("Пункт %1: %2; станция %3, расстояние %4\u00A0м")
                              .arg(point(computed.name), describePosition(computed.position),
                                   point(getSetup(computed.origin.setup).station),
                                   numbers::coordinate(computed.distance)));
            lines.setProgress(++done, result.points.size());
        }
    }

    qor::IProcessMonitor& monitor;
    const NetworkSnapshot& snapshot;
    const tacheometry::FieldBook& book;
    const QHash<QString, Position>& given;
    const tacheometry::Limits limits;
    RunLines lines;
    QHash<QString, int> indexOfPoint;
    Computation result;
    std::vector<Finding> findings;
    std::vector<Finding> agreements;
};

} // namespace

TacheometryOutcome runTacheometry(qor::IProcessMonitor& monitor, const NetworkSnapshot& snapshot,
                                  const QHash<QString, Position>& given, WorstLine* worst)
{
    return TacheometryReport(monitor, snapshot, given, worst).run();
}

} // namespace orvel::desk
