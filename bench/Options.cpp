#include "bench/Options.h"

#include "bench/Operations.h"

#include <QCommandLineParser>

#include <cstdio>
#include <cstdlib>

namespace orvel::bench {

namespace {

QCommandLineOption makeOption(const char* name, const char* description, const char* value = "")
{
    return {QString::fromLatin1(name), QString::fromLatin1(description), QString::fromLatin1(value)};
}

[[noreturn]] void failUsage(const QString& reason)
{
    std::fprintf(stderr, "orvel-bench: %s\n", qUtf8Printable(reason));
    std::exit(2);
}

int readNumber(const QCommandLineParser& parser, const QCommandLineOption& option, int defaultNumber)
{
    if (!parser.isSet(option))
        return defaultNumber;
    const int number = parser.value(option).toInt();
    if (number <= 0)
        failUsage(QStringLiteral("--%1 takes a number").arg(option.names().constFirst()));
    return number;
}

} // namespace

Options readOptions(const QStringList& arguments)
{
    const QCommandLineOption operation = makeOption("operation", "Measure this operation only.", "name");
    const QCommandLineOption size =
        makeOption("size", "Measure with this number of messages only.", "number");
    const QCommandLineOption rounds = makeOption("rounds", "Take the medians of so many rounds.", "number");
    const QCommandLineOption quick = makeOption("quick", "Measure with 10,000 messages only: under 40 s.");
    const QCommandLineOption json = makeOption("json", "Write the medians to this file, too.", "file");
    const QCommandLineOption folder =
        makeOption("folder", "Keep the files in this folder, not in one that is removed.", "path");
    QCommandLineOption program = makeOption("measure", "", "program");
    QCommandLineOption digest = makeOption("digest", "");
    program.setFlags(QCommandLineOption::HiddenFromHelp);
    digest.setFlags(QCommandLineOption::HiddenFromHelp);

    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Measures the protocol library against other ways of doing the same."));
    parser.addHelpOption();
    parser.addOptions({operation, size, rounds, quick, json, folder, program, digest});
    parser.process(arguments);

    Options options;
    options.operation = parser.value(operation);
    if (!options.operation.isEmpty() && !findOperation(options.operation))
        failUsage(QStringLiteral("there is no operation \"%1\"").arg(options.operation));
    options.size = readNumber(parser, size, 0);
    options.isQuick = parser.isSet(quick);
    options.rounds = readNumber(parser, rounds, options.rounds);
    options.jsonPath = parser.value(json);
    options.folder = parser.value(folder);
    options.program = parser.value(program);
    options.wantsDigest = parser.isSet(digest);
    return options;
}

} // namespace orvel::bench
