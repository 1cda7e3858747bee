#pragma once

#include "host/files/CFileException.h"

#include <QString>

/// What a qor::CFileException tells.
struct FileFailure
{
    int code = 0;
    QString description;
};

/// The failure that the action ends with; code 0 if it does not fail.
template<class Action>
FileFailure getFailure(Action action)
{
    try {
        action();
    } catch (const qor::CFileException& e) {
        return {e.getCode(), QString::fromStdWString(e.getDescription())};
    }
    return {};
}
