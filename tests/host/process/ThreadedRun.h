#pragma once

#include "tests/host/process/MonitorParts.h"

#include <QTest>

#include <functional>
#include <thread>

/// A run in a thread of its own, whose calls and questions the test serves as a GUI thread would.
class ThreadedRun
{
public:
    explicit ThreadedRun(const std::function<void(OrderedMonitorProxy&)>& function,
                         LinkQuestions::LinkSource linkSource = {})
        : parts(std::move(linkSource))
        , thread([this, function] {
            function(parts.proxy);
            parts.control.setFinished(false);
        })
    {}

    ~ThreadedRun()
    {
        parts.calls.abandon();
        parts.questions.abandon();
        parts.control.requestStop();
        thread.join();
    }

    void serveAll(qor::IProcessMonitor& target)
    {
        bool isFinished = false;
        while (!isFinished) {
            isFinished = parts.control.isFinished();
            parts.questions.answer(target, std::chrono::milliseconds(1));
            parts.deliver(target);
            QTest::qSleep(1);
        }
    }

    void waitForWake() const
    {
        while (parts.wakeCount == 0)
            QTest::qSleep(1);
    }

    MonitorParts parts;

private:
    std::thread thread;
};
