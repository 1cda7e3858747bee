#include "Orvel/integration/ExceptionCatcher.h"

#include "host/files/ExceptionText.h"

#include <utility>

namespace orvel {

void ExceptionCatcher::addErrorHandler(ErrorHandler handler)
{
    errorHandlers.push_back(std::move(handler));
}

void ExceptionCatcher::addAfterErrorHandler(AfterErrorHandler handler)
{
    afterErrorHandlers.push_back(std::move(handler));
}

void ExceptionCatcher::run(const std::function<void()>& action) const
{
    try {
        action();
    } catch (...) {
        const std::exception_ptr error = std::current_exception();
        for (const ErrorHandler& handle : errorHandlers)
            handle(getMessage(error));
        for (const AfterErrorHandler& handle : afterErrorHandlers)
            handle();
    }
}

QString ExceptionCatcher::getMessage(const std::exception_ptr& error)
{
    return QString::fromStdWString(exceptions::getExceptionText(error));
}

} // namespace orvel
