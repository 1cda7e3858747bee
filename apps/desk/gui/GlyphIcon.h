#pragma once

#include <QIcon>

namespace orvel::desk {

/// What the desk's icons show.
enum class Glyph {
    New,
    Open,
    Save,
    Import,
    Export,
    Compile,
    Adjust,
    L1Analysis,
    Protocol,
    Report,
    Search,
    Info,
    Help
};

/// An icon drawn from lines in the colours of the palette: sharp at every resolution, and to be seen in light
/// and dark windows alike.
QIcon makeIcon(Glyph glyph);

/// The program's own icon, in its own colours.
QIcon makeApplicationIcon();

} // namespace orvel::desk
