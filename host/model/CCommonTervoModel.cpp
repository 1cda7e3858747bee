#include "host/model/CCommonTervoModel.h"

#include "host/model/ModelRevision.h"

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
    exchangeTervoObject(std::move(itemManager));
}

std::unique_ptr<tervo::IItemManager>
CCommonTervoModel::exchangeTervoObject(std::unique_ptr<tervo::IItemManager> itemManager)
{
    tervoObject.swap(itemManager);
    modelrevision::advance();
    return itemManager;
}
