#include "tests/reliability/FailingCalls.h"

#include <cstdio>
#include <cstdlib>
#include <memory>

// Preloaded into a program, this has its calls fail as the environment says. When the program ends, its calls
// are told, one a line, and last the one that failed.

namespace {

std::unique_ptr<FailingCalls> calls;

QByteArray getVariable(const char* name)
{
    return QByteArray(std::getenv(name));
}

__attribute__((constructor)) void begin()
{
    const QByteArray folder = getVariable("FAILING_CALLS_FOLDER");
    if (folder.isEmpty())
        return;
    const bool isLasting = !getVariable("FAILING_CALLS_LAST").isEmpty();
    calls = std::make_unique<FailingCalls>(
        folder, getVariable("FAILING_CALLS_NUMBER").toInt(), getVariable("FAILING_CALLS_ERROR").toInt(),
        FailingCalls::Meant::ReadingToo,
        isLasting ? FailingCalls::Duration::Lasting : FailingCalls::Duration::Once);
}

__attribute__((destructor)) void end()
{
    if (!calls)
        return;
    const std::vector<const char*> counted = calls->getCalls();
    const QByteArray failed = calls->getFailedCall();
    calls.reset();
    std::FILE* report = std::fopen(getVariable("FAILING_CALLS_REPORT").constData(), "w");
    if (!report)
        return;
    for (const char* call : counted)
        std::fprintf(report, "%s\n", call);
    std::fprintf(report, "failed: %s\n", failed.constData());
    std::fclose(report);
}

} // namespace
