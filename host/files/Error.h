#pragma once

#include "host/host_export.h"

#include <boost/exception/error_info.hpp>
#include <boost/exception/exception.hpp>

#include <exception>
#include <string>

namespace exceptions {

/// An error with a text for the user.
class HOST_EXPORT Error : public std::exception, public boost::exception
{
public:
    /// @param errorText  for the user, plain
    explicit Error(std::wstring errorText);
    Error(const Error& other);            ///< Takes over the text.
    Error& operator=(const Error& other); ///< Takes over the text.
    ~Error() override;

    virtual std::wstring getText() const; ///< For the user, plain.
    /// The text in UTF-8.
    const char* what() const noexcept override;

private:
    std::wstring text;
    std::string utf8Text;
};

namespace err_info {

struct HOST_EXPORT MessageTagId;
/// Text for the user on a Boost exception that is no Error.
using MessageTag = boost::error_info<MessageTagId, std::wstring>;

} // namespace err_info
} // namespace exceptions
