#include "apps/common/OffscreenPlatform.h"
#include "bench/BenchFiles.h"
#include "bench/Measurement.h"
#include "bench/Operations.h"
#include "bench/Options.h"
#include "bench/Report.h"
#include "bench/Rounds.h"
#include "host/files/WholeFile.h"

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>

#include <cstdio>
#include <exception>

using namespace orvel::bench;

namespace {

/// Measures one operation of one program; the parent process reads the line that comes out.
void runChild(const Options& options)
{
    const Operation* operation = findOperation(options.operation);
    TaskRequest request{options.program, kWarmUpSize, options.folder};
    operation->makeTask(request)->run();

    request.size = options.size;
    const std::unique_ptr<Task> task = operation->makeTask(request);
    Measurement measurement = measureCall([&task] { task->run(); });
    task->runOn();
    measurement.stalls = task->getStalls();
    if (options.wantsDigest)
        measurement.digest = task->getDigest();
    std::puts(toLine(measurement).constData());
}

std::vector<int> getSizes(const Operation& operation, const Options& options)
{
    // Without a task there is nothing that has a size.
    if (options.size > 0 && operation.makeTask)
        return {options.size};
    return options.isQuick ? std::vector<int>{operation.quickSize} : operation.sizes;
}

void prepareFiles(const Operation& operation, int size, const QString& folder)
{
    if (operation.dataFileType == 0)
        return;
    prepareDataFile(folder, operation.dataFileType, kWarmUpSize);
    prepareDataFile(folder, operation.dataFileType, size);
}

/// Where the files go unless told: into memory where the system has a place for that. What a disk takes, and
/// what it takes for other programs meanwhile, would be the same for all and hide what they do.
QString getFolderPattern()
{
    const QString memory = QStringLiteral("/dev/shm");
    const QString place = QFileInfo(memory).isWritable() ? memory : QDir::tempPath();
    return place + QStringLiteral("/orvel-bench-XXXXXX");
}

void runAll(const Options& options)
{
    const QTemporaryDir temporary(getFolderPattern());
    const QString folder = options.folder.isEmpty() ? temporary.path() : options.folder;
    std::vector<Series> results;
    for (const Operation& operation : getOperations()) {
        if (!options.operation.isEmpty() && options.operation != operation.name)
            continue;
        for (const int size : getSizes(operation, options)) {
            prepareFiles(operation, size, folder);
            const std::vector<Series> list = measureInRounds(operation, size, options.rounds, folder);
            results.insert(results.end(), list.begin(), list.end());
        }
    }
    std::fputs(qUtf8Printable(makeTable(results)), stdout);
    if (!options.jsonPath.isEmpty())
        files::writeAll(options.jsonPath, makeJson(results));
}

} // namespace

int main(int argc, char** argv)
{
    const orvel::apps::OffscreenPlatform platform;
    const QApplication application(argc, argv);
    const Options options = readOptions(QCoreApplication::arguments());
    try {
        if (options.program.isEmpty())
            runAll(options);
        else
            runChild(options);
        return 0;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orvel-bench: %s\n", error.what());
        return 1;
    }
}
