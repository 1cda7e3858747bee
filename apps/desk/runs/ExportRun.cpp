#include "apps/desk/runs/ExportRun.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/ProjectLock.h"
#include "apps/desk/document/SpreadsheetText.h"
#include "apps/desk/document/StandardStreams.h"
#include "apps/desk/runs/NumberTexts.h"
#include "apps/desk/runs/RunLines.h"
#include "host/files/CFileException.h"

#include <algorithm>

namespace orvel::desk {

namespace {

/// A CSV field: in quotes where commas, quotes or line breaks ask for it.
QString toField(const QString& text)
{
    const bool needsQuotes = std::any_of(text.begin(), text.end(), [](QChar character) {
        return character == QLatin1Char(',') || character == QLatin1Char('"') ||
               character == QLatin1Char('\n') || character == QLatin1Char('\r');
    });
    if (!needsQuotes)
        return text;
    QString doubled = text;
    doubled.replace(QLatin1Char('"'), QLatin1String("\"\""));
    return QLatin1Char('"') + doubled + QLatin1Char('"');
}

/// A number; nothing if it is not known.
QString toField(const std::optional<double>& number, int decimals)
{
    return number ? numbers::plain(*number, decimals) : QString();
}

QByteArray toCsv(const std::vector<ExportedHeight>& heights)
{
    const bool hasPlan = std::any_of(heights.begin(), heights.end(),
                                     [](const ExportedHeight& height) { return height.position.hasPlan(); });
    QString csv = hasPlan ? QStringLiteral("point,x_m,y_m,height_m,sigma_mm\n")
                          : QStringLiteral("point,height_m,sigma_mm\n");
    for (const ExportedHeight& height : heights) {
        if (!height.isKnown())
            continue;
        csv += toField(spreadsheet::guard(height.point)) + QLatin1Char(',');
        if (hasPlan)
            csv += toField(height.position.x, 4) + QLatin1Char(',') + toField(height.position.y, 4) +
                   QLatin1Char(',');
        csv += toField(height.position.height, 5) + QLatin1Char(',') + toField(height.sigma, 3) +
               QLatin1Char('\n');
    }
    return csv.toUtf8();
}

} // namespace

QString runExport(qor::IProcessMonitor& monitor, const std::vector<ExportedHeight>& heights, bool wasAdjusted,
                  const QString& filePath)
{
    const NetworkSnapshot noNetwork;
    RunLines lines(monitor, noNetwork);
    const auto count = std::count_if(heights.begin(), heights.end(),
                                     [](const ExportedHeight& height) { return height.isKnown(); });
    if (count == 0) {
        const QString failure =
            wasAdjusted
                ? Desk::tr("Экспортировать нечего: уравнивание не дало высот, причина в его протоколе.")
                : Desk::tr("Экспортировать нечего: сеть не уравнена. Сначала выполните уравнивание.");
        lines.error(failure);
        return failure;
    }
    try {
        ProjectLock::requireFree(filePath);
        standardstreams::write(filePath, toCsv(heights));
    } catch (const qor::CFileException& error) {
        const QString failure = QString::fromStdWString(error.getText());
        lines.error(RunLines::escape(failure));
        return failure;
    }
    for (const ExportedHeight& height : heights) {
        if (!height.isKnown())
            lines.warning(Desk::tr("Пункт %1 не экспортирован: его высота не определена")
                              .arg(QString::fromStdWString(monitor.getItemLink(
                                  height.id, RunLines::escape(height.point).toStdWString()))));
    }
    lines.message(
        Desk::tr("Записано высот: %1, файл: %2")
            .arg(QString::number(count), RunLines::escape(standardstreams::describeOutput(filePath))));
    monitor.setPercentage(100);
    return QString();
}

} // namespace orvel::desk
