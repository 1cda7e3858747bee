#include "apps/desk/document/ProjectFile.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/StoredProject.h"
#include "host/files/CFileException.h"
#include "host/files/QtFile.h"

namespace orvel::desk {

namespace projectfile {

namespace {

[[noreturn]] void refuse(const QString& path, const QString& reason)
{
    const QString text = QStringLiteral("%1: %2").arg(path, reason);
    throw qor::CFileException(qor::CFileException::CorruptFile, text.toStdWString());
}

StoredProject readProject(const QString& path)
{
    QtFile file(path);
    file.open(QIODevice::ReadOnly);
    try {
        return storedproject::read(*file.device());
    } catch (const qor::CFileException& error) {
        refuse(path, QString::fromStdWString(error.getDescription()));
    }
}

} // namespace

void save(Document& document, const QString& path)
{
    StoredProject project;
    project.name = document.getProject().getName();
    project.content = document.copyContent();
    project.protocol = SavedProtocol::take(document.getProtocol());

    QtFile file(path);
    file.open(QIODevice::WriteOnly);
    storedproject::write(project, *file.device());
    file.close();
    document.getProject().setFilePath(path);
    document.setModified(false);
}

void load(Document& document, const QString& path)
{
    StoredProject stored = readProject(path);
    // First what can fail.
    const ProtocolState protocol = stored.protocol.unpack();
    if (!document.setContent(std::move(stored.content)))
        refuse(path, Desk::tr("файл проекта повреждён или обрезан"));
    document.setProjectName(stored.name);
    document.getProject().setFilePath(path);
    protocol.write(document.getProtocol());
    document.updateSummary();
    document.setModified(false);
}

} // namespace projectfile

} // namespace orvel::desk
