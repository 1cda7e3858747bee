#include "tacheometry/Computation.h"

#include "tacheometry/Angles.h"
#include "tacheometry/PolarReduction.h"

#include <algorithm>
#include <cmath>
#include <deque>

namespace tacheometry {

namespace {

// A station does not orient itself by its own place, m.
constexpr double kShortestBackSight = 0.01;
constexpr std::size_t kStepsBetweenQuestions = 4096;
// Where more directions contradict each other, which are right is not to be told.
constexpr int kMostExcluded = 10;

/// One or two sights of a target, in the first face.
struct Observation
{
    int sight = 0;
    std::optional<double> direction;
    std::optional<double> zenith;
    std::optional<double> slopeDistance;
    std::optional<double> horizontalDistance;
};

bool isSecondFace(const Sight& sight)
{
    return sight.zenith && *sight.zenith > angles::kPi;
}

Observation observe(const Sight& sight, int number)
{
    Observation observation{number, sight.direction, sight.zenith, sight.slopeDistance,
                            sight.horizontalDistance};
    if (isSecondFace(sight)) {
        observation.zenith = angles::kFullCircle - *sight.zenith;
        if (sight.direction)
            observation.direction = angles::normalise(*sight.direction - angles::kPi);
    }
    return observation;
}

std::optional<double> mean(const std::optional<double>& one, const std::optional<double>& other)
{
    if (one && other)
        return (*one + *other) / 2.0;
    return one ? one : other;
}

std::optional<double> meanDirection(const std::optional<double>& one, const std::optional<double>& other)
{
    if (one && other)
        return angles::normalise(*one + angles::normaliseDifference(*other - *one) / 2.0);
    return one ? one : other;
}

/// Whether the sights measure the same target.
bool isSameTarget(const Sight& one, const Sight& other)
{
    return one.point == other.point && one.targetHeight == other.targetHeight && one.beyond == other.beyond &&
           one.right == other.right;
}

class Computing
{
public:
    Computing(const FieldBook& fieldBook, const QHash<QString, Position>& givenPoints,
              const Limits& givenLimits, const std::function<bool()>& stopQuestion)
        : book(fieldBook)
        , given(givenPoints)
        , limits(givenLimits)
        , isStopped(stopQuestion)
    {}

    Computation run()
    {
        const auto count = static_cast<int>(book.setups.size());
        result.setups.resize(book.setups.size());
        observations.resize(book.setups.size());
        for (int setup = 0; setup < count && mayGoOn(); ++setup) {
            combineFaces(setup);
            attempt(setup);
        }
        // Those that had to wait, in the order in which what they wait for came.
        while (!ready.empty() && mayGoOn()) {
            const int setup = ready.front();
            ready.pop_front();
            if (result.setups[index(setup)].failure != SetupFailure::None)
                attempt(setup);
        }
        if (result.isStopped) {
            result = Computation();
            result.isStopped = true;
        }
        return std::move(result);
    }

private:
    static std::size_t index(int number) { return static_cast<std::size_t>(number); }
    const Setup& getSetup(int setup) const { return book.setups[index(setup)]; }

    /// To be asked for each set-up and each sight.
    bool mayGoOn()
    {
        if (stepsDone++ % kStepsBetweenQuestions == 0 && isStopped && isStopped())
            result.isStopped = true;
        return !result.isStopped;
    }

    void combineFaces(int setup)
    {
        const std::vector<Sight>& sights = getSetup(setup).sights;
        std::vector<Observation>& targets = observations[index(setup)];
        SetupResult& outcome = result.setups[index(setup)];
        QHash<QString, int> single; // place of the last observation that has one face only, by point
        for (int number = 0; number < static_cast<int>(sights.size()); ++number) {
            const Sight& sight = sights[index(number)];
            const Observation observation = observe(sight, number);
            const int place = single.value(sight.point, -1);
            const bool isPair =
                place >= 0 && sight.zenith && isOtherFace(sights[index(targets[index(place)].sight)], sight);
            if (!isPair) {
                single.insert(sight.point, static_cast<int>(targets.size()));
                targets.push_back(observation);
                continue;
            }
            single.remove(sight.point);
            Observation& target = targets[index(place)];
            outcome.pairs.push_back(compare(sights[index(target.sight)], sight, target, observation));
            target.direction = meanDirection(target.direction, observation.direction);
            target.zenith = mean(target.zenith, observation.zenith);
            target.slopeDistance = mean(target.slopeDistance, observation.slopeDistance);
            target.horizontalDistance = mean(target.horizontalDistance, observation.horizontalDistance);
        }
        summariseFaces(outcome);
    }

    static bool isOtherFace(const Sight& one, const Sight& other)
    {
        return one.zenith && isSecondFace(one) != isSecondFace(other) && isSameTarget(one, other);
    }

    FacePair compare(const Sight& one, const Sight& other, const Observation& target,
                     const Observation& observation) const
    {
        const bool isReversed = isSecondFace(one);
        FacePair pair;
        pair.first = isReversed ? observation.sight : target.sight;
        pair.second = isReversed ? target.sight : observation.sight;
        const Observation& first = isReversed ? observation : target;
        const Observation& second = isReversed ? target : observation;
        if (first.direction && second.direction)
            pair.collimation = angles::normaliseDifference(*second.direction - *first.direction) / 2.0;
        pair.index = (*one.zenith + *other.zenith - angles::kFullCircle) / 2.0;
        if (first.slopeDistance && second.slopeDistance)
            pair.distanceDifference = *second.slopeDistance - *first.slopeDistance;
        else if (first.horizontalDistance && second.horizontalDistance)
            pair.distanceDifference = *second.horizontalDistance - *first.horizontalDistance;
        return pair;
    }

    static void summariseFaces(SetupResult& outcome)
    {
        for (const FacePair& pair : outcome.pairs) {
            outcome.collimation += pair.collimation / static_cast<double>(outcome.pairs.size());
            outcome.index += pair.index / static_cast<double>(outcome.pairs.size());
        }
    }

    void attempt(int setup)
    {
        SetupResult& outcome = result.setups[index(setup)];
        const QString& name = getSetup(setup).station;
        const Position station = find(name, &outcome.isStationComputed);
        outcome.failure = SetupFailure::None;
        if (!station.hasPlan()) {
            outcome.failure = SetupFailure::NoCoordinates;
            waitingForStation[name].push_back(setup);
            return;
        }
        outcome.station = station;
        orient(setup, outcome);
        if (outcome.source == OrientationSource::None) {
            outcome.failure = SetupFailure::NoOrientation;
            for (const Observation& target : observations[index(setup)]) {
                if (target.direction)
                    waitingForDirection[getSetup(setup).sights[index(target.sight)].point].push_back(setup);
            }
            return;
        }
        for (const Observation& target : observations[index(setup)]) {
            if (!mayGoOn())
                return;
            computePoint(setup, outcome, target);
        }
    }

    /// What is known of a point; by whom, if the pointer is there.
    Position find(const QString& name, bool* isComputed = nullptr) const
    {
        Position position = given.value(name);
        const auto computed = placeOfPoint.constFind(name);
        if (isComputed)
            *isComputed = !position.hasPlan() && computed != placeOfPoint.constEnd();
        if (computed != placeOfPoint.constEnd()) {
            const Position& found = result.points[index(*computed)].position;
            if (!position.hasPlan()) {
                position.x = found.x;
                position.y = found.y;
            }
            if (!position.height)
                position.height = found.height;
        }
        return position;
    }

    void orient(int setup, SetupResult& outcome)
    {
        outcome.source = OrientationSource::None;
        outcome.orientationSights.clear();
        std::vector<OrientationSight> toComputed;
        for (const Observation& target : observations[index(setup)]) {
            const QString& name = getSetup(setup).sights[index(target.sight)].point;
            bool isComputed = false;
            const Position position = find(name, &isComputed);
            if (target.direction && position.hasPlan())
                addOrientation(isComputed ? toComputed : outcome.orientationSights, outcome.station, position,
                               target);
        }
        const std::optional<double>& own = getSetup(setup).orientation;
        if (own) {
            outcome.source = OrientationSource::Instrument;
            outcome.orientation = angles::normalise(*own);
        } else if (!outcome.orientationSights.empty()) {
            outcome.source = OrientationSource::GivenPoints;
        } else if (!toComputed.empty()) {
            outcome.source = OrientationSource::ComputedPoints;
            outcome.orientationSights = std::move(toComputed);
        } else {
            addRecordedTargets(setup, outcome);
        }
        if (outcome.source != OrientationSource::Instrument)
            takeMean(outcome);
        for (OrientationSight& sight : outcome.orientationSights)
            sight.deviation = angles::normaliseDifference(sight.orientation - outcome.orientation);
        estimateSigma(outcome);
    }

    static void addOrientation(std::vector<OrientationSight>& sights, const Position& from,
                               const Position& to, const Observation& target)
    {
        const double dx = *to.x - *from.x;
        const double dy = *to.y - *from.y;
        OrientationSight sight;
        sight.sight = target.sight;
        sight.distance = std::hypot(dx, dy);
        sight.orientation = angles::normalise(std::atan2(dy, dx) - *target.direction);
        if (sight.distance >= kShortestBackSight)
            sights.push_back(sight);
    }

    void addRecordedTargets(int setup, SetupResult& outcome)
    {
        for (const Observation& target : observations[index(setup)]) {
            const Sight& sight = getSetup(setup).sights[index(target.sight)];
            const bool isAtTarget = sight.beyond == 0.0 && sight.right == 0.0;
            if (target.direction && sight.recorded.hasPlan() && isAtTarget)
                addOrientation(outcome.orientationSights, outcome.station, sight.recorded, target);
        }
        if (!outcome.orientationSights.empty())
            outcome.source = OrientationSource::RecordedTargets;
    }

    /// The mean of the directions that agree with each other. Three can tell which of them does not.
    void takeMean(SetupResult& outcome) const
    {
        std::vector<OrientationSight>& sights = outcome.orientationSights;
        if (sights.empty())
            return;
        std::size_t used = sights.size();
        outcome.orientation = meanOf(outcome);
        for (int excluded = 0; excluded < kMostExcluded && used > 2; ++excluded) {
            OrientationSight* worst = nullptr;
            double largest = limits.orientation;
            for (OrientationSight& sight : sights) {
                const double deviation =
                    std::abs(angles::normaliseDifference(sight.orientation - outcome.orientation));
                if (sight.isExcluded || deviation <= largest)
                    continue;
                largest = deviation;
                worst = &sight;
            }
            if (!worst)
                return;
            worst->isExcluded = true;
            --used;
            outcome.orientation = meanOf(outcome);
        }
    }

    static double meanOf(const SetupResult& outcome)
    {
        // Coordinates are rounded: far points have the better direction.
        const bool isByDistance = outcome.source == OrientationSource::RecordedTargets;
        double sine = 0.0;
        double cosine = 0.0;
        for (const OrientationSight& sight : outcome.orientationSights) {
            const double weight = isByDistance ? sight.distance * sight.distance : 1.0;
            sine += sight.isExcluded ? 0.0 : weight * std::sin(sight.orientation);
            cosine += sight.isExcluded ? 0.0 : weight * std::cos(sight.orientation);
        }
        return angles::normalise(std::atan2(sine, cosine));
    }

    static void estimateSigma(SetupResult& outcome)
    {
        outcome.orientationSigma.reset();
        if (outcome.source != OrientationSource::GivenPoints &&
            outcome.source != OrientationSource::ComputedPoints)
            return;
        double squares = 0.0;
        double count = 0.0;
        for (const OrientationSight& sight : outcome.orientationSights) {
            if (sight.isExcluded)
                continue;
            squares += sight.deviation * sight.deviation;
            count += 1.0;
        }
        if (count > 1.0)
            outcome.orientationSigma = std::sqrt(squares / (count * (count - 1.0)));
    }

    void computePoint(int setup, const SetupResult& outcome, const Observation& target)
    {
        const Sight& sight = getSetup(setup).sights[index(target.sight)];
        const SightKey key{setup, target.sight};
        if (!target.slopeDistance && !target.horizontalDistance) {
            if (!isOrienting(outcome, target.sight))
                result.unused.push_back({key, SightFailure::NoDistance});
            return;
        }
        if (!target.direction) {
            result.unused.push_back({key, SightFailure::NoDirection});
            return;
        }
        if (!target.horizontalDistance && !target.zenith) {
            result.unused.push_back({key, SightFailure::NoZenith});
            return;
        }
        double distance = 0.0;
        const Position position = locate(getSetup(setup), outcome, target, distance);
        if (distance > limits.distance)
            result.longDistances.push_back({key, distance});
        compareRecorded(key, sight, position);
        take(key, sight, position, distance);
    }

    /// Whether the direction leads to a point with coordinates. These stand in the order of the sights.
    static bool isOrienting(const SetupResult& outcome, int sight)
    {
        const std::vector<OrientationSight>& sights = outcome.orientationSights;
        const auto found =
            std::lower_bound(sights.begin(), sights.end(), sight,
                             [](const OrientationSight& a, int number) { return a.sight < number; });
        return found != sights.end() && found->sight == sight;
    }

    static Position locate(const Setup& setup, const SetupResult& outcome, const Observation& target,
                           double& distance)
    {
        const Sight& sight = setup.sights[index(target.sight)];
        std::optional<double> rise;
        if (target.slopeDistance && target.zenith) {
            const polar::Reduced reduced = polar::reduceSlope(*target.slopeDistance, *target.zenith);
            distance = reduced.horizontal;
            rise = reduced.rise;
        } else {
            distance = *target.horizontalDistance;
            // Straight up there is no horizontal distance.
            constexpr double steepest = 1e-3;
            if (target.zenith && std::sin(*target.zenith) > steepest)
                rise = polar::riseAt(distance, *target.zenith);
        }
        const double azimuth = outcome.orientation + *target.direction;
        const double along = setup.scale * (distance + sight.beyond);
        const double across = setup.scale * sight.right;
        Position position;
        position.x = *outcome.station.x + along * std::cos(azimuth) - across * std::sin(azimuth);
        position.y = *outcome.station.y + along * std::sin(azimuth) + across * std::cos(azimuth);
        if (rise && outcome.station.height && setup.instrumentHeight)
            position.height = *outcome.station.height + *setup.instrumentHeight + *rise - sight.targetHeight;
        return position;
    }

    void compareRecorded(const SightKey& key, const Sight& sight, const Position& position)
    {
        if (!sight.recorded.hasPlan())
            return;
        RecordedDifference difference;
        difference.sight = key;
        difference.dx = *position.x - *sight.recorded.x;
        difference.dy = *position.y - *sight.recorded.y;
        if (position.height && sight.recorded.height)
            difference.dh = *position.height - *sight.recorded.height;
        result.recorded.push_back(difference);
    }

    void take(const SightKey& key, const Sight& sight, const Position& position, double distance)
    {
        const Position known = given.value(sight.point);
        const auto computed = placeOfPoint.constFind(sight.point);
        if (computed != placeOfPoint.constEnd()) {
            ComputedPoint& point = result.points[index(*computed)];
            addCheck(key, sight, position, point.position, known.hasPlan(), point.origin);
            if (!point.position.height)
                point.position.height = position.height;
            return;
        }
        if (known.hasPlan() || known.height)
            addCheck(key, sight, position, known, true, key);
        if (known.hasPlan() && known.height)
            return;
        ComputedPoint point{sight.point, sight.code, position, key, distance};
        if (known.hasPlan()) {
            point.position.x = known.x;
            point.position.y = known.y;
        }
        if (known.height)
            point.position.height = known.height;
        placeOfPoint.insert(sight.point, static_cast<int>(result.points.size()));
        result.points.push_back(point);
        wake(point);
    }

    void addCheck(const SightKey& key, const Sight& sight, const Position& position, const Position& known,
                  bool isGiven, const SightKey& origin)
    {
        Check check;
        check.sight = key;
        check.name = sight.point;
        check.isGiven = isGiven;
        check.origin = origin;
        if (known.hasPlan()) {
            check.dx = *position.x - *known.x;
            check.dy = *position.y - *known.y;
        }
        if (position.height && known.height)
            check.dh = *position.height - *known.height;
        result.checks.push_back(check);
    }

    /// The set-ups that have waited for the point may be attempted again.
    void wake(const ComputedPoint& point)
    {
        for (const int setup : waitingForStation.take(point.name))
            ready.push_back(setup);
        for (const int setup : waitingForDirection.take(point.name)) {
            const Position& station = result.setups[index(setup)].station;
            const double away = std::hypot(*point.position.x - *station.x, *point.position.y - *station.y);
            if (away >= kShortestBackSight)
                ready.push_back(setup);
        }
    }

    const FieldBook& book;
    const QHash<QString, Position>& given;
    const Limits& limits;
    const std::function<bool()>& isStopped;
    Computation result;
    std::vector<std::vector<Observation>> observations; // by set-up
    QHash<QString, int> placeOfPoint;                   // in result.points
    // Set-ups by the point that they want.
    QHash<QString, std::vector<int>> waitingForStation;
    QHash<QString, std::vector<int>> waitingForDirection;
    std::deque<int> ready;
    std::size_t stepsDone = 0;
};

} // namespace

const OrientationSight* SetupResult::findWorst() const
{
    const OrientationSight* worst = nullptr;
    for (const OrientationSight& sight : orientationSights) {
        if (!sight.isExcluded && (!worst || std::abs(sight.deviation) > std::abs(worst->deviation)))
            worst = &sight;
    }
    return worst;
}

double Check::getPlan() const
{
    return std::hypot(dx, dy);
}

double RecordedDifference::getLargest() const
{
    return std::max({std::abs(dx), std::abs(dy), std::abs(dh.value_or(0.0))});
}

Computation compute(const FieldBook& book, const QHash<QString, Position>& given, const Limits& limits,
                    const std::function<bool()>& isStopped)
{
    return Computing(book, given, limits, isStopped).run();
}

} // namespace tacheometry
