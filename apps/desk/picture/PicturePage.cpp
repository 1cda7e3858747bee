#include "apps/desk/picture/PicturePage.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>

namespace orvel::desk::picture {

namespace {

// Round the network, for names beside the outermost points.
constexpr double kMargin = 40.0;

QFont makeFont()
{
    QFont font(QStringLiteral("sans-serif"));
    constexpr int textSize = 12;
    font.setPixelSize(textSize);
    return font;
}

double findHeight(const NetworkPicture& picture, double width)
{
    const QRectF box = picture.getBox();
    const double shape = box.width() > 0.0 ? box.height() / box.width() : 1.0;
    constexpr double least = 0.3;
    constexpr double most = 1.25;
    return width * std::clamp(shape, least, most);
}

} // namespace

PicturePage::PicturePage(const NetworkPicture& networkPicture, double width)
    : PicturePage(networkPicture, QSizeF(width, findHeight(networkPicture, width)))
{}

PicturePage::PicturePage(const NetworkPicture& networkPicture, const QSizeF& pageSize)
    : picture(networkPicture)
    , font(makeFont())
    , size(pageSize)
{}

void PicturePage::paint(QPainter& painter) const
{
    painter.setFont(font);
    PicturePainter pictures(picture, PictureColours::forPaper(), Medium::Vectors);
    QRectF area(QPointF(), size);
    // What the scale bar says takes next to no room more or less.
    const Camera wholePage = Camera::fit(picture.getBox(), area);
    area.setBottom(area.bottom() - pictures.measureLegend(font, area.width(), wholePage));
    const Camera camera = Camera::fit(picture.getBox(), area.adjusted(kMargin, kMargin, -kMargin, -kMargin));
    pictures.paint(painter, area, camera);
    pictures.paintLegend(painter, QRectF(QPointF(), size), camera);
}

} // namespace orvel::desk::picture
