#include "host/app/PluginManager.h"

#include "host/app/Application.h"
#include "host/app/IAppExtension.h"
#include "host/app/LibraryFolder.h"
#include "host/model/IModelExtension.h"
#include "host/window/ProjectGUI.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QPluginLoader>

#include <algorithm>

PluginManager::PluginManager() = default;

PluginManager::~PluginManager()
{
    std::for_each(plugins.rbegin(), plugins.rend(), [](const Plugin& plugin) {
        auto* extension = qobject_cast<IAppExtension*>(plugin.root);
        if (extension && plugin.extendedApplication)
            extension->unextendApplication(plugin.extendedApplication);
    });
}

QString PluginManager::locate(const QString& name)
{
    const QDir libraryFolder(getLibraryFolder());
    const QString fileName = QStringLiteral("lib%1.so." HOST_PLUGIN_VERSION).arg(name);
    const QString installed = libraryFolder.filePath(fileName);
    const QString built = libraryFolder.filePath(QStringLiteral(HOST_LIBRARY_PLUGIN_FOLDER "/") + fileName);
    return QDir::cleanPath(!QFileInfo::exists(installed) && QFileInfo::exists(built) ? built : installed);
}

bool PluginManager::load(const QString& path)
{
    const QString filePath = QFileInfo(path).canonicalFilePath();
    if (filePath.isEmpty())
        return fail(path, QCoreApplication::translate("Host", "Файл не найден."));
    const bool isLoaded = std::any_of(plugins.begin(), plugins.end(),
                                      [&](const Plugin& plugin) { return plugin.path == filePath; });
    if (isLoaded)
        return true;

    QPluginLoader loader(filePath);
    // A missing symbol is to be told now, not to end the program when it is first used.
    loader.setLoadHints(loader.loadHints() | QLibrary::ResolveAllSymbolsHint);
    QObject* root = loader.instance();
    if (!root)
        return fail(path, loader.errorString());
    if (!qobject_cast<IAppExtension*>(root) && !qobject_cast<IModelExtension*>(root) &&
        !qobject_cast<ProjectGUI::IExtender*>(root)) {
        return fail(path, QCoreApplication::translate("Host",
                                                      "Модуль не расширяет ни приложение, ни модель проекта, "
                                                      "ни его окно."));
    }
    plugins.push_back({filePath, root, nullptr});
    return true;
}

const QVector<PluginManager::LoadFailure>& PluginManager::getFailures() const
{
    return failures;
}

void PluginManager::extendApplication(Application* app)
{
    for (Plugin& plugin : plugins) {
        auto* extension = qobject_cast<IAppExtension*>(plugin.root);
        if (!extension)
            continue;
        if (extension->extendApplication(app))
            plugin.extendedApplication = app;
        else
            fail(plugin.path, QCoreApplication::translate("Host", "Модуль не смог расширить приложение."));
    }
}

void PluginManager::extendModel(CProjectModel* model) const
{
    for (const Plugin& plugin : plugins) {
        if (auto* extension = qobject_cast<IModelExtension*>(plugin.root))
            extension->extendModel(model);
    }
}

void PluginManager::extendProjectGUI(ProjectGUI* gui) const
{
    for (const Plugin& plugin : plugins) {
        if (auto* extender = qobject_cast<ProjectGUI::IExtender*>(plugin.root))
            extender->extendProjectGUI(gui);
    }
}

bool PluginManager::fail(const QString& path, const QString& reason)
{
    failures.append({path, reason});
    return false;
}
