#include "Orvel/integration/ProtocolTemplate.h"

#include "Orvel/store/COrvel.h"
#include "host/app/Application.h"
#include "host/files/CDirCopier.h"

namespace orvel {

namespace {

// Overwrite what is older or different.
constexpr int kOverwriteChanged = 4;

} // namespace

void copyProtocolTemplate()
{
    CDirCopier copier(0);
    copier.setCopyOption(kOverwriteChanged);
    copier.copyDir(COrvel::s_sysTemplateProtocolPath, Application::getTempFolder());
}

} // namespace orvel
