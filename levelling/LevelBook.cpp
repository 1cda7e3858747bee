#include "levelling/LevelBook.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

namespace levelling {

namespace {

constexpr double kMillimetres = 1000.0;
constexpr std::size_t kStationsBetweenQuestions = 4096;
// What is within the limit but for the last bit of a number.
constexpr double kNegligible = 1e-6; // mm

bool isWholeNumber(const QString& text)
{
    return std::all_of(text.begin(), text.end(), [](QChar character) {
        return character >= QLatin1Char('0') && character <= QLatin1Char('9');
    });
}

bool hasTwoReadings(LevelMethod method)
{
    return method == LevelMethod::BackForeForeBack || method == LevelMethod::AlternateBackForeForeBack ||
           method == LevelMethod::OtherDouble;
}

bool isAlternating(LevelMethod method)
{
    return method == LevelMethod::AlternateBackFore || method == LevelMethod::AlternateBackForeForeBack;
}

bool isNumberWithin(double value, double limit)
{
    return std::isfinite(value) && std::abs(value) <= limit;
}

double toMillimetres(double metres)
{
    return metres * kMillimetres;
}

} // namespace

double LevelBook::Staff::getMean() const
{
    if (series[0] && series[1])
        return (*series[0] + *series[1]) / 2.0;
    return series[0] ? *series[0] : *series[1];
}

void LevelBook::Run::add(const Station& station)
{
    difference += station.difference;
    metres += *station.distance;
    ++stations;
    if (station.readingDifference)
        readingDifference = readingDifference.value_or(0.0) + *station.readingDifference;
}

LevelBook::LevelBook(const LevelSettings& levelSettings) : settings(levelSettings)
{}

int LevelBook::intern(const QString& text)
{
    const auto known = ids.constFind(text);
    if (known != ids.constEnd())
        return *known;
    const auto id = static_cast<int>(names.size());
    Name added;
    added.text = text;
    added.isNumber = isWholeNumber(text);
    names.push_back(added);
    ids.insert(text, id);
    limitEntries();
    return id;
}

int LevelBook::countStations() const
{
    return static_cast<int>(stations.size() - contents.back().firstStation);
}

void LevelBook::beginLine(qint64 fileLine, LevelMethod method)
{
    endLine();
    inLine = true;
    LevelLine line;
    line.firstLine = fileLine;
    line.lastLine = fileLine;
    line.method = method;
    result.findings.lines.push_back(line);
    contents.push_back({stations.size(), stations.size(), shots.size(), shots.size()});
    limitEntries();
}

void LevelBook::endLine()
{
    if (!inLine)
        return;
    closeSetup(nullptr);
    inLine = false;
    lastSetup = Setup();
    lastHeight.reset();
    isShotOpen = false;
    lastReading = LastReading::None;
    contents.back().endStation = stations.size();
    contents.back().endShot = shots.size();
    if (contents.back().firstStation == stations.size() && contents.back().firstShot == shots.size())
        addProblem(ProblemKind::LineWithoutStations, Severity::Warning,
                   result.findings.lines.back().firstLine);
}

void LevelBook::addReading(const StaffReading& reading)
{
    lastReading = LastReading::None;
    if (!checkReading(reading))
        return;
    if (!inLine) {
        beginLine(reading.line, LevelMethod::Unknown);
        addProblem(ProblemKind::LineWithoutStart, Severity::Warning, reading.line);
    }
    result.findings.lines.back().lastLine = reading.line;
    isShotOpen = false;
    if (reading.sight == Sight::Intermediate)
        addSideShot(reading);
    else
        placeReading(reading);
}

bool LevelBook::checkReading(const StaffReading& reading)
{
    const bool isUsable = !reading.point.isEmpty() && reading.point.size() <= kLongestName &&
                          isNumberWithin(reading.value, kLargestReading);
    if (!isUsable)
        addProblem(ProblemKind::ReadingUnusable, Severity::Error, reading.line,
                   {reading.point.left(kLongestName), QString::number(reading.value)});
    return isUsable;
}

void LevelBook::placeReading(StaffReading reading)
{
    const int point = intern(reading.point);
    const int Setup::*staff = reading.sight == Sight::Back ? &Setup::back : &Setup::fore;
    const bool isOther = setup.*staff != kNoPoint && setup.*staff != point;
    // Where the back is read first, the staff in front is that behind the next station.
    const bool isNext = reading.sight == Sight::Back && setup.back == kNoPoint && setup.fore == point &&
                        !isAlternating(result.findings.lines.back().method);
    if (isOther || isNext || setup.readings.size() >= kMostReadings)
        closeSetup(nullptr);
    if (reading.distance && !(isNumberWithin(*reading.distance, kLargestSight) && *reading.distance > 0.0))
        reading.distance.reset();
    if (reading.series == 0) {
        const auto earlier =
            std::count_if(setup.readings.begin(), setup.readings.end(),
                          [&](const StaffReading& other) { return other.sight == reading.sight; });
        reading.series = earlier > 0 && hasTwoReadings(result.findings.lines.back().method) ? 2 : 1;
    }
    (reading.sight == Sight::Back ? setup.back : setup.fore) = point;
    setup.readings.push_back(reading);
    lastReading = LastReading::Staff;
}

LevelBook::Staff LevelBook::evaluate(const Setup& observed, Sight sight)
{
    Staff staff;
    double distanceSum = 0.0;
    int distanceCount = 0;
    std::array<double, 2> sums{};
    std::array<int, 2> counts{};
    for (const StaffReading& reading : observed.readings) {
        if (reading.sight != sight)
            continue;
        const auto place = static_cast<std::size_t>(reading.series - 1);
        std::optional<double>& series = staff.series[place];
        const bool isRepeated = series.has_value();
        const bool agrees = !isRepeated || std::abs(toMillimetres(*series - reading.value)) <=
                                               settings.readingLimit + kNegligible;
        if (!agrees) {
            LevelCheck check;
            check.kind = LevelCheckKind::RepeatedReading;
            check.line = reading.line;
            check.from = reading.point;
            check.to = reading.point;
            check.first = *series;
            check.second = reading.value;
            check.limit = settings.readingLimit;
            addCheck(check);
            sums[place] = 0.0;
            counts[place] = 0;
        } else if (isRepeated) {
            ++result.findings.lines.back().averagedReadings;
        }
        sums[place] += reading.value;
        series = sums[place] / ++counts[place];
        staff.rounding = std::max(staff.rounding, reading.resolution / 2.0);
        distanceSum += reading.distance.value_or(0.0);
        distanceCount += reading.distance ? 1 : 0;
    }
    if (distanceCount > 0)
        staff.distance = distanceSum / distanceCount;
    return staff;
}

void LevelBook::closeSetup(const StatedHeight* stated)
{
    const Setup observed = std::exchange(setup, Setup());
    if (observed.readings.empty())
        return;
    const qint64 fileLine = observed.readings.front().line;
    if (!observed.isComplete()) {
        const int point = observed.back == kNoPoint ? observed.fore : observed.back;
        addProblem(observed.back == kNoPoint ? ProblemKind::StationWithoutBack
                                             : ProblemKind::StationWithoutFore,
                   Severity::Error, fileLine, {name(point).text});
        return;
    }
    if (observed.back == observed.fore) {
        addProblem(ProblemKind::StationSameEnds, Severity::Error, fileLine, {name(observed.back).text});
        return;
    }
    const Staff back = evaluate(observed, Sight::Back);
    const Staff fore = evaluate(observed, Sight::Fore);
    LevelLine& line = result.findings.lines.back();
    Station station;
    station.back = observed.back;
    station.fore = observed.fore;
    station.line = fileLine;
    station.difference = back.getMean() - fore.getMean();
    if (back.distance && fore.distance)
        station.distance = *back.distance + *fore.distance;

    LevelCheck check;
    check.from = name(observed.back).text;
    check.to = name(observed.fore).text;
    if (back.series[0] && back.series[1] && fore.series[0] && fore.series[1]) {
        check.kind = LevelCheckKind::TwoReadings;
        check.line = fileLine;
        check.first = *back.series[0] - *fore.series[0];
        check.second = *back.series[1] - *fore.series[1];
        check.limit = settings.readingLimit;
        station.readingDifference = toMillimetres(check.first - check.second);
        const double amount = std::abs(*station.readingDifference);
        line.largestReadingDifference = std::max(line.largestReadingDifference, amount);
        if (amount > check.limit + kNegligible)
            addCheck(check);
    } else if (hasTwoReadings(line.method)) {
        addProblem(ProblemKind::StationSecondMissing, Severity::Warning, fileLine, {check.from, check.to});
    }

    std::optional<StatedHeight> backHeight;
    if (lastHeight && lastHeight->point == check.from)
        backHeight = lastHeight;
    if (stated && backHeight) {
        check.kind = LevelCheckKind::StatedHeight;
        check.line = stated->line;
        check.first = stated->value;
        check.second = backHeight->value + station.difference;
        // What rounding of the readings and of both heights may make.
        check.limit = toMillimetres(back.rounding + fore.rounding +
                                    (stated->resolution + backHeight->resolution) / 2.0);
        const double amount = std::abs(toMillimetres(check.first - check.second));
        ++line.comparedHeights;
        line.largestHeightDeviation = std::max(line.largestHeightDeviation, amount);
        if (amount > check.limit + kNegligible)
            addCheck(check);
    }
    addStation(station);
    lastSetup = observed;
    lastSetup.backHeight = backHeight;
    lastHeight.reset();
}

void LevelBook::addStation(Station station)
{
    station.beginsPart = countStations() == 0;
    if (!station.beginsPart) {
        const Station last = stations.back();
        if (last.fore != station.back && last.back == station.back && name(last.fore).isNumber) {
            addProblem(ProblemKind::StationRepeated, Severity::Warning, station.line,
                       {name(last.back).text, name(last.fore).text, QString::number(last.line)});
            station.beginsPart = last.beginsPart;
            dropLastStation();
        } else if (last.fore != station.back) {
            addProblem(ProblemKind::LineInterrupted, Severity::Warning, station.line,
                       {name(last.fore).text, name(station.back).text});
            station.beginsPart = true;
            result.findings.lines.back().isInterrupted = true;
        }
    }
    stations.push_back(station);
    limitEntries();
}

void LevelBook::dropLastStation()
{
    stations.pop_back();
    // Intermediate sights of stations that are gone go from the next one.
    const std::size_t firstShot = contents.back().firstShot;
    for (std::size_t i = shots.size(); i > firstShot && shots[i - 1].station > stations.size(); --i)
        shots[i - 1].station = stations.size();
}

void LevelBook::addSideShot(const StaffReading& reading)
{
    const Setup& instrument = setup.back != kNoPoint ? setup : lastSetup;
    if (instrument.back == kNoPoint) {
        addProblem(ProblemKind::SightWithoutStation, Severity::Error, reading.line, {reading.point});
        return;
    }
    const int point = intern(reading.point);
    if (point == instrument.back) {
        addProblem(ProblemKind::StationSameEnds, Severity::Error, reading.line, {reading.point});
        return;
    }
    double sum = 0.0;
    int count = 0;
    double distanceSum = 0.0;
    int distanceCount = 0;
    for (const StaffReading& back : instrument.readings) {
        if (back.sight != Sight::Back)
            continue;
        sum += back.value;
        ++count;
        distanceSum += back.distance.value_or(0.0);
        distanceCount += back.distance ? 1 : 0;
    }
    SideShot shot;
    shot.station = stations.size() - (setup.back != kNoPoint || countStations() == 0 ? 0 : 1);
    shot.from = instrument.back;
    shot.to = point;
    shot.difference = sum / count - reading.value;
    const bool isSightKnown =
        reading.distance && isNumberWithin(*reading.distance, kLargestSight) && *reading.distance > 0.0;
    if (isSightKnown && distanceCount > 0)
        shot.distance = distanceSum / distanceCount + *reading.distance;
    shot.line = reading.line;
    shots.push_back(shot);
    ++result.findings.lines.back().sideShots;
    isShotOpen = true;
    lastReading = LastReading::SideShot;
    limitEntries();
}

/// Whether the height is that of the last intermediate sight.
bool LevelBook::checkSideShot(const StatedHeight& height)
{
    if (!isShotOpen || name(shots.back().to).text != height.point)
        return false;
    isShotOpen = false;
    const Setup& instrument = setup.back != kNoPoint ? setup : lastSetup;
    const std::optional<StatedHeight>& from = setup.back != kNoPoint ? lastHeight : lastSetup.backHeight;
    if (!from || from->point != name(instrument.back).text)
        return true;
    const SideShot& shot = shots.back();
    LevelCheck check;
    check.kind = LevelCheckKind::SightHeight;
    check.line = height.line;
    check.from = from->point;
    check.to = height.point;
    check.first = height.value;
    check.second = from->value + shot.difference;
    check.limit =
        toMillimetres(instrument.readings.front().resolution + (height.resolution + from->resolution) / 2.0);
    LevelLine& line = result.findings.lines.back();
    const double amount = std::abs(toMillimetres(check.first - check.second));
    ++line.comparedHeights;
    line.largestHeightDeviation = std::max(line.largestHeightDeviation, amount);
    if (amount > check.limit + kNegligible)
        addCheck(check);
    return true;
}

void LevelBook::addHeight(const StatedHeight& height)
{
    if (height.point.isEmpty() || height.point.size() > kLongestName ||
        !isNumberWithin(height.value, kLargestHeight)) {
        addProblem(ProblemKind::HeightUnusable, Severity::Error, height.line,
                   {height.point.left(kLongestName), QString::number(height.value)});
        return;
    }
    if (inLine)
        result.findings.lines.back().lastLine = height.line;
    if (inLine && checkSideShot(height))
        return;
    const int point = intern(height.point);
    if (setup.isComplete()) {
        closeSetup(setup.fore == point ? &height : nullptr);
        if (inLine && countStations() > 0 && stations.back().fore == point) {
            lastHeight = height;
            name(point).statedHeight = height.value;
            return;
        }
    }
    // The instrument has computed it by readings that are missing here.
    const bool isOfSetup =
        !setup.readings.empty() && point != setup.back && height.origin != HeightOrigin::Entered;
    if (!isOfSetup)
        takeEnteredHeight(height, point);
    else if (point == setup.fore)
        closeSetup(nullptr);
    name(point).statedHeight = height.value;
    lastHeight = height;
}

void LevelBook::takeEnteredHeight(const StatedHeight& height, int point)
{
    Name& known = name(point);
    const bool isSame =
        known.statedHeight && std::abs(*known.statedHeight - height.value) < height.resolution / 2.0;
    if (height.origin == HeightOrigin::Measured || (height.origin == HeightOrigin::Unknown && isSame))
        return;
    const bool isZero = std::abs(height.value) < height.resolution / 2.0;
    if (isZero && known.enteredHeight)
        return;
    const bool isGiven = known.enteredHeight && std::abs(*known.enteredHeight) >= height.resolution / 2.0;
    if (isGiven && std::abs(*known.enteredHeight - height.value) >= height.resolution / 2.0) {
        LevelCheck check;
        check.kind = LevelCheckKind::EnteredHeight;
        check.line = height.line;
        check.from = height.point;
        check.to = height.point;
        check.first = *known.enteredHeight;
        check.second = height.value;
        check.limit = toMillimetres(height.resolution / 2.0);
        addCheck(check);
    }
    known.enteredHeight = isZero ? 0.0 : height.value;
    known.enteredLine = height.line;
}

void LevelBook::dropReading()
{
    const LastReading last = std::exchange(lastReading, LastReading::None);
    if (last == LastReading::SideShot) {
        shots.pop_back();
        --result.findings.lines.back().sideShots;
        isShotOpen = false;
    }
    if (last != LastReading::Staff || setup.readings.empty())
        return;
    const Sight sight = setup.readings.back().sight;
    setup.readings.pop_back();
    const bool isLast = std::none_of(setup.readings.begin(), setup.readings.end(),
                                     [sight](const StaffReading& reading) { return reading.sight == sight; });
    if (isLast)
        (sight == Sight::Back ? setup.back : setup.fore) = kNoPoint;
}

void LevelBook::dropStation()
{
    lastReading = LastReading::None;
    if (!setup.readings.empty() || !inLine || countStations() == 0) {
        setup = Setup();
        return;
    }
    dropLastStation();
    lastHeight = lastSetup.backHeight;
    lastSetup = Setup();
    isShotOpen = false;
}

void LevelBook::addCheck(const LevelCheck& check)
{
    if (isFull())
        return;
    LevelCheck placed = check;
    placed.levelLine = static_cast<int>(result.findings.lines.size()) - 1;
    // The instrument of an intermediate sight may be that of the last station still.
    const bool isOfLast = check.kind == LevelCheckKind::SightHeight && setup.back == kNoPoint;
    if (check.kind != LevelCheckKind::EnteredHeight)
        placed.station = countStations() + (isOfLast ? 0 : 1);
    result.findings.checks.push_back(placed);
    checkedStations.push_back(stations.size() - (isOfLast ? 1 : 0));
    limitEntries();
}

void LevelBook::addProblem(ProblemKind kind, Severity severity, qint64 line, const QStringList& arguments)
{
    if (isFull())
        return;
    result.file.problems.push_back(Problem{kind, severity, line, arguments});
    if (result.file.problems.size() >= GkfReader::kMaxProblems)
        fullProblem = Problem{
            ProblemKind::TooManyProblems, Severity::Fatal, line, {QString::number(GkfReader::kMaxProblems)}};
}

void LevelBook::addUnused(const QString& what, qint64 line)
{
    const auto known = indexOfUnused.constFind(what);
    if (known != indexOfUnused.constEnd()) {
        ++result.findings.unused[static_cast<std::size_t>(*known)].count;
        return;
    }
    indexOfUnused.insert(what, static_cast<int>(result.findings.unused.size()));
    result.findings.unused.push_back({what, 1, line});
}

void LevelBook::limitEntries()
{
    const std::size_t count = names.size() + stations.size() + shots.size() + result.findings.lines.size() +
                              result.findings.checks.size();
    if (!isFull() && count > kMaxStations)
        fullProblem = Problem{ProblemKind::TooManyStations,
                              Severity::Fatal,
                              result.findings.lines.empty() ? 0 : result.findings.lines.back().lastLine,
                              {QString::number(kMaxStations)}};
}

bool LevelBook::isMark(int point) const
{
    const Name& known = name(point);
    return !known.isNumber || (known.isEnd && !known.isInsideSeveral);
}

void LevelBook::findMarks()
{
    int part = -1;
    for (const LineContent& content : contents) {
        for (std::size_t i = content.firstStation; i < content.endStation; ++i) {
            const Station& station = stations[i];
            if (station.beginsPart) {
                ++part;
                name(station.back).isEnd = true;
            }
            const bool isLast = i + 1 == content.endStation || stations[i + 1].beginsPart;
            Name& fore = name(station.fore);
            if (isLast) {
                fore.isEnd = true;
            } else if (fore.insidePart != part) {
                fore.isInsideSeveral = fore.insidePart != kNoPoint;
                fore.insidePart = part;
            }
        }
        for (std::size_t i = content.firstShot; i < content.endShot; ++i) {
            const SideShot& shot = shots[i];
            const bool goesOn =
                shot.station > content.firstStation && stations[shot.station - 1].fore == shot.from;
            name(shot.from).isEnd = name(shot.from).isEnd || !goesOn;
        }
    }
}

void LevelBook::fillDistances(std::size_t line)
{
    const LineContent& content = contents[line];
    const auto first = stations.begin() + static_cast<std::ptrdiff_t>(content.firstStation);
    const auto end = stations.begin() + static_cast<std::ptrdiff_t>(content.endStation);
    double sum = 0.0;
    int known = 0;
    for (auto station = first; station != end; ++station) {
        sum += station->distance.value_or(0.0);
        known += station->distance ? 1 : 0;
    }
    const auto all = static_cast<int>(end - first);
    if (known == all)
        return;
    const double usual = known > 0 ? sum / known : kUsualStation;
    for (auto station = first; station != end; ++station)
        station->distance = station->distance.value_or(usual);
    addProblem(ProblemKind::DistancesMissing, Severity::Warning, result.findings.lines[line].firstLine,
               {QString::number(all - known), QString::number(all), QString::number(usual, 'f', 1)});
}

int LevelBook::addPoint(const QString& id, qint64 fileLine)
{
    Point point;
    point.id = id;
    point.line = fileLine;
    result.file.network.points.push_back(point);
    return static_cast<int>(result.file.network.points.size()) - 1;
}

int LevelBook::getNetworkPoint(int id, qint64 fileLine)
{
    Name& known = name(id);
    if (known.networkPoint == kNoPoint)
        known.networkPoint = addPoint(known.text, fileLine);
    return known.networkPoint;
}

void LevelBook::appendSection(LevelLine& line, const Run& run, int from, int to, qint64 fileLine)
{
    Section section;
    section.from = from;
    section.to = to;
    section.difference = run.difference;
    section.distance = run.metres / kMillimetres;
    // As the length alone gives it: a file of the network need not have it then.
    section.sigma = settings.sigmaPerKilometre * std::sqrt(*section.distance);
    // By its length alone the constant part would be lost.
    if (settings.sigmaConstant > 0.0) {
        section.sigma = std::hypot(settings.sigmaConstant, section.sigma);
        section.stdev = section.sigma;
    }
    section.stations = run.stations;
    section.readingDifference = run.readingDifference;
    section.line = fileLine;
    result.file.network.sections.push_back(section);
    ++line.sectionCount;
}

void LevelBook::noteSection(std::size_t firstStation, std::size_t endStation)
{
    const auto section = static_cast<int>(result.file.network.sections.size());
    for (std::size_t station = firstStation; station < endStation; ++station)
        sectionOfStation[station] = section;
}

void LevelBook::findSectionsOfChecks()
{
    for (std::size_t i = 0; i < result.findings.checks.size(); ++i) {
        LevelCheck& check = result.findings.checks[i];
        if (check.kind != LevelCheckKind::EnteredHeight && checkedStations[i] < stations.size())
            check.section = sectionOfStation[checkedStations[i]];
    }
}

/// Makes a section of the run, or two if it comes back to where it began.
void LevelBook::finishRun(LevelLine& line, const Run& run, std::size_t endStation)
{
    const Station& last = stations[endStation - 1];
    const qint64 fileLine = stations[run.firstStation].line;
    if (last.fore != run.from) {
        const int from = getNetworkPoint(run.from, fileLine);
        noteSection(run.firstStation, endStation);
        appendSection(line, run, from, getNetworkPoint(last.fore, last.line), fileLine);
        return;
    }
    const std::size_t middle = run.firstStation + (endStation - run.firstStation) / 2;
    Run there{run.firstStation, run.from, 0.0, 0.0, 0, {}};
    for (std::size_t i = run.firstStation; i < middle; ++i)
        there.add(stations[i]);
    Run back{middle, stations[middle].back, 0.0, 0.0, 0, {}};
    for (std::size_t i = middle; i < endStation; ++i)
        back.add(stations[i]);
    const QString place = settings.sourceName.isEmpty()
                              ? QString::number(line.firstLine)
                              : settings.sourceName + QLatin1Char(':') + QString::number(line.firstLine);
    const int mark = getNetworkPoint(run.from, fileLine);
    const int turning = addPoint(name(back.from).text + QStringLiteral(" (") + place + QLatin1Char(')'),
                                 stations[middle].line);
    noteSection(run.firstStation, middle);
    appendSection(line, there, mark, turning, fileLine);
    noteSection(middle, endStation);
    appendSection(line, back, turning, mark, stations[middle].line);
}

/// The section of an intermediate sight leads from the last mark before it.
///
/// @param current  point that the run has come to
void LevelBook::makeShotSection(LevelLine& line, const Run& run, int current, const SideShot& shot)
{
    Run way = run;
    int from = run.from;
    if (shot.from != current) {
        way = Run();
        from = shot.from;
    }
    way.difference += shot.difference;
    way.metres += shot.distance.value_or(kUsualStation);
    ++way.stations;
    way.readingDifference.reset();
    if (from == shot.to) {
        addProblem(ProblemKind::StationSameEnds, Severity::Error, shot.line, {name(shot.to).text});
        return;
    }
    const int mark = getNetworkPoint(from, shot.line);
    appendSection(line, way, mark, getNetworkPoint(shot.to, shot.line), shot.line);
}

void LevelBook::makeSections(std::size_t index)
{
    const LineContent& content = contents[index];
    LevelLine& line = result.findings.lines[index];
    line.firstSection = static_cast<int>(result.file.network.sections.size());
    std::size_t shot = content.firstShot;
    Run run;
    int current = kNoPoint;
    const auto makeShots = [&](std::size_t station) {
        for (; shot < content.endShot && shots[shot].station <= station; ++shot)
            makeShotSection(line, run, current, shots[shot]);
    };
    for (std::size_t i = content.firstStation; i < content.endStation; ++i) {
        const Station& station = stations[i];
        if (station.beginsPart || i == content.firstStation) {
            run = Run{i, station.back, 0.0, 0.0, 0, {}};
            current = station.back;
        }
        makeShots(i);
        run.add(station);
        ++line.stations;
        line.length += *station.distance / kMillimetres;
        line.difference += station.difference;
        if (station.readingDifference)
            line.readingDifference = line.readingDifference.value_or(0.0) + *station.readingDifference;
        current = station.fore;
        const bool isLast = i + 1 == content.endStation || stations[i + 1].beginsPart;
        if (isLast || isMark(station.fore)) {
            finishRun(line, run, i + 1);
            run = Run{i + 1, station.fore, 0.0, 0.0, 0, {}};
        } else {
            if (++line.turningPoints == 1)
                line.firstTurningPoint = name(station.fore).text;
            line.lastTurningPoint = name(station.fore).text;
        }
    }
    makeShots(content.endStation);
    if (line.stations > 0) {
        line.from = getNetworkPoint(stations[content.firstStation].back, line.firstLine);
        line.to = getNetworkPoint(stations[content.endStation - 1].fore, line.lastLine);
        for (const int id : {stations[content.firstStation].back, stations[content.endStation - 1].fore}) {
            if (name(id).isNumber && name(id).isInsideSeveral)
                addProblem(ProblemKind::NumberEndsLine, Severity::Warning, line.firstLine, {name(id).text});
        }
    }
}

/// Also points that no section leads to get theirs: another file may have been measured from them.
void LevelBook::giveHeights()
{
    for (std::size_t id = 0; id < names.size(); ++id) {
        const Name& known = names[id];
        const bool isTurningPoint = known.networkPoint == kNoPoint && known.insidePart != kNoPoint;
        if (known.enteredHeight.value_or(0.0) == 0.0 || isTurningPoint)
            continue;
        const int index = getNetworkPoint(static_cast<int>(id), known.enteredLine);
        Point& point = result.file.network.points[static_cast<std::size_t>(index)];
        point.height = known.enteredHeight;
        point.fixed = true;
        point.declared = true;
    }
}

LevelResult LevelBook::finish(const std::function<bool()>& isStopped)
{
    endLine();
    findMarks();
    sectionOfStation.assign(stations.size(), -1);
    std::size_t nextQuestion = 0;
    for (std::size_t line = 0; line < contents.size() && !isFull(); ++line) {
        if (isStopped && contents[line].endStation >= nextQuestion) {
            nextQuestion = contents[line].endStation + kStationsBetweenQuestions;
            if (isStopped()) {
                result = LevelResult();
                result.file.isStopped = true;
                return std::move(result);
            }
        }
        fillDistances(line);
        makeSections(line);
    }
    if (fullProblem) {
        result = LevelResult();
        result.file.fatal = fullProblem;
        return std::move(result);
    }
    giveHeights();
    findSectionsOfChecks();
    result.file.network.parameters.sigmaApriori = settings.sigmaPerKilometre;
    if (result.file.network.sections.empty())
        addProblem(ProblemKind::NoSections, Severity::Error, 0);
    const auto byLine = [](const auto& a, const auto& b) { return a.line < b.line; };
    std::stable_sort(result.file.problems.begin(), result.file.problems.end(), byLine);
    std::stable_sort(result.findings.checks.begin(), result.findings.checks.end(), byLine);
    return std::move(result);
}

} // namespace levelling
