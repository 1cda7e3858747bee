#pragma once

#include <QObject>

#include <functional>
#include <map>
#include <optional>

class ProjectWindow;

namespace orvel::desk {

class Document;

/// The pages that the window opens: of protocols, of lines and of reports. Pages of protocols are kept while
/// their lines are the same.
class DeskPages : public QObject
{
    Q_OBJECT

public:
    /// @param projectWindow  of the document: the parent, and where refusals are told
    DeskPages(Document& projectDocument, ProjectWindow& projectWindow);

    /// Opens the page of a protocol; while its lines are the same, the page that there is.
    void showProtocol(int protocolType);
    /// Opens the page of a protocol at the line with that text, or with none at its beginning, and has it say
    /// whether it is out of date.
    void showLine(int protocolType, const QString& text);
    void showReport(int reportType);
    /// Has a page shown. One whose lines have had to be restored was made without them, and is withdrawn
    /// before a browser has come to it.
    ///
    /// @return whether it is shown with all its lines
    bool showPage(const std::function<void()>& show);
    /// Whether the lines of the protocols are all there; says what had to be restored.
    bool check(std::optional<int> finishedRun = std::nullopt);

Q_SIGNALS:
    /// Something to be said that asks for no answer.
    void told(const QString& text);

private:
    Document& document;
    ProjectWindow& window;
    std::map<int, QString> pages; ///< made of the lines as they are, by protocol type
};

} // namespace orvel::desk
