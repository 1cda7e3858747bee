#include "apps/desk/gui/UriFollower.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/gui/DeskNavigation.h"
#include "apps/desk/gui/DeskWindow.h"
#include "apps/desk/gui/MessageBar.h"
#include "host/app/SDIApplication.h"

#include <QUrlQuery>

#include <iterator>

namespace orvel::desk {

namespace {

QString findProjectName(const QUrl& url)
{
    return QUrlQuery(url).queryItemValue(QStringLiteral("project"), QUrl::FullyDecoded);
}

/// What else stands in a URI changes nothing of what it asks for.
QString getRequest(const QUrl& url)
{
    const QUrlQuery query(url);
    const QString id = QString::number(query.queryItemValue(QStringLiteral("id")).toLongLong());
    // An item is selected only by its own type.
    const bool hasType = url.host() == QLatin1String("locate-item");
    return url.host() + QLatin1Char(' ') + id + QLatin1Char(' ') +
           (hasType ? query.queryItemValue(QStringLiteral("type")) : QString());
}

// Requests that come sooner after an equal one are that one, ms.
constexpr qint64 kRepetition = 2000;
constexpr int kLongestShownUri = 200;

} // namespace

UriFollower::UriFollower(DeskWindow& deskWindow) : window(deskWindow)
{
    clock.start();
}

UriFollower::Answer UriFollower::follow(const QUrl& url)
{
    if (url.scheme() != static_cast<SDIApplication*>(getApplication())->getUriScheme())
        return Answer::NotUnderstood;
    if (findProjectName(url) != getProjectName())
        return Answer::OtherProject;
    if (DeskNavigation::isUnknownProtocol(url))
        return Answer::NotUnderstood;
    if (isRepeated(url))
        return Answer::Taken;
    // A page would empty the protocol under the run's hands.
    if (window.isRunWorking() && url.host() != QLatin1String("locate-item"))
        window.getMessageBar().showMessage(
            Desk::tr("Идёт обработка. Откройте ссылку ещё раз, когда она закончится."));
    else if (window.navigate(url))
        latestRequests.insert(getRequest(url), clock.elapsed());
    else
        return Answer::NotUnderstood;
    window.bringToFront();
    return Answer::Taken;
}

void UriFollower::explain(const QUrl& url)
{
    const QString projectName = findProjectName(url);
    window.getMessageBar().showMessage(
        projectName.isEmpty() || projectName == getProjectName()
            ? Desk::tr("Ссылка не понята: %1").arg(url.toDisplayString().left(kLongestShownUri))
            : Desk::tr("Ссылка ведёт в проект «%1». Откройте этот проект и щёлкните ссылку ещё раз.")
                  .arg(projectName.left(kLongestShownUri)));
    window.bringToFront();
}

bool UriFollower::isRepeated(const QUrl& url)
{
    const qint64 now = clock.elapsed();
    for (auto request = latestRequests.begin(); request != latestRequests.end();)
        request = now - request.value() < kRepetition ? std::next(request) : latestRequests.erase(request);
    return latestRequests.contains(getRequest(url));
}

QString UriFollower::getProjectName() const
{
    return window.getDocument().getProject().getName();
}

} // namespace orvel::desk
