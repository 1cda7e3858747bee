#pragma once

#include "host/host_export.h"

#include <string>

namespace qor {

/// Makes texts of errors fit for the user.
struct HOST_EXPORT ErrorMessageProcessor
{
    /// What to say when memory ran out.
    static std::wstring getBadAllocText();
    /// The message (UTF-8, else the encoding of the locale) without white space around it, and a general
    /// sentence in place of an empty one.
    static std::wstring processMessage(const std::string& message);
    static std::wstring processMessage(const std::wstring& message); ///< As above.
};

} // namespace qor
