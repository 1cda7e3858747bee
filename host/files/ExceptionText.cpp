#include "host/files/ExceptionText.h"

#include "host/files/Error.h"
#include "host/files/ErrorMessageProcessor.h"

#include <boost/exception/exception.hpp>
#include <boost/exception/get_error_info.hpp>

#include <new>

namespace exceptions {

std::wstring getExceptionText(const std::exception_ptr& exception)
{
    // The order decides: the host's errors are standard exceptions, and may be Boost's as well.
    try {
        std::rethrow_exception(exception);
    } catch (const Error& error) {
        return error.getText();
    } catch (const std::bad_alloc&) {
        return qor::ErrorMessageProcessor::getBadAllocText();
    } catch (const std::exception& error) {
        return qor::ErrorMessageProcessor::processMessage(std::string(error.what()));
    } catch (const boost::exception& error) {
        if (const std::wstring* text = boost::get_error_info<err_info::MessageTag>(error))
            return qor::ErrorMessageProcessor::processMessage(*text);
    } catch (...) {
        // Says nothing of itself.
    }
    return qor::ErrorMessageProcessor::processMessage(std::wstring());
}

} // namespace exceptions
