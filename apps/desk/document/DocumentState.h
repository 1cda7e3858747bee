#pragma once

#include <QtGlobal>

#include <map>

namespace orvel::desk {

/// Numbers the states of a project that runs compute with. A state that comes back by undoing has the number
/// that it had.
struct DocumentState
{
    qint64 network = 0;  ///< points and sections
    qint64 settings = 0; ///< class and tolerances
    qint64 tests = 0;    ///< of the tolerances the level of the tests, and decimals

    bool operator==(const DocumentState& other) const
    {
        return network == other.network && settings == other.settings && tests == other.tests;
    }
    bool operator!=(const DocumentState& other) const { return !(*this == other); }
};

/// The state of a project, and those that its results belong to. What nobody has told belongs to the first
/// state.
struct DocumentStates
{
    DocumentState current;
    qint64 latest = 0;                      ///< the number that was given last
    qint64 results = 0;                     ///< state of the network that heights and residuals belong to
    std::map<int, DocumentState> protocols; ///< by protocol type
};

} // namespace orvel::desk
