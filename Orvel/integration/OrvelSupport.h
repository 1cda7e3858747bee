#pragma once

#include "host/app/IAppExtension.h"
#include "host/model/IModelExtension.h"
#include "host/window/ProjectGUI.h"

#include <QObject>

/// The plug-in's root: gives every project model its protocol, every project window the protocol viewer, and
/// the application the report delegate and the page template.
class OrvelSupport : public QObject,
                     public IModelExtension,
                     public ProjectGUI::IExtender,
                     public IAppExtension
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "org.orvel.OrvelSupport")
    Q_INTERFACES(IModelExtension ProjectGUI::IExtender IAppExtension)

public:
    /// Adds the initializer that makes the protocol, once per model, and the property "the protocol mentions
    /// this item", with every call.
    void extendModel(CProjectModel* model) override;

    /// `gui` must be a `ProjectWindow`.
    void extendProjectGUI(ProjectGUI* gui) override;

    /// Always true: a missing delegate factory or template folder leaves that feature out, no more.
    bool extendApplication(Application* app) override;
};
