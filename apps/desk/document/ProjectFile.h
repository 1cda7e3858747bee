#pragma once

#include <QString>

#include <memory>

namespace orvel::desk {

class Document;
class ProjectLock;

/// The project file: the network, the protocol's state, and the protocol's data file as it is between runs.
namespace projectfile {

/// Takes the lock of a project file, or shares the document's if that is of this file.
///
/// @return with a warning for the user if it could not be taken, unless the document's could not either
/// @throws qor::CFileException if another program has it
std::shared_ptr<ProjectLock> takeLock(const Document& document, const QString& path);

/// Saves the project into a file, which is the project's from now on.
///
/// @param lock  what the document keeps of the file; may be null
/// @throws qor::CFileException
void save(Document& document, const QString& path, const std::shared_ptr<ProjectLock>& lock = {});

/// Loads a project into an empty document.
///
/// @throws qor::CFileException  its text says what is wrong with the file; the document is unchanged then
void load(Document& document, const QString& path, const std::shared_ptr<ProjectLock>& lock = {});

} // namespace projectfile

} // namespace orvel::desk
