#include "apps/desk/runs/RunLines.h"

RunLines::RunLines(qor::IProcessMonitor& runMonitor, const NetworkSnapshot& networkSnapshot)
    : monitor(runMonitor)
    , snapshot(networkSnapshot)
{}

QString RunLines::escape(const QString& text)
{
    // In a link "id=" announces the item: as part of a name it must not.
    return text.toHtmlEscaped().replace(QLatin1String("id="), QLatin1String("id&#61;"));
}

QString RunLines::point(int index)
{
    const auto number = static_cast<size_t>(index);
    return link(snapshot.pointIds[number], snapshot.network.points[number].id);
}

QString RunLines::section(int index)
{
    const auto number = static_cast<size_t>(index);
    return link(snapshot.sectionIds[number], snapshot.sectionNames[index]);
}

void RunLines::error(const QString& text)
{
    monitor.writeError(text.toStdWString());
}

void RunLines::warning(const QString& text)
{
    monitor.writeWarning(text.toStdWString());
}

void RunLines::message(const QString& text)
{
    monitor.writeMessage(text.toStdWString());
}

void RunLines::service(const QString& text)
{
    monitor.write(text.toStdWString());
}

void RunLines::setProgress(size_t done, size_t all)
{
    monitor.setPercentage(all == 0 ? 100 : static_cast<int>(done * 100 / all));
}

QString RunLines::link(LONGID id, const QString& text)
{
    // Asking for a link makes the run wait for the window, and most items stand in several lines.
    const auto known = links.constFind(id);
    if (known != links.constEnd())
        return *known;
    const QString html = QString::fromStdWString(monitor.getItemLink(id, escape(text).toStdWString()));
    links.insert(id, html);
    return html;
}
