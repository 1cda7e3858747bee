#include "apps/desk/gui/DeskNavigation.h"

#include "apps/desk/gui/DeskWindow.h"

#include <QUrl>
#include <QUrlQuery>

namespace orvel::desk {

bool DeskNavigation::navigate(const QUrl& url)
{
    const QString id = QUrlQuery(url).queryItemValue(QStringLiteral("id"));
    bool isNumber = false;
    if (url.host() == QLatin1String("locate-item")) {
        const LONGID itemId = id.toLongLong(&isNumber);
        if (isNumber)
            window.locateItem(itemId);
    } else if (url.host() == QLatin1String("generate-report")) {
        const int reportType = id.toInt(&isNumber);
        if (isNumber)
            window.showReport(reportType);
    }
    return isNumber;
}

bool DeskNavigation::isAllowedDuringRun(const QUrl& url) const
{
    return url.host() == QLatin1String("locate-item");
}

} // namespace orvel::desk
