#pragma once

#include <QByteArray>

class QPagedPaintDevice;

namespace orvel::desk::picture {

struct NetworkPicture;

/// A picture as an SVG file.
QByteArray renderSvgFile(const NetworkPicture& picture);
/// A picture as a PDF file of one A4 page, upright or across as the network asks for.
QByteArray renderPdf(const NetworkPicture& picture);
/// Paints a picture on the page of a printer or a file.
/// @param resolution  dots per inch of the device
void paintPage(const NetworkPicture& picture, QPagedPaintDevice& device, int resolution);

} // namespace orvel::desk::picture
