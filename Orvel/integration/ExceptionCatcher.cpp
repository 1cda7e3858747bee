#include "Orvel/integration/ExceptionCatcher.h"

#include "host/files/CTranslater.h"
#include "host/files/Error.h"
#include "host/files/ErrorMessageProcessor.h"

#include <boost/exception/exception.hpp>
#include <boost/exception/get_error_info.hpp>

#include <new>
#include <string>
#include <utility>

namespace orvel {

namespace {

std::wstring getText(const std::exception_ptr& exception)
{
    // The order decides: the host's errors are standard exceptions, and may be Boost's as well.
    try {
        std::rethrow_exception(exception);
    } catch (const exceptions::Error& error) {
        return error.getText();
    } catch (const std::bad_alloc&) {
        return qor::ErrorMessageProcessor::getBadAllocText();
    } catch (const std::exception& error) {
        return qor::ErrorMessageProcessor::processMessage(std::string(error.what()));
    } catch (const boost::exception& error) {
        if (const std::wstring* text = boost::get_error_info<exceptions::err_info::MessageTag>(error))
            return qor::ErrorMessageProcessor::processMessage(*text);
        return CTranslater::GetInstance().translate("ExceptionCatcher", "Ошибка boost");
    } catch (...) {
        return CTranslater::GetInstance().translate("ExceptionCatcher", "Системная ошибка");
    }
}

} // namespace

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
    return QString::fromStdWString(getText(error));
}

} // namespace orvel
