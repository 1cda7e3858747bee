#include "bench/Operations.h"

#include "Orvel/store/ProtocolTypes.h"
#include "bench/tasks/DataFileTasks.h"
#include "bench/tasks/DeskRunTasks.h"
#include "bench/tasks/IntakeTasks.h"
#include "bench/tasks/PageTasks.h"
#include "bench/tasks/PictureTask.h"
#include "bench/tasks/PlotsTask.h"
#include "bench/tasks/ProtocolPanelTask.h"
#include "bench/tasks/TableTask.h"
#include "bench/tasks/WindowRunTasks.h"

#include <algorithm>

namespace orvel::bench {

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
    const int quick = 10000;
    // A document of more messages takes more memory than machines have: 6.5 GB for 1,000,000.
    const int domLimit = 100000;
    // A regular expression takes quadratic time on this line: 6 s for 48 KB.
    const int hostileQuick = 12000;
    const int hostileLimit = 48000;
    const QStringList codecs = makeNames({"orvel", "dom", "qxmlstream", "pugixml", "limit"});
    const QStringList intakes = makeNames({"orvel", "dom", "qregularexpression", "limit"});
    const QStringList pages = makeNames({"orvel", "dom", "limit"});
    const QStringList orvelAndDom = makeNames({"orvel", "dom"});
    const QStringList hostiles = makeNames({"orvel", "dom", "qregularexpression"});
    const QStringList runs = makeNames({"orvel", "bare"});
    const QStringList orvel = makeNames({"orvel"});
    const QStringList deskRuns = makeNames({"orvel", "bare", "window", "busy"});
    const QStringList imports = makeNames({"orvel", "window"});
    const std::vector<int> networks{22500, 100000};
    const int quickNetwork = 2500;
    const int compile = enums::Compile;
    return {
        {QStringLiteral("desk_run"), deskRuns, networks, quickNetwork, 0, 0, makeDeskRunTask},
        {QStringLiteral("import"), imports, {62500, 250000}, quickNetwork, 0, 0, makeImportTask},
        {QStringLiteral("intake"), intakes, sizes, quick, sizes.back(), 0, makeIntakeTask},
        {QStringLiteral("hostile"), hostiles, {48000, 96000}, hostileQuick, hostileLimit, 0, makeHostileTask},
        {QStringLiteral("write"), codecs, sizes, quick, domLimit, compile, makeWriteTask},
        {QStringLiteral("read"), codecs, sizes, quick, domLimit, compile, makeReadTask},
        {QStringLiteral("page"), pages, sizes, quick, domLimit, compile, makePageTask},
        {QStringLiteral("page_staged"), pages, sizes, quick, domLimit, enums::Adjust, makeStagedPageTask},
        {QStringLiteral("item_page"), orvelAndDom, sizes, quick, domLimit, compile, makeItemPageTask},
        {QStringLiteral("load"), orvel, {1}, 1, 0, 0, nullptr},
        {QStringLiteral("window_run"), runs, {100000}, quick, 0, 0, makeWindowRunTask},
        {QStringLiteral("table"), orvel, {20000, 100000}, quick, 0, 0, makeTableTask},
        {QStringLiteral("picture"), orvel, {20000, 100000}, quick, 0, 0, makePictureTask},
        {QStringLiteral("plots"), orvel, {20000, 100000}, quick, 0, 0, makePlotsTask},
        {QStringLiteral("protocol_panel"), orvel, {20000, 100000}, quick, 0, 0, makeProtocolPanelTask},
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

} // namespace orvel::bench
