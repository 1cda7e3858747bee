#include "apps/desk/gui/ScreenSize.h"

#include <QScreen>
#include <QStyle>
#include <QWidget>

namespace orvel::desk {

void resizeToScreen(QWidget& window, const QSize& wanted)
{
    // How thick the frame is, only the window manager knows, and only when the window is there.
    const int frame = window.style()->pixelMetric(QStyle::PM_TitleBarHeight, nullptr, &window);
    const QSize available = window.screen()->availableGeometry().size() - QSize(frame, 2 * frame);
    window.resize(wanted.boundedTo(available));
}

} // namespace orvel::desk
