#pragma once

#include <QStringList>

namespace orvel::desk {

/// The files that were used last, newest first, kept in the settings.
namespace recentfiles {

/// Those that still exist.
QStringList get();
void add(const QString& path);
/// The folder of the newest one, or that of the user's documents, or the user's: where to look for the next.
QString getFolder();

} // namespace recentfiles

} // namespace orvel::desk
