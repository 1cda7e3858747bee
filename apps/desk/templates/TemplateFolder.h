#pragma once

#include "levelling/TableTemplate.h"

#include <QString>

#include <vector>

namespace orvel::desk {

/// The templates that the desk keeps, each a JSON file in a folder of the user's data.
namespace templatefolder {

struct KeptTemplate
{
    QString path;
    levelling::TableTemplate format;
};

/// Where the files are.
QString getFolder();

/// Those that can be read, by their names.
std::vector<KeptTemplate> list();

/// Keeps a template, in the place of one of the same name.
///
/// @return its file
/// @throws exceptions::Error
QString keep(const levelling::TableTemplate& format);

/// False if the file is still there.
bool forget(const QString& path);

} // namespace templatefolder

} // namespace orvel::desk
