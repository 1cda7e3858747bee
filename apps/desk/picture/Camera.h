#pragma once

#include <QPointF>
#include <QRectF>

namespace orvel::desk::picture {

/// How places of points come to places on a medium: shifted and enlarged, never turned.
struct Camera
{
    double scale = 1.0;
    QPointF shift;

    QPointF toMedium(const QPointF& place) const { return place * scale + shift; }
    QPointF fromMedium(const QPointF& place) const { return (place - shift) / scale; }

    /// Shows all of a box in the middle of an area.
    static Camera fit(const QRectF& box, const QRectF& area);
    /// Enlarges so that what is shown at a place of the medium stays there.
    void zoom(double factor, const QPointF& fixedPlace);
};

} // namespace orvel::desk::picture
