#pragma once

#include <QElapsedTimer>
#include <QHash>
#include <QUrl>

namespace orvel::desk {

class DeskWindow;

/// The way of a URI to what it names in a window's project, or to a word to the user. Equal requests that
/// follow each other at once are one: a page full of links must not open as many browsers.
class UriFollower
{
public:
    /// What came of a URI.
    enum class Answer {
        Taken,        ///< acted upon, or the user was told why not
        OtherProject, ///< it leads to another project
        NotUnderstood
    };

    /// The window outlives the object.
    explicit UriFollower(DeskWindow& deskWindow);

    Answer follow(const QUrl& url);
    /// Tells the user why nobody followed a URI.
    void explain(const QUrl& url);

private:
    QString getProjectName() const;
    bool isRepeated(const QUrl& url);

    DeskWindow& window;
    QHash<QString, qint64> latestRequests; ///< by what they ask for, the time at which they came, ms
    QElapsedTimer clock;
};

} // namespace orvel::desk
