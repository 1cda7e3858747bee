#pragma once

#include "host/app/Application.h"

#include <QStringList>

/// An application that keeps its warnings instead of showing them.
class CollectingApplication : public Application
{
public:
    QStringList getWarnings() const { return warnings; }
    /// The objects on whose behalf the warnings came, one per warning.
    QObjectList getWarningParents() const { return warningParents; }

protected:
    void showWarning(const QString& message, QObject* parent) override;

private:
    QStringList warnings;
    QObjectList warningParents;
};
