#include "host/model/CProjectModel.h"

#include "host/model/CommonPropertyGetSetIsReadonlyStrategy.h"
#include "host/model/ModelInitializer.h"

#include <QSet>

#include <algorithm>
#include <iterator>

namespace {

void collect(CModelElement& item, std::vector<CModelElement*>& items)
{
    items.push_back(&item);
    for (const auto& child : item.getChildren())
        collect(*child, items);
}

/// The item and everything below it, each item before those below it.
std::vector<CModelElement*> withDescendants(CModelElement& item)
{
    std::vector<CModelElement*> items;
    collect(item, items);
    return items;
}

} // namespace

CProjectModel::CProjectModel(CProject* ownerProject, QObject* parent) : QObject(parent), project(ownerProject)
{}

CProjectModel::~CProjectModel()
{
    // The items die after the indexes, and may change something in themselves while they do.
    for (const auto& [subject, entry] : entries)
        entry.element->detach(this);
}

CProject* CProjectModel::getProject() const
{
    return project;
}

CModelElement* CProjectModel::addItem(std::unique_ptr<CModelElement> item, CModelElement* parentItem)
{
    if (!item || (parentItem && !isTreeItem(parentItem)))
        return nullptr;
    const std::vector<CModelElement*> newItems = withDescendants(*item);
    if (!giveIds(newItems))
        return nullptr;

    CModelElement* added = parentItem ? parentItem->addChild(std::move(item))
                                      : topLevelItems.emplace_back(std::move(item)).get();
    for (CModelElement* newItem : newItems)
        enterIndexes(*newItem, false, {});
    for (const CModelElement* newItem : newItems)
        Q_EMIT itemAdded(newItem->getId());
    return added;
}

bool CProjectModel::removeItem(LONGID id)
{
    CModelElement* item = findItemAnywhere(id);
    if (!item)
        return false;
    const std::vector<CModelElement*> removedItems = withDescendants(*item);
    const bool isDeletable =
        std::none_of(removedItems.begin(), removedItems.end(), [this](const CModelElement* removed) {
            return entries.at(removed).flags.testFlag(ItemTypeInfo::NotDeletable);
        });
    if (!isDeletable)
        return false;
    std::for_each(removedItems.rbegin(), removedItems.rend(),
                  [this](CModelElement* removed) { removeSingleItem(*removed); });
    return true;
}

const CModelElement::Children& CProjectModel::getTopLevelItems() const
{
    return topLevelItems;
}

CModelElement* CProjectModel::findItemAnywhere(LONGID id) const
{
    return itemsById.value(id);
}

void CProjectModel::addSystemItem(CModelElement* item, ItemTypeInfo::Flags flags)
{
    if (!item || entries.count(item) != 0)
        return;
    systemItems.emplace_back(item);
    for (CModelElement* newItem : withDescendants(*item))
        enterIndexes(*newItem, true, flags);
}

bool CProjectModel::isSystemItem(const CModelElement* item) const
{
    const auto found = entries.find(item);
    return found != entries.end() && found->second.isSystem;
}

CModelElement* CProjectModel::getFirstItem(int type) const
{
    const auto found = itemsByType.constFind(type);
    return found == itemsByType.constEnd() || found->empty() ? nullptr : found->front();
}

std::vector<CModelElement*> CProjectModel::getItems(int type) const
{
    return itemsByType.value(type);
}

ModelInitializer* CProjectModel::getInitializer(int key) const
{
    const auto found = initializers.find(key);
    return found == initializers.end() ? nullptr : found->second.data();
}

void CProjectModel::addInitializer(int key, ModelInitializer* initializer)
{
    if (!initializer || initializer == getInitializer(key))
        return;
    delete getInitializer(key);
    initializer->setParent(this);
    initializers[key] = initializer;
}

void CProjectModel::initialize()
{
    const std::map<int, QPointer<ModelInitializer>> present = initializers;
    for (const auto& [key, initializer] : present) {
        if (initializer)
            initializer->initSystemItems();
    }
    for (const auto& [key, initializer] : present) {
        if (initializer)
            initializer->initSubsystemRelations();
    }
}

void CProjectModel::registerPropertyStrategy(int propertyId, CommonPropertyGetSetIsReadonlyStrategy* strategy)
{
    if (!strategy)
        return;
    strategy->setParent(this);
    propertyStrategies[propertyId].emplace_back(strategy);
}

std::vector<CommonPropertyGetSetIsReadonlyStrategy*>
CProjectModel::getPropertyStrategies(int propertyId) const
{
    std::vector<CommonPropertyGetSetIsReadonlyStrategy*> strategies;
    const auto found = propertyStrategies.find(propertyId);
    if (found == propertyStrategies.end())
        return strategies;
    std::copy_if(found->second.begin(), found->second.end(), std::back_inserter(strategies),
                 [](const auto& strategy) { return !strategy.isNull(); });
    return strategies;
}

QVariant CProjectModel::getPropertyValue(const CModelElement& element, int propertyId) const
{
    for (const CommonPropertyGetSetIsReadonlyStrategy* strategy : getPropertyStrategies(propertyId)) {
        const QVariant value = strategy->getPropertyValue(this, &element, propertyId);
        if (value.isValid())
            return value;
    }
    return element.getProperty(propertyId);
}

bool CProjectModel::setPropertyValue(CModelElement& element, int propertyId, const QVariant& value)
{
    if (isPropertyReadonly(element, propertyId))
        return false;
    for (CommonPropertyGetSetIsReadonlyStrategy* strategy : getPropertyStrategies(propertyId)) {
        if (!strategy->isPropertyReadonly(this, &element, propertyId) &&
            strategy->setPropertyValue(this, &element, propertyId, value))
            return true;
    }
    return element.setProperty(propertyId, value);
}

bool CProjectModel::isPropertyReadonly(const CModelElement& element, int propertyId) const
{
    const std::vector<CommonPropertyGetSetIsReadonlyStrategy*> strategies = getPropertyStrategies(propertyId);
    return !strategies.empty() &&
           std::all_of(strategies.begin(), strategies.end(),
                       [&](const CommonPropertyGetSetIsReadonlyStrategy* strategy) {
                           return strategy->isPropertyReadonly(this, &element, propertyId);
                       });
}

void CProjectModel::setItemMentionedQuery(ItemQuery query)
{
    itemMentionedQuery = std::move(query);
}

bool CProjectModel::isItemMentioned(LONGID id) const
{
    return itemMentionedQuery && itemMentionedQuery(id);
}

void CProjectModel::subjectChanged(const ISubject& subject)
{
    Entry& entry = entries.at(&subject);
    const LONGID id = entry.element->getId();
    if (id != entry.indexedId) {
        itemsById.remove(entry.indexedId);
        indexId(entry);
    }
    if (!entry.isSystem)
        Q_EMIT itemChanged(id);
}

/// Gives the items without an id a free one. False, and nothing changed, if the others' ids are taken.
bool CProjectModel::giveIds(const std::vector<CModelElement*>& items)
{
    QSet<LONGID> newIds;
    for (const CModelElement* item : items) {
        const LONGID id = item->getId();
        if (id == 0)
            continue;
        if (itemsById.contains(id) || newIds.contains(id))
            return false;
        newIds.insert(id);
    }
    for (CModelElement* item : items) {
        if (item->getId() != 0)
            continue;
        do
            ++lastFreeId;
        while (itemsById.contains(lastFreeId) || newIds.contains(lastFreeId));
        item->setId(lastFreeId);
    }
    return true;
}

bool CProjectModel::isTreeItem(const CModelElement* item) const
{
    const auto found = entries.find(item);
    return found != entries.end() && !found->second.isSystem;
}

void CProjectModel::enterIndexes(CModelElement& item, bool isSystem, ItemTypeInfo::Flags flags)
{
    Entry& entry = entries[&item];
    entry.element = &item;
    entry.isSystem = isSystem;
    entry.flags = flags;
    indexId(entry);
    itemsByType[item.getType()].push_back(&item);
    item.attach(this);
}

void CProjectModel::leaveIndexes(CModelElement& item)
{
    item.detach(this);
    const auto found = entries.find(&item);
    itemsById.remove(found->second.indexedId);
    std::vector<CModelElement*>& sameType = itemsByType[item.getType()];
    // From the end: of a large subtree the last items are removed first.
    sameType.erase(std::prev(std::find(sameType.rbegin(), sameType.rend(), &item).base()));
    entries.erase(found);
}

/// Makes the item of the entry known by its id, unless that is 0 or another item's.
void CProjectModel::indexId(Entry& entry)
{
    const LONGID id = entry.element->getId();
    entry.indexedId = id == 0 || itemsById.contains(id) ? 0 : id;
    if (entry.indexedId != 0)
        itemsById.insert(id, entry.element);
}

/// Removes an item that has nothing below it.
void CProjectModel::removeSingleItem(CModelElement& item)
{
    const LONGID id = item.getId();
    const bool isSystem = isSystemItem(&item);
    if (!isSystem)
        Q_EMIT itemAboutToBeRemoved(id);

    leaveIndexes(item);
    if (item.getParent()) {
        item.getParent()->takeChild(&item);
    } else {
        CModelElement::Children& owners = isSystem ? systemItems : topLevelItems;
        const auto found = std::find_if(owners.rbegin(), owners.rend(), // from the end here, too
                                        [&item](const auto& owner) { return owner.get() == &item; });
        owners.erase(std::prev(found.base()));
    }
    if (!isSystem)
        Q_EMIT itemRemoved(id);
}
