#pragma once

#include "host/host_export.h"
#include "host/model/LongId.h"

#include <QAbstractTableModel>
#include <QHash>
#include <QString>
#include <QVector>

#include <vector>

class CModelElement;
class CProjectModel;

/// The items of a project as a table: one row per item of the tree, parents before their children.
///
/// System items have no rows. The table follows the project model's signals.
class HOST_EXPORT CProjectItemModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    /// What a column shows of an item.
    enum class Source { Name, Type, Property };

    /// What stands in a column and how.
    struct Column
    {
        QString title = {};           ///< heading
        Source source = Source::Name; ///< what the cells show
        int propertyId = 0;           ///< of Source::Property
        int delegateId = 0;           ///< for the ItemDelegateFactory; 0: the view's own delegate
    };

    /// Beside the usual roles.
    enum Role {
        ItemIdRole = Qt::UserRole + 1, ///< the row's LONGID
    };

    /// @param itemsModel  the project model, not owned, outlives the table
    /// @param tableColumns  in their order
    /// @param parent  owns the table, if there is one
    CProjectItemModel(CProjectModel* itemsModel, QVector<Column> tableColumns, QObject* parent = nullptr);
    ~CProjectItemModel() override;

    /// The item that @p index stands for; null for an index that isn't of this model.
    CModelElement* getItem(const QModelIndex& index) const;
    CProjectModel* getProjectModel() const; ///< The model whose items the rows are.
    /// In the order of the table.
    const QVector<Column>& getColumns() const { return columns; }
    /// The cell of item @p id in @p column; invalid for an item without a row.
    QModelIndex getIndex(LONGID id, int column = 0) const;

    int rowCount(const QModelIndex& parent = {}) const override; ///< As many as there are items in the tree.
    int columnCount(const QModelIndex& parent = {}) const override; ///< As many as there are columns.
    /// Property values come as the model gives them, under Qt::DisplayRole and Qt::EditRole alike.
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    /// Writes a property; false for a cell that shows no property, or one that nobody takes.
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    /// The titles of the columns.
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    /// A property can be edited if the model lets it be written or if the column has a delegate of its
    /// own: a delegate may turn an attempt to edit into an action.
    Qt::ItemFlags flags(const QModelIndex& index) const override;

private:
    void readItems();
    void beginReplacement();
    void endReplacement();
    void showAddition(LONGID id);
    void beginRemoval(LONGID id);
    void endRemoval();
    void showChange(LONGID id);
    int getInsertionRow(const CModelElement& item) const;
    int getRow(const CModelElement* item) const;
    void countRows() const;
    QVariant getValue(const CModelElement& item, const Column& column) const;

    CProjectModel* projectModel;
    QVector<Column> columns;
    std::vector<CModelElement*> items; // by row
    bool removing = false;

    // The row that each item had when the rows were counted; rowShift rows were added or removed since, so
    // that an item stands no farther away from there. Spares counting all rows anew at every change. They are
    // counted when a row is asked for that is not the next one.
    mutable QHash<const CModelElement*, int> countedRows;
    mutable int rowShift = 0;
    mutable int latestRow = -1; // that was found
};
