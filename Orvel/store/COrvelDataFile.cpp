#include "Orvel/store/COrvel.h"
#include "Orvel/store/DataFileReader.h"
#include "Orvel/store/DataFileWriter.h"
#include "host/app/Application.h"
#include "host/files/CFileException.h"
#include "host/files/QtFile.h"

#include <QFile>

bool COrvel::WriteXML()
{
    const QString path = dataFilePath;
    if (path.isEmpty())
        return false;
    try {
        QtFile file(path);
        file.open(QIODevice::WriteOnly);
        datafile::write(messages, *file.device());
        file.close();
        messages.clear();
        return true;
    } catch (const qor::CFileException& error) {
        messages.clear();
        Application::warning(QString::fromStdWString(error.getDescription()), nullptr);
        return false;
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
        std::optional<datafile::Messages> list = datafile::readOwnForm(*file.device());
        if (!list) {
            file.device()->seek(0);
            list = datafile::readAnyForm(*file.device());
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
