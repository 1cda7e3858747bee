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

/// An icon in the colours of the palette: to be seen in light and dark windows alike, sharp at every
/// resolution.
QIcon makeIcon(Glyph glyph);

/// The program's own icon, in its own colours.
QIcon makeApplicationIcon();

} // namespace orvel::desk
