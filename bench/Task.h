#pragma once

#include <QString>

#include <vector>

namespace orvel::bench {

/// For how long a part of an operation kept the event loop from its work.
struct Stall
{
    QString part;
    double seconds = 0;
    double cpuSeconds = 0; ///< what the event loop's thread worked in that time
};

/// One operation of one program, ready to be measured.
class Task
{
public:
    Task() = default;
    Task(const Task&) = delete;
    Task& operator=(const Task&) = delete;
    virtual ~Task() = default;

    /// The operation, and nothing else. Runs once.
    virtual void run() = 0;
    /// What goes on by itself when the operation is over. Its time is not measured, its stalls are.
    virtual void runOn() {}
    /// A digest of what came out; empty where nothing comes out that could be compared.
    virtual QString getDigest() { return {}; }
    /// The longest stall of each part; empty for an operation without an event loop.
    virtual std::vector<Stall> getStalls() const { return {}; }
};

/// What a task is to be made for.
struct TaskRequest
{
    QString program;
    int size = 0;
    QString folder; ///< holds the data files; a task may write files of its own there
};

} // namespace orvel::bench
