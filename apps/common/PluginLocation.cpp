#include "apps/common/PluginLocation.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace orvel::apps {

QString locatePlugin()
{
    const QDir programs(QCoreApplication::applicationDirPath());
    const QString inBuildTree = programs.filePath(QStringLiteral("../plugins/" ORVEL_PLUGIN_FILE));
    if (QFile::exists(inBuildTree))
        return QDir::cleanPath(inBuildTree);
    return QDir::cleanPath(
        programs.filePath(QStringLiteral(ORVEL_INSTALLED_PLUGIN_DIR "/" ORVEL_PLUGIN_FILE)));
}

} // namespace orvel::apps
