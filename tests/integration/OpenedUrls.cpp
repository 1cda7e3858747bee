#include "tests/integration/OpenedUrls.h"

#include <QDesktopServices>

OpenedUrls::OpenedUrls(const QStringList& urlSchemes) : schemes(urlSchemes)
{
    for (const QString& scheme : qAsConst(schemes))
        QDesktopServices::setUrlHandler(scheme, this, "open");
}

OpenedUrls::~OpenedUrls()
{
    for (const QString& scheme : qAsConst(schemes))
        QDesktopServices::unsetUrlHandler(scheme);
}

QStringList OpenedUrls::getPaths() const
{
    QStringList paths;
    for (const QUrl& url : urls)
        paths.append(url.toLocalFile());
    return paths;
}

void OpenedUrls::open(const QUrl& url)
{
    urls.append(url);
}
