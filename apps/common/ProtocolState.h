#pragma once

#include "host/model/LongId.h"

#include <QString>

#include <map>
#include <set>

class COrvel;

namespace orvel::apps {

/// What a protocol saves of itself in a project. Its messages lie in the data file.
struct ProtocolState
{
    std::set<LONGID> ids;         ///< items that the protocol mentions
    std::map<int, QString> pages; ///< last page of each protocol type
    QString dataFilePath;         ///< empty before the first run
};

/// The state of `protocol`, as its own serialization gives it.
ProtocolState readProtocolState(COrvel& protocol);

/// Has `protocol` load `state`, in place of what it had.
void writeProtocolState(COrvel& protocol, const ProtocolState& state);

} // namespace orvel::apps
