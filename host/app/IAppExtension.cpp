#include "host/app/IAppExtension.h"

void IAppExtension::unextendApplication(Application* /*app*/)
{
    // Most plug-ins hand over everything that they make, so that there is nothing to undo.
}
