// Shows how the time of the computations grows with the network: a table of seconds by count of points.

#include "SyntheticNetwork.h"
#include "levelling/Adjustment.h"
#include "levelling/Components.h"
#include "levelling/GkfReader.h"
#include "levelling/GrossErrors.h"
#include "levelling/L1Analysis.h"
#include "levelling/LoopBasis.h"

#include <QBuffer>
#include <QElapsedTimer>

#include <algorithm>
#include <cstdio>

using namespace levelling;
using namespace orvel::test;

namespace {

template<typename Function>
double seconds(const Function& function)
{
    QElapsedTimer timer;
    timer.start();
    function();
    return static_cast<double>(timer.nsecsElapsed()) * 1e-9;
}

void measure(int pointCount, int sectionCount)
{
    QByteArray file = networks::toGkf(networks::synthetic(pointCount, sectionCount));
    GkfResult result;
    const double read = seconds([&] {
        QBuffer buffer(&file);
        buffer.open(QIODevice::ReadOnly);
        result = GkfReader::read(buffer);
    });
    std::size_t loopCount = 0;
    std::size_t longest = 0;
    const double compile = seconds([&] {
        findComponents(result.network);
        findRepeatedSections(result.network);
        const std::vector<Loop> loops =
            findLoopBasis(SectionGraph(mergeRepeatedSections(result.network).network));
        loopCount = loops.size();
        for (const Loop& loop : loops)
            longest = std::max(longest, loop.sections.size());
    });
    Adjustment adjustment;
    const double adjusted = seconds([&] { adjustment = adjust(result.network); });
    std::size_t grossErrors = 0;
    const double tested = seconds([&] { grossErrors = findGrossErrors(result.network).errors.size(); });
    L1Analysis analysis;
    const double l1 = seconds([&] { analysis = analyseL1(result.network); });
    std::printf("%8d %9zu %8zu %8zu %9.3f %9.3f %9.3f %9.3f %9.3f %5zu %9.3f %9.4f\n", pointCount,
                result.network.sections.size(), loopCount, longest, read, compile, adjusted,
                read + compile + adjusted, tested, grossErrors, l1,
                adjustment.fits[0]->getSigma0().value_or(0.0));
}

} // namespace

int main()
{
    for (const double density : {2.5, 1.6, 1.1}) {
        std::printf("%8s %9s %8s %8s %9s %9s %9s %9s %9s %5s %9s %9s\n", "points", "sections", "loops",
                    "longest", "read s", "compile s", "adjust s", "all s", "tests s", "gross", "L1 s",
                    "sigma0");
        for (const int points : {1000, 3000, 10000, 30000, 100000})
            measure(points, static_cast<int>(points * density));
    }
    return 0;
}
