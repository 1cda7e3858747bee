#pragma once

#include <QString>

#include <cstddef>

class CProcessMonitor;
class QWidget;

namespace orvel::desk {

/// Message boxes that ask the user something. Each is shown over the parent and waits for the answer.
namespace questions {

enum class Changes { Save, Discard, Keep };

/// Whether to save the changes of a project that is about to be closed; Keep leaves it open.
Changes askForChanges(QWidget* parent, const QString& projectName);

enum class Overwrite { Yes, Elsewhere, No };

/// Whether to save over a file that somebody has changed.
Overwrite askToOverwrite(QWidget* parent, const QString& path);

enum class Import { Replace, Add, Cancel };

/// Whether imported files replace the network of the project or are added to it.
/// @param handChanges  so many changes by hand would be lost with the network
Import askToImport(QWidget* parent, const QString& projectName, std::size_t handChanges);

/// Whether the run may be stopped; yes, too, when it ends meanwhile.
bool mayStopRun(QWidget* parent, CProcessMonitor& monitor);

} // namespace questions

} // namespace orvel::desk
