#pragma once

#include "host/host_export.h"

#include <QObject>
#include <QVariant>

class CModelElement;
class CProjectModel;

/// How one property of the elements of a model is read and written, for values that the elements don't keep
/// themselves. The base gives no value and is read-only.
class HOST_EXPORT CommonPropertyGetSetIsReadonlyStrategy : public QObject
{
    Q_OBJECT

public:
    /// @p parent owns the strategy.
    explicit CommonPropertyGetSetIsReadonlyStrategy(QObject* parent);
    ~CommonPropertyGetSetIsReadonlyStrategy() override;

    /// True if the strategy took the value. One that keeps it outside of the element notifies the element's
    /// observers itself.
    virtual bool setPropertyValue(CProjectModel* model, CModelElement* element, int propertyId,
                                  const QVariant& value);
    /// The value, or an invalid one if the strategy has none for the element.
    virtual QVariant getPropertyValue(const CProjectModel* model, const CModelElement* element,
                                      int propertyId) const;
    /// Whether the property cannot be written.
    virtual bool isPropertyReadonly(const CProjectModel* model, const CModelElement* element,
                                    int propertyId) const;
};
