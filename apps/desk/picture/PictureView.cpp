#include "apps/desk/picture/PictureView.h"

#include "apps/desk/Desk.h"

#include <QApplication>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLineF>
#include <QPainter>
#include <QToolTip>

#include <algorithm>
#include <cmath>
#include <utility>

namespace orvel::desk::picture {

namespace {

// Round the network, for names beside the outermost points.
constexpr double kMargin = 40.0;
constexpr double kZoomStep = 1.25;
// So near to a point or a section the mouse means it.
constexpr double kReach = 8.0;
// So far apart the points are shown when one of them is looked up.
constexpr double kReadableSpacing = 60.0;
// Between all that there is on a hundredth of the window and ten thousand times as much.
constexpr double kLeastZoom = 0.01;
constexpr double kMostZoom = 10000.0;

double findDistance(const QPointF& place, const QPolygonF& way)
{
    double least = std::numeric_limits<double>::max();
    for (int i = 0; i + 1 < way.size(); ++i) {
        const QPointF line = way[i + 1] - way[i];
        const double square = QPointF::dotProduct(line, line);
        const double part =
            square > 0.0 ? std::clamp(QPointF::dotProduct(place - way[i], line) / square, 0.0, 1.0) : 0.0;
        least = std::min(least, QLineF(place, way[i] + part * line).length());
    }
    return least;
}

} // namespace

PictureView::PictureView(QWidget* parent) : QWidget(parent)
{
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAccessibleName(Desk::tr("Схема сети"));
    setMinimumSize(120, 90);
}

void PictureView::setPicture(NetworkPicture newPicture, bool isSamePlace)
{
    picture = std::move(newPicture);
    if (!isSamePlace)
        isFitted = true;
    if (isFitted)
        fit();
    update();
}

void PictureView::setEmptyText(const QString& text)
{
    emptyText = text;
    update();
}

void PictureView::setLoops(const std::vector<OverLimitLoop>& loops)
{
    picture.setLoops(loops);
    // The legend may have another height.
    if (isFitted)
        fit();
    update();
}

void PictureView::setCurrentItem(LONGID id)
{
    currentItem = id;
    setAccessibleDescription(id != 0 && describe ? describe(id) : QString());
    const std::optional<QPointF> place = findPlaceOf(id);
    if (place && !QRectF(rect()).contains(*place))
        moveBy(QRectF(rect()).center() - *place);
    update();
}

std::optional<QPointF> PictureView::findPlaceOf(LONGID id) const
{
    const int point = picture.findPoint(id);
    if (point >= 0)
        return camera.toMedium(picture.points[static_cast<std::size_t>(point)].place);
    const int section = picture.findSection(id);
    if (section < 0)
        return std::nullopt;
    const QPolygonF way = getSectionWay(picture, picture.sections[static_cast<std::size_t>(section)], camera);
    return (way[(way.size() - 1) / 2] + way[way.size() / 2]) / 2;
}

LONGID PictureView::findItemAt(const QPointF& place) const
{
    LONGID nearest = 0;
    double least = kReach;
    for (const PicturePoint& point : picture.points) {
        const double distance = QLineF(place, camera.toMedium(point.place)).length();
        if (distance < least) {
            least = distance;
            nearest = point.id;
        }
    }
    if (nearest != 0)
        return nearest;
    const QRectF near(place - QPointF(kReach, kReach), QSizeF(2 * kReach, 2 * kReach));
    for (const PictureSection& section : picture.sections) {
        const QPolygonF way = getSectionWay(picture, section, camera);
        if (!way.boundingRect().adjusted(-1, -1, 1, 1).intersects(near))
            continue;
        const double distance = findDistance(place, way);
        if (distance < least) {
            least = distance;
            nearest = section.id;
        }
    }
    return nearest;
}

double PictureView::findLegendHeight() const
{
    return PicturePainter(picture, PictureColours::forScreen(palette()), Medium::Pixels)
        .measureLegend(font(), width(), camera);
}

void PictureView::fit()
{
    const QRectF all = QRectF(rect()).adjusted(kMargin, kMargin, -kMargin, -kMargin);
    camera = Camera::fit(picture.getBox(), all);
    camera = Camera::fit(picture.getBox(), all.adjusted(0, 0, 0, kMargin / 2 - findLegendHeight()));
}

void PictureView::showAll()
{
    isFitted = true;
    fit();
    update();
}

void PictureView::zoomIn()
{
    zoomAt(kZoomStep, QRectF(rect()).center());
}

void PictureView::zoomOut()
{
    zoomAt(1 / kZoomStep, QRectF(rect()).center());
}

void PictureView::zoomAt(double factor, const QPointF& place)
{
    const double whole = Camera::fit(picture.getBox(), rect()).scale;
    const double wanted = std::clamp(camera.scale * factor, kLeastZoom * whole, kMostZoom * whole);
    camera.zoom(wanted / camera.scale, place);
    isFitted = false;
    update();
}

void PictureView::moveBy(const QPointF& way)
{
    camera.shift += way;
    isFitted = false;
    update();
}

void PictureView::centreCurrentItem()
{
    const std::optional<QPointF> place = findPlaceOf(currentItem);
    if (!place)
        return;
    moveBy(QRectF(rect()).center() - *place);
    const double spacing = picture.spacing * camera.scale;
    if (spacing > 0.0 && spacing < kReadableSpacing)
        zoomAt(kReadableSpacing / spacing, QRectF(rect()).center());
}

bool PictureView::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const LONGID id = findItemAt(help->pos());
    if (id != 0 && describe)
        QToolTip::showText(help->globalPos(), describe(id), this);
    else
        QToolTip::hideText();
    return true;
}

void PictureView::paintEvent(QPaintEvent* /*event*/)
{
    const PictureColours colours = PictureColours::forScreen(palette());
    QPainter painter(this);
    painter.fillRect(rect(), colours.ground);
    if (picture.points.empty()) {
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(rect().adjusted(20, 20, -20, -20), Qt::AlignCenter | Qt::TextWordWrap, emptyText);
    } else {
        PicturePainter pictures(picture, colours, Medium::Pixels);
        pictures.setMarked({picture.findPoint(currentItem), picture.findSection(currentItem)});
        pictures.paint(painter, rect(), camera);
        pictures.paintLegend(painter, rect(), camera);
    }
    if (hasFocus()) {
        painter.setPen(QPen(colours.selection, 2));
        painter.drawRect(rect().adjusted(1, 1, -1, -1));
    }
}

void PictureView::resizeEvent(QResizeEvent* /*event*/)
{
    if (isFitted)
        fit();
}

void PictureView::wheelEvent(QWheelEvent* event)
{
    constexpr double notch = 120.0;
    zoomAt(std::pow(kZoomStep, event->angleDelta().y() / notch), event->position());
    event->accept();
}

void PictureView::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    pressedAt = event->localPos();
    draggedTo = *pressedAt;
    isDragged = false;
}

void PictureView::mouseMoveEvent(QMouseEvent* event)
{
    if (!pressedAt)
        return;
    const QPointF place = event->localPos();
    isDragged = isDragged || (place - *pressedAt).manhattanLength() >= QApplication::startDragDistance();
    if (!isDragged)
        return;
    setCursor(Qt::ClosedHandCursor);
    moveBy(place - draggedTo);
    draggedTo = place;
}

void PictureView::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton || !pressedAt)
        return;
    pressedAt.reset();
    unsetCursor();
    const LONGID id = isDragged ? 0 : findItemAt(event->localPos());
    if (id != 0)
        Q_EMIT itemChosen(id);
}

void PictureView::keyPressEvent(QKeyEvent* event)
{
    constexpr double step = 60.0;
    switch (event->key()) {
    case Qt::Key_Left:
        moveBy({step, 0});
        break;
    case Qt::Key_Right:
        moveBy({-step, 0});
        break;
    case Qt::Key_Up:
        moveBy({0, step});
        break;
    case Qt::Key_Down:
        moveBy({0, -step});
        break;
    case Qt::Key_Plus:
    case Qt::Key_Equal:
        zoomIn();
        break;
    case Qt::Key_Minus:
        zoomOut();
        break;
    case Qt::Key_Home:
        showAll();
        break;
    case Qt::Key_Space:
        centreCurrentItem();
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

} // namespace orvel::desk::picture
