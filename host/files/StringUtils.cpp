#include "host/files/StringUtils.h"

namespace utils {

QString toUpperFirst(const QString& text)
{
    const bool startsWithPair =
        text.size() > 1 && text.at(0).isHighSurrogate() && text.at(1).isLowSurrogate();
    const int length = startsWithPair ? 2 : 1;
    return text.left(length).toUpper() + text.mid(length);
}

} // namespace utils
