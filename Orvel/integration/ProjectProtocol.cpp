#include "Orvel/integration/ProjectProtocol.h"

#include "Orvel/store/COrvel.h"
#include "host/model/CProjectModel.h"

COrvel* findProjectProtocol(const CProjectModel* model)
{
    return model ? dynamic_cast<COrvel*>(model->getFirstItem(kOrvelItemType)) : nullptr;
}
