#pragma once

#include "apps/common/WarningApplication.h"
#include "host/app/PluginManager.h"
#include "host/model/CCommonTervoModel.h"
#include "host/model/CProject.h"
#include "host/window/ProjectWindow.h"

#include <QString>

#include <memory>

class COrvel;
class OrvelProcessMonitor;

namespace orvel::replay {

/// An application with one project and its window, extended by the plug-in: all that a journal needs of a
/// host. Throws `JournalError` when the plug-in cannot be loaded.
class ReplayHost
{
public:
    ReplayHost(const QString& projectName, const QString& scheme, bool hasReportGenerator);
    ~ReplayHost();

    CProjectModel& getModel();
    /// The progress window of all runs. It is silent: nobody looks at its journal.
    OrvelProcessMonitor& getMonitor();
    COrvel& getProtocol();
    /// The first warning of the plug-in since the last call; empty when there was none.
    QString takeWarning() { return application.takeWarning(); }

private:
    apps::WarningApplication application;
    PluginManager plugins;
    CProject project;
    CCommonTervoModel model;
    ProjectWindow window;
    std::unique_ptr<OrvelProcessMonitor> monitor; // made when the window has its extensions
};

} // namespace orvel::replay
