#pragma once

#include <QProcess>

#include <sys/types.h>

/// A second user of the machine, as whom a test that runs as root can act.
class OtherUser
{
public:
    /// Acts as the other user, with the files and the sockets of the whole program, while it lives.
    OtherUser();
    ~OtherUser();
    OtherUser(const OtherUser&) = delete;
    OtherUser& operator=(const OtherUser&) = delete;

    /// Whether this program may act as somebody else.
    static bool isPossible();
    static uid_t getId();
};

/// A program that the other user runs.
class OtherUsersProcess : public QProcess
{
public:
    ~OtherUsersProcess() override;

protected:
    void setupChildProcess() override;
};
