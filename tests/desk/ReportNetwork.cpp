#include "tests/desk/ReportNetwork.h"

#include "levelling/Adjustment.h"

namespace orvel::test {

namespace {

levelling::Point makePoint(const char* name, std::optional<double> fixedHeight = std::nullopt)
{
    levelling::Point point;
    point.id = QString::fromUtf8(name);
    point.height = fixedHeight;
    point.fixed = fixedHeight.has_value();
    point.declared = true;
    return point;
}

levelling::Section makeSection(int from, int to, double difference, double length)
{
    levelling::Section section;
    section.from = from;
    section.to = to;
    section.difference = difference;
    section.distance = length;
    section.sigma = 2.0 * length;
    section.stations = static_cast<int>(length * 10.0);
    return section;
}

/// The input as the desk gathers it of an adjusted project.
desk::ReportInput makeInput(const levelling::Network& network)
{
    desk::ReportInput input;
    input.date = QDate(2026, 5, 12);
    input.project = QStringLiteral("Линия 14");
    input.file = QStringLiteral("line14.orvel");
    auto snapshot = std::make_shared<desk::NetworkSnapshot>();
    snapshot->network = network;
    const levelling::Adjustment adjustment = levelling::adjust(network);
    LONGID id = 0;
    for (const levelling::Point& point : network.points) {
        const auto& adjusted = adjustment.points[snapshot->pointIds.size()];
        snapshot->pointIds.push_back(++id);
        std::optional<desk::LevellingPoint::Result> result;
        if (adjusted)
            result = {adjusted->height, adjusted->sigma * adjusted->sigmaScale,
                      adjusted->isScaled ? std::optional(adjusted->sigmaScale) : std::nullopt};
        input.points.push_back({point.id, point.fixed, result});
    }
    for (const levelling::Section& section : network.sections) {
        const auto& adjusted = adjustment.sections[snapshot->sectionIds.size()];
        snapshot->sectionIds.push_back(++id);
        const auto name = [&](int point) { return network.points[static_cast<std::size_t>(point)].id; };
        snapshot->sectionNames.append(QStringLiteral("%1 – %2").arg(name(section.from), name(section.to)));
        std::optional<desk::LevellingSection::Result> result;
        if (adjusted)
            result = {adjusted->residual, adjusted->statistic, adjusted->redundancy, adjusted->grossError,
                      adjusted->detectableError};
        input.sections.push_back({id, snapshot->sectionNames.constLast(), section, result, false, {}});
    }
    input.snapshot = snapshot;
    return input;
}

} // namespace

desk::ReportInput makeReportNetwork()
{
    levelling::Network network;
    network.description = QStringLiteral("Бригада 2,\n<участок 3>");
    network.sources = QStringList{QStringLiteral("may12.gsi"), QStringLiteral("may13.gsi")};
    network.parameters.sigmaApriori = 2.0;
    network.points = {makePoint("Рп 1", 100.0), makePoint("A"),     makePoint("=B"),  makePoint("C"),
                      makePoint("Рп 2", 103.0), makePoint("Конец"), makePoint("одна")};
    network.sections = {makeSection(0, 1, 1.0004, 1.0),  makeSection(1, 0, -1.0011, 1.0),
                        makeSection(1, 2, 0.5003, 0.6),  makeSection(2, 4, 1.4988, 1.2),
                        makeSection(1, 3, 1.2, 0.8),     makeSection(3, 4, 0.84, 0.7),
                        makeSection(4, 3, -0.8005, 0.7), makeSection(2, 5, -0.25, 0.3)};
    network.sections[0].date = QStringLiteral("12.05.2026");
    network.sections[0].note = QStringLiteral("ветер & дождь");
    network.sections[1].date = QStringLiteral("13.05.2026");
    network.sections[2].stations.reset();
    return makeInput(network);
}

desk::ReportInput makeLongLine(int sectionCount)
{
    levelling::Network network;
    network.points.push_back(makePoint("R1", 100.0));
    for (int i = 1; i < sectionCount; ++i)
        network.points.push_back(makePoint(qPrintable(QStringLiteral("P%1").arg(i))));
    network.points.push_back(makePoint("R2", 100.0 + 0.001 * sectionCount));
    for (int i = 0; i < sectionCount; ++i)
        network.sections.push_back(makeSection(i, i + 1, 0.001, 0.5));
    return makeInput(network);
}

} // namespace orvel::test
