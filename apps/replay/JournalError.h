#pragma once

#include <QString>

#include <stdexcept>

namespace orvel::replay {

/// Why a journal cannot be played on.
class JournalError : public std::runtime_error
{
public:
    explicit JournalError(const QString& reason) : std::runtime_error(reason.toStdString()) {}

    QString getReason() const { return QString::fromUtf8(what()); }
};

} // namespace orvel::replay
