#include "Orvel/integration/ModelInitializerImpl.h"

#include "Orvel/store/COrvel.h"
#include "host/app/SDIApplication.h"
#include "host/model/CProjectModel.h"

namespace OrvelSupport_impl {

void ModelInitializerImpl::initSystemItems()
{
    const auto* application = static_cast<SDIApplication*>(getApplication());
    getModel()->addSystemItem(new COrvel(getModel(), application->getUriScheme()), {});
}

} // namespace OrvelSupport_impl
