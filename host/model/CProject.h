#pragma once

#include "host/host_export.h"

#include <QString>

/// A project: its name, and the file in which it is kept.
class HOST_EXPORT CProject
{
public:
    /// @param projectName  as the user reads it
    explicit CProject(const QString& projectName);
    CProject(const CProject&) = delete;
    CProject& operator=(const CProject&) = delete;

    QString getName() const;              ///< As the user reads it.
    void setName(const QString& newName); ///< Pages that exist keep the old name.

    /// Empty for a project that has not been saved yet.
    QString getFilePath() const;
    /// @param path  absolute; empty for a project without a file
    void setFilePath(const QString& path);

private:
    QString name;
    QString filePath;
};
