#include "apps/desk/document/Document.h"

#include "Orvel/store/COrvel.h"
#include "Orvel/store/SavedProtocol.h"
#include "apps/desk/Desk.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/FieldBookArchive.h"
#include "apps/desk/document/LevellingPoint.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/document/StateDigest.h"
#include "apps/desk/reports/DeskReports.h"
#include "host/app/PluginManager.h"
#include "host/enums/EnumData.h"
#include "host/process/BesideWindow.h"
#include "host/reports/ReportsGeneratorItem.h"

#include <QScopedValueRollback>
#include <QSet>
#include <QUndoCommand>
#include <QUndoStack>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace orvel::desk {

namespace {

// All ids have equally many digits: a protocol finds a link by the digits of its id, and would find those of
// a shorter id in a longer one.
constexpr LONGID kFirstId = 1000001;
// Far from where counting on would end.
constexpr LONGID kLastId = std::numeric_limits<LONGID>::max() / 2;

QString withoutMarkUp(QString name)
{
    return name.replace(QLatin1Char('<'), QChar(0x2039)).replace(QLatin1Char('>'), QChar(0x203A));
}

bool isPositive(double number)
{
    return std::isfinite(number) && number > 0.0;
}

bool isPositiveIfThere(const std::optional<double>& number)
{
    return !number || isPositive(*number);
}

bool isUsable(const levelling::Parameters& parameters)
{
    return isPositive(parameters.sigmaApriori) && isPositive(parameters.toleranceAbsolute) &&
           isPositive(parameters.confidence) && parameters.confidence < 1.0;
}

bool isUsable(const levelling::Point& point)
{
    if (point.x.has_value() != point.y.has_value() || !std::isfinite(point.x.value_or(0.0)) ||
        !std::isfinite(point.y.value_or(0.0)))
        return false;
    return point.height ? std::isfinite(*point.height) : !point.fixed;
}

bool isUsable(const tacheometry::Position& position)
{
    return position.x.has_value() == position.y.has_value() && std::isfinite(position.x.value_or(0.0)) &&
           std::isfinite(position.y.value_or(0.0)) && std::isfinite(position.height.value_or(0.0));
}

bool isMeasurementUsable(const levelling::Section& section)
{
    return std::isfinite(section.difference) && isPositive(section.sigma) &&
           isPositiveIfThere(section.distance) && isPositiveIfThere(section.stdev) &&
           section.stations.value_or(1) > 0 && std::isfinite(section.readingDifference.value_or(0.0));
}

bool isUsable(const levelling::Section& section)
{
    return section.from != section.to && isMeasurementUsable(section);
}

/// The states of a file as they are told now. Whatever program has numbered them: what belonged to the
/// present state there still does.
DocumentStates renumber(DocumentStates states, const DocumentState& present)
{
    const DocumentState known = states.current;
    const auto replace = [](quint64& number, quint64 before, quint64 now) {
        if (number == before)
            number = now;
    };
    replace(states.results, known.network, present.network);
    for (auto& protocol : states.protocols) {
        replace(protocol.second.network, known.network, present.network);
        replace(protocol.second.settings, known.settings, present.settings);
        replace(protocol.second.tests, known.tests, present.tests);
    }
    states.current = present;
    return states;
}

/// The types whose protocols are about a network, and not about where it comes from.
std::vector<int> getProcessingTypes()
{
    std::vector<int> types = getProtocolTypes();
    types.erase(
        std::remove_if(types.begin(), types.end(),
                       [](int type) { return type == enums::Import || type == enums::ImportTemplate; }),
        types.end());
    return types;
}

/// Whether the observed points are those of the groups, each in one, with heights and all covariances.
bool areObservedHeightsUsable(const Document::Content& content)
{
    QSet<int> observed;
    int count = 0;
    for (const levelling::ObservedHeights& group : content.observedHeights) {
        const std::size_t size = group.points.size();
        if (size == 0 || group.covariance.size() != size * size ||
            !std::all_of(group.covariance.begin(), group.covariance.end(),
                         [](double element) { return std::isfinite(element); }))
            return false;
        for (const int point : group.points) {
            observed.insert(point);
            ++count;
        }
    }
    int index = 0;
    for (const auto& point : content.points) {
        const levelling::Point& given = point->getPoint();
        if (given.observed != observed.contains(index++) ||
            (given.observed && (given.fixed || !given.height)))
            return false;
        count -= given.observed ? 1 : 0;
    }
    return count == 0;
}

/// Whether the content is as the computations need it: what a file holds may be anything.
bool isConsistent(const Document::Content& content)
{
    if (!isUsable(content.parameters) || !content.toleranceRules.isUsable() || content.nextId > kLastId)
        return false;
    QSet<LONGID> ids;
    const auto isNew = [&](LONGID id) {
        const int count = ids.size();
        ids.insert(id);
        return id >= kFirstId && id < content.nextId && ids.size() > count;
    };
    const auto pointCount = static_cast<int>(content.points.size());
    const auto isPoint = [pointCount](int index) { return index >= 0 && index < pointCount; };
    const int sourceCount = std::max(1, content.sources.size());
    const auto isSource = [sourceCount](int index) { return index >= 0 && index < sourceCount; };
    const auto isDeletedUsable = [&](const DeletedSection& deleted) {
        return deleted.id >= kFirstId && deleted.id < content.nextId && isMeasurementUsable(deleted.section);
    };
    return areObservedHeightsUsable(content) &&
           std::all_of(content.deletedSections.begin(), content.deletedSections.end(), isDeletedUsable) &&
           fieldbookarchive::isUsable(*content.fieldBook, sourceCount) &&
           std::all_of(content.points.begin(), content.points.end(),
                       [&](const auto& item) {
                           const levelling::Point& point = item->getPoint();
                           return isNew(item->getId()) && isUsable(point) &&
                                  isUsable(item->getOriginal().value_or(point)) &&
                                  isUsable(item->getPolarResult()) && isSource(point.source);
                       }) &&
           std::all_of(content.sections.begin(), content.sections.end(), [&](const auto& section) {
               const levelling::Section& ends = section->getSection();
               return isNew(section->getId()) && isPoint(ends.from) && isPoint(ends.to) && isUsable(ends) &&
                      isMeasurementUsable(section->getOriginal().value_or(ends)) && isSource(ends.source);
           });
}

} // namespace

Document::Document(const PluginManager& plugins, const QString& projectName, QObject* parent)
    : QObject(parent)
    , project(withoutMarkUp(projectName))
    , model(&project)
    , sectionManager(nullptr)
    , fieldBook(std::make_shared<const tacheometry::FieldBook>())
    , undoStack(new QUndoStack(this))
    , nextId(kFirstId)
{
    connect(undoStack, &QUndoStack::cleanChanged, this, &Document::tellModified);
    auto manager = std::make_unique<tervo::CItemManager>();
    sectionManager = manager.get();
    model.setTervoObject(std::move(manager));
    plugins.extendModel(&model);
    model.initialize();
    model.addSystemItem(new reports::ReportsGeneratorItem, ItemTypeInfo::NotDeletable);
    model.setItemMentionedQuery([this](LONGID id) { return getProtocol().IsMessages(id); });
    deskreports::registerReports(*this);
    takeRules(getSurveyRules());
}

Document::~Document()
{
    // It tells of its end, and a window that goes as well has nothing left to hear it with.
    undoStack->disconnect();
}

COrvel& Document::getProtocol() const
{
    return dynamic_cast<COrvel&>(*model.getFirstItem(kOrvelItemType));
}

Document::Origin Document::getOrigin() const
{
    return {project.getName(), project.getFilePath(), fileState, lock};
}

void Document::setOrigin(const Origin& newOrigin)
{
    project.setName(withoutMarkUp(newOrigin.name));
    project.setFilePath(newOrigin.filePath);
    fileState = newOrigin.fileState;
    lock = newOrigin.lock;
    Q_EMIT originChanged();
}

bool Document::isFileChanged() const
{
    const FileState now = FileState::of(project.getFilePath());
    return now.exists && now != fileState;
}

/// Another class of the levelling, or other tolerances.
class RulesCommand : public QUndoCommand
{
public:
    RulesCommand(Document& openDocument, const QString& text, const SurveyRules& newRules)
        : QUndoCommand(text)
        , document(openDocument)
        , before(openDocument.getSurveyRules())
        , after(newRules)
    {}

    void redo() override { document.takeRules(after); }
    void undo() override { document.takeRules(before); }

private:
    Document& document;
    const SurveyRules before;
    const SurveyRules after;
};

void Document::takeRules(const SurveyRules& rules)
{
    levellingClass = rules.levellingClass;
    toleranceRules = rules.tolerances;
    states.current.settings = statedigest::of(rules);
    states.current.tests = statedigest::ofTests(rules.tolerances);
    Q_EMIT surveyRulesChanged();
    tellOutdated();
}

void Document::setLevellingClass(LevellingClass newClass)
{
    if (levellingClass != newClass)
        undoStack->push(new RulesCommand(*this,
                                         Desk::tr("Класс нивелирования: %1").arg(describeClass(newClass)),
                                         {newClass, toleranceRules}));
}

void Document::setToleranceRules(const ToleranceRules& newRules)
{
    if (toleranceRules != newRules)
        undoStack->push(new RulesCommand(*this, Desk::tr("Допуски"), {levellingClass, newRules}));
}

std::vector<LevellingPoint*> Document::getPoints() const
{
    std::vector<LevellingPoint*> points;
    points.reserve(model.getTopLevelItems().size());
    for (const auto& item : model.getTopLevelItems())
        points.push_back(static_cast<LevellingPoint*>(item.get()));
    return points;
}

std::vector<LevellingSection*> Document::getSections() const
{
    std::vector<LevellingSection*> sections;
    sections.reserve(sectionManager->getItems().size());
    for (const auto& item : sectionManager->getItems())
        sections.push_back(static_cast<LevellingSection*>(item.get()));
    return sections;
}

const LevellingPoint* Document::findPoint(LONGID id) const
{
    return dynamic_cast<const LevellingPoint*>(model.findItemAnywhere(id));
}

const LevellingSection* Document::findSection(LONGID id) const
{
    return static_cast<const LevellingSection*>(sectionManager->findItem(id));
}

QString Document::findTypeName(LONGID id) const
{
    std::optional<qint64> type;
    if (const CModelElement* point = model.findItemAnywhere(id))
        type = point->getType();
    else if (const tervo::IItem* section = sectionManager->findItem(id))
        type = section->getType();
    return type ? QString::fromStdString(getEnumData(static_cast<int>(*type)).getTextInternal()) : QString();
}

bool Document::isEmpty() const
{
    return model.getTopLevelItems().empty();
}

std::size_t Document::countOff() const
{
    if (!offCount) {
        const auto& items = sectionManager->getItems();
        offCount = static_cast<std::size_t>(std::count_if(items.begin(), items.end(), [](const auto& item) {
            return static_cast<const LevellingSection&>(*item).isOff();
        }));
    }
    return *offCount;
}

bool Document::hasResults() const
{
    if (!anyResults) {
        const auto& items = model.getTopLevelItems();
        anyResults = std::any_of(items.begin(), items.end(), [](const auto& item) {
            return static_cast<const LevellingPoint&>(*item).getResult().has_value();
        });
    }
    return *anyResults;
}

bool Document::hasCoordinates() const
{
    const auto& items = model.getTopLevelItems();
    return std::any_of(items.begin(), items.end(), [](const auto& item) {
        return static_cast<const LevellingPoint&>(*item).getPosition().hasPlan();
    });
}

void Document::setNetwork(const levelling::Network& network)
{
    NetworkItems items = NetworkItems::make(network, *shareWholeSnapshot(), nextId);
    takeNetwork(items);
    undoStack->clear();
}

void Document::takeNetwork(NetworkItems& items, std::optional<int> otherImport)
{
    clearedTypes = getProcessingTypes();
    if (otherImport)
        clearedTypes.push_back(*otherImport);
    exchangeItems(items);
    for (const int type : clearedTypes)
        getProtocol().ClearProtocolByType(type);
    isProcessingCleared = true;
}

void Document::exchangeItems(NetworkItems& items)
{
    putItems(items);
    setModified(true);
    tellOutdated();
}

/// Puts the items into the place of those that are there.
void Document::putItems(NetworkItems& items)
{
    Q_EMIT networkAboutToBeReplaced();
    std::swap(states.current.network, items.state);
    if (items.points)
        model.exchangeItems(items.points);
    tervo::CItemManager* oldSections = std::exchange(sectionManager, items.sections.get());
    // The model gives the same manager out as an object of another type.
    static_cast<void>(model.exchangeTervoObject(std::move(items.sections)).release());
    items.sections.reset(oldSections);
    std::swap(head, items.head);
    fieldBook.swap(items.fieldBook);
    wholeSnapshot.swap(items.snapshot);
    snapshot.reset();
    offCount.reset();
    anyResults.reset();
    deletedSections.swap(items.deletedSections);
    std::swap(nextId, items.nextId);
    Q_EMIT networkReplaced();
}

bool Document::setContent(Content content)
{
    if (!isConsistent(content))
        return false;
    levelling::Network network;
    network.description = content.description;
    network.sources = content.sources;
    network.parameters = content.parameters;
    network.observedHeights = content.observedHeights;
    NetworkItems items =
        NetworkItems::make(std::move(network), std::move(content.points), std::move(content.sections),
                           content.nextId, std::move(content.fieldBook));
    items.deletedSections = std::move(content.deletedSections);
    const SurveyRules rules(content.levellingClass, content.toleranceRules);
    states = renumber(std::move(content.states),
                      {items.state, statedigest::of(rules), statedigest::ofTests(rules.tolerances)});
    exchangeItems(items);
    undoStack->clear();
    takeRules(rules);
    return true;
}

Document::Content Document::copyContent() const
{
    Content content;
    content.description = getDescription();
    content.sources = head.sources;
    content.parameters = getParameters();
    content.levellingClass = levellingClass;
    content.toleranceRules = toleranceRules;
    for (const LevellingPoint* point : getPoints())
        content.points.push_back(std::make_unique<LevellingPoint>(*point));
    for (const LevellingSection* section : getSections())
        content.sections.push_back(std::make_unique<LevellingSection>(*section));
    content.observedHeights = head.observedHeights;
    content.fieldBook = fieldBook;
    content.deletedSections = deletedSections;
    content.states = states;
    content.nextId = nextId;
    return content;
}

void Document::setProtocolState(const ProtocolState& state, const QByteArray& dataContent)
{
    state.write(getProtocol());
    keeper.adopt(state.dataFilePath, dataContent);
    setSummary(keeper.getSummary());
}

ProtocolKeeper::Outcome Document::checkProtocol(std::optional<int> finishedRun)
{
    if (checking)
        return {false, false, QString(), std::nullopt};
    std::set<int> replacedTypes;
    if (finishedRun) {
        replacedTypes.insert(*finishedRun);
        if (isProcessingCleared)
            replacedTypes.insert(clearedTypes.begin(), clearedTypes.end());
        isProcessingCleared = false;
    }
    const DocumentState computedWith = states.current;
    ProtocolState state;
    ProtocolKeeper::Outcome outcome;
    {
        const QScopedValueRollback<bool> guard(checking, true);
        performBesideWindow([&] {
            state = ProtocolState::read(getProtocol());
            outcome = keeper.check(state.dataFilePath, replacedTypes);
            // What a large network takes a while to free is freed here, too.
            state.ids.clear();
            replacedSummary = ProtocolSummary();
        });
    }
    if (outcome.mentionedItems) {
        state.ids = *outcome.mentionedItems;
        state.write(getProtocol());
    }
    if (finishedRun && outcome.isWhole)
        states.protocols[*finishedRun] = computedWith;
    if (finishedRun || outcome.isChanged)
        setSummary(keeper.getSummary());
    return outcome;
}

void Document::setSummary(ProtocolSummary newSummary)
{
    replacedSummary = std::exchange(summary, std::move(newSummary));
    // Of older files nobody knows what their runs have computed with.
    for (const auto& type : summary.types)
        states.protocols.emplace(type.first, states.current);
    Q_EMIT summaryChanged();
    tellOutdated();
}

bool Document::isModified() const
{
    return modified || !undoStack->isClean();
}

void Document::setModified(bool isChanged)
{
    modified = isChanged;
    if (!isChanged)
        undoStack->setClean();
    tellModified();
}

void Document::tellModified()
{
    if (toldModified == isModified())
        return;
    toldModified = isModified();
    Q_EMIT modifiedChanged(toldModified);
}

QHash<QString, tacheometry::Position> Document::getGivenPositions() const
{
    QHash<QString, tacheometry::Position> positions;
    for (const LevellingPoint* item : getPoints()) {
        const levelling::Point& point = item->getPoint();
        tacheometry::Position position{point.x, point.y, std::nullopt};
        if (point.isBenchmark() || point.hasPlan())
            position.height = point.height;
        if (item->getResult() && !point.fixed)
            position.height = item->getResult()->height;
        if (position.hasPlan() || position.height)
            positions.insert(point.id, position);
    }
    return positions;
}

void Document::setPolarResults(const tacheometry::Computation& computation)
{
    QHash<QString, const tacheometry::Position*> computed;
    for (const tacheometry::ComputedPoint& point : computation.points)
        computed.insert(point.name, &point.position);
    for (LevellingPoint* point : getPoints()) {
        const tacheometry::Position* position = computed.value(point->getPoint().id);
        point->setPolarResult(position ? *position : tacheometry::Position());
    }
    Q_EMIT resultsChanged();
    setModified(true);
}

void Document::setAdjustment(const levelling::Adjustment& adjustment)
{
    const bool isUsable = adjustment.status == levelling::AdjustmentStatus::Ok;
    std::size_t index = 0;
    for (LevellingPoint* point : getPoints()) {
        std::optional<LevellingPoint::Result> result;
        if (isUsable && adjustment.points[index]) {
            const levelling::AdjustedPoint& adjusted = *adjustment.points[index];
            result = LevellingPoint::Result{adjusted.height, adjusted.sigma * adjusted.sigmaScale, {}};
            if (adjusted.isScaled)
                result->sigmaScale = adjusted.sigmaScale;
        }
        point->setResult(result);
        ++index;
    }
    // Of the sections those were adjusted that are not switched off.
    index = 0;
    for (LevellingSection* section : getSections()) {
        std::optional<LevellingSection::Result> result;
        if (!section->isOff() && isUsable && adjustment.sections[index]) {
            const levelling::AdjustedSection& adjusted = *adjustment.sections[index];
            result = LevellingSection::Result{adjusted.residual, adjusted.statistic, adjusted.redundancy,
                                              adjusted.grossError, adjusted.detectableError};
        }
        section->setResult(result);
        index += section->isOff() ? 0U : 1U;
    }
    anyResults.reset();
    states.results = states.current.network;
    Q_EMIT resultsChanged();
    setModified(true);
    tellOutdated();
}

} // namespace orvel::desk
