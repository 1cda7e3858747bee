#include "Orvel/store/LinkScanner.h"

namespace {

int indexOf(QStringView text, QStringView needle, int from)
{
    return static_cast<int>(text.indexOf(needle, from));
}

} // namespace

namespace links {

std::optional<Range> findAnchor(QStringView text, int from)
{
    const QStringView opening = u"<a";
    const QStringView closing = u"</a>";
    const int begin = indexOf(text, opening, from);
    if (begin < 0)
        return std::nullopt;
    const int end = indexOf(text, closing, begin + static_cast<int>(opening.size()));
    if (end < 0)
        return std::nullopt;
    return Range{begin, end + static_cast<int>(closing.size())};
}

std::optional<Range> findIdDigits(QStringView text, int from)
{
    const QStringView key = u"id=";
    for (int at = indexOf(text, key, from); at >= 0; at = indexOf(text, key, at + 1)) {
        const int begin = at + static_cast<int>(key.size());
        int end = begin;
        while (end < text.size() && text[end].isDigit())
            ++end;
        if (end > begin)
            return Range{begin, end};
    }
    return std::nullopt;
}

} // namespace links
