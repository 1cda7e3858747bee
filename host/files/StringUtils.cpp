#include "host/files/StringUtils.h"

namespace utils {

QString toUpperFirst(const QString& text)
{
    const bool startsWithPair =
        text.size() > 1 && text.at(0).isHighSurrogate() && text.at(1).isLowSurrogate();
    const int length = startsWithPair ? 2 : 1;
    return text.left(length).toUpper() + text.mid(length);
}

QString escapeControls(const QString& text)
{
    QString line;
    for (const QChar character : text) {
        const ushort code = character.unicode();
        if (character == QLatin1Char('\n'))
            line += QLatin1String("\\n");
        else if (character == QLatin1Char('\t'))
            line += QLatin1String("\\t");
        else if (character.category() == QChar::Other_Control)
            line += QStringLiteral("\\x%1").arg(code, 2, 16, QLatin1Char('0'));
        else if (character.category() == QChar::Other_Format ||
                 character.category() == QChar::Separator_Line ||
                 character.category() == QChar::Separator_Paragraph)
            line += QStringLiteral("\\u%1").arg(code, 4, 16, QLatin1Char('0'));
        else
            line += character;
    }
    return line;
}

} // namespace utils
