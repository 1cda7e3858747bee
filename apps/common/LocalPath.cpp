#include "apps/common/LocalPath.h"

#include <QUrl>

namespace orvel::apps {

QString toLocalPath(const QString& text)
{
    const QUrl url(text);
    const bool isHere = url.host().isEmpty() || url.host() == QLatin1String("localhost");
    return url.isLocalFile() && isHere ? url.path() : text;
}

} // namespace orvel::apps
