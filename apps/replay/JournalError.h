#pragma once

#include <QString>

#include <stdexcept>

namespace orvel::replay {

/// Why a journal cannot be played on.
class JournalError : public std::runtime_error
{
public:
    explicit JournalError(const QString& text) : std::runtime_error(text.toStdString()), reason(text) {}

    QString getReason() const { return reason; }

private:
    QString reason;
};

} // namespace orvel::replay
