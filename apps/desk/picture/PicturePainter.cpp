#include "apps/desk/picture/PicturePainter.h"

#include "apps/desk/Desk.h"
#include "apps/desk/runs/NumberTexts.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace orvel::desk::picture {

namespace {

// Points that are nearer to each other, as sections have it, get no names, and then no signs.
constexpr double kRoomyFrom = 15.0;
constexpr double kDenseBelow = 5.0;
// So many lines are drawn smoothly; more are too thick a crowd for that to be seen.
constexpr int kSmoothLines = 4000;
// Sections side by side are so far apart.
constexpr double kLaneWidth = 5.0;
// A section this short on the medium has no lanes and no mark of its own.
constexpr double kShortSection = 24.0;
constexpr std::size_t kMostNames = 300;
constexpr std::size_t kMostNamesWhereDense = 60;
constexpr std::size_t kMostLoopTexts = 20;
// What lies so far outside may still reach into the picture.
constexpr double kBeyondEdge = 20.0;
constexpr double kDot = 7.0;
constexpr double kSmallDot = 4.0;
constexpr double kRing = 7.0;
// Of the legend.
constexpr double kSignWidth = 42.0;
constexpr double kGap = 6.0;
constexpr double kScaleBar = 120.0;

double toLength(const QPointF& way)
{
    return std::hypot(way.x(), way.y());
}

/// The largest of 1, 2, 5, 10, 20 … that is not larger than the length.
double takeRound(double length)
{
    const double power = std::pow(10.0, std::floor(std::log10(length)));
    for (const double factor : {5.0, 2.0}) {
        if (factor * power <= length)
            return factor * power;
    }
    return power;
}

QString describeLength(double metres)
{
    constexpr double kilometre = 1000.0;
    return metres < kilometre ? Desk::tr("%1\u00A0м").arg(numbers::shortest(metres))
                              : Desk::tr("%1\u00A0км").arg(numbers::shortest(metres / kilometre));
}

/// A text on ground of its own.
void drawText(QPainter& painter, const QRectF& box, const QString& text, const QColor& colour, QColor ground)
{
    constexpr int mostlyOpaque = 200;
    ground.setAlpha(mostlyOpaque);
    painter.fillRect(box, ground);
    painter.setPen(colour);
    painter.drawText(box, Qt::AlignCenter, text);
}

} // namespace

QPolygonF getSectionWay(const NetworkPicture& picture, const PictureSection& section, const Camera& camera)
{
    const QPointF from = camera.toMedium(picture.points[static_cast<std::size_t>(section.from)].place);
    const QPointF to = camera.toMedium(picture.points[static_cast<std::size_t>(section.to)].place);
    const QPointF way = to - from;
    const double length = toLength(way);
    if (section.lane == 0 || length < kShortSection)
        return QPolygonF(QVector<QPointF>{from, to});
    QPointF aside(-way.y() / length, way.x() / length);
    if (section.from > section.to)
        aside = -aside;
    aside *= kLaneWidth * section.lane;
    const QPointF bend = way / length * std::min(length / 4, 2 * toLength(aside));
    return QPolygonF({from, from + bend + aside, to - bend + aside, to});
}

PicturePainter::PicturePainter(const NetworkPicture& networkPicture, const PictureColours& pictureColours,
                               Medium pictureMedium)
    : picture(networkPicture)
    , colours(pictureColours)
    , medium(pictureMedium)
{}

void PicturePainter::paint(QPainter& painter, const QRectF& area, const Camera& camera)
{
    seen = area.adjusted(-kBeyondEdge, -kBeyondEdge, kBeyondEdge, kBeyondEdge);
    shownBy = camera;
    places.clear();
    places.reserve(picture.points.size());
    for (const PicturePoint& point : picture.points)
        places.push_back(camera.toMedium(point.place));
    const double spacing = picture.spacing * camera.scale;
    density = spacing >= kRoomyFrom    ? Density::Roomy
              : spacing >= kDenseBelow ? Density::Close
                                       : Density::Dense;

    painter.save();
    painter.setClipRect(area);
    paintLoops(painter);
    paintSections(painter);
    paintPoints(painter);
    paintMarked(painter);
    paintNames(painter);
    painter.restore();
}

void PicturePainter::paintLoops(QPainter& painter) const
{
    painter.setRenderHint(QPainter::Antialiasing);
    QColor band = colours.loop;
    constexpr int seenThrough = 90;
    constexpr double bandWidth = 9.0;
    band.setAlpha(seenThrough);
    painter.setBrush(Qt::NoBrush);
    for (const PictureLoop& loop : picture.loops) {
        QPolygonF way;
        for (const int point : loop.points)
            way.append(getPlace(point));
        if (!isSeen(way.boundingRect().adjusted(-1, -1, 1, 1)))
            continue;
        painter.setPen(QPen(band, bandWidth, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolyline(way);
        painter.setPen(QPen(colours.loop, 1.5, Qt::DotLine));
        painter.drawPolyline(way);
    }
}

QPen PicturePainter::getPen(Severity severity) const
{
    if (severity == Severity::Error)
        return QPen(colours.error, density == Density::Dense ? 2.0 : 3.0, Qt::SolidLine, Qt::RoundCap);
    if (severity == Severity::Warning)
        return QPen(colours.warning, 2.0, Qt::DashLine, Qt::FlatCap);
    return QPen(colours.line, 1.0);
}

QPen PicturePainter::getOffPen() const
{
    QPen pen(colours.quiet, 1.5, Qt::SolidLine, Qt::FlatCap);
    pen.setDashPattern({2.0, 4.0});
    return pen;
}

void PicturePainter::drawLines(QPainter& painter, const QVector<QLineF>& lines) const
{
    if (lines.isEmpty())
        return;
    if (medium == Medium::Pixels) {
        painter.setRenderHint(QPainter::Antialiasing, lines.size() <= kSmoothLines);
        painter.drawLines(lines);
        return;
    }
    // A file would have as many elements as there are lines.
    QPainterPath path;
    QPointF end;
    for (const QLineF& line : lines) {
        if (path.elementCount() == 0 || line.p1() != end)
            path.moveTo(line.p1());
        path.lineTo(line.p2());
        end = line.p2();
    }
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(path);
}

void PicturePainter::drawDots(QPainter& painter, const QVector<QPointF>& dots) const
{
    if (dots.isEmpty())
        return;
    if (medium == Medium::Pixels) {
        painter.setRenderHint(QPainter::Antialiasing, dots.size() <= kSmoothLines);
        painter.drawPoints(dots.constData(), dots.size());
        return;
    }
    QPainterPath path;
    constexpr double next = 0.01;
    for (const QPointF& dot : dots) {
        path.moveTo(dot);
        path.lineTo(dot + QPointF(next, 0));
    }
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(path);
}

void PicturePainter::paintSections(QPainter& painter) const
{
    const auto paintThose = [&](const QPen& pen, const auto& isMeant) {
        QVector<QLineF> lines;
        for (const PictureSection& section : picture.sections) {
            if (!isMeant(section))
                continue;
            const QRectF box = QRectF(getPlace(section.from), getPlace(section.to)).normalized();
            if (!isSeen(box.adjusted(-1, -1, 1, 1)))
                continue;
            const QPolygonF way = getSectionWay(picture, section, shownBy);
            for (int i = 0; i + 1 < way.size(); ++i)
                lines.append({way[i], way[i + 1]});
        }
        painter.setPen(pen);
        drawLines(painter, lines);
    };
    // What is grave lies above what is not.
    paintThose(getOffPen(), [](const PictureSection& section) { return section.isOff; });
    for (const Severity severity : {Severity::None, Severity::Warning, Severity::Error}) {
        paintThose(getPen(severity), [severity](const PictureSection& section) {
            return !section.isOff && section.severity == severity;
        });
        paintSectionMarks(painter, severity);
    }
}

/// A sign in the middle of each section of that severity, where there is room.
void PicturePainter::paintSectionMarks(QPainter& painter, Severity severity) const
{
    if (severity == Severity::None || density == Density::Dense)
        return;
    painter.setRenderHint(QPainter::Antialiasing);
    for (const PictureSection& section : picture.sections) {
        if (section.severity != severity || section.isOff)
            continue;
        const QPolygonF way = getSectionWay(picture, section, shownBy);
        const QPointF middle = (way[(way.size() - 1) / 2] + way[way.size() / 2]) / 2;
        if (seen.contains(middle) && toLength(way.last() - way.first()) >= kShortSection)
            drawSectionMark(painter, severity, middle);
    }
}

void PicturePainter::drawSectionMark(QPainter& painter, Severity severity, const QPointF& place) const
{
    constexpr double half = 5.0;
    if (severity == Severity::Error) {
        painter.setPen(QPen(colours.error, 2.0));
        painter.drawLine(place + QPointF(-half, -half), place + QPointF(half, half));
        painter.drawLine(place + QPointF(-half, half), place + QPointF(half, -half));
        return;
    }
    painter.setPen(QPen(colours.warning, 1.5));
    painter.setBrush(colours.ground);
    painter.drawPolygon(
        QPolygonF({place + QPointF(0, -half), place + QPointF(half, half), place + QPointF(-half, half)}));
}

void PicturePainter::paintPoints(QPainter& painter) const
{
    QVector<QPointF> dots;
    QVector<QPointF> unplaced;
    std::vector<int> signs;
    for (std::size_t index = 0; index < picture.points.size(); ++index) {
        if (!seen.contains(places[index]))
            continue;
        const PicturePoint& point = picture.points[index];
        if (point.kind != PointKind::Sought || point.severity != Severity::None)
            signs.push_back(static_cast<int>(index));
        if (point.kind != PointKind::Sought)
            continue;
        (point.isPlaced ? dots : unplaced).append(places[index]);
    }
    // A dense crowd of points is told by its lines; where there are none, there is nothing else to see.
    if (density != Density::Dense || picture.sections.empty()) {
        const double size = density == Density::Roomy ? kDot : kSmallDot;
        painter.setPen(QPen(colours.text, size, Qt::SolidLine, Qt::RoundCap));
        drawDots(painter, dots);
        drawDots(painter, unplaced);
        painter.setPen(QPen(colours.ground, size - 2.0, Qt::SolidLine, Qt::RoundCap));
        drawDots(painter, unplaced);
    }
    painter.setRenderHint(QPainter::Antialiasing, static_cast<int>(signs.size()) <= kSmoothLines);
    for (const int index : signs)
        drawSymbol(painter, picture.points[static_cast<std::size_t>(index)], getPlace(index));
}

void PicturePainter::drawSymbol(QPainter& painter, const PicturePoint& point, const QPointF& place) const
{
    if (point.kind != PointKind::Sought)
        drawBenchmark(painter, point.kind, place);
    if (point.severity == Severity::None)
        return;
    if (density != Density::Dense) {
        drawRing(painter, point.severity, place);
        return;
    }
    const bool isError = point.severity == Severity::Error;
    painter.setPen(QPen(isError ? colours.error : colours.warning, isError ? 5.0 : 3.0));
    painter.drawPoint(place);
}

/// A triangle: filled where the height is held.
void PicturePainter::drawBenchmark(QPainter& painter, PointKind kind, const QPointF& place) const
{
    const double size = density == Density::Dense ? 4.0 : 7.0;
    painter.setPen(QPen(colours.text, 1.5));
    painter.setBrush(kind == PointKind::Fixed ? colours.text : colours.ground);
    painter.drawPolygon(QPolygonF({place + QPointF(0, -size), place + QPointF(size, 0.75 * size),
                                   place + QPointF(-size, 0.75 * size)}));
}

/// Round a point: a double ring is an error, a broken one a warning.
void PicturePainter::drawRing(QPainter& painter, Severity severity, const QPointF& place) const
{
    painter.setBrush(Qt::NoBrush);
    if (severity == Severity::Error) {
        painter.setPen(QPen(colours.error, 2.0));
        painter.drawEllipse(place, kRing, kRing);
        painter.drawEllipse(place, kRing + 4.0, kRing + 4.0);
        return;
    }
    painter.setPen(QPen(colours.warning, 2.0, Qt::DotLine));
    painter.drawEllipse(place, kRing, kRing);
}

void PicturePainter::paintMarked(QPainter& painter) const
{
    constexpr double outer = 16.0;
    constexpr double inner = 11.0;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    if (marked.section >= 0) {
        const QPolygonF way =
            getSectionWay(picture, picture.sections[static_cast<std::size_t>(marked.section)], shownBy);
        QColor band = colours.selection;
        constexpr int seenThrough = 120;
        band.setAlpha(seenThrough);
        painter.setPen(QPen(band, inner, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolyline(way);
        painter.setPen(QPen(colours.selection, 2.0));
        painter.drawRect(QRectF(way.first() - QPointF(inner, inner), QSizeF(2 * inner, 2 * inner)));
        painter.drawRect(QRectF(way.last() - QPointF(inner, inner), QSizeF(2 * inner, 2 * inner)));
    }
    if (marked.point < 0)
        return;
    const QPointF place = getPlace(marked.point);
    painter.setPen(QPen(colours.selection, 3.0));
    painter.drawRect(QRectF(place - QPointF(inner, inner), QSizeF(2 * inner, 2 * inner)));
    for (const QPointF& direction : {QPointF(1, 0), QPointF(-1, 0), QPointF(0, 1), QPointF(0, -1)})
        painter.drawLine(place + direction * inner, place + direction * outer);
}

/// Points that get a name as far as there is room, the most important first.
std::vector<int> PicturePainter::listNamed() const
{
    const auto rank = [this](int index) {
        const PicturePoint& point = picture.points[static_cast<std::size_t>(index)];
        if (index == marked.point)
            return 0;
        if (point.severity == Severity::Error)
            return 1;
        if (point.kind != PointKind::Sought)
            return 2;
        return point.severity == Severity::Warning ? 3 : 4;
    };
    std::vector<int> named;
    for (int index = 0; index < static_cast<int>(places.size()); ++index) {
        if (seen.contains(getPlace(index)) && (density == Density::Roomy || rank(index) < 3))
            named.push_back(index);
    }
    std::stable_sort(named.begin(), named.end(),
                     [&rank](int one, int other) { return rank(one) < rank(other); });
    const std::size_t most = density == Density::Roomy ? kMostNames : kMostNamesWhereDense;
    named.resize(
        std::min(named.size(), medium == Medium::Vectors && density == Density::Roomy ? named.size() : most));
    return named;
}

void PicturePainter::paintNames(QPainter& painter) const
{
    const QFontMetricsF metrics(painter.font(), painter.device());
    const QRectF inside = seen.adjusted(kBeyondEdge, kBeyondEdge, -kBeyondEdge, -kBeyondEdge);
    std::vector<QRectF> taken;
    const auto tryAt = [&](const QRectF& box, const QString& text, const QColor& colour) {
        if (!inside.contains(box))
            return false;
        const auto overlaps = [&box](const QRectF& other) { return box.intersects(other); };
        if (std::any_of(taken.begin(), taken.end(), overlaps))
            return false;
        taken.push_back(box);
        drawText(painter, box, text, colour, colours.ground);
        return true;
    };
    std::size_t loopTexts = 0;
    for (const PictureLoop& loop : picture.loops) {
        QPointF middle;
        for (const int point : loop.points)
            middle += getPlace(point);
        middle /= static_cast<double>(loop.points.size());
        const QSizeF size(metrics.horizontalAdvance(loop.text) + kGap, metrics.height());
        QRectF box(middle - QPointF(size.width() / 2, size.height() / 2), size);
        box.moveLeft(std::max(inside.left(), std::min(box.left(), inside.right() - box.width())));
        if (seen.contains(middle) && tryAt(box, loop.text, colours.loop) && ++loopTexts == kMostLoopTexts)
            break;
    }
    for (const int index : listNamed()) {
        const QString& name = picture.points[static_cast<std::size_t>(index)].name;
        const QSizeF size(metrics.horizontalAdvance(name) + 2.0, metrics.height());
        const QPointF place = getPlace(index);
        const bool hasRing = picture.points[static_cast<std::size_t>(index)].severity != Severity::None;
        const double away = hasRing ? 13.0 : 9.0;
        for (const QPointF& corner : {QPointF(away, -size.height() / 2), QPointF(-size.width() / 2, away),
                                      QPointF(-size.width() / 2, -away - size.height()),
                                      QPointF(-away - size.width(), -size.height() / 2)}) {
            if (tryAt(QRectF(place + corner, size), name, colours.text))
                break;
        }
    }
}

std::vector<PicturePainter::LegendEntry> PicturePainter::listLegend(const Camera& camera) const
{
    using Sign = LegendEntry::Sign;
    const auto hasPoint = [this](const auto& isMeant) {
        return std::any_of(picture.points.begin(), picture.points.end(), isMeant);
    };
    const auto hasSeverity = [this, &hasPoint](Severity severity) {
        return hasPoint([severity](const PicturePoint& point) { return point.severity == severity; }) ||
               std::any_of(picture.sections.begin(), picture.sections.end(),
                           [severity](const PictureSection& section) {
                               return !section.isOff && section.severity == severity;
                           });
    };
    std::vector<LegendEntry> entries;
    const auto add = [&entries](bool isThere, Sign sign, const QString& text) {
        if (isThere)
            entries.push_back({sign, text});
    };
    add(hasPoint([](const PicturePoint& point) { return point.kind == PointKind::Fixed; }), Sign::Fixed,
        Desk::tr("исходный репер"));
    add(hasPoint([](const PicturePoint& point) { return point.kind == PointKind::Observed; }), Sign::Observed,
        Desk::tr("репер с измеренной высотой"));
    add(hasPoint([](const PicturePoint& point) { return point.kind == PointKind::Sought && point.isPlaced; }),
        Sign::Point, Desk::tr("пункт"));
    add(hasPoint([](const PicturePoint& point) { return !point.isPlaced; }), Sign::Unplaced,
        Desk::tr("пункт без координат, место условное"));
    add(!picture.sections.empty(), Sign::Section, Desk::tr("секция"));
    add(std::any_of(picture.sections.begin(), picture.sections.end(),
                    [](const PictureSection& section) { return section.isOff; }),
        Sign::Off, Desk::tr("отключённая секция"));
    add(hasSeverity(Severity::Error), Sign::Error, Desk::tr("ошибка в протоколах"));
    add(hasSeverity(Severity::Warning), Sign::Warning, Desk::tr("предупреждение в протоколах"));
    add(!picture.loops.empty(), Sign::Loop, Desk::tr("невязка больше допуска"));
    if (picture.source == PlaceSource::Drawn)
        add(true, Sign::None, Desk::tr("Координат нет: схема без масштаба"));
    else
        add(true, Sign::Scale, describeLength(takeRound(kScaleBar / camera.scale)));
    return entries;
}

std::vector<QRectF> PicturePainter::arrangeLegend(const QFont& font, double width,
                                                  const std::vector<LegendEntry>& entries) const
{
    const QFontMetricsF metrics(font);
    const double height = std::max(metrics.height(), 2 * (kRing + 4.0)) + 2.0;
    std::vector<QRectF> boxes;
    QPointF corner;
    for (const LegendEntry& entry : entries) {
        const double signWidth = entry.sign == LegendEntry::Sign::None    ? 0.0
                                 : entry.sign == LegendEntry::Sign::Scale ? kScaleBar
                                                                          : kSignWidth;
        const double own = signWidth + kGap + metrics.horizontalAdvance(entry.text) + 2 * kGap;
        if (corner.x() > 0.0 && corner.x() + own > width)
            corner = {0.0, corner.y() + height};
        boxes.emplace_back(corner, QSizeF(own, height));
        corner.rx() += own;
    }
    return boxes;
}

double PicturePainter::measureLegend(const QFont& font, double width, const Camera& camera) const
{
    return arrangeLegend(font, width - 2 * kGap, listLegend(camera)).back().bottom() + kGap;
}

void PicturePainter::paintLegend(QPainter& painter, const QRectF& area, const Camera& camera) const
{
    const std::vector<LegendEntry> entries = listLegend(camera);
    const std::vector<QRectF> boxes = arrangeLegend(painter.font(), area.width() - 2 * kGap, entries);
    const double height = boxes.back().bottom() + kGap;
    const QPointF corner(area.left() + kGap, area.bottom() - height);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QColor ground = colours.ground;
    constexpr int mostlyOpaque = 225;
    ground.setAlpha(mostlyOpaque);
    painter.fillRect(QRectF(area.left(), corner.y(), area.width(), height), ground);
    for (std::size_t i = 0; i < entries.size(); ++i) {
        QRectF box = boxes[i].translated(corner);
        drawSign(painter, entries[i].sign, box, camera);
        const double signWidth = entries[i].sign == LegendEntry::Sign::None    ? 0.0
                                 : entries[i].sign == LegendEntry::Sign::Scale ? kScaleBar
                                                                               : kSignWidth;
        box.setLeft(box.left() + signWidth + kGap);
        painter.setPen(colours.text);
        painter.drawText(box, Qt::AlignVCenter | Qt::AlignLeft, entries[i].text);
    }
    painter.restore();
}

void PicturePainter::drawSign(QPainter& painter, LegendEntry::Sign sign, const QRectF& box,
                              const Camera& camera) const
{
    using Sign = LegendEntry::Sign;
    const QPointF left(box.left(), box.center().y());
    const QPointF right = left + QPointF(kSignWidth, 0);
    const QPointF middle = (left + right) / 2;
    painter.setBrush(Qt::NoBrush);
    switch (sign) {
    case Sign::Point:
    case Sign::Unplaced:
        painter.setPen(QPen(colours.text, 1.0));
        painter.setBrush(sign == Sign::Point ? colours.text : colours.ground);
        painter.drawEllipse(middle, kDot / 2, kDot / 2);
        break;
    case Sign::Fixed:
        drawBenchmark(painter, PointKind::Fixed, middle);
        break;
    case Sign::Observed:
        drawBenchmark(painter, PointKind::Observed, middle);
        break;
    case Sign::Section:
        painter.setPen(getPen(Severity::None));
        painter.drawLine(left, right);
        break;
    case Sign::Off:
        painter.setPen(getOffPen());
        painter.drawLine(left, right);
        break;
    case Sign::Warning:
    case Sign::Error: {
        const Severity severity = sign == Sign::Error ? Severity::Error : Severity::Warning;
        painter.setPen(getPen(severity));
        painter.drawLine(left + QPointF(2 * kRing, 0), right);
        drawRing(painter, severity, left + QPointF(2 * kRing, 0));
        drawSectionMark(painter, severity, right - QPointF(kRing, 0));
        break;
    }
    case Sign::Loop: {
        QColor band = colours.loop;
        constexpr int seenThrough = 90;
        band.setAlpha(seenThrough);
        painter.setPen(QPen(band, 9.0, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(left + QPointF(kGap, 0), right - QPointF(kGap, 0));
        painter.setPen(QPen(colours.loop, 1.5, Qt::DotLine));
        painter.drawLine(left + QPointF(kGap, 0), right - QPointF(kGap, 0));
        break;
    }
    case Sign::Scale: {
        const QPointF end = left + QPointF(takeRound(kScaleBar / camera.scale) * camera.scale, 0);
        const QPointF tick(0, 4);
        painter.setPen(QPen(colours.text, 1.5));
        painter.drawLine(left, end);
        painter.drawLine(left - tick, left + tick);
        painter.drawLine(end - tick, end + tick);
        break;
    }
    case Sign::None:
        break;
    }
}

} // namespace orvel::desk::picture
