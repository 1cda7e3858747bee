#include "bench/Operations.h"

#include "Orvel/store/ProtocolTypes.h"
#include "bench/tasks/DataFileTasks.h"
#include "bench/tasks/IntakeTasks.h"
#include "bench/tasks/PageTasks.h"

#include <algorithm>

namespace {

QStringList makeNames(std::initializer_list<const char*> names)
{
    QStringList list;
    for (const char* name : names)
        list.append(QString::fromLatin1(name));
    return list;
}

std::vector<Operation> makeOperations()
{
    const std::vector<int> sizes{1000, 10000, 100000, 1000000};
    const std::vector<int> lineSizes{48000, 96000};
    const QStringList codecs = makeNames({"orvel", "dom", "qxmlstream", "pugixml", "limit"});
    const QStringList intakes = makeNames({"orvel", "dom", "qregularexpression", "limit"});
    const QStringList pages = makeNames({"orvel", "dom", "limit"});
    return {
        {QStringLiteral("intake"), intakes, sizes, makeIntakeTask, 0},
        {QStringLiteral("hostile"), makeNames({"orvel", "dom", "qregularexpression"}), lineSizes,
         makeHostileTask, 0},
        {QStringLiteral("write"), codecs, sizes, makeWriteTask, enums::Compile},
        {QStringLiteral("read"), codecs, sizes, makeReadTask, enums::Compile},
        {QStringLiteral("page"), pages, sizes, makePageTask, enums::Compile},
        {QStringLiteral("page_staged"), pages, sizes, makeStagedPageTask, enums::Adjust},
        {QStringLiteral("item_page"), makeNames({"orvel", "dom"}), sizes, makeItemPageTask, enums::Compile},
    };
}

} // namespace

const std::vector<Operation>& getOperations()
{
    static const std::vector<Operation> operations = makeOperations();
    return operations;
}

const Operation* findOperation(const QString& name)
{
    const std::vector<Operation>& operations = getOperations();
    const auto found = std::find_if(operations.begin(), operations.end(),
                                    [&](const Operation& operation) { return operation.name == name; });
    return found == operations.end() ? nullptr : &*found;
}
