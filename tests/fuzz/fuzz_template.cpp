// Text files and their templates: a template is one that files can be read by, or refused in a sentence; rows
// give a network as the computations need it, or one failure and nothing else; and the beginning of any file
// gives a guess. The bytes up to the first zero are the template, those behind it the file.

#include "apps/desk/templates/TemplateFile.h"
#include "host/files/Error.h"
#include "levelling/NetworkMerge.h"
#include "levelling/TemplateGuess.h"
#include "levelling/TemplateReader.h"
#include "tests/fuzz/Finding.h"

#include <QBuffer>

#include <algorithm>
#include <cmath>

using namespace levelling;
using namespace orvel::desk;

namespace {

void checkNetwork(const Network& network)
{
    const auto pointCount = static_cast<int>(network.points.size());
    for (const Point& point : network.points) {
        mustHold(!point.id.isEmpty(), "a point has a name");
        mustHold(point.height || !point.isBenchmark(), "a benchmark has a height");
        mustHold(!point.fixed || !point.observed, "a height is held or observed");
        mustHold(!point.height || std::isfinite(*point.height), "a height is a number");
        mustHold(point.x.has_value() == point.y.has_value(), "a place has two coordinates");
    }
    for (const Section& section : network.sections) {
        mustHold(section.from >= 0 && section.from < pointCount, "a section begins at a point");
        mustHold(section.to >= 0 && section.to < pointCount, "a section ends at a point");
        mustHold(section.from != section.to, "a section has two ends");
        mustHold(std::isfinite(section.difference), "a difference is a number");
        mustHold(std::isfinite(section.sigma) && section.sigma > 0.0, "a sigma is positive");
    }
    for (const ObservedHeights& observed : network.observedHeights) {
        mustHold(observed.covariance.size() == observed.points.size() * observed.points.size(),
                 "each pair of heights has a covariance");
        for (const int point : observed.points)
            mustHold(network.points[static_cast<std::size_t>(point)].observed, "an observed height is one");
    }
}

TableResult readFile(QByteArray content, const TableTemplate& format)
{
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    TableResult result = TemplateReader::read(buffer, format);
    if (result.fatal)
        mustHold(result.network.points.empty() && result.problems.empty(), "a failure comes alone");
    mustHold(std::is_sorted(result.problems.begin(), result.problems.end(),
                            [](const Problem& a, const Problem& b) { return a.line < b.line; }),
             "the problems are in the order of their lines");
    checkNetwork(result.network);
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    const QByteArray input(reinterpret_cast<const char*>(data), static_cast<int>(size));
    const int end = input.indexOf('\0') < 0 ? input.size() : input.indexOf('\0');
    const QByteArray content = input.mid(end + 1);
    TableTemplate format = guessTemplate(content);
    try {
        format = templatefile::parse(input.left(end), QStringLiteral("name"));
        mustHold(!findFault(format), "a template that was read has no fault");
        const TableTemplate again = templatefile::parse(templatefile::toJson(format), QString());
        mustHold(templatefile::toJson(again) == templatefile::toJson(format),
                 "a template is written as it was read");
    } catch (const exceptions::Error& error) {
        mustHold(!error.getText().empty(), "a refusal has a reason");
        if (findFault(format))
            return 0;
    }
    const TableResult first = readFile(content, format);
    Network network = first.network;
    addNetwork(network, first.network);
    mustHold(network.points.size() == first.network.points.size(), "points of one name are one point");
    checkNetwork(network);
    return 0;
}
