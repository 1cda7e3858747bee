#include "host/process/ProjectRun.h"

#include <set>

namespace {

std::set<const CProject*>& getBusyProjects()
{
    static std::set<const CProject*> projects;
    return projects;
}

} // namespace

std::unique_ptr<ProjectRun> ProjectRun::begin(const CProject* project)
{
    return isWorking(project) ? nullptr : std::unique_ptr<ProjectRun>(new ProjectRun(project));
}

bool ProjectRun::isWorking(const CProject* project)
{
    return getBusyProjects().count(project) != 0;
}

ProjectRun::~ProjectRun()
{
    getBusyProjects().erase(project);
}

ProjectRun::ProjectRun(const CProject* runProject) : project(runProject)
{
    getBusyProjects().insert(project);
}
