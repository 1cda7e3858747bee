#pragma once

#include "host/host_export.h"

#include <exception>
#include <string>

namespace exceptions {

/// What the user is told of an exception, by the first kind that fits: an `exceptions::Error`'s own text; for
/// `std::bad_alloc` the text for missing memory; a `std::exception`'s `what()`; a Boost exception's message
/// tag. For any other a general sentence.
HOST_EXPORT std::wstring getExceptionText(const std::exception_ptr& exception);

} // namespace exceptions
