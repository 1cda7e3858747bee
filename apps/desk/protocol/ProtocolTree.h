#pragma once

#include "apps/desk/protocol/ProtocolLines.h"

#include <QStringList>

#include <array>
#include <optional>
#include <set>
#include <vector>

namespace orvel::desk {

/// Which lines of a protocol somebody wants to see.
struct ProtocolFilter
{
    std::set<COVMessage::MessageType> hiddenKinds;
    QStringList words; ///< all of which a line has, in any case of letters
    LONGID item = 0;   ///< which a line is about; 0 for any
};

/// The lines that a filter lets through, in branches by stage and by kind, the gravest kind first. A plain
/// value, made in any thread.
struct ProtocolTree
{
    /// The kinds of line, the gravest first.
    static constexpr std::array<COVMessage::MessageType, 3> kKinds = {COVMessage::Error, COVMessage::Warning,
                                                                      COVMessage::Message};

    /// A branch has either branches or lines.
    struct Branch
    {
        std::optional<int> stage;                    ///< of a branch of the first level
        std::optional<COVMessage::MessageType> kind; ///< of a branch that has lines
        int parent = -1;                             ///< -1 on the first level
        int row = 0;                                 ///< among its neighbours
        std::vector<int> branches;
        std::vector<int> lines; ///< indices of ProtocolLines::lines
        std::size_t count = 0;  ///< of the lines in it and in its branches
    };

    static ProtocolTree make(const ProtocolLines& lines, const ProtocolFilter& filter);

    std::vector<Branch> branches;
    std::vector<int> top; ///< the branches of the first level
    /// So many lines of each kind has the filter let through, those of hidden kinds included.
    std::map<COVMessage::MessageType, int> counts;
};

} // namespace orvel::desk
