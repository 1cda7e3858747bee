#include "apps/desk/document/FileState.h"

#include <QFile>

#include <sys/stat.h>
#include <tuple>

namespace orvel::desk {

namespace {

auto toTuple(const FileState& state)
{
    return std::make_tuple(state.exists, state.device, state.inode, state.size, state.seconds,
                           state.nanoseconds);
}

} // namespace

FileState FileState::of(const QString& path)
{
    struct stat status = {};
    if (stat(QFile::encodeName(path).constData(), &status) != 0)
        return FileState();
    return {true,           status.st_dev,         status.st_ino,
            status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

bool operator==(const FileState& left, const FileState& right)
{
    return toTuple(left) == toTuple(right);
}

bool operator!=(const FileState& left, const FileState& right)
{
    return !(left == right);
}

} // namespace orvel::desk
