#pragma once

#include "host/files/CFileException.h"
#include "host/files/CQtArchive.h"

#include <cstddef>
#include <optional>
#include <string>

namespace orvel::desk {

/// Saves the value, or loads it, as the archive works: one list of the fields serves both.
template<typename T>
void serializeValue(CQtArchive& archive, T& value)
{
    if (archive.isSaving())
        archive << value;
    else
        archive >> value;
}

template<typename T>
void serializeValue(CQtArchive& archive, std::optional<T>& value)
{
    bool isThere = value.has_value();
    serializeValue(archive, isThere);
    if (!isThere) {
        value.reset();
        return;
    }
    T content = value.value_or(T());
    serializeValue(archive, content);
    value = content;
}

/// Loads how many of something follow.
///
/// @throws qor::CFileException  if there are more than a sound file can have
inline quint32 loadCount(CQtArchive& archive, std::size_t limit)
{
    quint32 count = 0;
    archive >> count;
    if (count > limit)
        throw qor::CFileException(qor::CFileException::CorruptFile, std::wstring());
    return count;
}

} // namespace orvel::desk
