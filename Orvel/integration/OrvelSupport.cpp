#include "Orvel/integration/OrvelSupport.h"

#include "Orvel/integration/CDelegateCreatorImpl.h"
#include "Orvel/integration/CReportDelegate.h"
#include "Orvel/integration/ModelInitializerImpl.h"
#include "Orvel/integration/OrvelGUIExtension.h"
#include "Orvel/integration/ProtocolLinkHandler.h"
#include "Orvel/integration/ProtocolTemplate.h"
#include "Orvel/integration/UriNavigationHandlerFuncImpl.h"
#include "Orvel/integration/WarningReportGetStrategy.h"
#include "Orvel/store/COrvel.h"
#include "host/app/Application.h"
#include "host/delegates/ItemDelegateFactory.h"
#include "host/model/CProjectModel.h"
#include "host/model/ItemTypes.h"
#include "host/window/ProjectWindow.h"

#include <QStandardPaths>

void OrvelSupport::extendModel(CProjectModel* model)
{
    if (!model->getInitializer(kOrvelItemType))
        model->addInitializer(kOrvelItemType, new OrvelSupport_impl::ModelInitializerImpl(model));
    model->registerPropertyStrategy(kWarningReportProperty,
                                    new OrvelSupport_impl::WarningReportGetStrategy(model));
}

void OrvelSupport::extendProjectGUI(ProjectGUI* gui)
{
    auto* window = static_cast<ProjectWindow*>(gui);
    auto* viewer = new OrvelGUIExtension(window, window);
    window->addExtension(kOrvelItemType, viewer);
    window->addUriNavigationHandler(
        std::make_unique<UriNavigationHandlerFuncImpl<orvel::ProtocolLinkHandler>>(
            orvel::ProtocolLinkHandler{viewer}));
}

bool OrvelSupport::extendApplication(Application* /*app*/)
{
    if (ItemDelegateFactory* factory = ItemDelegateFactory::instance())
        factory->registerExtension(kWarningReportDelegate,
                                   std::make_unique<CDelegateCreatorImpl<CReportDelegate>>());

    COrvel::s_sysTemplateProtocolPath =
        Application::locateData(QStringLiteral("Protocol"), QStandardPaths::LocateDirectory);
    orvel::copyProtocolTemplate();
    return true;
}

// Here the metadata is made, so that it is compiled with the definitions of this file.
#include "moc_OrvelSupport.cpp" // NOLINT(bugprone-suspicious-include)
