#include "levelling/Chains.h"

#include "levelling/ApproximateHeights.h"
#include "levelling/Components.h"
#include "levelling/NormalEquations.h"
#include "levelling/PointLinks.h"

#include <utility>

namespace levelling {

namespace {

constexpr std::size_t kStepsBetweenQuestions = 4096;

class Tracing
{
public:
    Tracing(const Network& tracedNetwork, const std::function<bool()>& stopQuestion)
        : network(tracedNetwork)
        , isStopRequested(stopQuestion)
        , links(tracedNetwork)
        , isTaken(tracedNetwork.sections.size(), false)
    {}

    Chains run()
    {
        const auto pointCount = static_cast<int>(network.points.size());
        const auto traceFromAll = [&](const auto& isStart) {
            for (int point = 0; point < pointCount && !isStopped; ++point) {
                if (isStart(point))
                    traceFrom(point);
            }
        };
        traceFromAll([this](int point) { return isBenchmark(point); });
        traceFromAll([this](int point) { return isNode(point); });
        traceFromAll([this](int point) { return isEnd(point); });
        traceFromAll([](int) { return true; }); // what is left are rings
        for (int point = 0; point < pointCount; ++point) {
            if (links.count(point) == 0)
                result.isolated.push_back(point);
        }
        if (!isStopped)
            findNodes();
        if (isStopped) {
            result = Chains();
            result.status = Chains::Status::Stopped;
        }
        return std::move(result);
    }

private:
    const Point& getPoint(int point) const { return network.points[static_cast<std::size_t>(point)]; }
    const Section& getSection(int section) const
    {
        return network.sections[static_cast<std::size_t>(section)];
    }
    bool isBenchmark(int point) const { return getPoint(point).isBenchmark(); }
    bool isNode(int point) const { return !isBenchmark(point) && links.count(point) > 2; }
    /// Whether lines end here.
    bool isEnd(int point) const { return isBenchmark(point) || links.count(point) != 2; }

    bool checkStop()
    {
        if (++steps % kStepsBetweenQuestions == 0 && isStopRequested && isStopRequested())
            isStopped = true;
        return isStopped;
    }

    void traceFrom(int start)
    {
        checkStop();
        for (const int* section = links.begin(start); section != links.end(start) && !isStopped; ++section) {
            if (!isTaken[static_cast<std::size_t>(*section)])
                trace(start, *section);
        }
    }

    void trace(int start, int section)
    {
        std::vector<int> sections;
        int point = start;
        for (;;) {
            sections.push_back(section);
            isTaken[static_cast<std::size_t>(section)] = true;
            point = getOtherEnd(getSection(section), point);
            if (point == start || isEnd(point) || checkStop())
                break;
            const int* next = links.begin(point);
            section = *next == section ? *(next + 1) : *next;
        }
        addChain(start, sections);
    }

    void addChain(int start, const std::vector<int>& sections)
    {
        Chain chain;
        static_cast<Route&>(chain) = makeRoute(network, start, sections);
        chain.kind = classify(chain);
        if (chain.kind == ChainKind::BetweenBenchmarks)
            chain.misclosure =
                (chain.sum - (*getPoint(chain.points.back()).height - *getPoint(start).height)) * 1000.0;
        else if (chain.isClosed())
            chain.misclosure = chain.sum * 1000.0;
        result.chains.push_back(std::move(chain));
    }

    ChainKind classify(const Chain& chain) const
    {
        const int start = chain.points.front();
        const int end = chain.points.back();
        if (start == end)
            return isEnd(start) ? ChainKind::Closed : ChainKind::Ring;
        const auto isLoose = [this](int point) { return !isBenchmark(point) && !isNode(point); };
        if (isLoose(start) || isLoose(end))
            return isLoose(start) && isLoose(end) ? ChainKind::Isolated : ChainKind::Hanging;
        if (isBenchmark(start) && isBenchmark(end))
            return ChainKind::BetweenBenchmarks;
        return isBenchmark(start) || isBenchmark(end) ? ChainKind::BenchmarkToNode : ChainKind::BetweenNodes;
    }

    void findNodes()
    {
        std::vector<int> nodeOfPoint(network.points.size(), -1);
        for (int point = 0; point < static_cast<int>(network.points.size()); ++point) {
            if (!isNode(point))
                continue;
            nodeOfPoint[static_cast<std::size_t>(point)] = static_cast<int>(result.nodes.size());
            result.nodes.push_back({point, std::nullopt, {}});
        }
        const std::vector<std::optional<double>> heights = findHeights();
        for (Node& node : result.nodes)
            node.height = heights[static_cast<std::size_t>(node.point)];
        for (std::size_t index = 0; index < result.chains.size(); ++index) {
            const Chain& chain = result.chains[index];
            if (chain.isClosed() || chain.kind == ChainKind::Hanging)
                continue;
            const auto carry = [&](int from, int to, double sum) {
                const int node = nodeOfPoint[static_cast<std::size_t>(to)];
                const std::optional<double>& known = heights[static_cast<std::size_t>(from)];
                if (node < 0 || !known)
                    return;
                Node& reached = result.nodes[static_cast<std::size_t>(node)];
                const double height = *known + sum;
                reached.heights.push_back(
                    {static_cast<int>(index), from, height, (height - *reached.height) * 1000.0});
            };
            carry(chain.points.front(), chain.points.back(), chain.sum);
            carry(chain.points.back(), chain.points.front(), -chain.sum);
        }
    }

    /// Given heights of benchmarks, adjusted ones of the points that they determine.
    std::vector<std::optional<double>> findHeights()
    {
        std::vector<std::optional<double>> heights(network.points.size());
        if (result.nodes.empty())
            return heights;
        const SectionGraph graph(network);
        const std::vector<std::optional<double>> approximate = approximateHeights(graph);
        NormalEquations equations(graph, approximate);
        result.hasHeights = equations.solve();
        if (!result.hasHeights)
            return heights;
        for (const Component& component : findComponents(network)) {
            if (component.getDatum() != Datum::Benchmarks)
                continue;
            for (const int point : component.points) {
                const auto index = static_cast<std::size_t>(point);
                heights[index] = isBenchmark(point)
                                     ? *getPoint(point).height
                                     : *approximate[index] + equations.getCorrection(point) / 1000.0;
            }
        }
        return heights;
    }

    const Network& network;
    const std::function<bool()>& isStopRequested;
    const PointLinks links;
    std::vector<bool> isTaken;
    Chains result;
    std::size_t steps = 0;
    bool isStopped = false;
};

} // namespace

Chains traceChains(const Network& network, const std::function<bool()>& isStopped)
{
    return Tracing(network, isStopped).run();
}

} // namespace levelling
