#pragma once

#include "host/app/SDIApplication.h"

#include <QString>

namespace orvel::apps {

/// The application of a program without a window. It keeps what it warns of, so that a failure that the
/// protocol survives does not pass for success.
class WarningApplication : public SDIApplication
{
public:
    using SDIApplication::SDIApplication;

    /// The first warning since the last call; empty when there was none.
    QString takeWarning()
    {
        QString taken;
        taken.swap(warning);
        return taken;
    }

protected:
    void showWarning(const QString& message, QObject* /*parent*/) override
    {
        if (warning.isEmpty())
            warning = message;
    }

private:
    QString warning;
};

} // namespace orvel::apps
