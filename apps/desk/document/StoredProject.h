#pragma once

#include "Orvel/store/SavedProtocol.h"
#include "apps/desk/document/Document.h"

#include <QByteArray>
#include <QString>

class QIODevice;

namespace orvel::desk {

/// All that a project file holds.
struct StoredProject
{
    QString name;
    Document::Content content;
    SavedProtocol protocol;
};

namespace storedproject {

/// Writes the project as a file: signature, version, content, and the content's checksum.
///
/// @throws qor::CFileException
void write(const StoredProject& project, QIODevice& device);

/// Whether a file that begins so is one of a project.
bool isProject(const QByteArray& start);

/// Reads what write() wrote. That the network makes sense is for Document::setContent() to find out.
///
/// @throws qor::CFileException  its description says what is wrong with the file
StoredProject read(QIODevice& device);

} // namespace storedproject

} // namespace orvel::desk
