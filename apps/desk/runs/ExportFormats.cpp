#include "apps/desk/runs/ExportFormats.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"

#include <QFileInfo>
#include <QStringList>

#include <algorithm>

namespace orvel::desk {

namespace exportformats {

namespace {

bool hasCoordinates(const Document& document)
{
    return document.hasCoordinates();
}

bool hasHeightsOrCoordinates(const Document& document)
{
    return document.hasResults() || document.hasCoordinates();
}

} // namespace

std::vector<ExportFormat> getFormats()
{
    return {
        {QStringLiteral("csv"), Desk::tr("Высоты и координаты, таблица CSV"),
         Desk::tr("уравненные высоты и их СКО, координаты"), hasHeightsOrCoordinates, runs::makeHeightExport},
        {QStringLiteral("gkf"), Desk::tr("Нивелирная сеть, gama-local"),
         Desk::tr("сеть с измерениями для другой программы уравнивания"), nullptr, runs::makeNetworkExport},
        {QStringLiteral("geojson"), Desk::tr("План в местной системе, GeoJSON"),
         Desk::tr("пункты с координатами и секции для ГИС"), hasCoordinates, runs::makeGeoJsonExport},
        {QStringLiteral("dxf"), Desk::tr("План, чертёж DXF"),
         Desk::tr("пункты, имена, высоты и секции для САПР"), hasCoordinates, runs::makeDxfExport},
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
