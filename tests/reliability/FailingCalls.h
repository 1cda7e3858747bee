#pragma once

#include <QByteArray>

#include <vector>

/// Has one of the system's calls on files below a folder fail: the n-th that opens a file for writing,
/// writes, syncs, links or renames it, or makes a folder; where reading counts, also the n-th that opens it
/// for reading, reads or closes it. Where the failure lasts, all that come after it fail as well, as far as
/// they can end with that error. The program must define the calls itself, which FailingCalls.cpp does, or
/// have a library preloaded that does: a library's call ends up there as well.
///
/// At most one exists at a time. Calls of other threads count, too.
class FailingCalls
{
public:
    enum class Meant { Changes, ReadingToo };
    enum class Duration { Once, Lasting };

    /// The call with that number, counted from 1, fails with that errno; none with 0.
    FailingCalls(const QByteArray& folder, int number, int error, Meant meant = Meant::Changes,
                 Duration duration = Duration::Once);
    ~FailingCalls();
    FailingCalls(const FailingCalls&) = delete;
    FailingCalls& operator=(const FailingCalls&) = delete;

    /// How many calls there were so far.
    int getCount() const;
    bool hasFailed() const;
    /// The call that failed first, as "write"; empty if none did.
    QByteArray getFailedCall() const;
    /// The names of the calls so far, in their order.
    std::vector<const char*> getCalls() const;
};

namespace failingcalls {

/// Whether the system lets that call end with that errno: no reading ends with a full disk.
bool canEndWith(const char* call, int error);

} // namespace failingcalls
