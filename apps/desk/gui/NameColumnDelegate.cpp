#include "apps/desk/gui/NameColumnDelegate.h"

#include <QApplication>
#include <QFontMetrics>
#include <QStyle>

#include <algorithm>

namespace orvel::desk {

namespace {

const QString kBetweenEnds = QStringLiteral(" – ");

} // namespace

QString elideName(const QString& name, const QFontMetrics& metrics, int width)
{
    if (metrics.horizontalAdvance(name) <= width)
        return name;
    const int middle = name.indexOf(kBetweenEnds);
    if (middle < 0)
        return metrics.elidedText(name, Qt::ElideMiddle, width);
    const QString from = name.left(middle);
    const QString to = name.mid(middle + kBetweenEnds.size());
    const int room = std::max(0, width - metrics.horizontalAdvance(kBetweenEnds));
    // What the shorter of them leaves of its half is the other's.
    const int half = room / 2;
    const int fromRoom = std::max(half, room - metrics.horizontalAdvance(to));
    const QString start = metrics.elidedText(from, Qt::ElideMiddle, fromRoom);
    return start + kBetweenEnds +
           metrics.elidedText(to, Qt::ElideMiddle, std::max(0, room - metrics.horizontalAdvance(start)));
}

void NameColumnDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const
{
    QStyleOptionViewItem cell = option;
    initStyleOption(&cell, index);
    const QStyle* style = cell.widget ? cell.widget->style() : QApplication::style();
    // The style keeps as much free on both sides of a text.
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, cell.widget) + 1;
    const int width =
        style->subElementRect(QStyle::SE_ItemViewItemText, &cell, cell.widget).width() - 2 * margin;
    cell.text = elideName(cell.text, cell.fontMetrics, width);
    style->drawControl(QStyle::CE_ItemViewItem, &cell, painter, cell.widget);
}

} // namespace orvel::desk
