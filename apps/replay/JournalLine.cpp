#include "apps/replay/JournalLine.h"

#include "apps/replay/JournalError.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <limits>

namespace orvel::replay {

namespace {

[[noreturn]] void failOn(const QString& key, const char* expected)
{
    throw JournalError(QStringLiteral("\"%1\" is not %2").arg(key, QLatin1String(expected)));
}

int toNumber(const QJsonValue& value, const QString& key)
{
    const double number = value.toDouble(std::numeric_limits<double>::quiet_NaN());
    const bool isInRange =
        number >= std::numeric_limits<int>::min() && number <= std::numeric_limits<int>::max();
    if (!isInRange || number != static_cast<int>(number))
        failOn(key, "an integer of 32 bits");
    return static_cast<int>(number);
}

} // namespace

JournalLine::JournalLine(const QByteArray& json)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        throw JournalError(
            QStringLiteral("not JSON: %1 at byte %2").arg(error.errorString()).arg(error.offset));
    if (!document.isObject())
        throw JournalError(QStringLiteral("not a JSON object"));
    object = document.object();
    getText(QStringLiteral("do"));
}

QString JournalLine::getCommand() const
{
    return getText(QStringLiteral("do"));
}

bool JournalLine::has(const QString& key) const
{
    return object.contains(key);
}

QString JournalLine::getText(const QString& key) const
{
    const QJsonValue value = getValue(key);
    if (!value.isString())
        failOn(key, "a text");
    return value.toString();
}

QString JournalLine::getText(const QString& key, const QString& fallback) const
{
    return has(key) ? getText(key) : fallback;
}

bool JournalLine::getFlag(const QString& key, bool fallback) const
{
    if (!has(key))
        return fallback;
    const QJsonValue value = getValue(key);
    if (!value.isBool())
        failOn(key, "true or false");
    return value.toBool();
}

int JournalLine::getNumber(const QString& key) const
{
    return toNumber(getValue(key), key);
}

std::vector<int> JournalLine::getNumbers(const QString& key) const
{
    const QJsonValue value = getValue(key);
    if (!value.isArray())
        failOn(key, "a list");
    std::vector<int> numbers;
    const QJsonArray array = value.toArray();
    for (const QJsonValue& element : array)
        numbers.push_back(toNumber(element, key));
    return numbers;
}

LONGID JournalLine::getId(const QString& key) const
{
    bool isNumber = false;
    const LONGID id = getText(key).toLongLong(&isNumber);
    if (!isNumber)
        failOn(key, "a text of decimal digits that fit 64 bits");
    return id;
}

QJsonValue JournalLine::getValue(const QString& key) const
{
    if (!has(key))
        throw JournalError(QStringLiteral("\"%1\" is missing").arg(key));
    return object.value(key);
}

} // namespace orvel::replay
