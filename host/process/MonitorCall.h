#pragma once

#include "host/host_export.h"
#include "host/process/IProcessMonitor.h"

#include <cstddef>
#include <optional>
#include <string>
#include <variant>

/// What a run tells its monitor, as values that can wait until somebody makes the call.
namespace monitorcalls {

struct SetPercentage
{
    int percentage;
};

struct StartStage
{
    std::wstring name;
};

struct FinishStage
{};

struct StartProtocolStage
{
    std::wstring name;
};

struct FinishProtocolStage
{};

struct SetSilent
{
    bool silent;
};

enum class LineKind { Error, Warning, Message, Service };

struct WriteLine
{
    LineKind kind;
    std::wstring text;
    std::optional<std::wstring> detail;
};

} // namespace monitorcalls

using MonitorCall =
    std::variant<monitorcalls::SetPercentage, monitorcalls::StartStage, monitorcalls::FinishStage,
                 monitorcalls::StartProtocolStage, monitorcalls::FinishProtocolStage, monitorcalls::SetSilent,
                 monitorcalls::WriteLine>;

namespace monitorcalls {

/// Makes the call on @p target.
HOST_EXPORT void make(MonitorCall&& call, qor::IProcessMonitor& target);

/// The memory that the call takes while it waits.
HOST_EXPORT std::size_t countBytes(const MonitorCall& call);

} // namespace monitorcalls
