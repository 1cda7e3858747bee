#pragma once

#include "apps/desk/runs/DeskRun.h"

#include <QString>

#include <optional>
#include <vector>

namespace orvel::desk {

/// A kind of file that the desk exports, told by its suffix.
struct ExportFormat
{
    QString suffix;     ///< lower case, without the dot
    QString title;      ///< what the file holds, for file dialogs
    QString optionText; ///< the same behind its suffix in --help
    /// Whether there is something to export; null if any network will do.
    bool (*isAvailable)(const Document& document) = nullptr;
    DeskRun (*make)(const Document& document, const QString& filePath) = nullptr;
};

namespace exportformats {

/// The formats in the order in which they are offered.
std::vector<ExportFormat> getFormats();

/// The format of a file: CSV where it has no suffix, as the standard output; none for an unknown suffix.
std::optional<ExportFormat> find(const QString& filePath);

/// One sentence that tells which files there are instead of that one.
QString describeUnknown(const QString& filePath);

} // namespace exportformats

} // namespace orvel::desk
