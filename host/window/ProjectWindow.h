#pragma once

#include "host/host_export.h"
#include "host/window/IUriNavigationHandler.h"
#include "host/window/ProjectGUI.h"

#include <QMainWindow>

#include <memory>
#include <vector>

class CProject;
class QUrl;

/// The main window of one project.
class HOST_EXPORT ProjectWindow : public QMainWindow, public ProjectGUI
{
    Q_OBJECT

public:
    /// @param projectModel  not owned, outlives the window
    /// @param parent  owns the window, if there is one
    explicit ProjectWindow(CProjectModel* projectModel, QWidget* parent = nullptr);
    ~ProjectWindow() override;

    /// The open window of @p project, or null if it has none.
    static ProjectWindow* getProjectWindow(const CProject* project);

    /// Handlers are asked in the order in which they were added.
    void addUriNavigationHandler(std::unique_ptr<IUriNavigationHandler> handler);
    /// Offers @p url to the handlers, in the order in which they were added, until one takes it.
    /// @return false when none did
    bool navigate(const QUrl& url);

private:
    std::vector<std::unique_ptr<IUriNavigationHandler>> uriNavigationHandlers;
};
