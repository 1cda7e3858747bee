#pragma once

#include "apps/desk/picture/Camera.h"
#include "apps/desk/picture/NetworkPicture.h"
#include "apps/desk/picture/PicturePainter.h"

#include <QWidget>

#include <functional>
#include <optional>

namespace orvel::desk::picture {

/// Shows a picture of a network: moved by the mouse and the arrows, enlarged by the wheel and by plus and
/// minus, shown whole by Home. What lies under the mouse is told by a tool tip, and chosen by a click.
class PictureView : public QWidget
{
    Q_OBJECT

public:
    explicit PictureView(QWidget* parent = nullptr);

    /// Shows another picture.
    /// @param isSamePlace  the points stand where they stood, so that what is seen stays in sight
    void setPicture(NetworkPicture newPicture, bool isSamePlace);
    const NetworkPicture& getPicture() const { return picture; }
    /// Tells of an item in the tool tip, as rich text.
    void setDescriber(std::function<QString(LONGID id)> describer) { describe = std::move(describer); }
    /// What stands there while there is no picture.
    void setEmptyText(const QString& text);
    void setLoops(const std::vector<OverLimitLoop>& loops);

    /// Marks an item, and brings it into sight if it is not.
    void setCurrentItem(LONGID id);
    LONGID getCurrentItem() const { return currentItem; }
    /// The item that is drawn at a place of the window; 0 if there is none.
    LONGID findItemAt(const QPointF& place) const;
    /// Where an item is drawn in the window, of a section its middle.
    std::optional<QPointF> findPlaceOf(LONGID id) const;

    void zoomIn();
    void zoomOut();
    void showAll();
    /// Puts the marked item into the middle, near enough for names.
    void centreCurrentItem();
    const Camera& getCamera() const { return camera; }

    QSize sizeHint() const override { return {480, 360}; }

Q_SIGNALS:
    /// The user has chosen the item.
    void itemChosen(LONGID id);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void fit();
    void zoomAt(double factor, const QPointF& place);
    void moveBy(const QPointF& way);
    double findLegendHeight() const;

    NetworkPicture picture;
    Camera camera;
    bool isFitted = true; ///< all is shown, and stays so when the window gets another size
    LONGID currentItem = 0;
    std::function<QString(LONGID id)> describe;
    QString emptyText;
    std::optional<QPointF> pressedAt; ///< the left button is down since there
    QPointF draggedTo;
    bool isDragged = false;
};

} // namespace orvel::desk::picture
