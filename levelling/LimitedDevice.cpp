#include "levelling/LimitedDevice.h"

#include <algorithm>

namespace levelling {

LimitedDevice::LimitedDevice(QIODevice& device, qint64 largestSize) : source(device), rest(largestSize)
{
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

qint64 LimitedDevice::readData(char* data, qint64 size)
{
    // One byte more than allowed tells a file that ends there from one that goes on.
    const qint64 count = source.read(data, std::min(size, rest + 1));
    if (count > 0)
        rest -= count;
    hasEnded = count <= 0 || isExceeded();
    return isExceeded() ? -1 : count;
}

qint64 LimitedDevice::writeData(const char* /*data*/, qint64 /*size*/)
{
    return -1;
}

} // namespace levelling
