#pragma once

#include <QString>

namespace orvel::desk {

class Document;

/// The project file: the network, the protocol's state, and the protocol's data file as it is between runs.
namespace projectfile {

/// Saves the project into a file. Throws qor::CFileException.
void save(Document& document, const QString& path);

/// Loads a project into an empty document. Throws qor::CFileException, whose text says what is wrong with the
/// file; the document is unchanged then.
void load(Document& document, const QString& path);

} // namespace projectfile

} // namespace orvel::desk
