// Loads the plug-in, has it extend a project and lets it go again, over and over. To be watched by valgrind,
// which sees what is not given back and what is used afterwards.

#include "host/app/SDIApplication.h"
#include "host/model/CCommonTervoModel.h"
#include "host/model/CProject.h"
#include "host/model/IModelExtension.h"

#include <QCoreApplication>
#include <QPluginLoader>

#include <cstdio>

namespace {

bool loadAndUnload()
{
    QPluginLoader loader(QStringLiteral(ORVEL_PLUGIN_PATH));
    auto* extension = qobject_cast<IModelExtension*>(loader.instance());
    if (!extension) {
        std::fprintf(stderr, "%s\n", qUtf8Printable(loader.errorString()));
        return false;
    }
    {
        CProject project(QStringLiteral("P"));
        CCommonTervoModel model(&project);
        extension->extendModel(&model);
        model.initialize();
    }
    return loader.unload();
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication application(argc, argv);
    const SDIApplication host(QStringLiteral("survey"));
    for (int i = 0; i < 10; ++i) {
        if (!loadAndUnload())
            return 1;
    }
    return 0;
}
