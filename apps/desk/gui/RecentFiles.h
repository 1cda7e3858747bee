#pragma once

#include <QStringList>

/// The files that were used last, newest first, kept in the settings.
namespace recentfiles {

/// Those that still exist.
QStringList get();
void add(const QString& path);

} // namespace recentfiles
