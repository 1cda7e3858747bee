#pragma once

#include <QSize>

class QWidget;

namespace orvel::desk {

/// Gives a window its first size, and less of it where the screen, its frame included, has no room for that.
void resizeToScreen(QWidget& window, const QSize& wanted);

} // namespace orvel::desk
