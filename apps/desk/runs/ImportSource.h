#pragma once

#include "levelling/TableTemplate.h"

#include <QString>

#include <optional>
#include <vector>

namespace orvel::desk {

/// A file to be imported.
struct ImportSource
{
    QString filePath; ///< "-" is the standard input
    /// How a text file is to be read; other files tell what they are.
    std::optional<levelling::TableTemplate> format;
};

/// How imported files enter a project.
enum class ImportMode {
    Replace, ///< they are its network
    Add      ///< they are added to its network
};

/// The sources in their order, parted where one with a template stands beside one without: each part is one
/// run, whose protocol is that of an import with templates or without them.
std::vector<std::vector<ImportSource>> groupSources(const std::vector<ImportSource>& sources);

} // namespace orvel::desk
