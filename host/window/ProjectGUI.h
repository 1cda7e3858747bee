#pragma once

#include "host/host_export.h"

#include <QPointer>
#include <QtPlugin>

#include <map>
#include <vector>

class CProjectModel;
class GUIExtension;

/// The user interface of one project: its model, and the extensions that subsystems have added.
class HOST_EXPORT ProjectGUI
{
public:
    /// A plug-in's part in every project window.
    struct HOST_EXPORT IExtender
    {
        virtual ~IExtender() = default;

        /// Called once for every new project window.
        virtual void extendProjectGUI(ProjectGUI* gui) = 0;
    };

    /// The model is not owned and outlives the user interface.
    explicit ProjectGUI(CProjectModel* projectModel);
    ProjectGUI(const ProjectGUI&) = delete;
    ProjectGUI& operator=(const ProjectGUI&) = delete;
    /// Destroys the extensions.
    virtual ~ProjectGUI();

    CProjectModel* getModel() const; ///< The items that are shown.

    /// Adds an extension and takes ownership; a key may have several.
    void addExtension(int key, GUIExtension* extension);
    /// The extensions under the key in the order of addition, without those destroyed since.
    std::vector<GUIExtension*> getExtensions(int key) const;

private:
    CProjectModel* model;
    std::map<int, std::vector<QPointer<GUIExtension>>> extensions;
};

Q_DECLARE_INTERFACE(ProjectGUI::IExtender, "org.orvel.IProjectGUIExtender/1.0")
