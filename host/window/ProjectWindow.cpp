#include "host/window/ProjectWindow.h"

#include "host/app/Application.h"
#include "host/model/CProject.h"
#include "host/model/CProjectModel.h"
#include "host/process/ProjectRun.h"

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
    const bool isRunWorking = ProjectRun::isWorking(getModel()->getProject());
    const auto mayNavigate = [&](const auto& handler) {
        return !isRunWorking || handler->isAllowedDuringRun(url);
    };
    if (std::any_of(uriNavigationHandlers.begin(), uriNavigationHandlers.end(),
                    [&](const auto& handler) { return mayNavigate(handler) && handler->navigate(url); }))
        return true;
    if (std::all_of(uriNavigationHandlers.begin(), uriNavigationHandlers.end(), mayNavigate))
        return false;
    Application::warning(
        QCoreApplication::translate("Host", "Идёт обработка. Откройте ссылку ещё раз, когда она закончится."),
        this);
    return true;
}
