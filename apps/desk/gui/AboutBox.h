#pragma once

class QWidget;

namespace orvel::desk {

/// Shows, over the parent, what this program is and its version.
void showAboutBox(QWidget* parent);

} // namespace orvel::desk
