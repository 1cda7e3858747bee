// Measures the loading of the plug-in. A program of its own, since the benchmark is linked to the library.

#include "apps/common/OffscreenPlatform.h"
#include "bench/Measurement.h"
#include "host/app/PluginManager.h"
#include "host/app/SDIApplication.h"
#include "host/model/CCommonTervoModel.h"
#include "host/model/CProject.h"
#include "host/window/ProjectWindow.h"

#include <QApplication>

#include <cstdio>

using namespace orvel::bench;

int main(int argc, char** argv)
{
    const orvel::apps::OffscreenPlatform platform;
    const QApplication qtApplication(argc, argv);
    SDIApplication application(QStringLiteral("orvel"));
    CProject project(QStringLiteral("Net-1"));
    CCommonTervoModel model(&project);
    ProjectWindow window(&model);
    PluginManager plugins;

    const Measurement measurement = measureCall([&] {
        plugins.load(PluginManager::locate(QStringLiteral("Orvel")));
        plugins.extendApplication(&application);
        plugins.extendModel(&model);
        model.initialize();
        plugins.extendProjectGUI(&window);
    });
    for (const PluginManager::LoadFailure& failure : plugins.getFailures()) {
        std::fprintf(stderr, "%s: %s\n", qUtf8Printable(failure.path), qUtf8Printable(failure.reason));
        return 1;
    }
    std::puts(toLine(measurement).constData());
    return 0;
}
