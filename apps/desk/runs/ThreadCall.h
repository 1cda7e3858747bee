#pragma once

#include "host/process/IProcessMonitor.h"

#include <functional>

class QObject;

/// Has the thread of an object do something, and waits until it is done. For runs in their threads: a stopped
/// run stops waiting, since the window's thread may be waiting for the run by then.
///
/// False if the run was stopped before the action began; it will not be done any more then.
bool callInThread(QObject& object, const qor::IProcessMonitor& monitor, const std::function<void()>& action);
