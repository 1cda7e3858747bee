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

/// What the sections have beyond the format, each kind with its count.
QString listUnwritten(const levelling::Network& network)
{
    std::ptrdiff_t stations = 0;
    std::ptrdiff_t readings = 0;
    std::ptrdiff_t dates = 0;
    std::ptrdiff_t notes = 0;
    for (const levelling::Section& section : network.sections) {
        stations += section.stations ? 1 : 0;
        readings += section.readingDifference ? 1 : 0;
        dates += section.date.isEmpty() ? 0 : 1;
        notes += section.note.isEmpty() ? 0 : 1;
    }
    QStringList list;
    const auto add = [&list](const QString& name, std::ptrdiff_t count) {
        if (count > 0)
            list.append(QStringLiteral("%1 (%2)").arg(name, QString::number(count)));
    };
    add(Desk::tr("число станций"), stations);
    add(Desk::tr("расхождения отсчётов"), readings);
    add(Desk::tr("даты"), dates);
    add(Desk::tr("примечания"), notes);
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
    const QString unwritten = listUnwritten(network);
    if (!unwritten.isEmpty())
        lines.message(
            Desk::tr("В формате .gkf нет места для некоторых сведений о секциях, в файл не вошли: %1")
                .arg(unwritten));
    lines.message(Desk::tr("Записано пунктов: %1, секций: %2, файл: %3")
                      .arg(QString::number(network.points.size()), QString::number(network.sections.size()),
                           RunLines::escape(standardstreams::describeOutput(filePath))));
    monitor.setPercentage(100);
    return QString();
}

} // namespace orvel::desk
