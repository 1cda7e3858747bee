#pragma once

#include <QString>

namespace orvel::desk {

class Document;

namespace picture {

/// The picture of the project's network as an SVG element for a page on paper: light colours, with a legend,
/// as wide as an A4 page's text. Empty if there is no point. The same network gives the same picture; of a
/// large network without coordinates the places of the points are sought anew, which takes seconds.
QString renderSvg(const Document& document);

} // namespace picture

} // namespace orvel::desk
