#pragma once

#include "bench/Task.h"

#include <QStringList>

#include <memory>
#include <vector>

namespace orvel::bench {

/// Something that is measured, and the programs that do it.
struct Operation
{
    QString name;
    QStringList programs;
    std::vector<int> sizes;
    int quickSize;      ///< size of a quick measurement
    int largestDomSize; ///< the program "dom" takes no larger one
    int dataFileType;   ///< protocol type of the data file that it works on; 0 when it needs none
    /// Null for the loading of the plug-in: a program of its own does that, since this one is linked to it.
    std::unique_ptr<Task> (*makeTask)(const TaskRequest& request);
};

/// Size of the run that goes before every measurement.
constexpr int kWarmUpSize = 100;

const std::vector<Operation>& getOperations();

/// Null for a name that no operation has.
const Operation* findOperation(const QString& name);

} // namespace orvel::bench
