#include "tests/reliability/FailingCalls.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <initializer_list>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// What the system's calls look at before anything of C++ may be there.
std::atomic<bool> isArmed{false};
std::atomic<bool> isReadingMeant{false};
std::array<char, PATH_MAX> watchedFolder{};
std::atomic<int> callCount{0};
std::atomic<int> failingNumber{0};
std::atomic<int> failureError{0};
std::atomic<const char*> failedCall{nullptr};
std::atomic<bool> isFailureLasting{false};
std::array<const char*, 100000> countedCalls{};

/// The folder itself counts as well: a file without a name is opened so.
bool isBelow(const char* path)
{
    const std::size_t size = std::strlen(watchedFolder.data());
    return std::strncmp(path, watchedFolder.data(), size) == 0 && (path[size] == '/' || path[size] == '\0');
}

bool isBelow(int file)
{
    std::array<char, 64> link{};
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", file);
    std::array<char, PATH_MAX> path{};
    const ssize_t size = readlink(link.data(), path.data(), path.size() - 1);
    return size > 0 && isBelow(path.data());
}

/// Whether the call whose number it is fails, as the first one or, where that lasts, as one of those after
/// it.
bool isNumberMeant(const char* call, int number)
{
    if (!isFailureLasting)
        return number == failingNumber;
    return failingNumber > 0 && number >= failingNumber && failingcalls::canEndWith(call, failureError);
}

/// Counts the call; true if it is to fail, with errno set.
template<typename File>
bool isToFail(const char* call, File file)
{
    if (!isArmed)
        return false;
    const int oldError = errno;
    bool isMeant = false;
    if (isBelow(file)) {
        const int number = ++callCount;
        if (number <= static_cast<int>(countedCalls.size()))
            countedCalls[static_cast<std::size_t>(number - 1)] = call;
        isMeant = isNumberMeant(call, number);
    }
    errno = oldError;
    if (!isMeant)
        return false;
    if (!failedCall)
        failedCall = call;
    errno = failureError;
    return true;
}

template<typename Function>
Function findNext(const char* name)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

bool isCreating(int flags)
{
    return (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
}

const char* nameOpening(int flags)
{
    if (isCreating(flags))
        return "create";
    return (flags & O_ACCMODE) == O_RDONLY ? "open" : "open for writing";
}

} // namespace

bool failingcalls::canEndWith(const char* call, int error)
{
    const auto isOneOf = [call](std::initializer_list<const char*> names) {
        return std::any_of(names.begin(), names.end(),
                           [call](const char* name) { return std::strcmp(call, name) == 0; });
    };
    switch (error) {
    case EMFILE:
        return isOneOf({"open", "open for writing", "create"});
    case ENOSPC:
        return isOneOf({"create", "write", "fsync", "rename", "linkat", "link", "symlink", "mkdir"});
    default:
        return true;
    }
}

FailingCalls::FailingCalls(const QByteArray& folder, int number, int error, Meant meant, Duration duration)
{
    isFailureLasting = duration == Duration::Lasting;
    isReadingMeant = meant == Meant::ReadingToo;
    std::snprintf(watchedFolder.data(), watchedFolder.size(), "%s", folder.constData());
    callCount = 0;
    failingNumber = number;
    failureError = error;
    failedCall = nullptr;
    isArmed = true;
}

FailingCalls::~FailingCalls()
{
    isArmed = false;
}

int FailingCalls::getCount() const
{
    return callCount;
}

bool FailingCalls::hasFailed() const
{
    return failedCall != nullptr;
}

QByteArray FailingCalls::getFailedCall() const
{
    return QByteArray(failedCall);
}

std::vector<const char*> FailingCalls::getCalls() const
{
    const auto count = std::min(static_cast<std::size_t>(callCount), countedCalls.size());
    return std::vector<const char*>(countedCalls.begin(),
                                    countedCalls.begin() + static_cast<std::ptrdiff_t>(count));
}

// The calls themselves. Each passes on to the system's what is not to fail.

extern "C" {

// Qt opens by this one, the host by the next.
__attribute__((visibility("default"))) int open64(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = isCreating(flags) ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    const char* name = nameOpening(flags);
    if ((isReadingMeant || std::strcmp(name, "open") != 0) && isToFail(name, path))
        return -1;
    static const auto next = findNext<int (*)(const char*, int, ...)>("open64");
    return next(path, flags, mode);
}

__attribute__((visibility("default"))) int open(const char* path, int flags, ...)
{
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = isCreating(flags) ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return open64(path, flags, mode);
}

__attribute__((visibility("default"))) ssize_t read(int file, void* data, size_t size)
{
    if (isReadingMeant && isToFail("read", file))
        return -1;
    static const auto next = findNext<ssize_t (*)(int, void*, size_t)>("read");
    return next(file, data, size);
}

/// Closes the file all the same, as the system does.
__attribute__((visibility("default"))) int close(int file)
{
    const bool isFailing = isReadingMeant && isToFail("close", file);
    const int error = errno;
    static const auto next = findNext<int (*)(int)>("close");
    const int result = next(file);
    if (!isFailing)
        return result;
    errno = error;
    return -1;
}

__attribute__((visibility("default"))) ssize_t write(int file, const void* data, size_t size)
{
    if (isToFail("write", file))
        return -1;
    static const auto next = findNext<ssize_t (*)(int, const void*, size_t)>("write");
    return next(file, data, size);
}

__attribute__((visibility("default"))) int fsync(int file)
{
    if (isToFail("fsync", file))
        return -1;
    static const auto next = findNext<int (*)(int)>("fsync");
    return next(file);
}

__attribute__((visibility("default"))) int rename(const char* from, const char* to) noexcept
{
    if (isToFail("rename", to))
        return -1;
    static const auto next = findNext<int (*)(const char*, const char*)>("rename");
    return next(from, to);
}

__attribute__((visibility("default"))) int linkat(int fromFolder, const char* from, int toFolder,
                                                  const char* to, int flags) noexcept
{
    if (isToFail("linkat", to))
        return -1;
    static const auto next = findNext<int (*)(int, const char*, int, const char*, int)>("linkat");
    return next(fromFolder, from, toFolder, to, flags);
}

__attribute__((visibility("default"))) int link(const char* from, const char* to) noexcept
{
    if (isToFail("link", to))
        return -1;
    static const auto next = findNext<int (*)(const char*, const char*)>("link");
    return next(from, to);
}

__attribute__((visibility("default"))) int symlink(const char* target, const char* path) noexcept
{
    if (isToFail("symlink", path))
        return -1;
    static const auto next = findNext<int (*)(const char*, const char*)>("symlink");
    return next(target, path);
}

__attribute__((visibility("default"))) int mkdir(const char* path, mode_t mode) noexcept
{
    if (isToFail("mkdir", path))
        return -1;
    static const auto next = findNext<int (*)(const char*, mode_t)>("mkdir");
    return next(path, mode);
}

} // extern "C"
