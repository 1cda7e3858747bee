#pragma once

#include "apps/desk/document/Document.h"
#include "host/app/PluginManager.h"
#include "host/app/SDIApplication.h"
#include "host/delegates/ItemDelegateFactory.h"
#include "host/window/ProjectWindow.h"

#include <memory>

namespace orvel::bench {

/// The desk with one empty project, as far as runs and tables need it.
struct DeskHost
{
    DeskHost();

    SDIApplication application;
    ItemDelegateFactory delegateFactory;
    PluginManager plugins;
    std::unique_ptr<desk::Document> document;
    std::unique_ptr<ProjectWindow> window;
};

} // namespace orvel::bench
