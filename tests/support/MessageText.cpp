#include "tests/support/MessageText.h"

#include <QRegularExpression>

namespace {

template<typename Number>
QString joined(const std::vector<Number>& numbers)
{
    QStringList texts;
    for (const Number number : numbers)
        texts.append(QString::number(number));
    return texts.join(QLatin1Char(','));
}

} // namespace

QString describe(const COVMessage& message)
{
    return QStringLiteral("ptype=%1 mtype=%2 stage=%3 ids=%4 types=%5 text=%6")
        .arg(QString::number(message.protocolType), QString::number(message.messageType),
             QString::number(message.stage), joined(message.itemIds), joined(message.itemTypes),
             message.text);
}

QStringList describe(const std::map<int, std::vector<COVMessage>>& store)
{
    QStringList lines;
    for (const auto& entry : store) {
        for (const COVMessage& message : entry.second)
            lines.append(describe(message));
    }
    return lines;
}

QString withoutDates(QString text)
{
    static const QRegularExpression date(
        QStringLiteral(R"([0-9]{2}\.[0-9]{2}\.[0-9]{4} [0-9]{2}:[0-9]{2}:[0-9]{2})"));
    return text.replace(date, QStringLiteral("DATE"));
}

QString carried(QString text)
{
    for (int i = 0; i < text.size(); ++i) {
        const QChar c = text[i];
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            ++i;
        else if (c.isSurrogate() || c.unicode() >= 0xFFFE)
            text[i] = QChar::ReplacementCharacter;
    }
    return text;
}
