#include "apps/replay/ReplayHost.h"

#include "Orvel/integration/OrvelProcessMonitor.h"
#include "Orvel/store/COrvel.h"
#include "apps/replay/JournalError.h"
#include "host/reports/ReportsGeneratorItem.h"

namespace orvel::replay {

ReplayHost::ReplayHost(const QString& projectName, const QString& scheme, bool hasReportGenerator)
    : application(scheme)
    , project(projectName)
    , model(&project)
    , window(&model)
{
    if (!plugins.load(PluginManager::locate(QStringLiteral("Orvel")))) {
        const PluginManager::LoadFailure failure = plugins.getFailures().constLast();
        throw JournalError(failure.path + QStringLiteral(": ") + failure.reason);
    }
    plugins.extendApplication(&application);
    plugins.extendModel(&model);
    model.initialize();
    if (hasReportGenerator)
        model.addSystemItem(new reports::ReportsGeneratorItem, {});
    model.setItemMentionedQuery([this](LONGID id) { return getProtocol().IsMessages(id); });
    plugins.extendProjectGUI(&window);
    monitor = std::make_unique<OrvelProcessMonitor>(&window);
    monitor->setSilent(true);
}

ReplayHost::~ReplayHost() = default;

CProjectModel& ReplayHost::getModel()
{
    return model;
}

OrvelProcessMonitor& ReplayHost::getMonitor()
{
    return *monitor;
}

COrvel& ReplayHost::getProtocol()
{
    return dynamic_cast<COrvel&>(*model.getFirstItem(kOrvelItemType));
}

} // namespace orvel::replay
