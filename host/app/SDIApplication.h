#pragma once

#include "host/app/Application.h"
#include "host/host_export.h"

#include <QString>

/// The application with one window per project. It knows the URI scheme of the links that lead back to it.
class HOST_EXPORT SDIApplication : public Application
{
    Q_OBJECT

public:
    /// @param scheme  the URI scheme of the application's links, without a colon
    /// @param parent  owns the application, if there is one
    explicit SDIApplication(const QString& scheme, QObject* parent = nullptr);
    ~SDIApplication() override;

    /// Without a colon.
    QString getUriScheme() const { return uriScheme; }

protected:
    /// Shows a message box over the window of @p parent; without a display the text goes to stderr.
    void showWarning(const QString& message, QObject* parent) override;

private:
    QString uriScheme;
};
