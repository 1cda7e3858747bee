#pragma once

#include "host/host_export.h"
#include "host/window/GUIExtension.h"

#include <QPointer>

class ProjectWindow;

/// An extension of a project window.
class HOST_EXPORT ProjectWindowGUIExtension : public GUIExtension
{
    Q_OBJECT

public:
    /// @p projectWindow outlives the extension; @p parent owns it.
    ProjectWindowGUIExtension(ProjectWindow* projectWindow, QObject* parent);
    ~ProjectWindowGUIExtension() override;

    /// The window that the extension was made for; null when it is gone.
    ProjectWindow* getWindow() const;

private:
    QPointer<ProjectWindow> window;
};
