#include "apps/desk/gui/DeskSession.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/ProjectFile.h"
#include "apps/desk/gui/FileDialogs.h"
#include "apps/desk/gui/MessageBar.h"
#include "apps/desk/gui/RecentFiles.h"
#include "host/app/PluginManager.h"
#include "host/app/SDIApplication.h"
#include "host/files/Error.h"

namespace orvel::desk {

DeskSession::DeskSession(const PluginManager& pluginManager, const QString& journalPath)
    : plugins(pluginManager)
    , recordPath(journalPath)
    , uriServer(
          [this](const QUrl& url) {
              return window->getUriFollower().follow(url) == UriFollower::Answer::Taken;
          },
          [this](const QUrl& url) { window->getUriFollower().explain(url); })
{}

DeskSession::~DeskSession() = default;

void DeskSession::start(const QString& argument)
{
    showDocument(makeDocument());
    if (!uriServer.listen())
        window->getMessageBar().showMessage(
            Desk::tr("Ссылки со страниц не откроются в этом окне. Перезапустите программу."));
    if (argument.isEmpty())
        return;
    const QUrl url(argument);
    if (url.scheme() == static_cast<SDIApplication*>(getApplication())->getUriScheme())
        window->getUriFollower().explain(url);
    else if (filedialogs::isNetworkFile(argument))
        window->importFile(argument);
    else
        openProject(argument);
}

void DeskSession::openProject(const QString& path)
{
    if (const QString reason = filedialogs::describeNoFile(path); !reason.isEmpty()) {
        Application::warning(reason, window.get());
        return;
    }
    try {
        std::unique_ptr<Document> document = loadDocument(path);
        // Asked when there is something to show in place of the present project.
        if (!window->mayBeClosed())
            return;
        // Saved just now, if it is the same project.
        if (document->isFileChanged())
            document = loadDocument(path);
        showDocument(std::move(document));
        window->tellOfLock();
        recentfiles::add(path);
    } catch (const exceptions::Error& error) {
        Application::warning(Desk::tr("Проект не открыт. %1").arg(QString::fromStdWString(error.getText())),
                             window.get());
    }
}

void DeskSession::newProject()
{
    if (window->mayBeClosed())
        showDocument(makeDocument());
}

std::unique_ptr<Document> DeskSession::makeDocument() const
{
    return std::make_unique<Document>(plugins, Desk::tr("Новый проект"));
}

std::unique_ptr<Document> DeskSession::loadDocument(const QString& path) const
{
    const std::shared_ptr<ProjectLock> lock = projectfile::takeLock(window->getDocument(), path);
    std::unique_ptr<Document> document = makeDocument();
    projectfile::load(*document, path, lock);
    return document;
}

void DeskSession::showDocument(std::unique_ptr<Document> document)
{
    auto newWindow = std::make_unique<DeskWindow>(std::move(document));
    plugins.extendProjectGUI(newWindow.get());
    ++projectCount;
    if (!recordPath.isEmpty())
        newWindow->setRecordFile(
            projectCount == 1 ? recordPath : QStringLiteral("%1.%2").arg(recordPath).arg(projectCount));
    connect(newWindow.get(), &DeskWindow::openRequested, this, &DeskSession::openProject);
    connect(newWindow.get(), &DeskWindow::newRequested, this, &DeskSession::newProject);
    if (window)
        newWindow->setGeometry(window->geometry());
    newWindow->show();
    // The old window may be the one whose menu was used: it lives until that is over.
    if (window) {
        window->hide();
        window.release()->deleteLater();
    }
    window = std::move(newWindow);
}

} // namespace orvel::desk
