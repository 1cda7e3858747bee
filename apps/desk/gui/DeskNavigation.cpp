#include "apps/desk/gui/DeskNavigation.h"

#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/gui/DeskPages.h"
#include "apps/desk/gui/DeskWindow.h"

#include <QUrl>
#include <QUrlQuery>

#include <algorithm>

namespace orvel::desk {

bool DeskNavigation::isUnknownProtocol(const QUrl& url)
{
    const int type = QUrlQuery(url).queryItemValue(QStringLiteral("id")).toInt();
    const std::vector<int> types = getProtocolTypes();
    return url.host() == QLatin1String("generate-protocol") &&
           std::find(types.begin(), types.end(), type) == types.end();
}

bool DeskNavigation::navigate(const QUrl& url)
{
    const QUrlQuery query(url);
    const QString id = query.queryItemValue(QStringLiteral("id"));
    bool isNumber = false;
    if (url.host() == QLatin1String("locate-item")) {
        const LONGID itemId = id.toLongLong(&isNumber);
        if (isNumber)
            window.locateItem(itemId, query.queryItemValue(QStringLiteral("type")));
    } else if (url.host() == QLatin1String("generate-protocol")) {
        const int protocolType = id.toInt(&isNumber);
        if (isNumber)
            window.getPages().showProtocol(protocolType);
    } else if (url.host() == QLatin1String("generate-report")) {
        const int reportType = id.toInt(&isNumber);
        if (isNumber)
            window.getPages().showReport(reportType);
    }
    return isNumber;
}

bool DeskNavigation::isAllowedDuringRun(const QUrl& url) const
{
    return url.host() == QLatin1String("locate-item");
}

} // namespace orvel::desk
