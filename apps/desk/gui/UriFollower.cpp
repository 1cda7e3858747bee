#include "apps/desk/gui/UriFollower.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/gui/DeskWindow.h"
#include "apps/desk/gui/MessageBar.h"
#include "host/app/SDIApplication.h"

#include <QUrlQuery>

namespace orvel::desk {

namespace {

QString findProjectName(const QUrl& url)
{
    return QUrlQuery(url).queryItemValue(QStringLiteral("project"), QUrl::FullyDecoded);
}

} // namespace

UriFollower::Answer UriFollower::follow(const QUrl& url)
{
    if (url.scheme() != static_cast<SDIApplication*>(getApplication())->getUriScheme())
        return Answer::NotUnderstood;
    if (findProjectName(url) != getProjectName())
        return Answer::OtherProject;
    // A page would empty the protocol under the run's hands.
    if (window.isRunWorking() && url.host() != QLatin1String("locate-item"))
        window.getMessageBar().showMessage(
            Desk::tr("Идёт обработка. Откройте ссылку ещё раз, когда она закончится."));
    else if (!window.navigate(url))
        return Answer::NotUnderstood;
    window.bringToFront();
    return Answer::Taken;
}

void UriFollower::explain(const QUrl& url)
{
    const QString projectName = findProjectName(url);
    window.getMessageBar().showMessage(
        projectName.isEmpty() || projectName == getProjectName()
            ? Desk::tr("Ссылка не понята: %1").arg(url.toDisplayString())
            : Desk::tr("Ссылка ведёт в проект «%1». Откройте этот проект и щёлкните ссылку ещё раз.")
                  .arg(projectName));
    window.bringToFront();
}

QString UriFollower::getProjectName() const
{
    return window.getDocument().getProject().getName();
}

} // namespace orvel::desk
