#pragma once

#include "host/host_export.h"

#include <QString>

class QFileInfo;

/// Copies a folder.
class HOST_EXPORT CDirCopier
{
public:
    /// What of the source folder is copied.
    enum Mode {
        FolderContents = 0, ///< What is in the source folder goes straight into the target folder.
        WholeFolder = 1,    ///< The target folder gets a folder named as the source.
    };
    /// What becomes of files that the target has.
    enum CopyOption {
        KeepExisting = 0,      ///< A file that the target has stays as it is.
        OverwriteOutdated = 4, ///< A file of the target that is older or different is replaced.
    };

    /// @param copyMode  one of Mode
    explicit CDirCopier(int copyMode);

    /// @param option  one of CopyOption
    void setCopyOption(int option);

    /// Copies files and folders, recursively. Missing folders are made. Every file appears in the target at
    /// once or not at all. Symbolic links inside the target are never followed: with OverwriteOutdated they
    /// are replaced, else they count as existing. Links to files in the source are copied as files; links to
    /// folders are left out.
    ///
    /// True if everything is in place; what can be copied is copied in any case. Copying from or to an empty
    /// path, or into the source folder itself, is refused.
    bool copyDir(const QString& from, const QString& to);

private:
    bool copyContents(const QString& from, const QString& to) const;
    bool makeFolder(const QString& path) const;
    bool copyFile(const QFileInfo& source, const QString& target) const;
    bool isToBeCopied(const QFileInfo& source, const QFileInfo& target) const;

    int mode;
    int copyOption = KeepExisting;
};
