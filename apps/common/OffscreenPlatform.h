#pragma once

#include "host/app/TempFolder.h"

#include <memory>

namespace orvel::apps {

/// Has Qt draw into memory, so that a program with windows runs without a display. To be made before the
/// QApplication and to outlive it.
class OffscreenPlatform
{
public:
    OffscreenPlatform();

private:
    // Qt complains on stderr where the system has given the user no runtime folder, as in a bare container.
    std::unique_ptr<TempFolder> runtimeFolder;
};

} // namespace orvel::apps
