#include "apps/desk/gui/FileDialogs.h"

#include "apps/desk/Desk.h"
#include "apps/desk/gui/RecentFiles.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

namespace orvel::desk {

namespace filedialogs {

namespace {

const QString kNetworkSuffix = QStringLiteral("gkf");
const QString kProjectSuffix = QStringLiteral("orvel");

/// A file named like the project, where the user's files are.
QString suggestPath(const QString& projectName, const QString& suffix)
{
    return QDir(recentfiles::getFolder()).filePath(projectName + QLatin1Char('.') + suffix);
}

} // namespace

bool isNetworkFile(const QString& path)
{
    return QFileInfo(path).suffix().compare(kNetworkSuffix, Qt::CaseInsensitive) == 0;
}

QString chooseFile(QWidget* parent)
{
    return QFileDialog::getOpenFileName(
        parent, Desk::tr("Открыть проект или сеть"), recentfiles::getFolder(),
        Desk::tr("Проекты и нивелирные сети (*.%1 *.%2)").arg(kProjectSuffix, kNetworkSuffix));
}

QString chooseNetwork(QWidget* parent)
{
    return QFileDialog::getOpenFileName(parent, Desk::tr("Импорт нивелирной сети"), recentfiles::getFolder(),
                                        Desk::tr("Нивелирные сети (*.%1)").arg(kNetworkSuffix));
}

QString chooseProjectTarget(QWidget* parent, const QString& projectName)
{
    QString path = QFileDialog::getSaveFileName(parent, Desk::tr("Сохранить проект"),
                                                suggestPath(projectName, kProjectSuffix),
                                                Desk::tr("Проекты (*.%1)").arg(kProjectSuffix));
    if (!path.isEmpty() && QFileInfo(path).suffix().isEmpty())
        path += QLatin1Char('.') + kProjectSuffix;
    return path;
}

QString chooseHeightsTarget(QWidget* parent, const QString& projectName)
{
    return QFileDialog::getSaveFileName(parent, Desk::tr("Экспорт высот"),
                                        suggestPath(projectName, QStringLiteral("csv")),
                                        Desk::tr("Таблицы CSV (*.csv)"));
}

} // namespace filedialogs

} // namespace orvel::desk
