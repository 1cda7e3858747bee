// Network files: what is read is a network as the computations need it, or one failure and nothing else;
// written and read again it is the same network; and small networks can be computed with, whatever their
// numbers. Elements nest anywhere, and deeper than may be.

#include "levelling/Adjustment.h"
#include "levelling/BenchmarkLines.h"
#include "levelling/Chains.h"
#include "levelling/Components.h"
#include "levelling/FixedPoints.h"
#include "levelling/GkfReader.h"
#include "levelling/GkfWriter.h"
#include "levelling/L1Analysis.h"
#include "levelling/LoopBasis.h"
#include "tests/fuzz/Finding.h"

#include <QBuffer>

#include <algorithm>
#include <cmath>

using namespace levelling;

namespace {

void checkNetwork(const Network& network)
{
    const auto pointCount = static_cast<int>(network.points.size());
    for (const Point& point : network.points) {
        mustHold(!point.id.isEmpty(), "a point has a name");
        mustHold(point.height || !point.fixed, "a benchmark has a height");
        mustHold(!point.height || std::isfinite(*point.height), "a height is a number");
    }
    for (const Section& section : network.sections) {
        mustHold(section.from >= 0 && section.from < pointCount, "a section begins at a point");
        mustHold(section.to >= 0 && section.to < pointCount, "a section ends at a point");
        mustHold(section.from != section.to, "a section has two ends");
        mustHold(std::isfinite(section.difference), "a difference is a number");
        mustHold(std::isfinite(section.sigma) && section.sigma > 0.0, "a sigma is positive");
    }
}

void checkProblems(const std::vector<Problem>& problems)
{
    mustHold(std::is_sorted(problems.begin(), problems.end(),
                            [](const Problem& a, const Problem& b) { return a.line < b.line; }),
             "the problems are in the order of their lines");
    mustHold(std::none_of(problems.begin(), problems.end(),
                          [](const Problem& problem) { return problem.severity == Severity::Fatal; }),
             "only a failure is fatal");
}

void compute(const Network& network)
{
    const Adjustment adjustment = adjust(network);
    if (adjustment.status == AdjustmentStatus::Ok) {
        for (const auto& point : adjustment.points)
            mustHold(!point || (std::isfinite(point->height) && std::isfinite(point->sigma)),
                     "adjusted heights are numbers");
    }
    const FixedPoints fixedPoints = analyseFixedPoints(network);
    for (const BenchmarkPart& part : fixedPoints.parts) {
        for (const BenchmarkFit& fit : part.benchmarks)
            mustHold(std::isfinite(fit.freeHeight) && std::isfinite(fit.shift.value_or(0.0)) &&
                         std::isfinite(fit.statistic),
                     "what is told of a benchmark are numbers");
    }
    const Network merged = mergeRepeatedSections(network).network;
    std::size_t inLines = 0;
    for (const Chain& chain : traceChains(merged).chains)
        inLines += chain.sections.size();
    mustHold(inLines == merged.sections.size(), "every section is in one line");
    for (const BenchmarkLine& line : findBenchmarkLines(merged).lines)
        mustHold(line.points.front() != line.points.back(), "a line between benchmarks has two ends");
    findRepeatedSections(network);
    findLoopBasis(SectionGraph(network));
    analyseL1(network);
}

/// What is written of a network is the same network.
void checkWritten(const Network& network)
{
    GkfText gkf = writeGkf(network);
    if (!gkf.renamedPoints.empty())
        return;
    QBuffer buffer(&gkf.text);
    buffer.open(QIODevice::ReadOnly);
    const GkfResult again = GkfReader::read(buffer);
    mustHold(!again.fatal, "a written network can be read");
    mustHold(again.network.points.size() == network.points.size(), "it has the same points");
    mustHold(again.network.sections.size() == network.sections.size(), "it has the same sections");
    for (std::size_t index = 0; index < network.points.size(); ++index) {
        const Point& written = network.points[index];
        const Point& read = again.network.points[index];
        mustHold(read.id == written.id && read.height == written.height && read.fixed == written.fixed &&
                     read.observed == written.observed,
                 "a point is the same");
    }
    for (std::size_t index = 0; index < network.sections.size(); ++index) {
        const Section& written = network.sections[index];
        const Section& read = again.network.sections[index];
        mustHold(read.from == written.from && read.to == written.to &&
                     read.difference == written.difference && read.sigma == written.sigma,
                 "a section is the same");
    }
}

GkfResult read(QByteArray content)
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    GkfResult result = GkfReader::read(buffer);
    if (result.fatal) {
        mustHold(result.network.points.empty() && result.network.sections.empty() && result.problems.empty(),
                 "a failure comes alone");
    } else {
        checkNetwork(result.network);
        checkProblems(result.problems);
    }
    return result;
}

/// Opens elements at a place that the content itself tells, and closes them in half of the cases.
QByteArray nest(QByteArray content)
{
    constexpr int depth = GkfReader::kMaxDepth + 10;
    const auto first = static_cast<unsigned char>(content[0]);
    const auto second = static_cast<unsigned char>(content[1]);
    const int place = (first * 256 + second) % content.size();
    const QByteArray closing = first % 16 == 0 ? QByteArray("</a>").repeated(depth) : QByteArray();
    return content.insert(place, QByteArray("<a>").repeated(depth) + closing);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const QByteArray content(reinterpret_cast<const char*>(data), static_cast<int>(size));
    if (size > 1 && data[0] % 8 == 0)
        read(nest(content));
    const GkfResult result = read(content);
    if (!result.fatal)
        checkWritten(result.network);
    if (!result.fatal && result.network.sections.size() <= 30)
        compute(result.network);
    return 0;
}
