#include "Orvel/integration/WarningReportGetStrategy.h"

#include "host/model/CModelElement.h"
#include "host/model/CProjectModel.h"

namespace OrvelSupport_impl {

bool WarningReportGetStrategy::setPropertyValue(CProjectModel* /*model*/, CModelElement* /*element*/,
                                                int /*propertyId*/, const QVariant& /*value*/)
{
    return false;
}

QVariant WarningReportGetStrategy::getPropertyValue(const CProjectModel* model, const CModelElement* element,
                                                    int /*propertyId*/) const
{
    return model->isItemMentioned(element->getId());
}

} // namespace OrvelSupport_impl
