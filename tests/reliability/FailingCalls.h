#pragma once

#include <QByteArray>

/// Has one of the system's calls on files below a folder fail: the n-th that opens a file for writing,
/// writes, syncs, links or renames it, or makes a folder; where reading counts, also the n-th that opens it
/// for reading, reads or closes it. The program must define the calls itself, which FailingCalls.cpp does: a
/// library's call ends up there as well.
///
/// At most one exists at a time. Calls of other threads count, too.
class FailingCalls
{
public:
    enum class Meant { Changes, ReadingToo };

    /// The call with that number, counted from 1, fails with that errno; none with 0.
    FailingCalls(const QByteArray& folder, int number, int error, Meant meant = Meant::Changes);
    ~FailingCalls();
    FailingCalls(const FailingCalls&) = delete;
    FailingCalls& operator=(const FailingCalls&) = delete;

    /// How many calls there were so far.
    int getCount() const;
    bool hasFailed() const;
    /// The call that failed, as "write"; empty if none did.
    QByteArray getFailedCall() const;
};
