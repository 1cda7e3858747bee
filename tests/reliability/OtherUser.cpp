#include "tests/reliability/OtherUser.h"

#include <grp.h>
#include <unistd.h>

namespace {

// The user and the group "nobody" of any Linux.
constexpr uid_t kUser = 65534;
constexpr gid_t kGroup = 65534;

void check(int result)
{
    if (result != 0)
        qFatal("Cannot change the user");
}

} // namespace

OtherUser::OtherUser()
{
    check(setgroups(0, nullptr));
    check(setegid(kGroup));
    check(seteuid(kUser));
}

OtherUser::~OtherUser()
{
    check(seteuid(0));
    check(setegid(0));
}

bool OtherUser::isPossible()
{
    return geteuid() == 0;
}

uid_t OtherUser::getId()
{
    return kUser;
}

OtherUsersProcess::~OtherUsersProcess()
{
    kill();
    waitForFinished();
}

void OtherUsersProcess::setupChildProcess()
{
    if (setgroups(0, nullptr) != 0 || setgid(kGroup) != 0 || setuid(kUser) != 0)
        _exit(1);
}
