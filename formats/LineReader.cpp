#include "formats/LineReader.h"

#include <QTextCodec>

#include <algorithm>
#include <cstring>
#include <utility>

namespace formats {

namespace {

constexpr int kPortion = 1 << 14;
constexpr const char* kByteOrderMark = "\xEF\xBB\xBF"; // of UTF-8

bool isLineEnd(char byte)
{
    return byte == '\n' || byte == '\r';
}

} // namespace

LineReader::LineReader(QIODevice& openDevice, std::function<bool()> stopQuestion)
    : device(openDevice)
    , isStopped(std::move(stopQuestion))
{}

bool LineReader::readNext()
{
    if (!readLine())
        return false;
    if (number == 1 && line.startsWith(kByteOrderMark))
        line.remove(0, static_cast<int>(std::strlen(kByteOrderMark)));
    return true;
}

QString LineReader::decode(const QByteArray& bytes)
{
    QTextCodec::ConverterState state;
    static const QTextCodec* const utf8 = QTextCodec::codecForName("UTF-8");
    const QString text = utf8->toUnicode(bytes.constData(), bytes.size(), &state);
    const bool isValid = state.invalidChars == 0 && state.remainingChars == 0;
    return isValid ? text : QString::fromLatin1(bytes);
}

bool LineReader::readLine()
{
    if (end != End::None)
        return false;
    line.resize(0);
    bool hasBegun = false;
    while (position < buffer.size() || fill()) {
        if (std::exchange(isBehindReturn, false) && buffer.at(position) == '\n') {
            ++position;
            continue;
        }
        const auto* const first = buffer.constData() + position;
        const auto* const last = buffer.constData() + buffer.size();
        const auto* const found = std::find_if(first, last, isLineEnd);
        hasBegun = true;
        line.append(first, static_cast<int>(found - first));
        if (line.size() > kLongestLine)
            return finish(End::LineTooLong);
        position += static_cast<int>(found - first);
        if (found != last) {
            isBehindReturn = *found == '\r';
            ++position;
            ++number;
            return true;
        }
    }
    if (end != End::File || !hasBegun)
        return false;
    ++number;
    return true;
}

bool LineReader::fill()
{
    if (isStopped && isStopped())
        return finish(End::Stopped);
    buffer.resize(kPortion);
    const qint64 count = device.read(buffer.data(), kPortion);
    buffer.resize(static_cast<int>(std::max<qint64>(count, 0)));
    position = 0;
    bytesRead += buffer.size();
    if (bytesRead > kLargestFile)
        return finish(End::FileTooLarge);
    return count > 0 || finish(End::File);
}

bool LineReader::finish(End reason)
{
    end = reason;
    buffer.resize(0);
    position = 0;
    return false;
}

} // namespace formats
