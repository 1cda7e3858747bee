#pragma once

#include <QLockFile>
#include <QString>

#include <memory>

namespace orvel::desk {

/// Keeps a project file for this program while it is open, by a file beside it that other instances look for.
class ProjectLock
{
public:
    /// Takes the lock of a project file, which need not exist. Where no file can be made beside it, as in a
    /// folder that may only be read, the lock is not held, and there is a warning.
    ///
    /// @throws qor::CFileException if another program has the lock; the text says which
    static std::shared_ptr<ProjectLock> take(const QString& path);

    /// To be called for a file that is not the project's before it is written.
    ///
    /// @throws qor::CFileException if the file is a project that is open somewhere, or lies among the
    /// temporary
    ///         files of a program that runs
    static void requireFree(const QString& path);

    /// Whether the path leads to the file that this lock keeps.
    bool isOf(const QString& path) const;
    bool isHeld() const { return lock.isLocked(); }
    /// What the user is to be told when the lock is not held; empty from the second time on.
    QString takeWarning();

private:
    enum class Attempt { Held, Impossible, OfAnother };

    explicit ProjectLock(const QString& lockPath);

    Attempt attempt();
    /// The program that has the lock.
    QString describeOther() const;

    QString lockFile;
    QLockFile lock;
    QString warning;
};

} // namespace orvel::desk
