#include "apps/desk/protocol/LinePage.h"

#include "host/files/WholeFile.h"

#include <QFileInfo>
#include <QUrl>

namespace orvel::desk::linepage {

QString write(const QString& page, const QString& text, bool isOutdated)
{
    const QFileInfo file(page);
    QByteArray address = QUrl::toPercentEncoding(file.fileName()) + '#';
    if (isOutdated)
        address += "outdated";
    if (!text.isEmpty())
        address += (isOutdated ? "&find=" : "find=") + QUrl::toPercentEncoding(text);
    const QString path =
        file.path() + QLatin1Char('/') + file.completeBaseName() + QStringLiteral("_line.html");
    files::writeAll(
        path, "<!DOCTYPE html>\n<meta charset=\"utf-8\">\n<meta http-equiv=\"refresh\" content=\"0; url=" +
                  address + "\">\n");
    return path;
}

} // namespace orvel::desk::linepage
