#pragma once

#include <QIODevice>

#include <functional>

namespace levelling {

/// Gives what another device holds, up to a size, and then fails. It fails as well within a piece that is too
/// long; where a piece begins, its reader tells. And it fails on request.
class LimitedDevice : public QIODevice
{
public:
    struct Limits
    {
        qint64 size = 0;    ///< bytes of all
        qint64 piece = 0;   ///< bytes of a piece that numbers and blanks are not made of
        qint64 numbers = 0; ///< bytes of a piece of any kind
    };

    /// @param device must be open for reading and outlive this one, which is open at once
    /// @param givenLimits  how much it gives
    /// @param stopQuestion  asked before each portion; may be empty
    LimitedDevice(QIODevice& device, const Limits& givenLimits, std::function<bool()> stopQuestion);

    bool isSequential() const override { return true; }
    /// True also behind a failure, where the other device would promise more for ever.
    bool atEnd() const override { return hasEnded || source.atEnd(); }
    /// The next piece begins about here: what its reader has read ahead counts for the piece before.
    void beginPiece();
    /// More was there than was to be read.
    bool isExceeded() const { return rest < 0; }
    bool isPieceTooLong() const { return pieceRest < 0 || numbersRest < 0; }
    /// Asks whether to stop; once it was said, that stands.
    bool checkStop();
    bool isStopped() const { return stopped; }

protected:
    qint64 readData(char* data, qint64 size) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    void countPiece(const char* data, qint64 count);

    QIODevice& source;
    const Limits limits;
    const std::function<bool()> isStopRequested;
    qint64 rest;
    qint64 pieceRest;
    qint64 numbersRest;
    bool hasEnded = false;
    bool stopped = false;
};

} // namespace levelling
