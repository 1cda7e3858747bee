#include "host/window/GUIExtension.h"

#include "host/window/ProjectGUI.h"

GUIExtension::GUIExtension(ProjectGUI* gui, QObject* parent) : QObject(parent), projectGui(gui)
{}

GUIExtension::~GUIExtension() = default;

CProjectModel* GUIExtension::getModel() const
{
    return projectGui->getModel();
}
