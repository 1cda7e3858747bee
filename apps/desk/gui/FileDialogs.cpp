#include "apps/desk/gui/FileDialogs.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/StoredProject.h"
#include "apps/desk/gui/RecentFiles.h"
#include "apps/desk/print/ReportFile.h"
#include "apps/desk/runs/ExportFormats.h"
#include "formats/FileKind.h"

#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>

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

/// A file named like the project, where the user's files are.
QString suggestPath(const QString& projectName, const QString& suffix)
{
    return QDir(recentfiles::getFolder()).filePath(projectName + QLatin1Char('.') + suffix);
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
    QString path = QFileDialog::getSaveFileName(parent, Desk::tr("Сохранить проект"),
                                                suggestPath(projectName, kProjectSuffix),
                                                Desk::tr("Проекты (*.%1)").arg(kProjectSuffix));
    if (!path.isEmpty() && QFileInfo(path).suffix().isEmpty())
        path += QLatin1Char('.') + kProjectSuffix;
    return path;
}

QString chooseExportTarget(QWidget* parent, const Document& document)
{
    QStringList suffixes;
    QStringList filters;
    for (const ExportFormat& format : exportformats::getFormats()) {
        if (format.isAvailable && !format.isAvailable(document))
            continue;
        suffixes.append(format.suffix);
        filters.append(QStringLiteral("%1 (*.%2)").arg(format.title, format.suffix));
    }
    QFileDialog dialog(parent, Desk::tr("Экспорт"), recentfiles::getFolder(),
                       filters.join(QStringLiteral(";;")));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(suffixes.constFirst());
    dialog.selectFile(suggestPath(document.getProject().getName(), suffixes.constFirst()));
    // The suffix decides what is written, so it follows the choice of a format.
    QObject::connect(&dialog, &QFileDialog::filterSelected, &dialog, [&](const QString& filter) {
        const QString suffix = suffixes.value(filters.indexOf(filter));
        const QFileInfo file(dialog.selectedFiles().value(0));
        dialog.setDefaultSuffix(suffix);
        dialog.selectFile(file.dir().filePath(file.completeBaseName() + QLatin1Char('.') + suffix));
    });
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

QString choosePictureTarget(QWidget* parent, const QString& projectName)
{
    const QStringList suffixes = {QStringLiteral("svg"), QStringLiteral("pdf")};
    const QStringList filters = {Desk::tr("Рисунок SVG (*.%1)").arg(suffixes[0]),
                                 Desk::tr("Документ PDF (*.%1)").arg(suffixes[1])};
    QString filter = filters[0];
    QString path = QFileDialog::getSaveFileName(parent, Desk::tr("Сохранить схему сети"),
                                                suggestPath(projectName, suffixes[0]),
                                                filters.join(QStringLiteral(";;")), &filter);
    if (!path.isEmpty() && QFileInfo(path).suffix().isEmpty())
        path += QLatin1Char('.') + suffixes.value(filters.indexOf(filter));
    return path;
}

QString chooseReportTarget(QWidget* parent, const QString& name)
{
    QString path = QFileDialog::getSaveFileName(
        parent, Desk::tr("Сохранить для печати"), suggestPath(name, QStringLiteral("pdf")),
        Desk::tr("Листы для печати, PDF (*.pdf);;Страница, HTML (*.html)"));
    if (!path.isEmpty() && !reportfile::isKnown(path))
        path += QStringLiteral(".pdf");
    return path;
}

} // namespace filedialogs

} // namespace orvel::desk
