#pragma once

#include <QString>

#include <cstdint>

namespace orvel::desk {

/// What a file was at a moment, to see later whether anybody has changed or replaced it.
struct FileState
{
    bool exists = false;
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t seconds = 0; ///< of the last change of its content
    std::int64_t nanoseconds = 0;

    static FileState of(const QString& path);
};

bool operator==(const FileState& left, const FileState& right);
bool operator!=(const FileState& left, const FileState& right);

} // namespace orvel::desk
