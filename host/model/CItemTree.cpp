#include "host/model/CItemTree.h"

#include "host/model/ModelRevision.h"

#include <QSet>

#include <algorithm>
#include <atomic>
#include <iterator>

namespace {

std::atomic<quint64> latestOrder{0};

void collect(CModelElement& item, std::vector<CModelElement*>& items)
{
    items.push_back(&item);
    for (const auto& child : item.getChildren())
        collect(*child, items);
}

} // namespace

CItemTree::CItemTree() = default;

CItemTree::~CItemTree()
{
    // The items die after the indexes, and may change something in themselves while they do.
    for (const auto& [subject, entry] : entries)
        entry.element->detach(this);
}

std::vector<CModelElement*> CItemTree::getWithDescendants(CModelElement& item)
{
    std::vector<CModelElement*> items;
    collect(item, items);
    return items;
}

CModelElement* CItemTree::addItem(std::unique_ptr<CModelElement> item, CModelElement* parentItem)
{
    if (!item || (parentItem && !contains(parentItem)))
        return nullptr;
    const std::vector<CModelElement*> newItems = getWithDescendants(*item);
    if (!giveIds(newItems))
        return nullptr;

    CModelElement* added = parentItem ? parentItem->addChild(std::move(item))
                                      : topLevelItems.emplace_back(std::move(item)).get();
    for (CModelElement* newItem : newItems)
        enterIndexes(*newItem, {});
    return added;
}

const CItemTree::OrderedItems& CItemTree::getItems(int type) const
{
    static const OrderedItems none;
    const auto found = itemsByType.constFind(type);
    return found == itemsByType.constEnd() ? none : *found;
}

bool CItemTree::contains(const CModelElement* item) const
{
    return entries.count(item) != 0;
}

void CItemTree::subjectChanged(const ISubject& subject)
{
    Entry& entry = entries.at(&subject);
    if (entry.element->getId() != entry.indexedId) {
        itemsById.remove(entry.indexedId);
        indexId(entry);
    }
    modelrevision::advance();
    if (onItemChanged)
        onItemChanged(*entry.element);
}

/// Adds an item with the ids that it and those below it have. They are not found by ids that are taken.
void CItemTree::addAsItIs(std::unique_ptr<CModelElement> item, ItemTypeInfo::Flags flags)
{
    const CModelElement::Children::value_type& added = topLevelItems.emplace_back(std::move(item));
    for (CModelElement* newItem : getWithDescendants(*added))
        enterIndexes(*newItem, flags);
}

/// Removes and destroys an item that has nothing below it.
void CItemTree::removeLeaf(CModelElement& item)
{
    leaveIndexes(item);
    if (item.getParent()) {
        item.getParent()->takeChild(&item);
        return;
    }
    // From the end: of many items the last ones are removed first.
    const auto found = std::find_if(topLevelItems.rbegin(), topLevelItems.rend(),
                                    [&item](const auto& owner) { return owner.get() == &item; });
    topLevelItems.erase(std::prev(found.base()));
}

/// Whether an item of this tree has the id of one of the other tree.
bool CItemTree::hasIdOf(const CItemTree& tree) const
{
    return std::any_of(tree.entries.begin(), tree.entries.end(), [this](const auto& entry) {
        return entry.second.indexedId != 0 && itemsById.contains(entry.second.indexedId);
    });
}

bool CItemTree::isTaken(LONGID id) const
{
    return itemsById.contains(id) || (neighbour && neighbour->itemsById.contains(id));
}

/// Gives the items without an id a free one. False, and nothing changed, if the others' ids are taken.
bool CItemTree::giveIds(const std::vector<CModelElement*>& items)
{
    QSet<LONGID> newIds;
    for (const CModelElement* item : items) {
        const LONGID id = item->getId();
        if (id == 0)
            continue;
        if (isTaken(id) || newIds.contains(id))
            return false;
        newIds.insert(id);
    }
    for (CModelElement* item : items) {
        if (item->getId() != 0)
            continue;
        do
            ++lastFreeId;
        while (isTaken(lastFreeId) || newIds.contains(lastFreeId));
        item->setId(lastFreeId);
    }
    return true;
}

void CItemTree::enterIndexes(CModelElement& item, ItemTypeInfo::Flags flags)
{
    Entry& entry = entries[&item];
    entry.element = &item;
    entry.flags = flags;
    indexId(entry);
    itemsByType[item.getType()].push_back({&item, ++latestOrder});
    item.attach(this);
    modelrevision::advance();
}

void CItemTree::leaveIndexes(CModelElement& item)
{
    item.detach(this);
    const auto found = entries.find(&item);
    itemsById.remove(found->second.indexedId);
    OrderedItems& sameType = itemsByType[item.getType()];
    // From the end here, too.
    const auto last = std::find_if(sameType.rbegin(), sameType.rend(),
                                   [&item](const OrderedItem& each) { return each.item == &item; });
    sameType.erase(std::prev(last.base()));
    entries.erase(found);
    modelrevision::advance();
}

/// Makes the item of the entry known by its id, unless that is 0 or another item's.
void CItemTree::indexId(Entry& entry)
{
    const LONGID id = entry.element->getId();
    entry.indexedId = id == 0 || isTaken(id) ? 0 : id;
    if (entry.indexedId != 0)
        itemsById.insert(id, entry.element, entry.element->getType());
}
