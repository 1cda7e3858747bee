#pragma once

#include <QIODevice>

namespace levelling {

/// Gives what another device holds, up to a size, and then fails.
class LimitedDevice : public QIODevice
{
public:
    /// `device` must be open for reading and outlive this one, which is open at once.
    LimitedDevice(QIODevice& device, qint64 largestSize);

    bool isSequential() const override { return true; }
    /// True also behind a failure, where the other device would promise more for ever.
    bool atEnd() const override { return hasEnded || source.atEnd(); }
    /// More was there than was to be read.
    bool isExceeded() const { return rest < 0; }

protected:
    qint64 readData(char* data, qint64 size) override;
    qint64 writeData(const char* data, qint64 size) override;

private:
    QIODevice& source;
    qint64 rest;
    bool hasEnded = false;
};

} // namespace levelling
