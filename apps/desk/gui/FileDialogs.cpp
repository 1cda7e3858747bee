#include "apps/desk/gui/FileDialogs.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/StoredProject.h"
#include "apps/desk/gui/RecentFiles.h"
#include "apps/desk/runs/ExportFormats.h"
#include "formats/FileKind.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>

#include <vector>

namespace orvel::desk {

namespace filedialogs {

namespace {

const QString kNetworkSuffix = QStringLiteral("gkf");
// What the files of instruments are usually called; they are told by their content.
const QString kFieldPatterns = QStringLiteral("*.gsi *.GSI *.m5 *.M5 *.dat *.DAT *.rec *.REC *.csv *.txt");
const QString kProjectSuffix = QStringLiteral("orvel");
const QStringList kTableSuffixes{QStringLiteral("csv"), QStringLiteral("txt"), QStringLiteral("tsv"),
                                 QStringLiteral("tab"), QStringLiteral("prn"), QStringLiteral("asc")};

/// What a regular file holds. A pipe would not give its beginning again.
formats::FileKind recognise(const QString& path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly))
        return formats::FileKind::Unknown;
    const QByteArray start = file.read(formats::kRecognisedSize);
    return storedproject::isProject(start) ? formats::FileKind::Unknown : formats::recognise(start);
}

/// What a file may be, by its suffix.
struct Format
{
    QString title;
    QString suffix;
};

/// A file of one of the formats, the first of which is suggested. Its suffix tells which; it follows the
/// choice of a format and comes behind a name that has none of theirs.
QString chooseTarget(QWidget* parent, const QString& title, const QString& name,
                     const std::vector<Format>& formats)
{
    QStringList suffixes;
    QStringList filters;
    for (const Format& format : formats) {
        suffixes.append(format.suffix);
        filters.append(QStringLiteral("%1 (*.%2)").arg(format.title, format.suffix));
    }
    const auto hasSuffix = [&suffixes](const QString& path) {
        return suffixes.contains(QFileInfo(path).suffix(), Qt::CaseInsensitive);
    };
    QString suffix = suffixes.constFirst();
    QFileDialog dialog(parent, title, recentfiles::getFolder(), filters.join(QStringLiteral(";;")));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(suffix);
    dialog.selectFile(QDir(recentfiles::getFolder()).filePath(name + QLatin1Char('.') + suffix));
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&](const QString& filter) {
        const QString path = dialog.selectedFiles().value(0);
        const QFileInfo file(path);
        suffix = suffixes.value(filters.indexOf(filter));
        dialog.setDefaultSuffix(suffix);
        dialog.selectFile(file.dir().filePath((hasSuffix(path) ? file.completeBaseName() : file.fileName()) +
                                              QLatin1Char('.') + suffix));
    });
    while (dialog.exec() == QDialog::Accepted) {
        const QString path = dialog.selectedFiles().value(0);
        if (hasSuffix(path))
            return path;
        const QString target = path + QLatin1Char('.') + suffix;
        if (!QFileInfo::exists(target))
            return target;
        // Before it is written over, the dialog asks.
        dialog.selectFile(target);
    }
    return QString();
}

} // namespace

bool isNetworkFile(const QString& path)
{
    return QFileInfo(path).suffix().compare(kNetworkSuffix, Qt::CaseInsensitive) == 0 ||
           recognise(path) != formats::FileKind::Unknown || isTableFile(path);
}

bool isTableFile(const QString& path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    return kTableSuffixes.contains(suffix) && recognise(path) == formats::FileKind::Unknown;
}

QString describeNoFile(const QString& path)
{
    const QFileInfo file(path);
    if (!file.exists() || file.isFile() || file.isDir())
        return QString();
    return Desk::tr("«%1» — не файл, а канал или устройство. Их читает только orvel-desk --headless.")
        .arg(path);
}

QString chooseFile(QWidget* parent)
{
    return QFileDialog::getOpenFileName(parent, Desk::tr("Открыть проект или измерения"),
                                        recentfiles::getFolder(),
                                        Desk::tr("Проекты и измерения (*.%1 *.%2 %3);;Все файлы (*)")
                                            .arg(kProjectSuffix, kNetworkSuffix, kFieldPatterns));
}

QStringList chooseNetworks(QWidget* parent)
{
    return QFileDialog::getOpenFileNames(
        parent, Desk::tr("Импорт измерений"), recentfiles::getFolder(),
        Desk::tr("Файлы измерений (*.%1 %2);;Все файлы (*)").arg(kNetworkSuffix, kFieldPatterns));
}

QStringList chooseTables(QWidget* parent)
{
    return QFileDialog::getOpenFileNames(
        parent, Desk::tr("Импорт по шаблону"), recentfiles::getFolder(),
        Desk::tr("Текстовые файлы (*.%1);;Все файлы (*)").arg(kTableSuffixes.join(QStringLiteral(" *."))));
}

QString chooseProjectTarget(QWidget* parent, const QString& projectName)
{
    return chooseTarget(parent, Desk::tr("Сохранить проект"), projectName,
                        {{Desk::tr("Проекты"), kProjectSuffix}});
}

QString chooseExportTarget(QWidget* parent, const Document& document)
{
    std::vector<Format> formats;
    for (const ExportFormat& format : exportformats::getFormats()) {
        if (!format.isAvailable || format.isAvailable(document))
            formats.push_back({format.title, format.suffix});
    }
    return chooseTarget(parent, Desk::tr("Экспорт"), document.getProject().getName(), formats);
}

QString chooseDrawingTarget(QWidget* parent, const QString& title, const QString& name)
{
    return chooseTarget(parent, title, name,
                        {{Desk::tr("Рисунок SVG"), QStringLiteral("svg")},
                         {Desk::tr("Документ PDF"), QStringLiteral("pdf")}});
}

QString chooseReportTarget(QWidget* parent, const QString& name)
{
    return chooseTarget(parent, Desk::tr("Сохранить для печати"), name,
                        {{Desk::tr("Листы для печати, PDF"), QStringLiteral("pdf")},
                         {Desk::tr("Страница, HTML"), QStringLiteral("html")}});
}

} // namespace filedialogs

} // namespace orvel::desk
