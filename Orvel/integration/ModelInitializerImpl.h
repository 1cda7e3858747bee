#pragma once

#include "host/model/ModelInitializer.h"

namespace OrvelSupport_impl {

/// Makes the one protocol of a project model.
class ModelInitializerImpl : public ModelInitializer
{
    Q_OBJECT

public:
    using ModelInitializer::ModelInitializer;

    void initSystemItems() override;
};

} // namespace OrvelSupport_impl
