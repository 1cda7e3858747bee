#pragma once

#include "host/process/OrderedMonitorProxy.h"

#include <atomic>

/// What stands between a run and its target, without a run and without a target.
struct MonitorParts
{
    explicit MonitorParts(LinkQuestions::LinkSource linkSource = {}, bool silent = false)
        : calls([this] { ++wakeCount; })
        , questions([this] { ++wakeCount; }, std::move(linkSource))
        , proxy(calls, questions, control, silent)
    {}

    /// Makes all calls that wait on the target.
    void deliver(qor::IProcessMonitor& target)
    {
        for (MonitorCall& call : calls.take())
            monitorcalls::make(std::move(call), target);
    }

    std::atomic<int> wakeCount{0};
    CallQueue calls;
    LinkQuestions questions;
    RunControl control;
    OrderedMonitorProxy proxy;
};
