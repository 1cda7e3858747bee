#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

namespace orvel::desk {

/// Keeps a project file for this program while it is open, by a file beside it that other instances look for.
class ProjectLock
{
public:
    /// Takes the lock of a project file, which need not exist. Where no file can be made beside it, nobody
    /// can save there either, and there is nothing to keep.
    ///
    /// @throws qor::CFileException if another program has the lock; the text says which
    static std::shared_ptr<ProjectLock> take(const QString& path);

    /// Whether the path leads to the file that this lock keeps.
    bool isOf(const QString& path) const;

private:
    explicit ProjectLock(const QString& lockPath);

    QString lockFile;
    QLockFile lock;
};

} // namespace orvel::desk
