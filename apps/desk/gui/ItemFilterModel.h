#pragma once

#include <QCollator>
#include <QSortFilterProxyModel>

/// Sorts the item table, names as people count ("2" before "10"), and hides what a search does not mean.
class ItemFilterModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit ItemFilterModel(QObject* parent = nullptr);

    /// Shows the items whose names or kinds hold all words of the text.
    void setSearchText(const QString& text);

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    QStringList words;
    QCollator collator;
};
