#pragma once

#include "host/host_export.h"
#include "host/model/CItemTree.h"
#include "host/model/CModelElement.h"
#include "host/model/ItemTypeInfo.h"

#include <QObject>
#include <QPointer>

#include <functional>
#include <map>
#include <memory>
#include <vector>

class CProject;
class CommonPropertyGetSetIsReadonlyStrategy;
class ModelInitializer;

/// The items of one project: a tree of elements, and system items beside it. Items are found by id and by
/// type through indexes, so that models of some 100,000 items work without stalls. Belongs to one thread.
///
/// The signals tell of the items of the tree: one signal per item, or one for all when they are exchanged.
/// System items come, change and go without.
class HOST_EXPORT CProjectModel : public QObject
{
    Q_OBJECT

public:
    using ItemQuery = std::function<bool(LONGID)>; ///< Answers a question about the item with that id.

    /// The project is not owned and outlives the model. It may be null.
    explicit CProjectModel(CProject* ownerProject, QObject* parent = nullptr);
    ~CProjectModel() override;

    CProject* getProject() const; ///< Null for a model without one.

    /// Adds an item, with everything below it, as the last child of a tree item, or as the last top level
    /// item. Items with id 0 get a free id. Returns the item; null if it was refused (and destroyed) because
    /// an id in it is taken, or because the parent item is not in the tree of this model.
    CModelElement* addItem(std::unique_ptr<CModelElement> item, CModelElement* parentItem = nullptr);
    /// Destroys an item of the tree with everything below it, the lowest first, or a system item. False if
    /// there is none with that id, or if the item or one below it is not deletable. Must not be called from
    /// slots of the model's own signals.
    bool removeItem(LONGID id);
    /// Puts a tree that was made elsewhere into the place of the one that the model has, and gives that one
    /// out, in a time that does not depend on the number of items.
    /// @return false, and nothing changed, if an item has the id of a system item
    bool exchangeItems(std::unique_ptr<CItemTree>& items);
    /// The top level items in the order of addition.
    const CModelElement::Children& getTopLevelItems() const;

    /// The item of the tree or the system item with that id; null for an unknown one and for 0.
    CModelElement* findItemAnywhere(LONGID id) const;
    /// The types of the items of the tree by id, as they are now.
    const ItemTypeIndex& getTreeItemTypes() const { return tree->getTypes(); }
    /// The same of the system items.
    const ItemTypeIndex& getSystemItemTypes() const { return systemTree.getTypes(); }

    /// Adds an item beside the tree and takes ownership. It keeps the id that it has, which is 0 in general;
    /// one whose id is taken is not found by it. Null, and an item that the model has already, are ignored.
    void addSystemItem(CModelElement* item, ItemTypeInfo::Flags flags);
    /// True if the item was added by addSystemItem().
    bool isSystemItem(const CModelElement* item) const;

    /// The first item of the type, tree and system items taken together in the order of addition, or null.
    CModelElement* getFirstItem(int type) const;
    /// All items of the type, in the same order.
    std::vector<CModelElement*> getItems(int type) const;

    ModelInitializer* getInitializer(int key) const; ///< Null when there is none under the key.
    /// Takes ownership. An earlier initializer under the same key is destroyed.
    void addInitializer(int key, ModelInitializer* initializer);
    /// Fills a new model: every initializer's initSystemItems() in the order of the keys, then every
    /// initSubsystemRelations().
    void initialize();

    /// Adds a strategy for the property and takes ownership. A property may have several, which are asked in
    /// the order of registration.
    void registerPropertyStrategy(int propertyId, CommonPropertyGetSetIsReadonlyStrategy* strategy);
    /// In the order of registration.
    std::vector<CommonPropertyGetSetIsReadonlyStrategy*> getPropertyStrategies(int propertyId) const;

    /// The first valid value that a strategy gives, else the element's own property.
    QVariant getPropertyValue(const CModelElement& element, int propertyId) const;
    /// Hands the value to the strategies that don't call the property read-only until one takes it, else sets
    /// the element's own property. False if nothing took it, always so for a read-only property.
    bool setPropertyValue(CModelElement& element, int propertyId, const QVariant& value);
    /// True if the property has strategies and each of them calls it read-only.
    bool isPropertyReadonly(const CModelElement& element, int propertyId) const;

    /// Installs the application's answer to isItemMentioned().
    void setItemMentionedQuery(ItemQuery query);
    /// Whether the journals of the application mention the item; false without an installed query.
    bool isItemMentioned(LONGID id) const;

Q_SIGNALS:
    void itemAdded(LONGID id);            ///< The item is in the tree.
    void itemAboutToBeRemoved(LONGID id); ///< The item is still there.
    /// The item is destroyed.
    void itemRemoved(LONGID id);
    /// Name, id or a property of the item has changed.
    void itemChanged(LONGID id);
    void itemsAboutToBeReplaced(); ///< All items are still there.
    /// All items of the tree are others.
    void itemsReplaced();

private:
    void takeTree();
    void removeSingleItem(CItemTree& owner, CModelElement& item);

    CProject* project;
    CItemTree systemTree;
    std::unique_ptr<CItemTree> tree;
    std::map<int, QPointer<ModelInitializer>> initializers;
    std::map<int, std::vector<QPointer<CommonPropertyGetSetIsReadonlyStrategy>>> propertyStrategies;
    ItemQuery itemMentionedQuery;
};
