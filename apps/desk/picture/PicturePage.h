#pragma once

#include "apps/desk/picture/PicturePainter.h"

#include <QFont>
#include <QSizeF>

namespace orvel::desk::picture {

/// A picture as it stands on paper, in light colours and with its legend below. Lengths are in units of 1/96
/// inch.
class PicturePage
{
public:
    /// A page of that width, as high as the network asks for. The picture outlives it.
    PicturePage(const NetworkPicture& networkPicture, double width);
    /// A page of that size.
    PicturePage(const NetworkPicture& networkPicture, const QSizeF& pageSize);

    QSizeF getSize() const { return size; }
    void paint(QPainter& painter) const;

private:
    const NetworkPicture& picture;
    QFont font;
    QSizeF size;
};

} // namespace orvel::desk::picture
