#include "host/window/ProjectWindowGUIExtension.h"

#include "host/window/ProjectWindow.h"

ProjectWindowGUIExtension::ProjectWindowGUIExtension(ProjectWindow* projectWindow, QObject* parent)
    : GUIExtension(projectWindow, parent)
    , window(projectWindow)
{}

ProjectWindowGUIExtension::~ProjectWindowGUIExtension() = default;

ProjectWindow* ProjectWindowGUIExtension::getWindow() const
{
    return window;
}
