#pragma once

#include "host/host_export.h"

#include <QObject>

class CProjectModel;
class ProjectGUI;

/// What a subsystem adds to the user interface of one project.
class HOST_EXPORT GUIExtension : public QObject
{
    Q_OBJECT

public:
    /// The user interface outlives the extension.
    GUIExtension(ProjectGUI* gui, QObject* parent);
    ~GUIExtension() override;

    CProjectModel* getModel() const; ///< Of the project whose user interface it extends.

private:
    ProjectGUI* projectGui;
};
