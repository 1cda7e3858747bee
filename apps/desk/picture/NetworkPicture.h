#pragma once

#include "apps/desk/picture/Layout.h"
#include "apps/desk/picture/OverLimitLoops.h"
#include "host/model/LongId.h"

#include <QRectF>
#include <QString>

#include <vector>

namespace orvel::desk {

class Document;

namespace picture {

/// What the protocols say of an item at worst.
enum class Severity { None, Warning, Error };

enum class PointKind {
    Sought,
    Observed, ///< a benchmark whose height is an observation
    Fixed,    ///< a benchmark whose height is held
};

struct PicturePoint
{
    LONGID id = 0;
    QString name;
    PointKind kind = PointKind::Sought;
    Severity severity = Severity::None;
    QPointF place;
    bool isPlaced = true; ///< it has coordinates, or no point of the network has
};

struct PictureSection
{
    LONGID id = 0;
    int from = 0; ///< indices of the points
    int to = 0;
    Severity severity = Severity::None;
    /// Of several sections between the same points each has a lane of its own: 0, then 1, -1, 2, -2 …; seen
    /// from the point with the smaller index.
    int lane = 0;
    bool isOff = false; ///< takes no part in any run
};

/// A loop or a line whose misclosure is over the limit.
struct PictureLoop
{
    std::vector<int> points; ///< indices, in walking order
    QString text;            ///< the misclosure beside its limit
};

/// All that is drawn of a network: plain data, to be painted in any size and for any medium.
struct NetworkPicture
{
    QString title;
    PlaceSource source = PlaceSource::Coordinates;
    std::vector<PicturePoint> points;
    std::vector<PictureSection> sections;
    std::vector<PictureLoop> loops;
    double spacing = 1.0; ///< between neighbours, as the median of the sections has it

    /// @param layout  of the document's points
    static NetworkPicture make(const Document& document, const Layout& layout);
    /// Takes the loops that are to be drawn.
    void setLoops(const std::vector<OverLimitLoop>& found);

    /// Whether its points are at these places.
    bool hasPlaces(const std::vector<QPointF>& places) const;
    /// The corners of all that there is; a box of size 1 for a single point.
    QRectF getBox() const;
    /// The index of the point or the section; -1 if there is none.
    int findPoint(LONGID id) const;
    int findSection(LONGID id) const;
};

} // namespace picture

} // namespace orvel::desk
