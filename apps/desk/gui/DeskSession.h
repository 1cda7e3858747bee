#pragma once

#include "apps/desk/gui/DeskWindow.h"
#include "apps/desk/gui/UriServer.h"

#include <QObject>

#include <memory>

class PluginManager;

namespace orvel::desk {

/// One start of the desk with windows: shows one project at a time and takes URIs from later starts.
class DeskSession : public QObject
{
    Q_OBJECT

public:
    /// The plug-ins outlive the session. A record file, if any, gets the journal of the first project; those
    /// of later ones get numbered names.
    DeskSession(const PluginManager& pluginManager, const QString& journalPath);
    ~DeskSession() override;

    /// Shows a window: empty, or with a project, a network or what a URI leads to.
    void start(const QString& argument);
    DeskWindow& getWindow() { return *window; }

    /// Opens a project in place of the present one, after the questions that this asks for.
    void openProject(const QString& path);
    void newProject();

private:
    std::unique_ptr<Document> makeDocument() const;
    std::unique_ptr<Document> loadDocument(const QString& path) const;
    void showDocument(std::unique_ptr<Document> document);

    const PluginManager& plugins;
    QString recordPath;
    int projectCount = 0;
    std::unique_ptr<DeskWindow> window;
    UriServer uriServer;
};

} // namespace orvel::desk
