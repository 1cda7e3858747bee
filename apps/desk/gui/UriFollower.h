#pragma once

#include <QUrl>

namespace orvel::desk {

class DeskWindow;

/// The way of a URI to what it names in a window's project, or to a word to the user.
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
    explicit UriFollower(DeskWindow& deskWindow) : window(deskWindow) {}

    Answer follow(const QUrl& url);
    /// Tells the user why nobody followed a URI.
    void explain(const QUrl& url);

private:
    QString getProjectName() const;

    DeskWindow& window;
};

} // namespace orvel::desk
