#include "bench/BenchFiles.h"
#include "bench/Measurement.h"
#include "bench/Operations.h"
#include "bench/Report.h"
#include "bench/Rounds.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QTemporaryDir>

#include <cstdio>

namespace {

constexpr int kDefaultRounds = 5;
constexpr int kQuickRounds = 3;
constexpr int kQuickSize = 10000;

struct Options
{
    QString operation; ///< empty for all
    int size = 0;      ///< 0 for all
    int rounds = kDefaultRounds;
    bool isQuick = false;
    QString jsonPath;
    QString program; ///< set in a child process, which measures this one
    QString folder;
    bool wantsDigest = false;
};

Options readOptions(const QCoreApplication& application)
{
    const auto makeOption = [](const char* name, const char* description, const char* value) {
        return QCommandLineOption(QString::fromLatin1(name), QString::fromLatin1(description),
                                  QString::fromLatin1(value));
    };
    const QCommandLineOption operation = makeOption("operation", "Measure this operation only.", "name");
    const QCommandLineOption size = makeOption("size", "Measure this number of messages only.", "number");
    const QCommandLineOption rounds = makeOption("rounds", "Take medians of so many rounds.", "number");
    const QCommandLineOption json = makeOption("json", "Write the medians to this file, too.", "file");
    const QCommandLineOption quick = makeOption("quick", "Few rounds and small sizes: under 40 s.", "");
    QCommandLineOption program = makeOption("measure", "", "program");
    QCommandLineOption folder = makeOption("folder", "", "path");
    QCommandLineOption digest = makeOption("digest", "", "");
    for (QCommandLineOption* option : {&program, &folder, &digest})
        option->setFlags(QCommandLineOption::HiddenFromHelp);

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Measures the protocol library against other ways to do the same."));
    parser.addHelpOption();
    parser.addOptions({operation, size, rounds, json, quick, program, folder, digest});
    parser.process(application);

    Options options;
    options.operation = parser.value(operation);
    options.size = parser.value(size).toInt();
    options.isQuick = parser.isSet(quick);
    if (options.isQuick)
        options.rounds = kQuickRounds;
    if (parser.isSet(rounds))
        options.rounds = std::max(1, parser.value(rounds).toInt());
    options.jsonPath = parser.value(json);
    options.program = parser.value(program);
    options.folder = parser.value(folder);
    options.wantsDigest = parser.isSet(digest);
    return options;
}

bool isWanted(const Operation& operation, const Options& options)
{
    return options.operation.isEmpty() || options.operation == operation.name;
}

std::vector<int> getSizes(const Operation& operation, const Options& options)
{
    if (options.size > 0)
        return {options.size};
    if (options.isQuick)
        return {kQuickSize};
    return operation.sizes;
}

int runChild(const Options& options)
{
    const Operation* operation = findOperation(options.operation);
    if (!operation)
        return 2;
    const TaskRequest request{options.program, options.size, options.folder};
    const QByteArray line = toLine(measure(*operation, request, options.wantsDigest));
    std::puts(line.constData());
    return 0;
}

void prepareFiles(const Operation& operation, int size, const QString& folder)
{
    if (operation.dataFileType == 0)
        return;
    prepareDataFile(folder, operation.dataFileType, kWarmUpSize);
    prepareDataFile(folder, operation.dataFileType, size);
}

int runAll(const Options& options)
{
    const QTemporaryDir folder;
    std::vector<Series> results;
    for (const Operation& operation : getOperations()) {
        if (!isWanted(operation, options))
            continue;
        for (const int size : getSizes(operation, options)) {
            prepareFiles(operation, size, folder.path());
            const std::vector<Series> list = measureInRounds(operation, size, options.rounds, folder.path());
            results.insert(results.end(), list.begin(), list.end());
        }
    }
    std::fputs(qUtf8Printable(makeTable(results)), stdout);
    if (!options.jsonPath.isEmpty())
        writeFile(options.jsonPath, makeJson(results));
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const Options options = readOptions(application);
    return options.program.isEmpty() ? runAll(options) : runChild(options);
}
