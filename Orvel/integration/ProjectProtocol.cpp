#include "Orvel/integration/ProjectProtocol.h"

#include "Orvel/store/COrvel.h"
#include "host/model/CProjectModel.h"

namespace orvel {

COrvel* findProjectProtocol(const CProjectModel* model)
{
    return model ? dynamic_cast<COrvel*>(model->getFirstItem(kOrvelItemType)) : nullptr;
}

} // namespace orvel
