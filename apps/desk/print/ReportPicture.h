#pragma once

#include <QByteArray>

namespace orvel::desk {

class Document;

namespace reportpicture {

/// The picture of the network for reports, SVG; empty if there is no point. What takes long in it is done
/// beside the window; see performBesideWindow().
QByteArray make(const Document& document);

} // namespace reportpicture

} // namespace orvel::desk
