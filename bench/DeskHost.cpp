#include "bench/DeskHost.h"

#include "bench/SampleMessages.h"

namespace orvel::bench {

DeskHost::DeskHost() : application(sample::getScheme())
{
    if (!plugins.load(PluginManager::locate(QStringLiteral("Orvel"))))
        qFatal("%s", qUtf8Printable(plugins.getFailures().constLast().reason));
    plugins.extendApplication(&application);
    document = std::make_unique<desk::Document>(plugins, sample::getProjectName());
    window = std::make_unique<ProjectWindow>(&document->getModel());
    plugins.extendProjectGUI(window.get());
}

} // namespace orvel::bench
