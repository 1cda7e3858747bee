#include "Orvel/store/Utf8Decoder.h"

#include <cstring>

namespace orvel {

namespace {

constexpr int kBlockSize = 16;

/// Whether the `kBlockSize` bytes at `at` are ASCII.
bool isAsciiBlock(const char* at)
{
    quint64 halves[2];
    std::memcpy(halves, at, sizeof(halves));
    return ((halves[0] | halves[1]) & 0x8080808080808080U) == 0;
}

/// Bytes from `at` on, up to `end`, as the characters that they stand for.
struct Input
{
    const char* at;
    const char* const end;

    uint byte(int offset) const { return static_cast<uchar>(at[offset]); }

    /// Whether the bytes at `at` are followed by `count` continuation bytes.
    bool isContinued(int count) const
    {
        if (end - at <= count)
            return false;
        for (int i = 1; i <= count; ++i) {
            if ((byte(i) & 0xC0) != 0x80)
                return false;
        }
        return true;
    }

    uint continuation(int offset) const { return byte(offset) & 0x3F; }
};

QChar* put(uint unit, QChar* to)
{
    *to = QChar(static_cast<ushort>(unit));
    return to + 1;
}

/// The characters of up to 0x7F, one byte each.
QChar* decodeOneByte(Input& in, QChar* to)
{
    for (; in.end - in.at >= kBlockSize && isAsciiBlock(in.at); in.at += kBlockSize) {
        for (int i = 0; i < kBlockSize; ++i)
            to = put(in.byte(i), to);
    }
    for (; in.at != in.end && in.byte(0) < 0x80; ++in.at)
        to = put(in.byte(0), to);
    return to;
}

/// The characters from 0x80 to 0x7FF, two bytes each.
QChar* decodeTwoBytes(Input& in, QChar* to)
{
    for (; in.at != in.end && in.byte(0) >= 0xC2 && in.byte(0) < 0xE0 && in.isContinued(1); in.at += 2)
        to = put((in.byte(0) & 0x1F) << 6 | in.continuation(1), to);
    return to;
}

/// The character of three or four bytes that comes next; null when there is none.
QChar* decodeLonger(Input& in, QChar* to)
{
    if (in.byte(0) < 0xF0 && in.isContinued(2)) {
        const uint c = (in.byte(0) & 0x0F) << 12 | in.continuation(1) << 6 | in.continuation(2);
        const bool isAllowed = in.byte(0) >= 0xE0 && c >= 0x800 && !QChar::isSurrogate(c) && c < 0xFFFE;
        in.at += 3;
        return isAllowed ? put(c, to) : nullptr;
    }
    if (in.byte(0) >= 0xF0 && in.isContinued(3)) {
        const uint c = (in.byte(0) & 0x0F) << 18 | in.continuation(1) << 12 | in.continuation(2) << 6 |
                       in.continuation(3);
        const bool isAllowed =
            in.byte(0) < 0xF8 && QChar::requiresSurrogates(c) && c <= QChar::LastValidCodePoint;
        in.at += 4;
        return isAllowed ? put(QChar::lowSurrogate(c), put(QChar::highSurrogate(c), to)) : nullptr;
    }
    return nullptr;
}

} // namespace

bool Utf8Decoder::decode(const char* begin, const char* end, QString& text)
{
    const auto size = static_cast<std::size_t>(end - begin);
    if (units.size() < size)
        units.resize(size);
    Input in{begin, end};
    QChar* to = units.data();
    while (in.at != in.end) {
        to = decodeTwoBytes(in, decodeOneByte(in, to));
        if (in.at != in.end && in.byte(0) >= 0x80) {
            to = decodeLonger(in, to);
            if (!to)
                return false;
        }
    }
    text = QString(units.data(), static_cast<int>(to - units.data()));
    return true;
}

} // namespace orvel
