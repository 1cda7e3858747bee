#include "host/model/ModelInitializer.h"

#include "host/model/CProjectModel.h"

ModelInitializer::ModelInitializer(CProjectModel* projectModel) : QObject(projectModel), model(projectModel)
{}

ModelInitializer::~ModelInitializer() = default;

CProjectModel* ModelInitializer::getModel() const
{
    return model;
}

void ModelInitializer::initSystemItems()
{
    // A subsystem without system items has nothing to add.
}

void ModelInitializer::initSubsystemRelations()
{
    // A subsystem that stands alone has nothing to connect.
}
