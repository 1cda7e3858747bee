#pragma once

#include <QCollator>
#include <QSortFilterProxyModel>
#include <QStringList>

#include <variant>
#include <vector>

namespace orvel::desk {

/// Sorts the item table, names as people count ("2" before "10"), and hides what a search does not mean.
///
/// Sorting and searching ask for each row many times, so what they need of a row is taken from the model once
/// and kept. The model must be a table.
class ItemFilterModel : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    explicit ItemFilterModel(QObject* parent = nullptr);

    void setSourceModel(QAbstractItemModel* table) override;

    /// Shows the items whose names or kinds hold all words of the text.
    void setSearchText(const QString& text);

protected:
    bool filterAcceptsRow(int sourceRow, const QModelIndex& sourceParent) const override;
    bool lessThan(const QModelIndex& left, const QModelIndex& right) const override;

private:
    struct SearchTexts
    {
        QString name;
        QString kind;
    };
    /// Nothing for an empty cell, a text as the collator wants it.
    using SortKey = std::variant<std::monostate, double, QCollatorSortKey>;

    SearchTexts readSearchTexts(int row) const;
    SortKey readSortKey(int row, int column) const;
    SortKey getTextKey(const QString& text) const;
    const SearchTexts& getSearchTexts(int row) const;
    const SortKey& getSortKey(const QModelIndex& index) const;

    void takeInserted(int first, int last);
    void takeRemoved(int first, int last);
    void takeChanged(int first, int last);
    void forgetRows();

    QStringList words;
    QCollator collator;
    // By row of the model; empty until they are needed.
    mutable std::vector<SearchTexts> searchTexts;
    mutable std::vector<SortKey> sortKeys;
    mutable int sortKeyColumn = -1;
    // Rows in succession that have the same text share its key.
    mutable QString lastText;
    mutable SortKey lastTextKey;
};

} // namespace orvel::desk
