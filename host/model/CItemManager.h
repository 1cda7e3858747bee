#pragma once

#include "host/host_export.h"
#include "host/model/IItemManager.h"
#include "host/model/ItemIndex.h"

#include <memory>
#include <vector>

namespace tervo {

/// Owns data objects in the order of addition and finds them by id through an index. May be filled in any
/// thread before a model gets it.
class HOST_EXPORT CItemManager : public IItemManager
{
public:
    using Items = std::vector<std::unique_ptr<IItem>>; ///< Owned, in the order of addition.

    CItemManager();
    CItemManager(const CItemManager&) = delete;
    CItemManager& operator=(const CItemManager&) = delete;
    ~CItemManager() override;

    IItem* findItem(LONGID id) const override;

    /// Adds the item at the end and returns it; null if its id is 0 or taken (the item is destroyed then).
    IItem* addItem(std::unique_ptr<IItem> item);
    /// False if there is no item with that id.
    bool removeItem(LONGID id);
    const Items& getItems() const; ///< All items, in the order of addition.
    /// The types of all items by id, as they are now.
    const ItemTypeIndex& getTypes() const { return itemsById.getTypes(); }
    void clear(); ///< Destroys all items.

private:
    Items items;
    ItemIndex<IItem> itemsById;
};

} // namespace tervo
