#include "apps/desk/document/ProjectFile.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/StoredProject.h"
#include "host/app/Application.h"
#include "host/files/CFileException.h"
#include "host/files/QtFile.h"

#include <QFile>

namespace orvel::desk {

namespace projectfile {

namespace {

[[noreturn]] void refuse(const QString& path, const QString& reason)
{
    const QString text = QStringLiteral("%1: %2").arg(path, reason);
    throw qor::CFileException(qor::CFileException::CorruptFile, text.toStdWString());
}

QByteArray readBytes(const QString& path)
{
    if (!QFile::exists(path))
        return QByteArray();
    QtFile file(path);
    file.open(QIODevice::ReadOnly);
    const QByteArray bytes = file.device()->readAll();
    file.close();
    return bytes;
}

void writeBytes(const QString& path, const QByteArray& bytes)
{
    QtFile file(path);
    file.open(QIODevice::WriteOnly);
    file.device()->write(bytes);
    file.close();
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

/// The saved state of the protocol, with a data file of this program's own that holds the saved lines.
apps::ProtocolState restoreProtocol(const StoredProject& stored)
{
    apps::ProtocolState state = stored.protocol;
    // Pages are made anew when they are asked for: a project from elsewhere could name any file as one, and
    // the item's page would lead there.
    state.pages.clear();
    if (!stored.protocolData.isEmpty()) {
        state.dataFilePath = Application::getTmpFileName(QStringLiteral("protocoldata_%1.xml"));
        Application::instance()->registerTmpFile(state.dataFilePath);
        writeBytes(state.dataFilePath, stored.protocolData);
    }
    return state;
}

} // namespace

void save(Document& document, const QString& path)
{
    StoredProject project;
    project.name = document.getProject().getName();
    project.content = document.copyContent();
    project.protocol = apps::readProtocolState(document.getProtocol());
    project.protocolData = readBytes(project.protocol.dataFilePath);

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
    const apps::ProtocolState protocol = restoreProtocol(stored);
    if (!document.setContent(std::move(stored.content)))
        refuse(path, Desk::tr("файл проекта повреждён или обрезан"));
    document.setProjectName(stored.name);
    document.getProject().setFilePath(path);
    apps::writeProtocolState(document.getProtocol(), protocol);
    document.updateSummary();
    document.setModified(false);
}

} // namespace projectfile

} // namespace orvel::desk
