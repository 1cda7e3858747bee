#include "host/model/CProject.h"

#include "host/model/ModelRevision.h"

CProject::CProject(const QString& projectName) : name(projectName)
{}

QString CProject::getName() const
{
    return name;
}

void CProject::setName(const QString& newName)
{
    name = newName;
    modelrevision::advance();
}

QString CProject::getFilePath() const
{
    return filePath;
}

void CProject::setFilePath(const QString& path)
{
    filePath = path;
}
