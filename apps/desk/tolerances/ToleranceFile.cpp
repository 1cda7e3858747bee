#include "apps/desk/tolerances/ToleranceFile.h"

#include "apps/desk/Desk.h"
#include "apps/desk/runs/NumberTexts.h"
#include "apps/desk/templates/JsonText.h"
#include "host/files/Error.h"

#include <cmath>

namespace orvel::desk {

namespace tolerancefile {

namespace {

const QString kClasses = QStringLiteral("classes");
const QString kSigmaLimit = QStringLiteral("sigmaLimit");
const QString kConfidence = QStringLiteral("confidence");
const QString kHeightDecimals = QStringLiteral("heightDecimals");
const QString kMillimetreDecimals = QStringLiteral("millimetreDecimals");
const QString kLoops = QStringLiteral("loops");
const QString kRepeated = QStringLiteral("repeated");
const QString kFactor = QStringLiteral("k");
const QString kMeasure = QStringLiteral("by");

QJsonObject readObject(const QJsonValue& value, const QString& key, const QStringList& known)
{
    if (!value.isObject())
        jsontext::refuseValue(key, Desk::tr("объект {…} с ключами %1").arg(known.join(QStringLiteral(", "))));
    jsontext::checkKeys(value.toObject(), known, key + QLatin1Char('.'));
    return value.toObject();
}

double readNumber(const QJsonValue& value, const QString& key, double least, double largest)
{
    const double number = value.toDouble(least - 1.0);
    if (!(number >= least && number <= largest))
        jsontext::refuseValue(
            key, Desk::tr("число от %1 до %2").arg(numbers::shortest(least), numbers::shortest(largest)));
    return number;
}

int readDecimals(const QJsonValue& value, const QString& key, int most)
{
    const double number = readNumber(value, key, 0, most);
    if (std::floor(number) != number)
        jsontext::refuseValue(
            key, Desk::tr("целое число от %1 до %2").arg(QString::number(0), QString::number(most)));
    return static_cast<int>(number);
}

void readRule(const QJsonObject& object, const QString& name, const QString& where, ToleranceRule& rule)
{
    if (!object.contains(name))
        return;
    const QString key = where + QLatin1Char('.') + name;
    const QJsonObject fields = readObject(object.value(name), key, {kFactor, kMeasure});
    rule.factor = readNumber(fields.value(kFactor), key + QLatin1Char('.') + kFactor,
                             ToleranceRule::kLeastFactor, ToleranceRule::kLargestFactor);
    const QString measure = fields.value(kMeasure).toString();
    if (measure == QLatin1String("stations"))
        rule.measure = ToleranceMeasure::Stations;
    else if (fields.contains(kMeasure) && measure != QLatin1String("length"))
        jsontext::refuseValue(key + QLatin1Char('.') + kMeasure, QStringLiteral("length, stations"));
}

void readClasses(const QJsonValue& value, ToleranceRules& rules)
{
    QStringList names;
    for (const LevellingClass levellingClass : kLevellingClasses)
        names.append(getClassName(levellingClass));
    const QJsonObject classes = readObject(value, kClasses, names);
    for (const LevellingClass levellingClass : kLevellingClasses) {
        const QString name = getClassName(levellingClass);
        if (!classes.contains(name))
            continue;
        const QString where = kClasses + QLatin1Char('.') + name;
        const QJsonObject limits = readObject(classes.value(name), where, {kLoops, kRepeated});
        readRule(limits, kLoops, where, rules.of(levellingClass).loops);
        readRule(limits, kRepeated, where, rules.of(levellingClass).repeated);
    }
}

} // namespace

ToleranceRules parse(const QByteArray& json)
{
    const QJsonObject object =
        jsontext::parse(json, Desk::tr("файл допусков"),
                        {kClasses, kSigmaLimit, kConfidence, kHeightDecimals, kMillimetreDecimals});
    ToleranceRules rules;
    if (object.contains(kClasses))
        readClasses(object.value(kClasses), rules);
    if (object.contains(kSigmaLimit))
        rules.sigmaLimit = readNumber(object.value(kSigmaLimit), kSigmaLimit,
                                      ToleranceRules::kLeastSigmaLimit, ToleranceRules::kLargestSigmaLimit);
    if (object.contains(kConfidence))
        rules.confidence = readNumber(object.value(kConfidence), kConfidence,
                                      ToleranceRules::kLeastConfidence, ToleranceRules::kLargestConfidence);
    if (object.contains(kHeightDecimals))
        rules.heightDecimals =
            readDecimals(object.value(kHeightDecimals), kHeightDecimals, ToleranceRules::kMostHeightDecimals);
    if (object.contains(kMillimetreDecimals))
        rules.millimetreDecimals = readDecimals(object.value(kMillimetreDecimals), kMillimetreDecimals,
                                                ToleranceRules::kMostMillimetreDecimals);
    return rules;
}

ToleranceRules read(const QString& path)
{
    try {
        return parse(jsontext::readFile(path));
    } catch (const exceptions::Error& error) {
        throw exceptions::Error(
            Desk::tr("Допуски «%1»: %2").arg(path, QString::fromStdWString(error.getText())).toStdWString());
    }
}

} // namespace tolerancefile

} // namespace orvel::desk
