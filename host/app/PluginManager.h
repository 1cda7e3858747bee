#pragma once

#include "host/host_export.h"

#include <QPointer>
#include <QString>
#include <QVector>

#include <vector>

class Application;
class CProjectModel;
class ProjectGUI;
class QObject;

/// Loads plug-ins and has them extend the application, project models and project windows, always in the
/// order of loading. Plug-ins stay in memory until the program ends: what they made may outlive the manager.
class HOST_EXPORT PluginManager
{
public:
    /// A file that is no plug-in for this application, or one that refused to extend it.
    struct LoadFailure
    {
        QString path;   ///< As it was given to load().
        QString reason; ///< A sentence for the user.
    };

    PluginManager();
    PluginManager(const PluginManager&) = delete;
    PluginManager& operator=(const PluginManager&) = delete;
    /// Has every plug-in that extended the application undo it, the last one first.
    ~PluginManager();

    /// Absolute path of the plug-in @p name of this library's version, such as "Orvel": beside this library,
    /// else in the folder `plugins` of its build tree. Where there is none, the path at which it should be.
    static QString locate(const QString& name);

    /// False, and a failure noted, if the file is no plug-in or has none of the extension interfaces. A
    /// plug-in that is loaded already is not taken twice.
    bool load(const QString& path);
    /// In the order of loading; valid until the next call of another operation.
    const QVector<LoadFailure>& getFailures() const;

    /// A plug-in that answers false is noted as a failure.
    void extendApplication(Application* app);
    /// Has the plug-ins extend a new model; to be called before it is initialised.
    void extendModel(CProjectModel* model) const;
    void extendProjectGUI(ProjectGUI* gui) const; ///< Has the plug-ins extend a new project window.

private:
    struct Plugin
    {
        QString path;
        QPointer<QObject> root;
        QPointer<Application> extendedApplication;
    };

    bool fail(const QString& path, const QString& reason);

    std::vector<Plugin> plugins;
    QVector<LoadFailure> failures;
};
