#include "apps/desk/picture/PictureColours.h"

#include <QPalette>

namespace orvel::desk::picture {

PictureColours PictureColours::forPaper()
{
    return {Qt::white,        Qt::black,        QColor(0x4a4a4a), QColor(0x8a8a8a),
            QColor(0xb3261e), QColor(0x865200), QColor(0x6a3fb5), QColor(0x0b5cad)};
}

PictureColours PictureColours::forScreen(const QPalette& palette)
{
    PictureColours colours = forPaper();
    colours.ground = palette.color(QPalette::Base);
    colours.text = palette.color(QPalette::Text);
    colours.selection = palette.color(QPalette::Highlight);
    constexpr int middleLightness = 128;
    if (colours.ground.lightness() < middleLightness) {
        colours.line = QColor(0xb8b8b8);
        colours.quiet = QColor(0x808080);
        colours.error = QColor(0xff8f85);
        colours.warning = QColor(0xf0b94e);
        colours.loop = QColor(0xc3a6ff);
    }
    return colours;
}

} // namespace orvel::desk::picture
