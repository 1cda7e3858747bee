#include "apps/common/ProtocolState.h"

#include "Orvel/store/COrvel.h"
#include "host/files/CQtArchive.h"

#include <QBuffer>

namespace orvel::apps {

ProtocolState readProtocolState(COrvel& protocol)
{
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    CQtArchive saving(&buffer, CQtArchive::Save);
    protocol.serialize(saving);
    buffer.seek(0);

    CQtArchive loading(&buffer, CQtArchive::Load);
    ProtocolState state;
    quint32 count = 0;
    loading >> count;
    for (quint32 i = 0; i < count; ++i) {
        LONGID id = 0;
        loading >> id;
        state.ids.insert(id);
    }
    loading >> count;
    for (quint32 i = 0; i < count; ++i) {
        int protocolType = 0;
        QString path;
        loading >> protocolType >> path;
        state.pages.emplace(protocolType, path);
    }
    loading >> state.dataFilePath;
    return state;
}

void writeProtocolState(COrvel& protocol, const ProtocolState& state)
{
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    CQtArchive saving(&buffer, CQtArchive::Save);
    saving << static_cast<quint32>(state.ids.size());
    for (const LONGID id : state.ids)
        saving << id;
    saving << static_cast<quint32>(state.pages.size());
    for (const auto& [protocolType, path] : state.pages)
        saving << protocolType << path;
    saving << state.dataFilePath;
    buffer.seek(0);

    CQtArchive loading(&buffer, CQtArchive::Load);
    protocol.serialize(loading);
}

} // namespace orvel::apps
