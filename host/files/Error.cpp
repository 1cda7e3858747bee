#include "host/files/Error.h"

#include <QString>

namespace exceptions {

Error::Error(std::wstring errorText)
    : text(std::move(errorText))
    , utf8Text(QString::fromStdWString(text).toStdString())
{}

Error::Error(const Error& other) = default;

Error& Error::operator=(const Error& other) = default;

Error::~Error() = default;

std::wstring Error::getText() const
{
    return text;
}

const char* Error::what() const noexcept
{
    return utf8Text.c_str();
}

} // namespace exceptions
