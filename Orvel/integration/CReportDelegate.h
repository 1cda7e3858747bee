#pragma once

#include "Orvel/orvel_export.h"
#include "host/delegates/CItemDelegate.h"

/// Delegate of the column that tells whether the protocol mentions an item: shows no text, and in place of
/// an editor opens the item's protocol page.
class ORVEL_EXPORT CReportDelegate : public CItemDelegate
{
public:
    /// Has no state of its own; @p parent owns it.
    explicit CReportDelegate(QObject* parent = nullptr);

    /// Shows the protocol of the row's item if there is one. Always null.
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    /// Always empty.
    QString displayText(const QVariant& value, const QLocale& locale) const override;
    /// The current item's data of a `QComboBox`; invalid for any other editor.
    QVariant getEditorValue(QWidget* editor) const override;
};
