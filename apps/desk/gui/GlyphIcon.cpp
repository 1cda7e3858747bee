#include "apps/desk/gui/GlyphIcon.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>

namespace orvel::desk {

namespace {

// The glyphs are drawn in a square of this size.
constexpr qreal kGrid = 24.0;

void addLine(QPainterPath& path, const QVector<QPointF>& points)
{
    path.moveTo(points.constFirst());
    for (const QPointF& point : points)
        path.lineTo(point);
}

/// A sheet of paper with a folded corner.
QPainterPath makeSheet()
{
    QPainterPath path;
    addLine(path, {{14, 3}, {6, 3}, {6, 21}, {18, 21}, {18, 7}, {14, 3}, {14, 7}, {18, 7}});
    return path;
}

QPainterPath makeTray()
{
    QPainterPath path;
    addLine(path, {{4, 15}, {4, 20}, {20, 20}, {20, 15}});
    return path;
}

/// A loop of a network: a triangle with its points.
QPainterPath makeTriangle()
{
    QPainterPath path;
    addLine(path, {{5, 18}, {12, 6}, {19, 18}, {5, 18}});
    for (const QPointF& point : {QPointF(5, 18), QPointF(12, 6), QPointF(19, 18)})
        path.addEllipse(point, 2, 2);
    return path;
}

QPainterPath makeProtocol()
{
    QPainterPath path = makeSheet();
    addLine(path, {{9, 11}, {15, 11}});
    addLine(path, {{9, 14}, {15, 14}});
    addLine(path, {{9, 17}, {13, 17}});
    return path;
}

QPainterPath makeReport()
{
    QPainterPath path;
    path.addRect(4, 5, 16, 14);
    addLine(path, {{4, 10}, {20, 10}});
    addLine(path, {{4, 14.5}, {20, 14.5}});
    addLine(path, {{11, 5}, {11, 19}});
    return path;
}

QPainterPath makeImport()
{
    QPainterPath path = makeTray();
    addLine(path, {{12, 3}, {12, 15}});
    addLine(path, {{8, 11}, {12, 15}, {16, 11}});
    return path;
}

QPainterPath makeExport()
{
    QPainterPath path = makeTray();
    addLine(path, {{12, 15}, {12, 3}});
    addLine(path, {{8, 7}, {12, 3}, {16, 7}});
    return path;
}

QPainterPath makeNew()
{
    QPainterPath path = makeSheet();
    addLine(path, {{12, 10.5}, {12, 17.5}});
    addLine(path, {{8.5, 14}, {15.5, 14}});
    return path;
}

QPainterPath makeOpen()
{
    QPainterPath path;
    addLine(path, {{3, 19}, {3, 5}, {9, 5}, {11, 8}, {19, 8}, {19, 11}});
    addLine(path, {{3, 19}, {6, 11}, {22, 11}, {19, 19}, {3, 19}});
    return path;
}

QPainterPath makeSave()
{
    QPainterPath path;
    addLine(path, {{4, 4}, {17, 4}, {20, 7}, {20, 20}, {4, 20}, {4, 4}});
    addLine(path, {{8, 4}, {8, 9}, {15, 9}, {15, 4}});
    addLine(path, {{7, 20}, {7, 13}, {17, 13}, {17, 20}});
    return path;
}

/// Misclosure checked: a loop and a tick.
QPainterPath makeCompile()
{
    QPainterPath path = makeTriangle();
    addLine(path, {{9.5, 14}, {11.5, 16}, {15, 12}});
    return path;
}

/// A bell curve over its axis.
QPainterPath makeAdjust()
{
    QPainterPath path;
    addLine(path, {{3, 20}, {21, 20}});
    path.moveTo(3, 18);
    path.cubicTo(9, 18, 9, 5, 12, 5);
    path.cubicTo(15, 5, 15, 18, 21, 18);
    return path;
}

/// The one gross error among small ones.
QPainterPath makeL1Analysis()
{
    QPainterPath path;
    addLine(path, {{3, 20}, {21, 20}});
    addLine(path, {{5, 20}, {5, 16}});
    addLine(path, {{9, 20}, {9, 17}});
    addLine(path, {{13, 20}, {13, 4}});
    addLine(path, {{17, 20}, {17, 16}});
    path.addEllipse(QPointF(13, 4), 1.5, 1.5);
    return path;
}

QPainterPath makeSearch()
{
    QPainterPath path;
    path.addEllipse(QPointF(10, 10), 6, 6);
    addLine(path, {{14.5, 14.5}, {21, 21}});
    return path;
}

QPainterPath makeInfo()
{
    QPainterPath path;
    path.addEllipse(QPointF(12, 12), 9, 9);
    addLine(path, {{12, 7}, {12, 7.4}});
    addLine(path, {{12, 11}, {12, 17}});
    return path;
}

QPainterPath makeHelp()
{
    QPainterPath path;
    path.addEllipse(QPointF(12, 12), 9, 9);
    path.moveTo(9, 10);
    path.cubicTo(9, 5.5, 15, 5.5, 15, 9.5);
    path.cubicTo(15, 12, 12, 12, 12, 14.5);
    addLine(path, {{12, 17}, {12, 17.4}});
    return path;
}

QPainterPath makePath(Glyph glyph)
{
    switch (glyph) {
    case Glyph::New:
        return makeNew();
    case Glyph::Open:
        return makeOpen();
    case Glyph::Save:
        return makeSave();
    case Glyph::Import:
        return makeImport();
    case Glyph::Export:
        return makeExport();
    case Glyph::Compile:
        return makeCompile();
    case Glyph::Adjust:
        return makeAdjust();
    case Glyph::L1Analysis:
        return makeL1Analysis();
    case Glyph::Protocol:
        return makeProtocol();
    case Glyph::Report:
        return makeReport();
    case Glyph::Search:
        return makeSearch();
    case Glyph::Info:
        return makeInfo();
    case Glyph::Help:
        break;
    }
    return makeHelp();
}

void drawPath(QPainter& painter, const QRectF& rect, const QPainterPath& path, const QColor& color,
              qreal width)
{
    const qreal scale = qMin(rect.width(), rect.height()) / kGrid;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(rect.center());
    painter.scale(scale, scale);
    painter.translate(-kGrid / 2, -kGrid / 2);
    painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPath(path);
    painter.restore();
}

/// Draws what it is asked for afresh at every size.
class DrawnIconEngine : public QIconEngine
{
public:
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap image(size);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return image;
    }
};

class GlyphIconEngine : public DrawnIconEngine
{
public:
    explicit GlyphIconEngine(Glyph iconGlyph) : glyph(iconGlyph) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override
    {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        const auto role = mode == QIcon::Selected ? QPalette::HighlightedText : QPalette::WindowText;
        drawPath(*painter, rect, makePath(glyph), QGuiApplication::palette().color(group, role), 1.6);
    }

    QIconEngine* clone() const override { return new GlyphIconEngine(glyph); }

private:
    Glyph glyph;
};

class ApplicationIconEngine : public DrawnIconEngine
{
public:
    void paint(QPainter* painter, const QRect& rect, QIcon::Mode /*mode*/, QIcon::State /*state*/) override
    {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        painter->setBrush(QColor(0x1f, 0x5f, 0x8b));
        const qreal radius = rect.width() * 0.2;
        painter->drawRoundedRect(rect, radius, radius);
        painter->restore();
        const qreal margin = rect.width() * 0.08;
        drawPath(*painter, QRectF(rect).adjusted(margin, margin, -margin, -margin), makePath(Glyph::Compile),
                 Qt::white, 1.9);
    }

    QIconEngine* clone() const override { return new ApplicationIconEngine; }
};

} // namespace

QIcon makeIcon(Glyph glyph)
{
    return QIcon(new GlyphIconEngine(glyph));
}

QIcon makeApplicationIcon()
{
    return QIcon(new ApplicationIconEngine);
}

} // namespace orvel::desk
