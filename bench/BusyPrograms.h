#pragma once

#include <QProcess>

#include <memory>
#include <vector>

namespace orvel::bench {

/// Other programs that work without a pause, as many as the machine has processors, as long as this lives.
class BusyPrograms
{
public:
    BusyPrograms();
    ~BusyPrograms();

private:
    std::vector<std::unique_ptr<QProcess>> programs;
};

} // namespace orvel::bench
