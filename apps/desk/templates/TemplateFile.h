#pragma once

#include "levelling/TableTemplate.h"

#include <QByteArray>
#include <QString>

namespace orvel::desk {

/// Templates of text files as JSON files: an object with the keys "separator" or "widths", "decimal",
/// "skipRows", "encoding", "comment", "columns", "units" and "name".
///
/// What is refused is refused in one sentence, which names the key and what is allowed.
namespace templatefile {

/// @throws exceptions::Error if the file cannot be read or is no template
levelling::TableTemplate read(const QString& path);

/// @param defaultName  of a template that tells none
/// @throws exceptions::Error if the bytes are no template
levelling::TableTemplate parse(const QByteArray& json, const QString& defaultName);

QByteArray toJson(const levelling::TableTemplate& format);

} // namespace templatefile

} // namespace orvel::desk
