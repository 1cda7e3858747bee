#include "apps/desk/document/PackedBytes.h"

#include <QBuffer>

#include <cstring>
#include <functional>
#include <new>
#include <vector>
#include <zstd.h>

namespace orvel::desk {

namespace {

// The fastest level takes the text of protocols to a fifteenth.
constexpr int kLevel = 1;
constexpr qint64 kPieceSize = 1 << 18;

/// zstd fails in memory for want of memory only.
std::size_t check(std::size_t result)
{
    if (ZSTD_isError(result) != 0)
        throw std::bad_alloc();
    return result;
}

/// Unpacks piece by piece, until there is no more or somebody has enough.
void unpackPieces(const QByteArray& packed, const std::function<bool(const char* data, qint64 count)>& take)
{
    const std::unique_ptr<ZSTD_DCtx, std::size_t (*)(ZSTD_DCtx*)> context(ZSTD_createDCtx(), &ZSTD_freeDCtx);
    if (!context)
        throw std::bad_alloc();
    std::vector<char> piece(static_cast<std::size_t>(kPieceSize));
    ZSTD_inBuffer input = {packed.constData(), static_cast<std::size_t>(packed.size()), 0};
    bool isWanted = true;
    while (isWanted && input.pos < input.size) {
        ZSTD_outBuffer output = {piece.data(), piece.size(), 0};
        check(ZSTD_decompressStream(context.get(), &output, &input));
        isWanted = take(piece.data(), static_cast<qint64>(output.pos));
    }
}

} // namespace

PackedBytes::PackedBytes(const QByteArray& bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    *this = PackingReader(buffer).finish();
}

QByteArray PackedBytes::unpack() const
{
    QByteArray bytes;
    bytes.reserve(static_cast<int>(size));
    unpackPieces(packed, [&bytes](const char* data, qint64 count) {
        bytes.append(data, static_cast<int>(count));
        return true;
    });
    return bytes;
}

bool PackedBytes::isContentOf(QIODevice& device) const
{
    std::vector<char> other(static_cast<std::size_t>(kPieceSize));
    bool isSame = true;
    unpackPieces(packed, [&](const char* data, qint64 count) {
        isSame = device.read(other.data(), count) == count &&
                 std::memcmp(data, other.data(), static_cast<std::size_t>(count)) == 0;
        return isSame;
    });
    return isSame && device.read(other.data(), 1) <= 0;
}

PackingReader::PackingReader(QIODevice& sourceDevice)
    : source(sourceDevice)
    , context(ZSTD_createCCtx(), [](ZSTD_CCtx* made) { ZSTD_freeCCtx(made); })
{
    if (!context)
        throw std::bad_alloc();
    check(ZSTD_CCtx_setParameter(context.get(), ZSTD_c_compressionLevel, kLevel));
    open(ReadOnly | Unbuffered);
}

PackingReader::~PackingReader() = default;

PackedBytes PackingReader::finish()
{
    std::vector<char> piece(static_cast<std::size_t>(kPieceSize));
    while (read(piece.data(), kPieceSize) > 0) {
        // Packing is what it is read for.
    }
    pack(nullptr, 0, true);
    result.packed.squeeze();
    return result;
}

qint64 PackingReader::readData(char* data, qint64 maxSize)
{
    const qint64 count = source.read(data, maxSize);
    if (count > 0)
        pack(data, count, false);
    return count;
}

qint64 PackingReader::writeData(const char* /*data*/, qint64 /*maxSize*/)
{
    return -1;
}

void PackingReader::pack(const char* data, qint64 count, bool isLast)
{
    std::vector<char> piece(ZSTD_CStreamOutSize());
    ZSTD_inBuffer input = {data, static_cast<std::size_t>(count), 0};
    std::size_t left = 0;
    do {
        ZSTD_outBuffer output = {piece.data(), piece.size(), 0};
        left = check(
            ZSTD_compressStream2(context.get(), &output, &input, isLast ? ZSTD_e_end : ZSTD_e_continue));
        result.packed.append(piece.data(), static_cast<int>(output.pos));
    } while (input.pos < input.size || (isLast && left > 0));
    result.size += count;
}

} // namespace orvel::desk
