#pragma once

#include "apps/desk/plots/PlotContent.h"

#include <qwt_plot.h>

#include <memory>
#include <vector>

class QwtPlotCurve;
class QwtPlotHistogram;

namespace orvel::desk {

/// Draws a plot in the colours of the palette; its marks are reached by the mouse and by the arrow keys.
class PlotView : public QwtPlot
{
    Q_OBJECT

public:
    explicit PlotView(QWidget* parent = nullptr);

    void setContent(const std::shared_ptr<const PlotContent>& newContent);
    const PlotContent& getContent() const { return *content; }
    /// The mark that was pointed at; -1 for none.
    int getCurrent() const { return current; }
    /// What a mark is, in words.
    QString describeMark(int mark) const;
    /// The nearest mark to a place of the canvas, or the bar below it; -1 if none is near.
    int findMark(const QPoint& place) const;
    /// The drawing on white paper: SVG, or PDF.
    QByteArray toSvg() const;
    QByteArray toPdf() const;

Q_SIGNALS:
    void currentChanged(int mark);
    /// The mark was clicked, or Enter was pressed on it.
    void markActivated(int mark);

protected:
    void changeEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    void applyPalette();
    void setCurrent(int mark);
    void placePointer();
    /// Draws it on paper of that size.
    void print(QPaintDevice& paper, const QRectF& area) const;

    std::shared_ptr<const PlotContent> content = std::make_shared<const PlotContent>();
    int current = -1;
    QwtPlotCurve* good;
    QwtPlotCurve* bad;
    QwtPlotHistogram* bars;
    QWidget* pointer; ///< over the canvas, which need not be drawn anew then
    std::vector<QwtPlotCurve*> lines;
};

} // namespace orvel::desk
