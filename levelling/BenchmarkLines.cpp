#include "levelling/BenchmarkLines.h"

#include "levelling/PointLinks.h"

#include <queue>

#include <algorithm>
#include <limits>
#include <map>
#include <utility>

namespace levelling {

namespace {

constexpr std::size_t kMostForAllPairs = 30;
constexpr std::size_t kStepsBetweenQuestions = 4096;
constexpr int kNone = -1;

/// Shortest ways from one or all benchmarks to all points that can be reached without another benchmark
/// between (E. W. Dijkstra, A note on two problems in connexion with graphs, Numer. Math. 1, 1959).
class Search
{
public:
    explicit Search(const Network& searchedNetwork)
        : network(searchedNetwork)
        , links(searchedNetwork)
        , distance(searchedNetwork.points.size(), kUnreached)
        , sectionBefore(searchedNetwork.points.size(), kNone)
        , source(searchedNetwork.points.size(), kNone)
        , hasLengths(std::all_of(network.sections.begin(), network.sections.end(),
                                 [](const Section& section) { return section.distance.has_value(); }))
    {}

    double weigh(int section) const
    {
        const Section& weighed = network.sections[static_cast<std::size_t>(section)];
        return hasLengths ? *weighed.distance : weighed.sigma * weighed.sigma;
    }

    /// False if it was stopped.
    bool run(const std::vector<int>& sources, const std::function<bool()>& isStopped)
    {
        for (const int point : reached)
            distance[static_cast<std::size_t>(point)] = kUnreached;
        reached.clear();
        for (const int point : sources)
            reach(point, 0.0, kNone, point);
        while (!queue.empty()) {
            const auto [length, point] = queue.top();
            queue.pop();
            if (++steps % kStepsBetweenQuestions == 0 && isStopped && isStopped()) {
                queue = {};
                return false;
            }
            if (length == getDistance(point) && (isSource(point) || !isBenchmark(point)))
                reachNeighbours(point);
        }
        return true;
    }

    const std::vector<int>& getReached() const { return reached; }
    double getDistance(int point) const { return distance[static_cast<std::size_t>(point)]; }
    int getSource(int point) const { return source[static_cast<std::size_t>(point)]; }
    bool isBenchmark(int point) const
    {
        return network.points[static_cast<std::size_t>(point)].isBenchmark();
    }
    bool isSource(int point) const { return sectionBefore[static_cast<std::size_t>(point)] == kNone; }

    /// The sections from the benchmark to the point.
    std::vector<int> getWay(int point) const
    {
        std::vector<int> way;
        while (!isSource(point)) {
            way.push_back(sectionBefore[static_cast<std::size_t>(point)]);
            point = getOtherEnd(network.sections[static_cast<std::size_t>(way.back())], point);
        }
        std::reverse(way.begin(), way.end());
        return way;
    }

private:
    static constexpr double kUnreached = std::numeric_limits<double>::infinity();
    using Entry = std::pair<double, int>;

    void reach(int point, double length, int section, int from)
    {
        const auto index = static_cast<std::size_t>(point);
        if (distance[index] == kUnreached)
            reached.push_back(point);
        distance[index] = length;
        sectionBefore[index] = section;
        source[index] = from;
        queue.emplace(length, point);
    }

    void reachNeighbours(int point)
    {
        for (const int* section = links.begin(point); section != links.end(point); ++section) {
            const int next = getOtherEnd(network.sections[static_cast<std::size_t>(*section)], point);
            const double length = getDistance(point) + weigh(*section);
            if (length < getDistance(next))
                reach(next, length, *section, getSource(point));
        }
    }

    const Network& network;
    const PointLinks links;
    std::vector<double> distance;
    std::vector<int> sectionBefore;
    std::vector<int> source;
    bool hasLengths;
    std::vector<int> reached;
    std::priority_queue<Entry, std::vector<Entry>, std::greater<>> queue;
    std::size_t steps = 0;
};

std::vector<int> listBenchmarks(const Network& network)
{
    std::vector<int> benchmarks;
    for (std::size_t point = 0; point < network.points.size(); ++point) {
        if (network.points[point].isBenchmark())
            benchmarks.push_back(static_cast<int>(point));
    }
    return benchmarks;
}

BenchmarkLine makeLine(const Network& network, int start, const std::vector<int>& sections)
{
    BenchmarkLine line{makeRoute(network, start, sections), 0.0};
    const Point& end = network.points[static_cast<std::size_t>(line.points.back())];
    const double given = *end.height - *network.points[static_cast<std::size_t>(start)].height;
    line.misclosure = (line.sum - given) * 1000.0;
    return line;
}

/// From each benchmark to those behind it.
bool findAllPairs(const Network& network, const std::vector<int>& benchmarks,
                  const std::function<bool()>& isStopped, std::vector<BenchmarkLine>& lines)
{
    Search search(network);
    for (const int benchmark : benchmarks) {
        if (!search.run({benchmark}, isStopped))
            return false;
        std::vector<int> ends;
        for (const int point : search.getReached()) {
            if (point > benchmark && search.isBenchmark(point))
                ends.push_back(point);
        }
        std::sort(ends.begin(), ends.end());
        for (const int end : ends)
            lines.push_back(makeLine(network, benchmark, search.getWay(end)));
    }
    return true;
}

bool findNeighbours(const Network& network, const std::vector<int>& benchmarks,
                    const std::function<bool()>& isStopped, std::vector<BenchmarkLine>& lines)
{
    Search search(network);
    if (!search.run(benchmarks, isStopped))
        return false;
    struct Bridge
    {
        int section;
        double length;
    };
    std::map<std::pair<int, int>, Bridge> bridges;
    for (std::size_t index = 0; index < network.sections.size(); ++index) {
        const Section& section = network.sections[index];
        const auto [low, high] = std::minmax({search.getSource(section.from), search.getSource(section.to)});
        if (low == high)
            continue;
        const double length = search.getDistance(section.from) + search.getDistance(section.to) +
                              search.weigh(static_cast<int>(index));
        const auto known = bridges.emplace(std::pair(low, high), Bridge{static_cast<int>(index), length});
        if (!known.second && length < known.first->second.length)
            known.first->second = {static_cast<int>(index), length};
    }
    for (const auto& [ends, bridge] : bridges) {
        const Section& section = network.sections[static_cast<std::size_t>(bridge.section)];
        const bool isForward = search.getSource(section.from) == ends.first;
        std::vector<int> way = search.getWay(isForward ? section.from : section.to);
        way.push_back(bridge.section);
        const std::vector<int> back = search.getWay(isForward ? section.to : section.from);
        way.insert(way.end(), back.rbegin(), back.rend());
        lines.push_back(makeLine(network, ends.first, way));
    }
    return true;
}

} // namespace

BenchmarkLines findBenchmarkLines(const Network& network, const std::function<bool()>& isStopped)
{
    const std::vector<int> benchmarks = listBenchmarks(network);
    BenchmarkLines result;
    result.areAllPairs = benchmarks.size() <= kMostForAllPairs;
    const bool isDone = result.areAllPairs ? findAllPairs(network, benchmarks, isStopped, result.lines)
                                           : findNeighbours(network, benchmarks, isStopped, result.lines);
    if (!isDone) {
        result.lines.clear();
        result.isStopped = true;
    }
    return result;
}

} // namespace levelling
