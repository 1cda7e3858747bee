#pragma once

#include "host/process/IProcessMonitor.h"
#include "host/process/LineKind.h"

#include <cstddef>
#include <optional>
#include <string>
#include <variant>

/// What a run tells its monitor, as values that can wait until somebody makes the call.
namespace monitorcalls {

/// IProcessMonitor::setPercentage().
struct SetPercentage
{
    int percentage; ///< 0 to 100
};

/// IProcessMonitor::startStage().
struct StartStage
{
    std::wstring name; ///< of the stage
};

struct FinishStage
{};

/// IProcessMonitor::startProtocolStage().
struct StartProtocolStage
{
    std::wstring name; ///< of the stage
};

struct FinishProtocolStage
{};

/// IProcessMonitor::setSilent().
struct SetSilent
{
    bool silent; ///< whether lines are not shown
};

/// One of the writers.
struct WriteLine
{
    LineKind kind;                      ///< which writer
    std::wstring text;                  ///< HTML
    std::optional<std::wstring> detail; ///< HTML; nothing for a line without
};

} // namespace monitorcalls

using MonitorCall =
    std::variant<monitorcalls::SetPercentage, monitorcalls::StartStage, monitorcalls::FinishStage,
                 monitorcalls::StartProtocolStage, monitorcalls::FinishProtocolStage, monitorcalls::SetSilent,
                 monitorcalls::WriteLine>;

namespace monitorcalls {

/// Makes the call on @p target.
void make(MonitorCall&& call, qor::IProcessMonitor& target);

/// The memory that the call takes while it waits.
std::size_t countBytes(const MonitorCall& call);

} // namespace monitorcalls
