#include "Orvel/store/COrvel.h"
#include "Orvel/store/DataFileReader.h"
#include "Orvel/store/DataFileWriter.h"
#include "host/app/Application.h"
#include "host/files/CFileException.h"
#include "host/files/QtFile.h"

#include <QFile>

bool COrvel::WriteXML()
{
    if (dataFilePath.isEmpty())
        return false;
    const std::optional<QString> failure = SaveMessages();
    messages.clear();
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
    try {
        QtFile file(path);
        file.open(QIODevice::ReadOnly);
        std::optional<orvel::datafile::Messages> list = orvel::datafile::readCanonical(*file.device());
        if (!list) {
            file.device()->seek(0);
            list = orvel::datafile::readXml(*file.device());
        }
        file.close();
        if (!list)
            return false;
        messages = std::move(*list);
        return true;
    } catch (const qor::CFileException& error) {
        messages.clear();
        Application::warning(QString::fromStdWString(error.getDescription()), nullptr);
        return false;
    }
}

QString COrvel::GetProtocolFilePath(int type)
{
    const auto found = protocolFiles.find(type);
    return found == protocolFiles.end() ? QString() : found->second;
}
