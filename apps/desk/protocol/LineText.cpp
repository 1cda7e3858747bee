#include "apps/desk/protocol/LineText.h"

#include <QStringView>

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

namespace orvel::desk {

namespace {

/// The character of a reference without its "&" and ";".
std::optional<uint> findCharacter(const QString& reference)
{
    static const std::array<std::pair<QLatin1String, uint>, 6> named = {
        {{QLatin1String("amp"), '&'},
         {QLatin1String("lt"), '<'},
         {QLatin1String("gt"), '>'},
         {QLatin1String("quot"), '"'},
         {QLatin1String("apos"), '\''},
         {QLatin1String("nbsp"), QChar::Nbsp}}};
    if (reference.startsWith(QLatin1Char('#'))) {
        const bool isHex = reference.midRef(1).startsWith(QLatin1Char('x'), Qt::CaseInsensitive);
        bool isNumber = false;
        const uint code =
            isHex ? reference.midRef(2).toUInt(&isNumber, 16) : reference.midRef(1).toUInt(&isNumber);
        const bool isCharacter = isNumber && code > 0 && code <= QChar::LastValidCodePoint;
        return isCharacter ? std::optional<uint>(code) : std::nullopt;
    }
    const auto* found =
        std::find_if(named.begin(), named.end(), [&](const auto& each) { return reference == each.first; });
    return found == named.end() ? std::nullopt : std::optional<uint>(found->second);
}

/// Appends the reference that begins at `begin`, or its "&". Gives the place behind what was appended.
int appendReference(const QString& html, int begin, QString& text)
{
    constexpr int longest = 10;
    const int end = html.indexOf(QLatin1Char(';'), begin);
    if (end > begin && end - begin <= longest) {
        if (const auto character = findCharacter(html.mid(begin + 1, end - begin - 1))) {
            text += QString::fromUcs4(&*character, 1);
            return end + 1;
        }
    }
    text += QLatin1Char('&');
    return begin + 1;
}

bool isLineBreak(QStringView tag)
{
    return tag.startsWith(QLatin1String("br"), Qt::CaseInsensitive) &&
           (tag.size() == 2 || !tag[2].isLetter());
}

} // namespace

QString toPlainText(const QString& html)
{
    QString text;
    text.reserve(html.size());
    int place = 0;
    while (place < html.size()) {
        const QChar c = html[place];
        const int tagEnd = c == QLatin1Char('<') ? html.indexOf(QLatin1Char('>'), place) : -1;
        if (tagEnd > 0) {
            if (isLineBreak(QStringView(html).mid(place + 1, tagEnd - place - 1)))
                text += QLatin1Char(' ');
            place = tagEnd + 1;
        } else if (c == QLatin1Char('&')) {
            place = appendReference(html, place, text);
        } else {
            text += c;
            ++place;
        }
    }
    return text;
}

} // namespace orvel::desk
