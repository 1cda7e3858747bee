#pragma once

#include <QLocalServer>
#include <QUrl>

#include <functional>

namespace orvel::desk {

/// Takes URIs from later starts of the program by the same user. What a sender may occupy is bounded: the
/// length of a request, the time until its end, and the number of those that wait.
class UriServer : public QObject
{
    Q_OBJECT

public:
    /// Says whether the URI was acted upon.
    using Follow = std::function<bool(const QUrl& url)>;
    /// Tells the user why nobody acted upon the URI.
    using Explain = std::function<void(const QUrl& url)>;

    UriServer(Follow followFunction, Explain explainFunction, QObject* parent = nullptr);

    /// False if later starts cannot reach this one.
    bool listen();
    /// Removes the sockets of instances that were killed. One that is alive keeps its own, even when it does
    /// not answer.
    static void removeLeftOvers();

private:
    void acceptConnection();
    void answer(QLocalSocket& socket) const;

    QLocalServer server;
    Follow follow;
    Explain explain;
};

namespace uriclient {

enum class Answer {
    Taken,  ///< an instance acted upon the URI, or told the user why it did not
    Silent, ///< an instance runs, but does not answer
    Nobody  ///< no instance runs
};

/// Hands a URI to the running instances of this user until one acts upon it; if none does, the first tells
/// the user why.
Answer handOver(const QUrl& url);

} // namespace uriclient

} // namespace orvel::desk
