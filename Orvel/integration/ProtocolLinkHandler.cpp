#include "Orvel/integration/ProtocolLinkHandler.h"

#include "Orvel/integration/OrvelGUIExtension.h"

#include <QUrl>
#include <QUrlQuery>

namespace orvel {

bool ProtocolLinkHandler::operator()(const QUrl& url) const
{
    if (url.host(QUrl::FullyDecoded) != QLatin1String("generate-protocol"))
        return false;
    const QString id = QUrlQuery(url).queryItemValue(QStringLiteral("id"));
    if (id.isEmpty())
        return false;
    bool isNumber = false;
    const int protocolType = id.toInt(&isNumber);
    if (!isNumber)
        return false;
    viewer->showOrvel(protocolType);
    return true;
}

} // namespace orvel
