#pragma once

#include "host/host_export.h"

#include <QStyledItemDelegate>

/// The base of the delegates in the host's tables and property lists.
class HOST_EXPORT CItemDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    /// @p parent owns the delegate.
    explicit CItemDelegate(QObject* parent = nullptr);
    ~CItemDelegate() override;

    /// The value that @p editor holds, as it goes into the model. The base takes getEditorValue().
    virtual QVariant getValue(QWidget* editor) const;
    /// The value as @p editor itself has it: the current item's user data of a combo box, else the
    /// editor's user property. Invalid for an editor without either.
    virtual QVariant getEditorValue(QWidget* editor) const;
    /// The alignment of cells to which the model gives none.
    virtual Qt::Alignment getDefaultAlign() const;
    /// Numbers that differ by no more than this are the same: an editor left so changes nothing.
    virtual double getEpsilon() const;
    /// Whether cells have tool tips.
    virtual bool isShowToolTip() const;
    /// The tool tip of a cell, plain text: the model's own, else the cell's text.
    virtual QString getToolTipText(const QModelIndex& index) const;
    /// The role under which values are read for editing and written back.
    virtual int getDataRole() const;

    /// Writes getValue() under getDataRole(), if it differs from what is there.
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    /// Reads what is under getDataRole() into the editor.
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    /// Shows getToolTipText() if isShowToolTip().
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

protected:
    /// Aligns as the model says, else by getDefaultAlign().
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;

private:
    bool isSameValue(const QVariant& left, const QVariant& right) const;
};
