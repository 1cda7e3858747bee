// Field files of levels in GSI: whatever stands in them, the lines and sections fit together, and small
// networks can be adjusted. Recognising a file never fails.

#include "formats/FileKind.h"
#include "levelling/Adjustment.h"
#include "levelling/GsiLevelReader.h"
#include "levelling/HeldPoints.h"
#include "tests/fuzz/LevelChecks.h"

#include <QBuffer>

using namespace levelling;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    QByteArray content(reinterpret_cast<const char*>(data), static_cast<int>(size));
    formats::recognise(content);
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    LevelResult result = gsilevelreader::read(buffer, {});
    checkLevelResult(result);
    Network& network = result.file.network;
    if (network.sections.empty() || network.sections.size() > 30)
        return 0;
    holdPartsWithoutDatum(network, std::vector<bool>(network.sections.size(), true));
    const Adjustment adjustment = adjust(network);
    if (adjustment.status == AdjustmentStatus::Ok) {
        for (const auto& point : adjustment.points)
            mustHold(point && std::isfinite(point->height), "every height is determined");
    }
    return 0;
}
