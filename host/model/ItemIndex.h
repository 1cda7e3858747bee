#pragma once

#include "host/model/LongId.h"

#include <QHash>

#include <optional>

template<class Item>
class ItemIndex;

/// The types of items by their ids, as they were at one moment. Copies share their data, and any thread may
/// read them.
class ItemTypeIndex
{
public:
    /// Nothing for an id that no item has.
    std::optional<int> find(LONGID id) const
    {
        const auto found = entries.constFind(id);
        return found == entries.constEnd() ? std::nullopt : std::optional<int>(found->type);
    }

private:
    template<class Item>
    friend class ItemIndex;

    struct Entry
    {
        void* item;
        int type;
    };

    QHash<LONGID, Entry> entries;
};

/// Items by their ids; of items that are not owned.
template<class Item>
class ItemIndex
{
public:
    /// Null for an id that no item has.
    Item* find(LONGID id) const
    {
        const auto found = types.entries.constFind(id);
        return found == types.entries.constEnd() ? nullptr : static_cast<Item*>(found->item);
    }
    /// Whether the id is taken.
    bool contains(LONGID id) const { return types.entries.contains(id); }
    /// The types that occur.
    const ItemTypeIndex& getTypes() const { return types; }

    /// The id must be free; the item is not owned.
    void insert(LONGID id, Item* item, int type) { types.entries.insert(id, {item, type}); }
    /// An unknown id is ignored.
    void remove(LONGID id) { types.entries.remove(id); }
    /// Forgets all items.
    void clear() { types.entries.clear(); }

private:
    ItemTypeIndex types;
};
