#include "Orvel/integration/OrvelProcessMonitor.h"
#include "Orvel/store/COrvel.h"
#include "host/app/PluginManager.h"
#include "host/app/SDIApplication.h"
#include "host/delegates/ItemDelegateFactory.h"
#include "host/enums/EnumData.h"
#include "host/model/CCommonTervoModel.h"
#include "host/model/CProject.h"
#include "host/model/ItemTypes.h"
#include "host/window/ProjectWindow.h"

#include <QApplication>
#include <QtDebug>

struct Point : CModelElement
{
    int getType() const override { return kPointItemType; }
};

int main(int argc, char* argv[])
{
    const QApplication qt(argc, argv);
    SDIApplication application(QStringLiteral("survey")); // the scheme of the links that lead back to you
    const ItemDelegateFactory delegates;
    PluginManager plugins;
    if (!plugins.load(PluginManager::locate(QStringLiteral("Orvel")))) {
        const PluginManager::LoadFailure& failure = plugins.getFailures().constLast();
        qCritical().noquote() << failure.path << failure.reason;
        return 1;
    }
    plugins.extendApplication(&application); // report delegate, page template

    registerEnumData(EnumData(kPointItemType, "LevellingPoint", "point", "points"));
    CProject project(QStringLiteral("Line 14"));
    CCommonTervoModel model(&project);
    plugins.extendModel(&model);
    model.initialize(); // makes the project's protocol
    auto point = std::make_unique<Point>();
    point->setId(12);
    model.addItem(std::move(point));
    ProjectWindow window(&model);
    plugins.extendProjectGUI(&window); // viewer, links

    OrvelProcessMonitor monitor(&window);
    monitor.setProtocolType(enums::Adjust);
    monitor.start([](qor::IProcessMonitor& run) { // in a thread of its own
        run.startProtocolStage(L"Residuals");     // an Adjust page shows the lines of stages only
        run.writeError(L"Misclosure at " + run.getItemLink(12, L"R12") + L": 41 mm, limit 20 mm");
        run.finishProtocolStage();
    });
    monitor.waitForFinished(); // with a display monitor.exec(), whose protocol button opens the page

    const QString page = QStringLiteral("adjust.html");
    if (!monitor.getOrvel()->CreateProtocolFile(enums::Adjust, page)) {
        qCritical().noquote() << page << "cannot be written";
        return 1;
    }
    return 0;
}
