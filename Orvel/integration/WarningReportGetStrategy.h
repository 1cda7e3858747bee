#pragma once

#include "host/model/CommonPropertyGetSetIsReadonlyStrategy.h"

namespace OrvelSupport_impl {

/// Read-only property: whether the protocol mentions an item.
class WarningReportGetStrategy : public CommonPropertyGetSetIsReadonlyStrategy
{
    Q_OBJECT

public:
    using CommonPropertyGetSetIsReadonlyStrategy::CommonPropertyGetSetIsReadonlyStrategy;

    bool setPropertyValue(CProjectModel* model, CModelElement* element, int propertyId,
                          const QVariant& value) override;
    QVariant getPropertyValue(const CProjectModel* model, const CModelElement* element,
                              int propertyId) const override;
};

} // namespace OrvelSupport_impl
