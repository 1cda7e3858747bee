#include "apps/desk/runs/NetworkExportRun.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/ProjectLock.h"
#include "apps/desk/document/StandardStreams.h"
#include "apps/desk/runs/RunLines.h"
#include "host/files/CFileException.h"
#include "levelling/GkfWriter.h"

#include <QStringList>

#include <cstddef>

namespace orvel::desk {

namespace {

QString refuse(RunLines& lines, const QString& failure)
{
    lines.error(RunLines::escape(failure));
    return failure;
}

/// What the project has beyond the format, each kind with its count.
QString listUnwritten(const NetworkSnapshot& snapshot)
{
    std::size_t stations = 0;
    std::size_t readings = 0;
    std::size_t dates = 0;
    std::size_t notes = 0;
    for (const levelling::Section& section : snapshot.network.sections) {
        stations += section.stations ? 1U : 0U;
        readings += section.readingDifference ? 1U : 0U;
        dates += section.date.isEmpty() ? 0U : 1U;
        notes += section.note.isEmpty() ? 0U : 1U;
    }
    std::size_t coordinates = 0;
    for (const levelling::Point& point : snapshot.network.points)
        coordinates += point.hasPlan() ? 1U : 0U;
    QStringList list;
    const auto add = [&list](const QString& name, std::size_t count) {
        if (count > 0)
            list.append(QStringLiteral("%1 (%2)").arg(name, QString::number(count)));
    };
    add(Desk::tr("число станций секций"), stations);
    add(Desk::tr("расхождения отсчётов"), readings);
    add(Desk::tr("даты"), dates);
    add(Desk::tr("примечания"), notes);
    add(Desk::tr("координаты пунктов"), coordinates);
    add(Desk::tr("станции тахеометрии"), snapshot.fieldBook->setups.size());
    return list.join(QStringLiteral(", "));
}

} // namespace

QString runNetworkExport(qor::IProcessMonitor& monitor, const NetworkSnapshot& snapshot,
                         const QString& filePath)
{
    const levelling::Network& network = snapshot.network;
    RunLines lines(monitor, snapshot);
    if (network.points.empty())
        return refuse(lines,
                      Desk::tr("Экспортировать нечего: в проекте нет сети. Импортируйте нивелирную сеть."));
    const levelling::GkfText gkf = levelling::writeGkf(network, [&lines] { return !lines.isRunning(); });
    if (gkf.text.isEmpty())
        return QString();
    try {
        ProjectLock::requireFree(filePath);
        standardstreams::write(filePath, gkf.text);
    } catch (const qor::CFileException& error) {
        return refuse(lines, QString::fromStdWString(error.getText()));
    }
    for (const int point : gkf.renamedPoints)
        lines.warning(Desk::tr("Пункт %1 записан под именем «%2»: его имя в XML не записывается")
                          .arg(lines.point(point), RunLines::escape(gkf.names[point])));
    if (gkf.weightedSections > 0)
        lines.message(Desk::tr("Секций, вес которых записан как СКО (stdev): %1; в сети он задан иначе")
                          .arg(QString::number(gkf.weightedSections)));
    const QString unwritten = listUnwritten(snapshot);
    if (!unwritten.isEmpty())
        lines.message(Desk::tr("В формате .gkf этому нет места, в файл не вошли: %1").arg(unwritten));
    lines.message(Desk::tr("Записано пунктов: %1, секций: %2, файл: %3")
                      .arg(QString::number(network.points.size()), QString::number(network.sections.size()),
                           RunLines::escape(standardstreams::describeOutput(filePath))));
    monitor.setPercentage(100);
    return QString();
}

} // namespace orvel::desk
