#pragma once

#include "host/host_export.h"

#include <QString>

/// A project: its name, and the file in which it is kept.
class HOST_EXPORT CProject
{
public:
    explicit CProject(const QString& projectName);
    CProject(const CProject&) = delete;
    CProject& operator=(const CProject&) = delete;

    QString getName() const;
    void setName(const QString& newName);

    /// Empty for a project that has not been saved yet.
    QString getFilePath() const;
    void setFilePath(const QString& path);

private:
    QString name;
    QString filePath;
};
