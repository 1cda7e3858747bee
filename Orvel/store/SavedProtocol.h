#pragma once

#include "Orvel/orvel_export.h"
#include "host/model/LongId.h"

#include <QByteArray>
#include <QString>

#include <map>
#include <set>

class COrvel;
class CQtArchive;

namespace orvel {

/// What a protocol knows beside its lines, which lie in its data file. A plain value; used, as the protocol
/// is, by one thread at a time.
struct ORVEL_EXPORT ProtocolState
{
    /// The state of @p protocol.
    static ProtocolState read(COrvel& protocol);
    /// Gives @p protocol this state, in place of the one that it has.
    void write(COrvel& protocol) const;

    std::set<LONGID> ids;         ///< items that the lines mention
    std::map<int, QString> pages; ///< path of the last page of each protocol type
    QString dataFilePath;         ///< empty before the first run
};

/// A protocol as a host keeps it in its project: the state and the lines themselves. A plain value that
/// refers to no protocol and no file.
///
/// To save a project, between two runs: `SavedProtocol::take(protocol).save(archive)`. To load one:
/// `SavedProtocol::load(archive).unpack().write(protocol)`.
struct ORVEL_EXPORT SavedProtocol
{
    /// Takes what there is of @p protocol, the content of its data file included.
    /// @throws qor::CFileException if the data file cannot be read
    static SavedProtocol take(COrvel& protocol);

    /// Writes the lines into a new data file of the running application, which removes it at its end.
    ///
    /// All that can fail is done here, so that a host has the rest of its project checked before it changes
    /// anything. The pages are left behind: a project from elsewhere could name any file as one, and they are
    /// made anew when they are asked for.
    /// @return the state for the protocol that is to go on with these lines
    /// @throws qor::CFileException if the file cannot be written
    ProtocolState unpack() const;

    /// @throws qor::CFileException whatever the archive throws
    void save(CQtArchive& archive) const;
    /// Loads what save() saved.
    /// @throws qor::CFileException with code 1 if a stored count is over its limit (1,000,000 ids, 100
    /// pages), and whatever the archive throws
    static SavedProtocol load(CQtArchive& archive);

    ProtocolState state; ///< the data file's path in it is of no use to another program
    QByteArray data;     ///< the data file's content; empty before the first run
};

} // namespace orvel
