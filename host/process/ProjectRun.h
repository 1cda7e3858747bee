#pragma once

#include <memory>

class CProject;

/// The run that works on a project. A second one, or whoever else uses what the run is filling, has to wait
/// until it is over. To be used in the GUI thread.
class ProjectRun
{
public:
    /// @return what stands for the run; null if another run works on the project
    static std::unique_ptr<ProjectRun> begin(const CProject* project);
    /// Whether a run works on the project.
    static bool isWorking(const CProject* project);

    ProjectRun(const ProjectRun&) = delete;
    ProjectRun& operator=(const ProjectRun&) = delete;
    /// The run is over.
    ~ProjectRun();

private:
    explicit ProjectRun(const CProject* runProject);

    const CProject* project;
};
