#pragma once

#include "Orvel/store/COVMessage.h"

#include <QByteArray>
#include <QString>

#include <map>
#include <vector>

namespace orvel::desk {

/// An error, a warning or a message of a run.
struct ProtocolLine
{
    COVMessage::MessageType kind = COVMessage::Message;
    int stage = 0; ///< 0 for none
    QString text;  ///< without mark-up
    std::vector<LONGID> items;
};

/// The lines of the latest run of a protocol type.
struct ProtocolLines
{
    /// Reads them from the content of a protocol's data file. There are none in a file that another program
    /// has written in a form of its own; its lines are to be seen on the page.
    static ProtocolLines read(const QByteArray& dataContent, int protocolType);

    std::vector<ProtocolLine> lines;     ///< as they arose
    std::map<int, QString> stageCaption; ///< by the number of the stage, without mark-up
};

} // namespace orvel::desk
