#include "apps/desk/document/NetworkItems.h"

#include "apps/desk/document/StateDigest.h"
#include "levelling/NameIndex.h"

#include <QStringBuilder>

#include <utility>

namespace orvel::desk {

namespace {

QString joinNames(const QString& from, const QString& to)
{
    return from % QStringLiteral(" – ") % to;
}

/// Names that are all different: a section measured again gets its number behind its name.
class UniqueNames
{
public:
    UniqueNames() = default;
    explicit UniqueNames(const QSet<QString>& takenNames) : taken(takenNames) {}

    /// A name that somebody has already.
    void take(const QString& name) { taken.insert(name); }

    QString make(const QString& name)
    {
        QString unique = count(name);
        while (taken.contains(unique))
            unique = count(name);
        return unique;
    }

private:
    QString count(const QString& name)
    {
        const auto place = static_cast<std::size_t>(names.add(name));
        if (place == counts.size())
            counts.push_back(0);
        const int number = ++counts[place];
        return number == 1 ? name : QStringLiteral("%1 (%2)").arg(name, QString::number(number));
    }

    levelling::NameIndex names;
    std::vector<int> counts; // by number of the name
    QSet<QString> taken;
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

/// What a network has besides points and sections.
levelling::Network getHead(const levelling::Network& network)
{
    levelling::Network head;
    head.description = network.description;
    head.sources = network.sources;
    head.parameters = network.parameters;
    head.observedHeights = network.observedHeights;
    return head;
}

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
    NetworkItems items;
    items.nextId = nextId;
    items.head = getHead(network);
    items.fieldBook = snapshot.fieldBook;
    snapshot.network = std::move(network);
    for (auto& point : points) {
        if (!question.mayGoOn())
            return std::nullopt;
        snapshot.pointIds.push_back(point->getId());
        items.state += statedigest::of(*point);
        items.points->addItem(std::move(point));
    }
    for (auto& section : sections) {
        if (!question.mayGoOn())
            return std::nullopt;
        snapshot.sectionIds.push_back(section->getId());
        snapshot.sectionNames.append(section->getName());
        items.state += statedigest::of(*section);
        items.sections->addItem(std::move(section));
    }
    items.snapshot = std::make_shared<const NetworkSnapshot>(std::move(snapshot));
    return items;
}

} // namespace

NetworkItems::NetworkItems()
    : points(std::make_unique<CItemTree>())
    , sections(std::make_unique<tervo::CItemManager>())
    , fieldBook(std::make_shared<const tacheometry::FieldBook>())
    , snapshot(std::make_shared<NetworkSnapshot>())
{}

QString NetworkItems::makeSectionName(const QString& from, const QString& to, const QSet<QString>& taken)
{
    return UniqueNames(taken).make(joinNames(from, to));
}

NetworkItems NetworkItems::make(levelling::Network network, const NetworkSnapshot& known, LONGID nextId)
{
    return *make(std::move(network), known, nextId, {});
}

std::optional<NetworkItems> NetworkItems::make(levelling::Network network, const NetworkSnapshot& known,
                                               LONGID nextId, const std::function<bool()>& isStopped,
                                               std::shared_ptr<const tacheometry::FieldBook> fieldBook,
                                               const HandStates* hands)
{
    StopQuestion question(isStopped);
    const std::size_t keptPoints = hands ? known.pointIds.size() : 0;
    const std::size_t keptSections = hands ? known.sectionIds.size() : 0;
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
        const std::size_t index = points.size() - 1;
        if (index < keptPoints && isSameRole(point, known.network.points[index]))
            points.back()->setPoint(point, hands->points.value(known.pointIds[index]));
    }
    std::vector<std::unique_ptr<LevellingSection>> sections;
    sections.reserve(network.sections.size());
    UniqueNames sectionNames;
    for (std::size_t i = 0; i < keptSections; ++i)
        sectionNames.take(known.sectionNames[static_cast<int>(i)]);
    for (const levelling::Section& section : network.sections) {
        if (!question.mayGoOn())
            return std::nullopt;
        const std::size_t index = sections.size();
        if (index < keptSections) {
            const LONGID id = known.sectionIds[index];
            sections.push_back(
                std::make_unique<LevellingSection>(id, section, known.sectionNames[static_cast<int>(index)]));
            sections.back()->setSection(section, hands->sections.value(id));
            continue;
        }
        const QString name =
            sectionNames.make(joinNames(network.points[static_cast<std::size_t>(section.from)].id,
                                        network.points[static_cast<std::size_t>(section.to)].id));
        sections.push_back(std::make_unique<LevellingSection>(sectionIds.find(name), section, name));
    }
    std::optional<NetworkItems> items = assemble(std::move(network), std::move(points), std::move(sections),
                                                 nextId, std::move(fieldBook), question);
    if (items && hands)
        items->deletedSections = hands->deletedSections;
    return items;
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
