#pragma once

#include <QString>

#include <vector>

namespace orvel {

/// Decodes UTF-8 strictly, and many short texts fast: it reserves memory once for all of them, and for each
/// result exactly what that needs.
class Utf8Decoder
{
public:
    /// Decodes the bytes from `begin` up to `end` into `text`. False, with `text` as it was, for bytes that
    /// are no UTF-8 and for U+FFFE and U+FFFF, which no XML can hold. A byte order mark is a character like
    /// others.
    bool decode(const char* begin, const char* end, QString& text);

private:
    std::vector<QChar> units;
};

} // namespace orvel
