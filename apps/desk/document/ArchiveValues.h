#pragma once

#include "host/files/CQtArchive.h"

#include <optional>

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

} // namespace orvel::desk
