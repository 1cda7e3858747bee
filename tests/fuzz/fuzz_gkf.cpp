// Network files: what is read is a network as the computations need it, or one failure and nothing else; and
// small networks can be computed with, whatever their numbers. Elements nest anywhere, and deeper than may
// be.

#include "levelling/Adjustment.h"
#include "levelling/Components.h"
#include "levelling/GkfReader.h"
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
    findRepeatedSections(network);
    findLoopBasis(SectionGraph(network));
    analyseL1(network);
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
    if (!result.fatal && result.network.sections.size() <= 30)
        compute(result.network);
    return 0;
}
