#pragma once

#include "Orvel/orvel_export.h"

#include <QString>

#include <exception>
#include <functional>
#include <vector>

namespace orvel {

/// Runs an action of the user and turns an exception that leaves it into a message: an `exceptions::Error`'s
/// own text; for `std::bad_alloc` the host's text for missing memory; a `std::exception`'s `what()`; a Boost
/// exception's message tag, or that there is none; for any other that something failed.
class ORVEL_EXPORT ExceptionCatcher
{
public:
    using ErrorHandler = std::function<void(const QString& message)>; ///< Gets the text for the user.
    using AfterErrorHandler = std::function<void()>; ///< Gets to know that an action has failed.

    /// Handlers are called in the order in which they were added, after-error handlers after all of the
    /// others.
    void addErrorHandler(ErrorHandler handler);
    void addAfterErrorHandler(AfterErrorHandler handler); ///< Called when all error handlers have been.

    /// Runs `action`. An exception goes to the handlers and no further.
    void run(const std::function<void()>& action) const;

    /// What the user is told of `error`.
    static QString getMessage(const std::exception_ptr& error);

private:
    std::vector<ErrorHandler> errorHandlers;
    std::vector<AfterErrorHandler> afterErrorHandlers;
};

} // namespace orvel
