#include "apps/desk/templates/JsonText.h"

#include "apps/common/InputFile.h"
#include "apps/desk/Desk.h"
#include "host/files/Error.h"
#include "host/files/StringUtils.h"

#include <QJsonDocument>

namespace orvel::desk {

namespace jsontext {

namespace {

constexpr qint64 kLargestFile = qint64(1) << 20; // bytes

[[noreturn]] void refuse(const QString& reason)
{
    throw exceptions::Error(reason.toStdWString());
}

/// The line of a place in the bytes.
int findLine(const QByteArray& bytes, int offset)
{
    return 1 + bytes.left(offset).count('\n');
}

} // namespace

QByteArray readFile(const QString& path)
{
    apps::InputFile file(path);
    QByteArray json;
    if (file.open(QIODevice::ReadOnly))
        json = file.read(kLargestFile + 1);
    if (file.error() != QFileDevice::NoError)
        refuse(Desk::tr("файл не читается: %1").arg(utils::describeReason(file.errorString())));
    if (json.size() > kLargestFile)
        refuse(Desk::tr("файл больше 1\u00A0МиБ"));
    return json;
}

QJsonObject parse(const QByteArray& json, const QString& whatItIs, const QStringList& keys)
{
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        refuse(Desk::tr("это не JSON, ошибка в строке %1").arg(findLine(json, error.offset)));
    if (!document.isObject())
        refuse(
            Desk::tr("%1 — это объект JSON {…} с ключами %2").arg(whatItIs, keys.join(QStringLiteral(", "))));
    checkKeys(document.object(), keys, QString());
    return document.object();
}

void checkKeys(const QJsonObject& object, const QStringList& known, const QString& where)
{
    for (const QString& key : object.keys()) {
        if (!known.contains(key))
            refuse(Desk::tr("неизвестный ключ «%1»: допустимы %2")
                       .arg(where + key, known.join(QStringLiteral(", "))));
    }
}

void refuseValue(const QString& key, const QString& allowed)
{
    refuse(Desk::tr("непригодное значение ключа «%1»: допустимо %2").arg(key, allowed));
}

} // namespace jsontext

} // namespace orvel::desk
