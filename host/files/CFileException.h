#pragma once

#include "host/files/Error.h"
#include "host/host_export.h"

namespace qor {

/// A file could not be read or written.
class HOST_EXPORT CFileException : public exceptions::Error
{
public:
    /// What went wrong.
    enum Code {
        CorruptFile = 1, ///< The content cannot be right: it ends early, or a count in it is over its limit.
        CannotOpen = 2,
        CannotRead = 3,
        CannotWrite = 4, ///< Includes putting the written file into place.
        CannotCreateFolder = 5,
    };

    /// The description is what getText() says; where it is empty, getText() has a sentence for the code.
    CFileException(int errorCode, const std::wstring& errorDescription);

    int getCode() const; ///< One of Code.
    /// The description as it was given.
    std::wstring getDescription() const;

private:
    int code;
    std::wstring description;
};

} // namespace qor
