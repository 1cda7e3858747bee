#include "apps/desk/runs/RunLines.h"

#include "apps/desk/Desk.h"

#include <algorithm>

namespace orvel::desk {

namespace {

template<typename MakeLink>
QString makeList(const std::vector<int>& indices, const QString& separator, std::size_t limit,
                 MakeLink makeLink)
{
    QStringList links;
    for (std::size_t i = 0; i < std::min(indices.size(), limit); ++i)
        links.append(makeLink(indices[i]));
    const QString text = links.join(separator);
    if (indices.size() <= limit)
        return text;
    return Desk::tr("%1 … и ещё %2").arg(text, QString::number(indices.size() - limit));
}

} // namespace

RunLines::RunLines(qor::IProcessMonitor& runMonitor, const NetworkSnapshot& networkSnapshot,
                   WorstLine* worstLine)
    : monitor(runMonitor)
    , snapshot(networkSnapshot)
    , worst(worstLine)
{}

QString RunLines::escape(const QString& text)
{
    // In a link "id=" announces the item: as part of a name it must not.
    return text.toHtmlEscaped().replace(QLatin1String("id="), QLatin1String("id&#61;"));
}

QString RunLines::point(int index)
{
    const auto number = static_cast<std::size_t>(index);
    return link(snapshot.pointIds[number], snapshot.network.points[number].id);
}

QString RunLines::section(int index)
{
    const auto number = static_cast<std::size_t>(index);
    return link(snapshot.sectionIds[number], snapshot.sectionNames[index]);
}

QString RunLines::listPoints(const std::vector<int>& points)
{
    return makeList(points, QStringLiteral(", "), kListLimit, [this](int index) { return point(index); });
}

QString RunLines::listSections(const std::vector<int>& sections)
{
    return makeList(sections, QStringLiteral(", "), kListLimit, [this](int index) { return section(index); });
}

QString RunLines::listWay(const std::vector<int>& points, std::size_t limit)
{
    return makeList(points, QStringLiteral(" → "), limit, [this](int index) { return point(index); });
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

void RunLines::error(const QString& text, double ratio)
{
    if (worst)
        worst->take(true, ratio, text);
    error(text);
}

void RunLines::warning(const QString& text, double ratio)
{
    if (worst)
        worst->take(false, ratio, text);
    warning(text);
}

void RunLines::setProgress(std::size_t done, std::size_t all)
{
    monitor.setPercentage(all == 0 ? 100 : static_cast<int>(done * 100 / all));
}

QString RunLines::link(LONGID id, const QString& text)
{
    return QString::fromStdWString(monitor.getItemLink(id, escape(text).toStdWString()));
}

} // namespace orvel::desk
