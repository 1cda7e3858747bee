#include "Orvel/store/ProtocolArchive.h"

#include "host/files/CFileException.h"
#include "host/files/CQtArchive.h"

#include <string>

namespace orvel::protocolarchive {

namespace {

constexpr quint32 kMaxIds = 1000000;
constexpr quint32 kMaxPaths = 100;

quint32 readCount(CQtArchive& archive, quint32 limit)
{
    quint32 count = 0;
    archive >> count;
    if (count > limit)
        throw qor::CFileException(1, std::wstring());
    return count;
}

} // namespace

void saveIds(CQtArchive& archive, const std::set<LONGID>& ids)
{
    archive << static_cast<quint32>(ids.size());
    for (const LONGID id : ids)
        archive << id;
}

void loadIds(CQtArchive& archive, std::set<LONGID>& ids)
{
    ids.clear();
    const quint32 count = readCount(archive, kMaxIds);
    for (quint32 i = 0; i < count; ++i) {
        LONGID id = 0;
        archive >> id;
        ids.insert(ids.end(), id);
    }
}

void savePaths(CQtArchive& archive, const std::map<int, QString>& paths)
{
    archive << static_cast<quint32>(paths.size());
    for (const auto& [protocolType, path] : paths)
        archive << protocolType << path;
}

void loadPaths(CQtArchive& archive, std::map<int, QString>& paths)
{
    paths.clear();
    const quint32 count = readCount(archive, kMaxPaths);
    for (quint32 i = 0; i < count; ++i) {
        int protocolType = 0;
        QString path;
        archive >> protocolType >> path;
        paths.emplace(protocolType, path);
    }
}

} // namespace orvel::protocolarchive
