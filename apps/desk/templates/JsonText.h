#pragma once

#include <QByteArray>
#include <QJsonObject>
#include <QString>
#include <QStringList>

namespace orvel::desk {

/// JSON that users write: what is wrong with it is said in a sentence.
namespace jsontext {

/// The content of a small file.
///
/// @throws exceptions::Error  a sentence without the file's name
QByteArray readFile(const QString& path);

/// The object that the text is.
///
/// @param whatItIs  begins the sentence about a text that is none, as "шаблон"
/// @param keys      that the object may have
/// @throws exceptions::Error
QJsonObject parse(const QByteArray& json, const QString& whatItIs, const QStringList& keys);

/// Refuses keys that nobody knows.
///
/// @param where  stands before the key in the sentence
/// @throws exceptions::Error
void checkKeys(const QJsonObject& object, const QStringList& known, const QString& where);

/// Refuses the value of a key.
///
/// @throws exceptions::Error
[[noreturn]] void refuseValue(const QString& key, const QString& allowed);

} // namespace jsontext

} // namespace orvel::desk
