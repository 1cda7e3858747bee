#include "host/model/CProjectModel.h"

#include "host/model/CommonPropertyGetSetIsReadonlyStrategy.h"
#include "host/model/ModelInitializer.h"
#include "host/model/ModelRevision.h"

#include <algorithm>
#include <iterator>

namespace {

bool isEarlier(const CItemTree::OrderedItem& left, const CItemTree::OrderedItem& right)
{
    return left.order < right.order;
}

} // namespace

CProjectModel::CProjectModel(CProject* ownerProject, QObject* parent)
    : QObject(parent)
    , project(ownerProject)
    , tree(std::make_unique<CItemTree>())
{
    takeTree();
}

CProjectModel::~CProjectModel() = default;

CProject* CProjectModel::getProject() const
{
    return project;
}

CModelElement* CProjectModel::addItem(std::unique_ptr<CModelElement> item, CModelElement* parentItem)
{
    CModelElement* added = tree->addItem(std::move(item), parentItem);
    if (added) {
        for (const CModelElement* newItem : CItemTree::getWithDescendants(*added))
            Q_EMIT itemAdded(newItem->getId());
    }
    return added;
}

bool CProjectModel::removeItem(LONGID id)
{
    CModelElement* item = findItemAnywhere(id);
    if (!item)
        return false;
    CItemTree& owner = isSystemItem(item) ? systemTree : *tree;
    const std::vector<CModelElement*> removedItems = CItemTree::getWithDescendants(*item);
    const bool isDeletable =
        std::none_of(removedItems.begin(), removedItems.end(), [&owner](const CModelElement* removed) {
            return owner.entries.at(removed).flags.testFlag(ItemTypeInfo::NotDeletable);
        });
    if (!isDeletable)
        return false;
    std::for_each(removedItems.rbegin(), removedItems.rend(),
                  [&](CModelElement* removed) { removeSingleItem(owner, *removed); });
    return true;
}

bool CProjectModel::exchangeItems(std::unique_ptr<CItemTree>& items)
{
    if (!items || items->hasIdOf(systemTree))
        return false;
    Q_EMIT itemsAboutToBeReplaced();
    tree->neighbour = nullptr;
    tree->onItemChanged = nullptr;
    tree.swap(items);
    takeTree();
    modelrevision::advance();
    Q_EMIT itemsReplaced();
    return true;
}

const CModelElement::Children& CProjectModel::getTopLevelItems() const
{
    return tree->getTopLevelItems();
}

CModelElement* CProjectModel::findItemAnywhere(LONGID id) const
{
    CModelElement* item = tree->findItem(id);
    return item ? item : systemTree.findItem(id);
}

void CProjectModel::addSystemItem(CModelElement* item, ItemTypeInfo::Flags flags)
{
    if (item && !tree->contains(item) && !systemTree.contains(item))
        systemTree.addAsItIs(std::unique_ptr<CModelElement>(item), flags);
}

bool CProjectModel::isSystemItem(const CModelElement* item) const
{
    return systemTree.contains(item);
}

CModelElement* CProjectModel::getFirstItem(int type) const
{
    const CItemTree::OrderedItems& treeItems = tree->getItems(type);
    const CItemTree::OrderedItems& systemItems = systemTree.getItems(type);
    if (treeItems.empty() && systemItems.empty())
        return nullptr;
    const bool isInTree =
        systemItems.empty() || (!treeItems.empty() && isEarlier(treeItems.front(), systemItems.front()));
    return isInTree ? treeItems.front().item : systemItems.front().item;
}

std::vector<CModelElement*> CProjectModel::getItems(int type) const
{
    const CItemTree::OrderedItems& treeItems = tree->getItems(type);
    const CItemTree::OrderedItems& systemItems = systemTree.getItems(type);
    CItemTree::OrderedItems merged;
    merged.reserve(treeItems.size() + systemItems.size());
    std::merge(treeItems.begin(), treeItems.end(), systemItems.begin(), systemItems.end(),
               std::back_inserter(merged), isEarlier);
    std::vector<CModelElement*> items;
    items.reserve(merged.size());
    for (const CItemTree::OrderedItem& each : merged)
        items.push_back(each.item);
    return items;
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

void CProjectModel::takeTree()
{
    tree->neighbour = &systemTree;
    systemTree.neighbour = tree.get();
    tree->onItemChanged = [this](const CModelElement& item) { Q_EMIT itemChanged(item.getId()); };
}

/// Removes an item that has nothing below it.
void CProjectModel::removeSingleItem(CItemTree& owner, CModelElement& item)
{
    const LONGID id = item.getId();
    const bool isTold = &owner == tree.get();
    if (isTold)
        Q_EMIT itemAboutToBeRemoved(id);
    owner.removeLeaf(item);
    if (isTold)
        Q_EMIT itemRemoved(id);
}
