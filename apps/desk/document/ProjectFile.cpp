#include "apps/desk/document/ProjectFile.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/StoredProject.h"
#include "host/app/Application.h"
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

std::shared_ptr<ProjectLock> takeLock(const Document& document, const QString& path)
{
    const std::shared_ptr<ProjectLock> own = document.getOrigin().lock;
    const bool isOwn = own && own->isOf(path);
    if (isOwn && own->isHeld())
        return own;
    const std::shared_ptr<ProjectLock> taken = ProjectLock::take(path);
    // Still not to be locked, of which the user knows.
    return isOwn && !taken->isHeld() ? own : taken;
}

void save(Document& document, const QString& path, const std::shared_ptr<ProjectLock>& lock)
{
    const ProtocolKeeper::Outcome outcome = document.checkProtocol();
    if (!outcome.isWhole)
        throw qor::CFileException(qor::CFileException::CannotRead, outcome.message.toStdWString());
    if (!outcome.message.isEmpty())
        Application::warning(outcome.message, nullptr);

    StoredProject project;
    project.name = document.getProject().getName();
    project.content = document.copyContent();
    project.protocol.state = ProtocolState::read(document.getProtocol());
    project.protocol.data = document.getProtocolData();

    QtFile file(path);
    file.open(QIODevice::WriteOnly);
    storedproject::write(project, *file.device());
    file.close();
    document.setOrigin({project.name, path, FileState::of(path), lock});
    document.setModified(false);
}

void load(Document& document, const QString& path, const std::shared_ptr<ProjectLock>& lock)
{
    // Before reading: what is written meanwhile counts as a change.
    const FileState fileState = FileState::of(path);
    StoredProject stored = readProject(path);
    // First what can fail.
    const ProtocolState protocol = stored.protocol.unpack();
    if (!document.setContent(std::move(stored.content)))
        refuse(path, Desk::tr("файл проекта повреждён или обрезан"));
    document.setOrigin({stored.name, path, fileState, lock});
    document.setProtocolState(protocol, stored.protocol.data);
    document.setModified(false);
}

} // namespace projectfile

} // namespace orvel::desk
