#include "host/model/CProject.h"

CProject::CProject(const QString& projectName) : name(projectName)
{}

QString CProject::getName() const
{
    return name;
}

void CProject::setName(const QString& newName)
{
    name = newName;
}

QString CProject::getFilePath() const
{
    return filePath;
}

void CProject::setFilePath(const QString& path)
{
    filePath = path;
}
