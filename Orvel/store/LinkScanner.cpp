#include "Orvel/store/LinkScanner.h"

#include <QString>

namespace {

// Single characters are what Qt searches for fastest, so each search goes for the rarest one of its text and
// looks around from there. Of the end of a link this is the last one: where links begin and never end, there
// is many a "<".

/// Where `text` begins in `in`, at `from` or later; the search goes for the character at `rare` in `text`.
int find(QStringView in, QStringView text, int rare, int from)
{
    const QChar rareChar = text[rare];
    for (auto at = in.indexOf(rareChar, from + rare); at >= 0; at = in.indexOf(rareChar, at + 1)) {
        const int begin = static_cast<int>(at) - rare;
        if (in.mid(begin, text.size()) == text)
            return begin;
    }
    return -1;
}

} // namespace

namespace orvel::links {

std::optional<Range> findAnchor(QStringView text, int from)
{
    const QStringView opening = u"<a";
    const QStringView closing = u"</a>";
    const int begin = find(text, opening, 0, from);
    if (begin < 0)
        return std::nullopt;
    const int end = find(text, closing, 3, begin + static_cast<int>(opening.size()));
    if (end < 0)
        return std::nullopt;
    return Range{begin, end + static_cast<int>(closing.size())};
}

QStringView getItemAnchor(QStringView text, LONGID id)
{
    const QString key = QStringLiteral("id=") + QString::number(id);
    for (auto range = findAnchor(text, 0); range; range = findAnchor(text, range->end)) {
        const QStringView anchor = text.mid(range->begin, range->end - range->begin);
        if (anchor.contains(key))
            return anchor;
    }
    return {};
}

std::optional<Range> findIdDigits(QStringView text, int from)
{
    const QStringView key = u"id=";
    for (int at = find(text, key, 2, from); at >= 0; at = find(text, key, 2, at + 1)) {
        const int begin = at + static_cast<int>(key.size());
        int end = begin;
        while (end < text.size() && text[end].isDigit())
            ++end;
        if (end > begin)
            return Range{begin, end};
    }
    return std::nullopt;
}

} // namespace orvel::links
