#pragma once

namespace orvel::apps {

/// Ends the program in order when the system asks it to, by TERM, INT or HUP: event loops return, so that
/// `main` takes down what it has set up. A second signal ends the program at once. Made first in `main`;
/// there is one.
class TerminationSignals
{
public:
    TerminationSignals();
    ~TerminationSignals();
    TerminationSignals(const TerminationSignals&) = delete;
    TerminationSignals& operator=(const TerminationSignals&) = delete;

    /// To be called once there is a QCoreApplication.
    void watch();

    /// Whether one has come. What takes long without an event loop asks for it.
    static bool hasCome();
    /// Waits until there is something to be read from a descriptor, or the end of it. False if a signal has
    /// come.
    static bool waitForInput(int descriptor);
    /// What `main` is to return: 128 and the number of the signal that has come, else @p code.
    static int getExitCode(int code);
};

} // namespace orvel::apps
