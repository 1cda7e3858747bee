#pragma once

#include "host/host_export.h"

#include <QtPlugin>

class CProjectModel;

/// A plug-in's part in every project model.
struct HOST_EXPORT IModelExtension
{
    virtual ~IModelExtension() = default;

    /// Called once for every new model, before CProjectModel::initialize().
    virtual void extendModel(CProjectModel* model) = 0;
};

Q_DECLARE_INTERFACE(IModelExtension, "org.orvel.IModelExtension/1.0")
