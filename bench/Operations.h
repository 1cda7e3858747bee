#pragma once

#include "bench/Task.h"

#include <QStringList>

#include <memory>
#include <vector>

/// Something that is measured, and the programs that do it.
struct Operation
{
    QString name;
    QStringList programs;
    std::vector<int> sizes;
    std::unique_ptr<Task> (*makeTask)(const TaskRequest& request);
    int dataFileType; ///< protocol type of the data file that it works on; 0 when it needs none
};

const std::vector<Operation>& getOperations();

/// Null for a name that no operation has.
const Operation* findOperation(const QString& name);
