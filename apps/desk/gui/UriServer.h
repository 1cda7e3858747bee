#pragma once

#include <QLocalServer>
#include <QUrl>

#include <functional>

namespace orvel::desk {

/// Takes URIs from later starts of the program by the same user.
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

private:
    void acceptConnection();
    void answer(QLocalSocket& socket) const;

    QLocalServer server;
    Follow follow;
    Explain explain;
};

namespace uriclient {

/// Hands a URI to the running instances of this user until one acts upon it; if none does, the first tells
/// the user why. False if none runs.
bool handOver(const QUrl& url);

} // namespace uriclient

} // namespace orvel::desk
