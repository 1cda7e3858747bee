#include "apps/desk/plots/PlotView.h"

#include "apps/desk/runs/NumberTexts.h"

#include <QBuffer>
#include <QImage>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEngine>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <qwt_plot_canvas.h>
#include <qwt_plot_curve.h>
#include <qwt_plot_grid.h>
#include <qwt_plot_histogram.h>
#include <qwt_plot_renderer.h>
#include <qwt_scale_draw.h>
#include <qwt_symbol.h>

#include <algorithm>
#include <cmath>

namespace orvel::desk {

namespace {

// A click so far from a mark, in pixels, still means it.
constexpr double kNear = 12.0;
// So many marks get no symbols of their own: dots are drawn in a hundredth of the time.
constexpr std::size_t kMostSymbols = 5000;
constexpr int kDotSize = 3;
constexpr int kSymbolSize = 7;
constexpr int kPointerSize = 15;
// A drawing on paper, in millimetres and in points of the screen.
constexpr QSize kPaperSize(240, 160);
constexpr QSize kPaperPixels(900, 600);

/// Numbers in the language of the texts; of counts the whole ones only.
class ScaleTexts : public QwtScaleDraw
{
public:
    explicit ScaleTexts(bool countsThings) : isCount(countsThings) {}

    QwtText label(double value) const override
    {
        return isCount && value != std::floor(value) ? QwtText() : QwtText(numbers::shortest(value));
    }

private:
    bool isCount;
};

/// A ring in the colour of the texts.
class Pointer : public QWidget
{
public:
    explicit Pointer(QWidget* parent) : QWidget(parent)
    {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        hide();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(palette().color(QPalette::Text), 2.0));
        painter.drawEllipse(QRectF(rect()).adjusted(1.0, 1.0, -1.0, -1.0));
    }
};

/// Many dots: drawn into an image, which takes a tenth of the time. In files and on paper they stay dots.
class DotCurve : public QwtPlotCurve
{
protected:
    void drawDots(QPainter* painter, const QwtScaleMap& xMap, const QwtScaleMap& yMap,
                  const QRectF& canvasRect, int from, int to) const override
    {
        if (painter->paintEngine()->type() != QPaintEngine::Raster) {
            QwtPlotCurve::drawDots(painter, xMap, yMap, canvasRect, from, to);
            return;
        }
        const QRect area = canvasRect.toAlignedRect();
        QImage image(area.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        const QRgb colour = pen().color().rgb();
        const qsizetype width = image.bytesPerLine() / qsizetype(sizeof(QRgb));
        auto* const pixels = reinterpret_cast<QRgb*>(image.bits());
        const QRect inside =
            image.rect().adjusted(kDotSize / 2, kDotSize / 2, -(kDotSize / 2), -(kDotSize / 2));
        for (int i = from; i <= to; ++i) {
            const QPointF place = sample(i);
            const QPoint dot =
                QPoint(qRound(xMap.transform(place.x())), qRound(yMap.transform(place.y()))) - area.topLeft();
            if (!inside.contains(dot))
                continue;
            QRgb* row = pixels + (dot.y() - kDotSize / 2) * width + dot.x() - kDotSize / 2;
            for (int line = 0; line < kDotSize; ++line, row += width)
                std::fill_n(row, kDotSize, colour);
        }
        painter->drawImage(area.topLeft(), image);
    }
};

bool isDark(const QPalette& palette)
{
    return palette.color(QPalette::Base).lightness() < 128;
}

template<typename Sample>
QVector<Sample> toVector(const std::vector<Sample>& samples)
{
    return QVector<Sample>(samples.begin(), samples.end());
}

QPalette makePaperPalette()
{
    QPalette palette(Qt::white);
    palette.setColor(QPalette::Base, Qt::white);
    palette.setColor(QPalette::Window, Qt::white);
    for (const QPalette::ColorRole role : {QPalette::Text, QPalette::WindowText})
        palette.setColor(role, Qt::black);
    return palette;
}

} // namespace

PlotView::PlotView(QWidget* parent)
    : QwtPlot(parent)
    , good(new DotCurve)
    , bad(new DotCurve)
    , bars(new QwtPlotHistogram)
    , pointer(new Pointer(canvas()))
{
    auto* grid = new QwtPlotGrid;
    grid->setPen(QColor(128, 128, 128, 80), 0.0, Qt::DotLine);
    grid->attach(this);
    bars->attach(this);
    good->attach(this);
    bad->attach(this);
    setAxisScaleDraw(xBottom, new ScaleTexts(false));
    // A plot would have no less room than it wants, and the window not fit on a small screen.
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setFocusPolicy(Qt::StrongFocus);
    canvas()->setFocusPolicy(Qt::NoFocus);
    canvas()->installEventFilter(this);
    applyPalette();
}

void PlotView::setContent(const std::shared_ptr<const PlotContent>& newContent)
{
    content = newContent;
    current = -1;
    setAccessibleName(content->title);
    setAxisTitle(xBottom, content->xTitle);
    setAxisTitle(yLeft, content->yTitle);
    setAxisScaleDraw(yLeft, new ScaleTexts(content->barWidth > 0.0));
    std::vector<QPointF> goodPlaces;
    std::vector<QPointF> badPlaces;
    std::vector<QwtIntervalSample> intervals;
    for (const PlotMark& mark : content->marks) {
        const double x = mark.place.x();
        const double half = content->barWidth / 2.0;
        if (content->barWidth > 0.0)
            intervals.emplace_back(mark.place.y(), x - half, x + half);
        else
            (mark.isBad ? badPlaces : goodPlaces).push_back(mark.place);
    }
    good->setSamples(toVector(goodPlaces));
    bad->setSamples(toVector(badPlaces));
    bars->setSamples(toVector(intervals));
    for (QwtPlotCurve* line : lines) {
        line->detach();
        delete line;
    }
    lines.clear();
    for (const PlotCurve& curve : content->curves) {
        auto* line = new QwtPlotCurve;
        line->setSamples(toVector(curve));
        line->setRenderHint(QwtPlotItem::RenderAntialiased);
        line->attach(this);
        lines.push_back(line);
    }
    applyPalette();
}

void PlotView::applyPalette()
{
    const bool isOnDark = isDark(palette());
    const QColor goodColour = isOnDark ? QColor(110, 170, 255) : QColor(30, 90, 180);
    const QColor badColour = isOnDark ? QColor(255, 130, 110) : QColor(190, 30, 30);
    const QColor textColour = palette().color(QPalette::Text);
    setCanvasBackground(palette().color(QPalette::Base));
    const bool hasDots = content->marks.size() > kMostSymbols;
    const auto dress = [&](QwtPlotCurve& curve, QwtSymbol::Style shape, const QColor& colour) {
        curve.setStyle(hasDots ? QwtPlotCurve::Dots : QwtPlotCurve::NoCurve);
        curve.setPen(colour, kDotSize);
        curve.setSymbol(hasDots
                            ? nullptr
                            : new QwtSymbol(shape, QBrush(colour), QPen(colour), {kSymbolSize, kSymbolSize}));
    };
    dress(*good, QwtSymbol::Ellipse, goodColour);
    dress(*bad, QwtSymbol::Triangle, badColour);
    bars->setBrush(goodColour);
    bars->setPen(palette().color(QPalette::Base), 1.0);
    for (QwtPlotCurve* line : lines)
        line->setPen(textColour, 1.5, Qt::DashLine);
    replot();
    placePointer();
}

/// Puts the ring around the mark that was pointed at.
void PlotView::placePointer()
{
    pointer->setVisible(current >= 0);
    if (current < 0)
        return;
    const QPointF& mark = content->marks[static_cast<std::size_t>(current)].place;
    const QPointF place(canvasMap(xBottom).transform(mark.x()), canvasMap(yLeft).transform(mark.y()));
    QRect ring(0, 0, kPointerSize, kPointerSize);
    ring.moveCenter(place.toPoint());
    pointer->setGeometry(ring);
}

int PlotView::findMark(const QPoint& place) const
{
    const QwtScaleMap xMap = canvasMap(xBottom);
    const QwtScaleMap yMap = canvasMap(yLeft);
    int nearest = -1;
    double least = kNear;
    for (std::size_t i = 0; i < content->marks.size(); ++i) {
        const QPointF& mark = content->marks[i].place;
        if (content->barWidth > 0.0) {
            if (std::abs(xMap.invTransform(place.x()) - mark.x()) <= content->barWidth / 2.0)
                return static_cast<int>(i);
            continue;
        }
        const double distance =
            std::hypot(xMap.transform(mark.x()) - place.x(), yMap.transform(mark.y()) - place.y());
        if (distance <= least) {
            least = distance;
            nearest = static_cast<int>(i);
        }
    }
    return nearest;
}

QString PlotView::describeMark(int mark) const
{
    return content->describe(content->marks[static_cast<std::size_t>(mark)].number);
}

void PlotView::setCurrent(int mark)
{
    current = mark;
    placePointer();
    setAccessibleDescription(describeMark(mark));
    Q_EMIT currentChanged(mark);
}

void PlotView::changeEvent(QEvent* event)
{
    QwtPlot::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        applyPalette();
}

void PlotView::keyPressEvent(QKeyEvent* event)
{
    const int last = static_cast<int>(content->marks.size()) - 1;
    if (last < 0) {
        QwtPlot::keyPressEvent(event);
        return;
    }
    switch (event->key()) {
    case Qt::Key_Right:
        setCurrent(std::min(current + 1, last));
        break;
    case Qt::Key_Left:
        setCurrent(std::max(current - 1, 0));
        break;
    case Qt::Key_Home:
        setCurrent(0);
        break;
    case Qt::Key_End:
        setCurrent(last);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (current >= 0)
            Q_EMIT markActivated(current);
        break;
    default:
        QwtPlot::keyPressEvent(event);
    }
}

bool PlotView::eventFilter(QObject* object, QEvent* event)
{
    if (object == canvas() && event->type() == QEvent::Resize)
        placePointer();
    if (object == canvas() && event->type() == QEvent::MouseButtonPress) {
        setFocus(Qt::MouseFocusReason);
        const int mark = findMark(static_cast<QMouseEvent*>(event)->pos());
        if (mark >= 0) {
            setCurrent(mark);
            Q_EMIT markActivated(mark);
        }
    }
    return QwtPlot::eventFilter(object, event);
}

void PlotView::print(QPaintDevice& paper, const QRectF& area) const
{
    PlotView copy;
    copy.setPalette(makePaperPalette());
    copy.setTitle(content->title);
    copy.setContent(content);
    copy.resize(kPaperPixels);
    QPainter painter(&paper);
    QwtPlotRenderer renderer;
    renderer.setDiscardFlag(QwtPlotRenderer::DiscardBackground);
    renderer.render(&copy, &painter, area);
}

QByteArray PlotView::toSvg() const
{
    QBuffer buffer;
    QSvgGenerator generator;
    generator.setOutputDevice(&buffer);
    generator.setTitle(content->title);
    generator.setSize(kPaperPixels);
    generator.setViewBox(QRect(QPoint(), kPaperPixels));
    print(generator, QRectF(QPointF(), kPaperPixels));
    return buffer.data();
}

QByteArray PlotView::toPdf() const
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    writer.setTitle(content->title);
    writer.setPageSize(QPageSize(kPaperSize, QPageSize::Millimeter));
    print(writer, QRectF(0.0, 0.0, writer.width(), writer.height()));
    return buffer.data();
}

} // namespace orvel::desk
