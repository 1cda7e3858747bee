#pragma once

#include "host/host_export.h"
#include "host/model/CGuardedObject.h"
#include "host/model/IIdentifiable.h"
#include "host/model/IPropertyHolder.h"
#include "host/model/ISubject.h"

#include <QString>

#include <map>
#include <memory>
#include <vector>

class CQtArchive;

/// One item of a project: an id, a name, properties, and the elements below it. Observers are told whenever
/// one of the first three changes.
///
/// Elements enter a project model through CProjectModel::addItem() and leave it through removeItem(); the
/// operations on children serve trees that stand outside of a model.
class HOST_EXPORT CModelElement : public ISubject,
                                  public qor::CGuardedObject,
                                  public qor::IIdentifiable,
                                  public Property::IPropertyHolder
{
public:
    using Children = std::vector<std::unique_ptr<CModelElement>>; ///< Owned, in the order of addition.

    /// With a parent the element becomes its last child and is owned by it, so that it has to come from
    /// `new`.
    explicit CModelElement(CModelElement* parentElement = nullptr);
    /// Takes over id, name and properties: the copy has no parent, no children and no observers.
    CModelElement(const CModelElement& other);
    /// As the copy constructor; parent, children and observers of the target stay.
    CModelElement& operator=(const CModelElement& other);
    ~CModelElement() override;

    /// The item type; constant during the element's life.
    virtual int getType() const;

    /// Saves or loads id, name and properties. Throws qor::CFileException with code 1 when a loaded property
    /// count is over 10000, and whatever the archive throws; the element is unchanged then.
    virtual void serialize(CQtArchive& archive);

    LONGID getId() const override; ///< 0 for an element without one.
    QVariant getProperty(int propertyId) const override;
    bool setProperty(int propertyId, const QVariant& value) override;

    void setId(LONGID newId);             ///< Tells the observers if it is another.
    QString getName() const;              ///< As the user reads it.
    void setName(const QString& newName); ///< Tells the observers if it is another.

    /// Null for an element that stands alone, and for the top level items of a model.
    CModelElement* getParent() const;
    const Children& getChildren() const; ///< In the order of addition.
    /// Appends the child and returns it. Null is ignored.
    CModelElement* addChild(std::unique_ptr<CModelElement> child);
    /// Gives the child out of the tree; null if it is no child of this element.
    std::unique_ptr<CModelElement> takeChild(const CModelElement* child);

private:
    LONGID id = 0;
    QString name;
    std::map<int, QVariant> properties;
    CModelElement* parent = nullptr;
    Children children;
};
