#include "apps/common/OffscreenPlatform.h"

#include "host/files/CFileException.h"

namespace orvel::apps {

OffscreenPlatform::OffscreenPlatform()
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const auto name = QStringLiteral("orvel-runtime");
    if (qEnvironmentVariableIsSet("XDG_RUNTIME_DIR")) {
        TempFolder::removeLeftOvers(name);
        return;
    }
    try {
        runtimeFolder = std::make_unique<TempFolder>(name);
        qputenv("XDG_RUNTIME_DIR", runtimeFolder->getPath().toLocal8Bit());
    } catch (const qor::CFileException&) {
        // The application needs a folder, too, and says what is wrong.
        runtimeFolder.reset();
    }
}

} // namespace orvel::apps
