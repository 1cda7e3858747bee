#pragma once

#include "apps/desk/picture/Camera.h"
#include "apps/desk/picture/NetworkPicture.h"
#include "apps/desk/picture/PictureColours.h"

#include <QFont>
#include <QLineF>
#include <QPen>
#include <QPolygonF>
#include <QVector>

class QPainter;

namespace orvel::desk::picture {

/// What a picture is painted on.
enum class Medium {
    Pixels, ///< painted again and again: what is too dense to be seen is left out
    Vectors ///< a file or a printer: lines of one kind are one path
};

/// The way of a section on the medium. Several between the same points go side by side.
QPolygonF getSectionWay(const NetworkPicture& picture, const PictureSection& section, const Camera& camera);

/// Paints a network: lengths are in pixels, or in units of 1/96 inch.
class PicturePainter
{
public:
    /// The item that is marked, by index; -1 if there is none.
    struct Marked
    {
        int point = -1;
        int section = -1;
    };

    /// The picture outlives the painter.
    PicturePainter(const NetworkPicture& networkPicture, const PictureColours& pictureColours,
                   Medium pictureMedium);

    void setMarked(const Marked& markedItem) { marked = markedItem; }

    /// Paints what of the network is seen in an area.
    void paint(QPainter& painter, const QRectF& area, const Camera& camera);
    /// How high the legend is at that width.
    double measureLegend(const QFont& font, double width, const Camera& camera) const;
    /// Paints the legend at the lower end of an area.
    void paintLegend(QPainter& painter, const QRectF& area, const Camera& camera) const;

private:
    /// How close the points are on the medium.
    enum class Density { Roomy, Close, Dense };

    struct LegendEntry
    {
        enum class Sign { Point, Unplaced, Fixed, Observed, Section, Off, Warning, Error, Loop, Scale, None };

        Sign sign;
        QString text;
    };

    bool isSeen(const QRectF& box) const { return seen.intersects(box); }
    QPointF getPlace(int point) const { return places[static_cast<std::size_t>(point)]; }

    void paintLoops(QPainter& painter) const;
    void paintSections(QPainter& painter) const;
    void paintSectionMarks(QPainter& painter, Severity severity) const;
    void paintPoints(QPainter& painter) const;
    void paintMarked(QPainter& painter) const;
    void paintNames(QPainter& painter) const;
    std::vector<int> listNamed() const;

    QPen getPen(Severity severity) const;
    QPen getOffPen() const;
    void drawLines(QPainter& painter, const QVector<QLineF>& lines) const;
    void drawDots(QPainter& painter, const QVector<QPointF>& dots) const;
    void drawSymbol(QPainter& painter, const PicturePoint& point, const QPointF& place) const;
    void drawBenchmark(QPainter& painter, PointKind kind, const QPointF& place) const;
    void drawRing(QPainter& painter, Severity severity, const QPointF& place) const;
    void drawSectionMark(QPainter& painter, Severity severity, const QPointF& place) const;
    void drawSign(QPainter& painter, LegendEntry::Sign sign, const QRectF& box, const Camera& camera) const;

    std::vector<LegendEntry> listLegend(const Camera& camera) const;
    /// Places of the entries, from the upper left corner on.
    std::vector<QRectF> arrangeLegend(const QFont& font, double width,
                                      const std::vector<LegendEntry>& entries) const;

    const NetworkPicture& picture;
    PictureColours colours;
    Medium medium;
    Marked marked;

    // Of what is being painted.
    QRectF seen;
    Camera shownBy;
    Density density = Density::Roomy;
    std::vector<QPointF> places; ///< of the points on the medium
};

} // namespace orvel::desk::picture
