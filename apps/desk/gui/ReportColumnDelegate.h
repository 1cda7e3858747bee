#pragma once

#include <QStyledItemDelegate>

class CProjectModel;
class ProjectWindow;

namespace orvel::desk {

/// The report column of the item table: an attempt to edit shows what the protocols say of the row's item.
///
/// For points the work is the delegate's that a plug-in has registered; it gets the cell of the point table,
/// below sorting and search. Sections are no model elements, so they are shown here.
class ReportColumnDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    ReportColumnDelegate(ProjectWindow* projectWindow, QObject* parent);

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    QString displayText(const QVariant& value, const QLocale& locale) const override;

private:
    ProjectWindow* window;
    QAbstractItemDelegate* registeredDelegate; // null without one
};

} // namespace orvel::desk
