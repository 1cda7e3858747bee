#include "host/model/CommonPropertyGetSetIsReadonlyStrategy.h"

CommonPropertyGetSetIsReadonlyStrategy::CommonPropertyGetSetIsReadonlyStrategy(QObject* parent)
    : QObject(parent)
{}

CommonPropertyGetSetIsReadonlyStrategy::~CommonPropertyGetSetIsReadonlyStrategy() = default;

bool CommonPropertyGetSetIsReadonlyStrategy::setPropertyValue(CProjectModel* /*model*/,
                                                              CModelElement* /*element*/, int /*propertyId*/,
                                                              const QVariant& /*value*/)
{
    return false;
}

QVariant CommonPropertyGetSetIsReadonlyStrategy::getPropertyValue(const CProjectModel* /*model*/,
                                                                  const CModelElement* /*element*/,
                                                                  int /*propertyId*/) const
{
    return {};
}

bool CommonPropertyGetSetIsReadonlyStrategy::isPropertyReadonly(const CProjectModel* /*model*/,
                                                                const CModelElement* /*element*/,
                                                                int /*propertyId*/) const
{
    return true;
}
