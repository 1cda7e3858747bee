#pragma once

#include <QtGlobal>

#include <map>

namespace orvel::desk {

/// What a run computes with, in numbers: equal ones for what is equal, see statedigest.
struct DocumentState
{
    quint64 network = 0;  ///< points and sections
    quint64 settings = 0; ///< class and tolerances
    quint64 tests = 0;    ///< of the tolerances the level of the tests, and decimals
};

/// The state of a project, and those that its results belong to.
struct DocumentStates
{
    DocumentState current;
    quint64 results = 0;                    ///< state of the network that heights and residuals belong to
    std::map<int, DocumentState> protocols; ///< by protocol type
};

} // namespace orvel::desk
