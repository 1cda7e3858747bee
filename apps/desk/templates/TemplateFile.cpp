#include "apps/desk/templates/TemplateFile.h"

#include "apps/desk/Desk.h"
#include "apps/desk/templates/JsonText.h"
#include "apps/desk/templates/TemplateTexts.h"
#include "host/files/Error.h"

#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>

namespace orvel::desk {

namespace templatefile {

namespace {

using jsontext::checkKeys;
using jsontext::refuseValue;
using levelling::ColumnRole;
using levelling::DifferenceUnit;
using levelling::LengthUnit;
using levelling::TableTemplate;

constexpr int kMostColumns = 1000;
constexpr int kMostRows = 1000000;
constexpr int kLongestComment = 10;

const QStringList kKeys{QStringLiteral("name"),    QStringLiteral("separator"), QStringLiteral("widths"),
                        QStringLiteral("decimal"), QStringLiteral("skipRows"),  QStringLiteral("encoding"),
                        QStringLiteral("comment"), QStringLiteral("columns"),   QStringLiteral("units")};

[[noreturn]] void refuse(const QString& reason)
{
    throw exceptions::Error(reason.toStdWString());
}

QString readText(const QJsonObject& object, const QString& key, const QString& absent, const QString& allowed)
{
    const QJsonValue value = object.value(key);
    if (value.isUndefined())
        return absent;
    if (!value.isString() || value.toString().isEmpty())
        refuseValue(key, allowed);
    return value.toString();
}

int readCount(const QJsonValue& value, const QString& key, int least, int most)
{
    const double number = value.toDouble(-1.0);
    if (number < least || number > most || std::floor(number) != number)
        refuseValue(key,
                    Desk::tr("целое число от %1 до %2").arg(QString::number(least), QString::number(most)));
    return static_cast<int>(number);
}

QJsonArray readArray(const QJsonObject& object, const QString& key, const QString& allowed)
{
    const QJsonValue value = object.value(key);
    const QJsonArray array = value.toArray();
    if (!value.isArray() || array.isEmpty() || array.size() > kMostColumns)
        refuseValue(key, allowed);
    return array;
}

void readDivision(const QJsonObject& object, formats::TableSyntax& syntax)
{
    const bool hasSeparator = object.contains(QStringLiteral("separator"));
    const bool hasWidths = object.contains(QStringLiteral("widths"));
    if (hasSeparator == hasWidths)
        refuse(Desk::tr("нужен один из ключей separator (знак между столбцами) и widths (ширины столбцов)"));
    if (hasSeparator) {
        const QString allowed = Desk::tr("один знак, например «;», «,», «|», пробел или табуляция");
        const QString separator = readText(object, QStringLiteral("separator"), QString(), allowed);
        if (separator.size() != 1)
            refuseValue(QStringLiteral("separator"), allowed);
        syntax.separator = separator[0];
        return;
    }
    for (const QJsonValue width : readArray(object, QStringLiteral("widths"), Desk::tr("список целых чисел")))
        syntax.widths.push_back(
            readCount(width, QStringLiteral("widths"), 1, formats::TextTable::kLongestLine));
}

QByteArray readEncoding(const QJsonObject& object)
{
    const QString allowed =
        Desk::tr("UTF-8, windows-1251, UTF-16, system или другое известное имя кодировки");
    const QByteArray encoding =
        readText(object, QStringLiteral("encoding"), QStringLiteral("UTF-8"), allowed).toUtf8();
    if (!formats::findCodec(encoding))
        refuseValue(QStringLiteral("encoding"), allowed);
    return encoding;
}

QString readComment(const QJsonObject& object)
{
    const QJsonValue value = object.value(QStringLiteral("comment"));
    if (value.isUndefined())
        return formats::TableSyntax().comment;
    if (!value.isString() || value.toString().size() > kLongestComment)
        refuseValue(QStringLiteral("comment"), Desk::tr("не больше %1 знаков").arg(kLongestComment));
    return value.toString().trimmed();
}

std::vector<ColumnRole> readColumns(const QJsonObject& object)
{
    QStringList names;
    for (const ColumnRole role : levelling::getRoles())
        names.append(levelling::getRoleName(role));
    const QString allowed = Desk::tr("список из %1").arg(names.join(QStringLiteral(", ")));
    std::vector<ColumnRole> columns;
    for (const QJsonValue value : readArray(object, QStringLiteral("columns"), allowed)) {
        const std::optional<ColumnRole> role = levelling::findRole(value.toString());
        if (!role)
            refuseValue(QStringLiteral("columns"), allowed);
        columns.push_back(*role);
    }
    return columns;
}

void readUnits(const QJsonObject& object, TableTemplate& format)
{
    const QString key = QStringLiteral("units");
    const QJsonValue value = object.value(key);
    if (value.isUndefined())
        return;
    if (!value.isObject())
        refuseValue(key, QStringLiteral("{\"dh\": \"m|cm|mm\", \"length\": \"km|m\"}"));
    const QJsonObject units = value.toObject();
    const QString difference = QStringLiteral("dh");
    const QString length = QStringLiteral("length");
    checkKeys(units, {difference, length}, key + QLatin1Char('.'));

    const QString differenceName = units.value(difference).toString();
    if (differenceName == QLatin1String("cm"))
        format.differenceUnit = DifferenceUnit::Centimetre;
    else if (differenceName == QLatin1String("mm"))
        format.differenceUnit = DifferenceUnit::Millimetre;
    else if (units.contains(difference) && differenceName != QLatin1String("m"))
        refuseValue(QStringLiteral("units.dh"), QStringLiteral("m, cm, mm"));

    const QString lengthName = units.value(length).toString();
    if (lengthName == QLatin1String("m"))
        format.lengthUnit = LengthUnit::Metre;
    else if (units.contains(length) && lengthName != QLatin1String("km"))
        refuseValue(QStringLiteral("units.length"), QStringLiteral("km, m"));
}

} // namespace

TableTemplate parse(const QByteArray& json, const QString& defaultName)
{
    const QJsonObject object = jsontext::parse(json, Desk::tr("шаблон"), kKeys);
    TableTemplate format;
    format.name = readText(object, QStringLiteral("name"), defaultName, Desk::tr("непустое имя"));
    readDivision(object, format.syntax);
    const QString decimal =
        readText(object, QStringLiteral("decimal"), QStringLiteral("."), QStringLiteral("«.», «,»"));
    if (decimal != QLatin1String(".") && decimal != QLatin1String(","))
        refuseValue(QStringLiteral("decimal"), QStringLiteral("«.», «,»"));
    format.decimal = decimal[0];
    if (object.contains(QStringLiteral("skipRows")))
        format.syntax.skipRows =
            readCount(object.value(QStringLiteral("skipRows")), QStringLiteral("skipRows"), 0, kMostRows);
    format.syntax.encoding = readEncoding(object);
    format.syntax.comment = readComment(object);
    format.columns = readColumns(object);
    readUnits(object, format);
    if (const auto fault = levelling::findFault(format))
        refuse(templatetexts::describeFault(format, *fault));
    return format;
}

TableTemplate read(const QString& path)
{
    try {
        return parse(jsontext::readFile(path), QFileInfo(path).completeBaseName());
    } catch (const exceptions::Error& error) {
        refuse(Desk::tr("Шаблон «%1»: %2").arg(path, QString::fromStdWString(error.getText())));
    }
}

QByteArray toJson(const TableTemplate& format)
{
    QJsonObject object;
    object.insert(QStringLiteral("name"), format.name);
    if (format.syntax.widths.empty()) {
        object.insert(QStringLiteral("separator"), QString(format.syntax.separator));
    } else {
        QJsonArray widths;
        for (const int width : format.syntax.widths)
            widths.append(width);
        object.insert(QStringLiteral("widths"), widths);
    }
    object.insert(QStringLiteral("decimal"), QString(format.decimal));
    object.insert(QStringLiteral("skipRows"), format.syntax.skipRows);
    object.insert(QStringLiteral("encoding"), QString::fromUtf8(format.syntax.encoding));
    object.insert(QStringLiteral("comment"), format.syntax.comment);
    QJsonArray columns;
    for (const ColumnRole role : format.columns)
        columns.append(levelling::getRoleName(role));
    object.insert(QStringLiteral("columns"), columns);
    object.insert(QStringLiteral("units"),
                  QJsonObject{{QStringLiteral("dh"), levelling::getUnitName(format.differenceUnit)},
                              {QStringLiteral("length"), levelling::getUnitName(format.lengthUnit)}});
    return QJsonDocument(object).toJson();
}

} // namespace templatefile

} // namespace orvel::desk
