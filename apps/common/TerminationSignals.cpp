#include "apps/common/TerminationSignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace orvel::apps {

namespace {

constexpr std::array kSignals{SIGTERM, SIGINT, SIGHUP};
constexpr int kExitCodeOfSignals = 128;

// All that a signal's handler may touch.
std::atomic<int> caughtSignal{0};
std::array<int, 2> wakingPipe{-1, -1};

void noteSignal(int number)
{
    caughtSignal = number;
    const char anything = 0;
    static_cast<void>(!write(wakingPipe[1], &anything, 1));
}

} // namespace

TerminationSignals::TerminationSignals()
{
    if (pipe2(wakingPipe.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    for (const int number : kSignals) {
        struct sigaction old = {};
        sigaction(number, nullptr, &old);
        // As by nohup: who started the program doesn't want it to end.
        if (old.sa_handler == SIG_IGN)
            continue;
        struct sigaction action = {};
        action.sa_handler = noteSignal;
        action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
        sigaction(number, &action, nullptr);
    }
}

TerminationSignals::~TerminationSignals()
{
    for (const int number : kSignals) {
        struct sigaction present = {};
        sigaction(number, nullptr, &present);
        if (present.sa_handler == noteSignal)
            std::signal(number, SIG_DFL);
    }
    for (int& end : wakingPipe) {
        close(end);
        end = -1;
    }
}

void TerminationSignals::watch()
{
    if (wakingPipe[0] < 0)
        return;
    auto* notifier = new QSocketNotifier(wakingPipe[0], QSocketNotifier::Read, QCoreApplication::instance());
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [notifier] {
        notifier->setEnabled(false);
        QCoreApplication::exit(getExitCode(0));
    });
}

bool TerminationSignals::hasCome()
{
    return caughtSignal != 0;
}

bool TerminationSignals::waitForInput(int descriptor)
{
    std::array<pollfd, 2> awaited{pollfd{descriptor, POLLIN, 0}, pollfd{wakingPipe[0], POLLIN, 0}};
    while (!hasCome() && poll(awaited.data(), awaited.size(), -1) < 0 && errno == EINTR) {
    }
    return !hasCome();
}

int TerminationSignals::getExitCode(int code)
{
    return hasCome() ? kExitCodeOfSignals + caughtSignal : code;
}

} // namespace orvel::apps
