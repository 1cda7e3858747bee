#include "apps/desk/gui/PictureSaving.h"

#include "Orvel/Toolkit.h"
#include "apps/desk/gui/FileDialogs.h"
#include "host/app/Application.h"
#include "host/files/WholeFile.h"

#include <QFileInfo>
#include <QWidget>

namespace orvel::desk {

namespace picturesaving {

void write(const QString& path, const std::function<QByteArray()>& toSvg,
           const std::function<QByteArray()>& toPdf)
{
    const bool isPdf = QFileInfo(path).suffix().compare(QLatin1String("pdf"), Qt::CaseInsensitive) == 0;
    files::writeAll(path, isPdf ? toPdf() : toSvg());
}

void chooseAndSave(QWidget* parent, const QString& title, const QString& name,
                   const std::function<void(const QString& path)>& save)
{
    const QString path = filedialogs::chooseDrawingTarget(parent, title, name);
    if (path.isEmpty())
        return;
    ExceptionCatcher catcher;
    catcher.addErrorHandler([parent](const QString& message) { Application::warning(message, parent); });
    catcher.run([&] { save(path); });
}

} // namespace picturesaving

} // namespace orvel::desk
