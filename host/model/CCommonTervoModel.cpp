#include "host/model/CCommonTervoModel.h"

CCommonTervoModel::CCommonTervoModel(CProject* ownerProject, QObject* parent)
    : CProjectModel(ownerProject, parent)
{}

CCommonTervoModel::~CCommonTervoModel() = default;

tervo::IItemManager* CCommonTervoModel::getTervoObject() const
{
    return tervoObject.get();
}

void CCommonTervoModel::setTervoObject(std::unique_ptr<tervo::IItemManager> itemManager)
{
    tervoObject = std::move(itemManager);
}
