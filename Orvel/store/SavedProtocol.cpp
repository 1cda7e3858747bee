#include "Orvel/store/SavedProtocol.h"

#include "Orvel/store/COrvel.h"
#include "Orvel/store/ProtocolArchive.h"
#include "host/app/Application.h"
#include "host/files/CQtArchive.h"
#include "host/files/WholeFile.h"

#include <QBuffer>
#include <QFile>

namespace orvel {

ProtocolState ProtocolState::read(COrvel& protocol)
{
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    CQtArchive saving(&buffer, CQtArchive::Save);
    protocol.serialize(saving);
    buffer.seek(0);

    CQtArchive loading(&buffer, CQtArchive::Load);
    ProtocolState state;
    protocolarchive::loadIds(loading, state.ids);
    protocolarchive::loadPaths(loading, state.pages);
    loading >> state.dataFilePath;
    return state;
}

void ProtocolState::write(COrvel& protocol) const
{
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    CQtArchive saving(&buffer, CQtArchive::Save);
    protocolarchive::saveIds(saving, ids);
    protocolarchive::savePaths(saving, pages);
    saving << dataFilePath;
    buffer.seek(0);

    CQtArchive loading(&buffer, CQtArchive::Load);
    protocol.serialize(loading);
}

SavedProtocol SavedProtocol::take(COrvel& protocol)
{
    SavedProtocol saved;
    saved.state = ProtocolState::read(protocol);
    if (QFile::exists(saved.state.dataFilePath))
        saved.data = files::readAll(saved.state.dataFilePath);
    return saved;
}

ProtocolState SavedProtocol::unpack() const
{
    ProtocolState unpacked;
    unpacked.ids = state.ids;
    if (!data.isEmpty()) {
        unpacked.dataFilePath = Application::getTmpFileName(QStringLiteral("protocoldata_%1.xml"));
        Application::instance()->registerTmpFile(unpacked.dataFilePath);
        files::writeAll(unpacked.dataFilePath, data);
    }
    return unpacked;
}

void SavedProtocol::save(CQtArchive& archive) const
{
    protocolarchive::saveIds(archive, state.ids);
    protocolarchive::savePaths(archive, state.pages);
    archive << data;
}

SavedProtocol SavedProtocol::load(CQtArchive& archive)
{
    SavedProtocol saved;
    protocolarchive::loadIds(archive, saved.state.ids);
    protocolarchive::loadPaths(archive, saved.state.pages);
    archive >> saved.data;
    return saved;
}

} // namespace orvel
