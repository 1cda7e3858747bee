#pragma once

#include <QColor>

class QPalette;

namespace orvel::desk::picture {

/// Colours of a picture. What they tell apart differs in shape, width or line style as well.
struct PictureColours
{
    QColor ground;
    QColor text;
    QColor line;  ///< sections
    QColor quiet; ///< what takes no part
    QColor error;
    QColor warning;
    QColor loop;
    QColor selection;

    static PictureColours forPaper();
    /// For a window of that palette, light or dark.
    static PictureColours forScreen(const QPalette& palette);
};

} // namespace orvel::desk::picture
