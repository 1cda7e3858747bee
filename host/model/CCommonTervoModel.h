#pragma once

#include "host/host_export.h"
#include "host/model/CProjectModel.h"
#include "host/model/IItemManager.h"

#include <memory>

/// A project model whose project also has data objects outside of the tree, kept by an item manager.
class HOST_EXPORT CCommonTervoModel : public CProjectModel
{
    Q_OBJECT

public:
    /// The project is not owned and outlives the model; @p parent owns it.
    explicit CCommonTervoModel(CProject* ownerProject, QObject* parent = nullptr);
    ~CCommonTervoModel() override;

    /// Null until one has been set.
    tervo::IItemManager* getTervoObject() const;
    /// Destroys the earlier manager.
    void setTervoObject(std::unique_ptr<tervo::IItemManager> itemManager);
    /// Gives the earlier manager out.
    std::unique_ptr<tervo::IItemManager>
    exchangeTervoObject(std::unique_ptr<tervo::IItemManager> itemManager);

private:
    std::unique_ptr<tervo::IItemManager> tervoObject;
};
