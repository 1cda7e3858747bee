#include "apps/desk/gui/DeskNavigation.h"

#include "apps/desk/gui/DeskWindow.h"

#include <QUrl>
#include <QUrlQuery>

bool DeskNavigation::navigate(const QUrl& url)
{
    bool isNumber = false;
    const LONGID id = QUrlQuery(url).queryItemValue(QStringLiteral("id")).toLongLong(&isNumber);
    if (!isNumber)
        return false;
    if (url.host() == QLatin1String("locate-item")) {
        window.locateItem(id);
        return true;
    }
    if (url.host() == QLatin1String("generate-report")) {
        window.showReport(static_cast<int>(id));
        return true;
    }
    return false;
}
