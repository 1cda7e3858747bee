#pragma once

#include "host/host_export.h"
#include "host/model/CModelElement.h"
#include "host/model/ItemIndex.h"
#include "host/model/ItemTypeInfo.h"

#include <QHash>

#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

/// Items that a project model owns, found by id and by type through indexes.
///
/// A tree that no model has may be made and filled in any thread; it is handed to
/// CProjectModel::exchangeItems() complete, so that many items come at once without a stall.
class HOST_EXPORT CItemTree : private IObserver
{
public:
    /// An item beside its place in the order in which items came into trees, whichever.
    struct OrderedItem
    {
        CModelElement* item; ///< the item, never null
        quint64 order;       ///< place in the order of addition
    };
    using OrderedItems = std::vector<OrderedItem>; ///< By the order of addition.

    CItemTree();
    CItemTree(const CItemTree&) = delete;
    CItemTree& operator=(const CItemTree&) = delete;
    ~CItemTree() override;

    /// Adds an item, with everything below it, as the last child of an item of the tree or as the last top
    /// level item. Items with id 0 get a free id.
    /// @return the item; null if it was refused (and destroyed) because an id in it is taken, or because the
    /// parent item is not in the tree
    CModelElement* addItem(std::unique_ptr<CModelElement> item, CModelElement* parentItem = nullptr);

    /// The top level items in the order of addition.
    const CModelElement::Children& getTopLevelItems() const { return topLevelItems; }
    /// Null for an id that no item has, and for 0.
    CModelElement* findItem(LONGID id) const { return itemsById.find(id); }
    /// All items of the type in the order of addition.
    const OrderedItems& getItems(int type) const;
    bool contains(const CModelElement* item) const; ///< Whether the item is in the tree.
    /// The types of all items by id, as they are now.
    const ItemTypeIndex& getTypes() const { return itemsById.getTypes(); }

private:
    friend class CProjectModel;

    /// What the tree knows of an item in it.
    struct Entry
    {
        CModelElement* element = nullptr;
        LONGID indexedId = 0; ///< The id under which the item stands in itemsById; 0 if it doesn't.
        ItemTypeInfo::Flags flags;
    };

    void subjectChanged(const ISubject& subject) override;

    static std::vector<CModelElement*> getWithDescendants(CModelElement& item);
    void addAsItIs(std::unique_ptr<CModelElement> item, ItemTypeInfo::Flags flags);
    void removeLeaf(CModelElement& item);
    bool hasIdOf(const CItemTree& tree) const;
    bool isTaken(LONGID id) const;
    bool giveIds(const std::vector<CModelElement*>& items);
    void enterIndexes(CModelElement& item, ItemTypeInfo::Flags flags);
    void leaveIndexes(CModelElement& item);
    void indexId(Entry& entry);

    CModelElement::Children topLevelItems;
    std::unordered_map<const ISubject*, Entry> entries;
    ItemIndex<CModelElement> itemsById;
    QHash<int, OrderedItems> itemsByType;
    LONGID lastFreeId = 0;

    // Set by the model that has the tree.
    const CItemTree* neighbour = nullptr; // no id stands in both
    std::function<void(const CModelElement&)> onItemChanged;
};
