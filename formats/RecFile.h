#pragma once

#include "formats/M5File.h"

#include <optional>

namespace formats {

/// Reads REC_E (REC 500) files of digital levels: what M5 files hold, without bars between the fields and
/// without units:
///
///        65 Start-Line       BFFB    101
///        67     5090    0            101 Rb        2.384 HD        23.21
///
/// The address is followed by the point or a text, then by up to three values, each by its type identifier.
/// A record is what an M5 file would have: "KD1" with the point in the first eight columns, "TO" with a text.
class RecFile : public M5File
{
public:
    /// @param device  is open for reading and outlives this object
    /// @param isStopped  see LineReader
    explicit RecFile(QIODevice& device, std::function<bool()> isStopped = {});

    /// Reads one line.
    static std::optional<M5Record> parse(const QByteArray& line);
    /// Whether a level writes such texts, about its lines and what it measures in them.
    static bool isLevelText(const QString& information);
    /// Whether the first bytes of a file have records of a level.
    static bool isLevelFile(QByteArray start);
};

} // namespace formats
