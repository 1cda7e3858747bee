#include "Orvel/store/COrvel.h"
#include "Orvel/store/DataFileReader.h"
#include "Orvel/store/DataFileWriter.h"
#include "host/app/Application.h"
#include "host/files/CFileException.h"
#include "host/files/QtFile.h"

#include <QFile>

#include <utility>

namespace {

/// The messages of the file; nothing when it is no data file.
/// @throws qor::CFileException
std::optional<orvel::datafile::Messages> readMessages(const QString& path)
{
    QtFile file(path);
    file.open(QIODevice::ReadOnly);
    std::optional<orvel::datafile::Messages> messages = orvel::datafile::readCanonical(*file.device());
    if (!messages) {
        file.device()->seek(0);
        messages = orvel::datafile::readXml(*file.device());
    }
    file.close();
    return messages;
}

} // namespace

bool COrvel::WriteXML()
{
    if (dataFilePath.isEmpty())
        return false;
    std::optional<QString> failure;
    performLongWork([this, &failure] {
        failure = SaveMessages();
        messages.clear();
    });
    if (failure)
        Application::warning(*failure, nullptr);
    return !failure;
}

std::optional<QString> COrvel::SaveMessages() const
{
    try {
        QtFile file(dataFilePath);
        file.open(QIODevice::WriteOnly);
        orvel::datafile::write(messages, *file.device());
        file.close();
        return std::nullopt;
    } catch (const qor::CFileException& error) {
        return QString::fromStdWString(error.getDescription());
    }
}

bool COrvel::ReadXML()
{
    const QString path = dataFilePath;
    messages.clear();
    if (!QFile::exists(path))
        return false;
    std::optional<orvel::datafile::Messages> list;
    try {
        performLongWork([&path, &list] { list = readMessages(path); });
    } catch (const qor::CFileException& error) {
        Application::warning(QString::fromStdWString(error.getDescription()), nullptr);
    }
    if (!list)
        return false;
    messages = std::move(*list);
    return true;
}

QString COrvel::GetProtocolFilePath(int type)
{
    const auto found = protocolFiles.find(type);
    return found == protocolFiles.end() ? QString() : found->second;
}
