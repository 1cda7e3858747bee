#pragma once

#include "host/host_export.h"
#include "host/model/IItemManager.h"

#include <QHash>

#include <memory>
#include <vector>

namespace tervo {

/// Owns data objects in the order of addition and finds them by id through an index.
class HOST_EXPORT CItemManager : public IItemManager
{
public:
    using Items = std::vector<std::unique_ptr<IItem>>;

    CItemManager();
    CItemManager(const CItemManager&) = delete;
    CItemManager& operator=(const CItemManager&) = delete;
    ~CItemManager() override;

    IItem* findItem(LONGID id) const override;

    /// Adds the item at the end and returns it; null if its id is 0 or taken (the item is destroyed then).
    IItem* addItem(std::unique_ptr<IItem> item);
    /// False if there is no item with that id.
    bool removeItem(LONGID id);
    const Items& getItems() const;
    void clear();

private:
    Items items;
    QHash<LONGID, IItem*> itemsById;
};

} // namespace tervo
