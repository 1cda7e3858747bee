#include "levelling/LimitedDevice.h"

#include <algorithm>
#include <utility>

namespace levelling {

namespace {

/// Whether numbers and the blanks between them are made of this byte; the zero is half of a character in
/// other encodings.
bool isOfNumbers(char byte)
{
    switch (byte) {
    case '\0':
    case '\t':
    case '\n':
    case '\r':
    case ' ':
    case '+':
    case '-':
    case '.':
        return true;
    default:
        return byte >= '0' && byte <= '9';
    }
}

} // namespace

LimitedDevice::LimitedDevice(QIODevice& device, const Limits& givenLimits, std::function<bool()> stopQuestion)
    : source(device)
    , limits(givenLimits)
    , isStopRequested(std::move(stopQuestion))
    , rest(givenLimits.size)
    , pieceRest(givenLimits.piece)
    , numbersRest(givenLimits.numbers)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

void LimitedDevice::beginPiece()
{
    if (isPieceTooLong())
        return;
    pieceRest = limits.piece;
    numbersRest = limits.numbers;
}

bool LimitedDevice::checkStop()
{
    stopped = stopped || (isStopRequested && isStopRequested());
    return stopped;
}

qint64 LimitedDevice::readData(char* data, qint64 size)
{
    if (checkStop()) {
        hasEnded = true;
        return -1;
    }
    // One byte more than allowed tells a file that ends there from one that goes on.
    const qint64 count = source.read(data, std::min(size, rest + 1));
    if (count > 0) {
        rest -= count;
        countPiece(data, count);
    }
    hasEnded = count <= 0 || isExceeded() || isPieceTooLong();
    return isExceeded() || isPieceTooLong() ? -1 : count;
}

void LimitedDevice::countPiece(const char* data, qint64 count)
{
    numbersRest -= count;
    pieceRest -= count - std::count_if(data, data + count, isOfNumbers);
}

qint64 LimitedDevice::writeData(const char* /*data*/, qint64 /*size*/)
{
    return -1;
}

} // namespace levelling
