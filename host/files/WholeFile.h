#pragma once

#include "host/host_export.h"

#include <QByteArray>
#include <QString>

/// Files in one go, for those that are known to fit into memory.
namespace files {

/// All that the file holds.
/// @throws qor::CFileException when it can't be opened or read to its end
HOST_EXPORT QByteArray readAll(const QString& path);

/// Makes or replaces the file, as QtFile does.
/// @throws qor::CFileException when that fails; an old file is whole then
HOST_EXPORT void writeAll(const QString& path, const QByteArray& content);

} // namespace files
