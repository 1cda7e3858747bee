#include "host/window/ProjectWindow.h"

#include "host/model/CProject.h"
#include "host/model/CProjectModel.h"

#include <QApplication>
#include <QUrl>

#include <algorithm>

ProjectWindow::ProjectWindow(CProjectModel* projectModel, QWidget* parent)
    : QMainWindow(parent)
    , ProjectGUI(projectModel)
{
    if (const CProject* project = projectModel->getProject())
        setWindowTitle(project->getName() + QStringLiteral("[*]"));
}

ProjectWindow::~ProjectWindow() = default;

ProjectWindow* ProjectWindow::getProjectWindow(const CProject* project)
{
    if (project == nullptr)
        return nullptr;
    const QWidgetList widgets = QApplication::topLevelWidgets();
    for (QWidget* widget : widgets) {
        auto* window = qobject_cast<ProjectWindow*>(widget);
        if (window != nullptr && window->getModel()->getProject() == project)
            return window;
    }
    return nullptr;
}

void ProjectWindow::addUriNavigationHandler(std::unique_ptr<IUriNavigationHandler> handler)
{
    if (handler)
        uriNavigationHandlers.push_back(std::move(handler));
}

bool ProjectWindow::navigate(const QUrl& url)
{
    return std::any_of(uriNavigationHandlers.begin(), uriNavigationHandlers.end(),
                       [&url](const auto& handler) { return handler->navigate(url); });
}
