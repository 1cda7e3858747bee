#include "apps/common/OffscreenPlatform.h"

namespace orvel::apps {

OffscreenPlatform::OffscreenPlatform()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!qEnvironmentVariableIsSet("XDG_RUNTIME_DIR")) {
        runtimeFolder = std::make_unique<QTemporaryDir>();
        qputenv("XDG_RUNTIME_DIR", runtimeFolder->path().toLocal8Bit());
    }
}

} // namespace orvel::apps
