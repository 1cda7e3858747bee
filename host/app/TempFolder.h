#pragma once

#include "host/host_export.h"

#include <QString>

/// A folder of this instance's own below the system's folder for temporary files. Only its user can reach it,
/// and its name cannot be guessed. It is removed at the end; of an instance that is killed, by the next one
/// of that name.
class HOST_EXPORT TempFolder
{
public:
    /// Removes what killed instances have left, then makes the folder.
    /// @param name of the program
    /// @throws qor::CFileException if the folder cannot be made
    explicit TempFolder(const QString& name);
    ~TempFolder();
    /// Removes what killed instances of that name have left. For a program that needs no folder this time.
    static void removeLeftOvers(const QString& name);
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    /// Makes the folder again if somebody has removed it; empty, and as safe from other instances as it was.
    void restore();

    const QString& getPath() const { return path; }  ///< Absolute.
    QString filePath(const QString& fileName) const; ///< Absolute path of a file in the folder.

private:
    bool make(const QString& candidate);
    void unlock();

    QString path;
    int lock = -1;
};
