#include "apps/desk/protocol/ProtocolLines.h"

#include "Orvel/Toolkit.h"
#include "apps/desk/protocol/LineText.h"

#include <QBuffer>

namespace orvel::desk {

ProtocolLines ProtocolLines::read(const QByteArray& dataContent, int protocolType)
{
    QByteArray content = dataContent;
    QBuffer buffer(&content);
    buffer.open(QIODevice::ReadOnly);
    const auto messages = datafile::readCanonical(buffer);
    const auto list = messages ? messages->find(protocolType) : datafile::Messages::const_iterator();
    ProtocolLines result;
    if (!messages || list == messages->end())
        return result;
    for (const COVMessage& message : list->second) {
        switch (message.messageType) {
        case COVMessage::Stage:
            // The first heading of a stage counts, as on the page.
            result.stageCaption.emplace(message.stage, toPlainText(message.text));
            break;
        case COVMessage::Error:
        case COVMessage::Warning:
        case COVMessage::Message:
            result.lines.push_back(
                {message.messageType, message.stage, toPlainText(message.text), message.itemIds});
            break;
        case COVMessage::Title:
        case COVMessage::Service:
        case COVMessage::Statistics:
            break;
        }
    }
    return result;
}

} // namespace orvel::desk
