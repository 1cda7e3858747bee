#include "apps/desk/reports/PageLook.h"

#include "Orvel/store/COrvel.h"
#include "apps/desk/Desk.h"
#include "host/app/Application.h"

#include <QDir>
#include <QFileInfo>

namespace orvel::desk {

namespace pagelook {

QString describeLack()
{
    // Whether copying it has succeeded nobody is told.
    if (QFileInfo(QDir(Application::getTempFolder()).filePath(QStringLiteral("protocol.html"))).isReadable())
        return QString();
    const QString source = COrvel::s_sysTemplateProtocolPath;
    if (source.isEmpty())
        return Desk::tr("Страницы без оформления: папка «Protocol» с их шаблоном не найдена. Переустановите "
                        "программу.");
    return Desk::tr("Страницы без оформления: шаблон из папки «%1» не скопирован в «%2».")
        .arg(source, Application::getTempFolder());
}

} // namespace pagelook

} // namespace orvel::desk
