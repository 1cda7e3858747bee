#include "apps/desk/picture/PictureFile.h"

#include "apps/desk/picture/PicturePage.h"

#include <QBuffer>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>

namespace orvel::desk::picture {

namespace {

constexpr int kUnitsPerInch = 96;

} // namespace

QByteArray renderSvgFile(const NetworkPicture& picture)
{
    // As wide as the text of an A4 page.
    constexpr double width = 680.0;
    const PicturePage page(picture, width);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setResolution(kUnitsPerInch);
    generator.setSize(page.getSize().toSize());
    generator.setViewBox(QRectF(QPointF(), page.getSize()));
    generator.setTitle(picture.title);
    QPainter painter(&generator);
    page.paint(painter);
    painter.end();
    return bytes;
}

void paintPage(const NetworkPicture& picture, QPagedPaintDevice& device, int resolution)
{
    QPainter painter(&device);
    const double scale = static_cast<double>(resolution) / kUnitsPerInch;
    painter.scale(scale, scale);
    const QRectF paper = device.pageLayout().paintRect(QPageLayout::Inch);
    PicturePage(picture, paper.size() * kUnitsPerInch).paint(painter);
}

QByteArray renderPdf(const NetworkPicture& picture)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setTitle(picture.title);
    const QRectF box = picture.getBox();
    constexpr double margin = 15.0;
    writer.setPageLayout(QPageLayout(
        QPageSize(QPageSize::A4), box.width() > box.height() ? QPageLayout::Landscape : QPageLayout::Portrait,
        QMarginsF(margin, margin, margin, margin), QPageLayout::Millimeter));
    paintPage(picture, writer, writer.resolution());
    return bytes;
}

} // namespace orvel::desk::picture
