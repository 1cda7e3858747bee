#include "apps/desk/runs/ExportFormats.h"

#include "apps/desk/Desk.h"

#include <QFileInfo>
#include <QStringList>

#include <algorithm>

namespace orvel::desk {

namespace exportformats {

std::vector<ExportFormat> getFormats()
{
    return {
        {QStringLiteral("csv"), Desk::tr("Уравненные высоты, таблица CSV"),
         Desk::tr("уравненные высоты и их СКО"), true, runs::makeHeightExport},
        {QStringLiteral("gkf"), Desk::tr("Нивелирная сеть, gama-local"),
         Desk::tr("сеть с измерениями для другой программы уравнивания"), false, runs::makeNetworkExport},
    };
}

std::optional<ExportFormat> find(const QString& filePath)
{
    const QString suffix = QFileInfo(filePath).suffix();
    const std::vector<ExportFormat> formats = getFormats();
    const auto found = std::find_if(formats.begin(), formats.end(), [&suffix](const ExportFormat& format) {
        return format.suffix.compare(suffix, Qt::CaseInsensitive) == 0;
    });
    if (found != formats.end())
        return *found;
    return suffix.isEmpty() ? std::optional(formats.front()) : std::nullopt;
}

QString describeUnknown(const QString& filePath)
{
    QStringList suffixes;
    for (const ExportFormat& format : getFormats())
        suffixes.append(QLatin1Char('.') + format.suffix);
    return Desk::tr("неизвестный вид файла «%1», экспорт пишет %2")
        .arg(filePath, suffixes.join(QStringLiteral(", ")));
}

} // namespace exportformats

namespace runs {

DeskRun makeExport(const Document& document, const QString& filePath)
{
    if (const std::optional<ExportFormat> format = exportformats::find(filePath))
        return format->make(document, filePath);
    return makeRefusedExport(exportformats::describeUnknown(filePath));
}

} // namespace runs

} // namespace orvel::desk
