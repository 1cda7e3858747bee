#pragma once

#include <QStyledItemDelegate>

class QFontMetrics;

namespace orvel::desk {

/// The name of a point or of a section in a room of that width, cut in the middle if need be; of a section
/// both ends are shown, each cut by itself.
QString elideName(const QString& name, const QFontMetrics& metrics, int width);

/// The name column of the item table.
class NameColumnDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
};

} // namespace orvel::desk
