// Field files of levels in M5 and REC_E: whatever stands in them, the lines and sections fit together. The
// first byte of an input chooses the format.

#include "formats/FileKind.h"
#include "levelling/M5LevelReader.h"
#include "tests/fuzz/LevelChecks.h"

#include <QBuffer>

using namespace levelling;

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    if (size == 0)
        return 0;
    QByteArray content(reinterpret_cast<const char*>(data) + 1, static_cast<int>(size - 1));
    formats::recognise(content);
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    checkLevelResult(data[0] == 'r' ? m5levelreader::readRec(buffer, {}) : m5levelreader::readM5(buffer, {}));
    return 0;
}
