#pragma once

#include <QByteArray>
#include <QIODevice>

#include <memory>

// Of zstd.
struct ZSTD_CCtx_s;

namespace orvel::desk {

/// Bytes that are kept in compressed form. Lines of a protocol take less than a tenth of their size.
class PackedBytes
{
public:
    /// No bytes.
    PackedBytes() = default;
    explicit PackedBytes(const QByteArray& bytes);

    bool isEmpty() const { return size == 0; }
    /// How many bytes are kept.
    qint64 getPackedSize() const { return packed.size(); }
    QByteArray unpack() const;
    /// Whether the device holds these bytes from where it is to its end. Reads until they differ.
    bool isContentOf(QIODevice& device) const;

private:
    friend class PackingReader;

    QByteArray packed;
    qint64 size = 0; ///< unpacked
};

/// Reads another device, and packs what is read through it.
class PackingReader : public QIODevice
{
    Q_OBJECT

public:
    /// The source is open for reading and outlives the reader.
    explicit PackingReader(QIODevice& sourceDevice);
    ~PackingReader() override;

    /// Reads what is left, and gives all that was read. Nothing is to be read any more.
    PackedBytes finish();

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return source.bytesAvailable(); }

protected:
    qint64 readData(char* data, qint64 maxSize) override;
    qint64 writeData(const char* data, qint64 maxSize) override;

private:
    void pack(const char* data, qint64 count, bool isLast);

    QIODevice& source;
    std::unique_ptr<ZSTD_CCtx_s, void (*)(ZSTD_CCtx_s*)> context;
    PackedBytes result;
};

} // namespace orvel::desk
