#pragma once

#include <QByteArray>

class QIODevice;

namespace formats {

/// What a file holds.
enum class FileKind {
    Unknown,
    Xml,             ///< a network as gama-local XML, or some other XML
    GsiLevel,        ///< GSI of a digital level
    GsiTotalStation, ///< GSI of a total station: measurements, or coordinates of points
    M5Level,         ///< M5 of a digital level
    M5TotalStation,  ///< M5 of a total station: measurements, or coordinates of points
    RecLevel,        ///< REC_E of a digital level: records as in M5, without the columns
};

/// Bytes that tell of what kind a file is.
constexpr int kRecognisedSize = 1 << 16;

/// Tells it by the first bytes of the file: names of files say little, and the standard input has none.
FileKind recognise(const QByteArray& start);
/// The same of a device that is open for reading, and has given nothing yet. It will give everything still.
FileKind recognise(QIODevice& device);

} // namespace formats
