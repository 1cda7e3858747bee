#include "host/model/CItemManager.h"

#include "host/model/ModelRevision.h"

#include <algorithm>

namespace tervo {

CItemManager::CItemManager() = default;

CItemManager::~CItemManager() = default;

IItem* CItemManager::findItem(LONGID id) const
{
    return itemsById.find(id);
}

IItem* CItemManager::addItem(std::unique_ptr<IItem> item)
{
    if (!item || item->getId() == 0 || itemsById.contains(item->getId()))
        return nullptr;
    itemsById.insert(item->getId(), item.get(), static_cast<int>(item->getType()));
    modelrevision::advance();
    return items.emplace_back(std::move(item)).get();
}

bool CItemManager::removeItem(LONGID id)
{
    const IItem* removed = itemsById.find(id);
    if (!removed)
        return false;
    itemsById.remove(id);
    modelrevision::advance();
    items.erase(std::find_if(items.begin(), items.end(),
                             [removed](const auto& item) { return item.get() == removed; }));
    return true;
}

const CItemManager::Items& CItemManager::getItems() const
{
    return items;
}

void CItemManager::clear()
{
    itemsById.clear();
    modelrevision::advance();
    items.clear();
}

} // namespace tervo
