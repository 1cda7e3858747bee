#include "apps/desk/document/NetworkItems.h"

#include <QHash>

#include <utility>

namespace orvel::desk {

namespace {

QString makeSectionName(const QString& from, const QString& to)
{
    return from + QStringLiteral(" – ") + to;
}

/// Names that are all different: a section measured again gets its number behind its name.
class UniqueNames
{
public:
    QString make(const QString& name)
    {
        const int count = ++counts[name];
        return count == 1 ? name : QStringLiteral("%1 (%2)").arg(name, QString::number(count));
    }

private:
    QHash<QString, int> counts;
};

/// Gives items that are known by name the ids that they have, the others new ones.
class IdFinder
{
public:
    explicit IdFinder(LONGID& firstNewId) : nextId(firstNewId) {}

    void add(const QString& name, LONGID id) { ids.insert(name, id); }

    LONGID find(const QString& name)
    {
        const LONGID known = ids.value(name);
        return known != 0 ? known : nextId++;
    }

private:
    QHash<QString, LONGID> ids;
    LONGID& nextId;
};

/// Whether to go on with the next of very many items.
class StopQuestion
{
public:
    explicit StopQuestion(const std::function<bool()>& stopQuestion) : isStopped(stopQuestion) {}

    bool mayGoOn()
    {
        constexpr int itemsPerQuestion = 4096;
        return !isStopped || ++items % itemsPerQuestion != 0 || !isStopped();
    }

private:
    const std::function<bool()>& isStopped;
    int items = 0;
};

/// The network is that of the items.
std::optional<NetworkItems> assemble(levelling::Network network,
                                     std::vector<std::unique_ptr<LevellingPoint>> points,
                                     std::vector<std::unique_ptr<LevellingSection>> sections, LONGID nextId,
                                     std::shared_ptr<const tacheometry::FieldBook> fieldBook,
                                     StopQuestion& question)
{
    NetworkSnapshot snapshot;
    if (fieldBook)
        snapshot.fieldBook = std::move(fieldBook);
    snapshot.network = std::move(network);
    NetworkItems items;
    items.nextId = nextId;
    for (auto& point : points) {
        if (!question.mayGoOn())
            return std::nullopt;
        snapshot.pointIds.push_back(point->getId());
        items.points->addItem(std::move(point));
    }
    for (auto& section : sections) {
        if (!question.mayGoOn())
            return std::nullopt;
        snapshot.sectionIds.push_back(section->getId());
        snapshot.sectionNames.append(section->getName());
        items.sections->addItem(std::move(section));
    }
    items.snapshot = std::make_shared<const NetworkSnapshot>(std::move(snapshot));
    return items;
}

} // namespace

NetworkItems::NetworkItems()
    : points(std::make_unique<CItemTree>())
    , sections(std::make_unique<tervo::CItemManager>())
    , snapshot(std::make_shared<NetworkSnapshot>())
{}

NetworkItems NetworkItems::make(levelling::Network network, const NetworkSnapshot& known, LONGID nextId)
{
    return *make(std::move(network), known, nextId, {});
}

std::optional<NetworkItems> NetworkItems::make(levelling::Network network, const NetworkSnapshot& known,
                                               LONGID nextId, const std::function<bool()>& isStopped,
                                               std::shared_ptr<const tacheometry::FieldBook> fieldBook)
{
    StopQuestion question(isStopped);
    IdFinder pointIds(nextId);
    for (std::size_t i = 0; i < known.pointIds.size(); ++i) {
        if (!question.mayGoOn())
            return std::nullopt;
        pointIds.add(known.network.points[i].id, known.pointIds[i]);
    }
    IdFinder sectionIds(nextId);
    for (std::size_t i = 0; i < known.sectionIds.size(); ++i) {
        if (!question.mayGoOn())
            return std::nullopt;
        sectionIds.add(known.sectionNames[static_cast<int>(i)], known.sectionIds[i]);
    }

    std::vector<std::unique_ptr<LevellingPoint>> points;
    points.reserve(network.points.size());
    for (const levelling::Point& point : network.points) {
        if (!question.mayGoOn())
            return std::nullopt;
        points.push_back(std::make_unique<LevellingPoint>(pointIds.find(point.id), point));
    }
    std::vector<std::unique_ptr<LevellingSection>> sections;
    sections.reserve(network.sections.size());
    UniqueNames sectionNames;
    for (const levelling::Section& section : network.sections) {
        if (!question.mayGoOn())
            return std::nullopt;
        const QString name =
            sectionNames.make(makeSectionName(network.points[static_cast<std::size_t>(section.from)].id,
                                              network.points[static_cast<std::size_t>(section.to)].id));
        sections.push_back(std::make_unique<LevellingSection>(sectionIds.find(name), section, name));
    }
    return assemble(std::move(network), std::move(points), std::move(sections), nextId, std::move(fieldBook),
                    question);
}

NetworkItems NetworkItems::make(levelling::Network network,
                                std::vector<std::unique_ptr<LevellingPoint>> points,
                                std::vector<std::unique_ptr<LevellingSection>> sections, LONGID nextId,
                                std::shared_ptr<const tacheometry::FieldBook> fieldBook)
{
    network.points.reserve(points.size());
    for (const auto& point : points)
        network.points.push_back(point->getPoint());
    network.sections.reserve(sections.size());
    for (const auto& section : sections)
        network.sections.push_back(section->getSection());
    const std::function<bool()> neverStopped;
    StopQuestion question(neverStopped);
    return *assemble(std::move(network), std::move(points), std::move(sections), nextId, std::move(fieldBook),
                     question);
}

} // namespace orvel::desk
