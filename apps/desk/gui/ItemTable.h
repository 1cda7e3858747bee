#pragma once

#include "host/model/LongId.h"

#include <QTableView>

#include <functional>
#include <vector>

class ProjectWindow;
class QConcatenateTablesProxyModel;
class QTimer;

namespace orvel::desk {

class Document;
class ItemFilterModel;
class PointTableModel;
class SectionTableModel;
class TableColumns;
class TableCopy;

/// The table of points and sections.
class ItemTable : public QTableView
{
    Q_OBJECT

public:
    using QTableView::edit;

    /// The document outlives the table.
    ItemTable(Document& openDocument, ProjectWindow* projectWindow, QWidget* parent = nullptr);

    ItemFilterModel* getFilterModel() const { return filterModel; }

    /// The item of the current row; 0 if there is none.
    LONGID getCurrentItem() const;
    /// The items of the selected rows, from top to bottom.
    std::vector<LONGID> getSelectedItems() const;
    /// Opens the editor of the current cell; if that has no value to be changed, of the one in its row that
    /// has.
    void editCurrentValue();
    /// Takes the value that is being typed, if one is, as if the user had entered it.
    void endEditing();
    /// Whether the keyboard goes to the table with a selection.
    enum class Focus { Comes, Stays };
    /// Selects the row of an item and brings it into sight, as soon as rows that were asked for are in place.
    /// False if the table has no such item or the search does not mean it.
    bool selectItem(LONGID id, Focus focus = Focus::Comes) { return selectItems({id}, id, focus); }
    /// The same with several, which are all different.
    /// @param current  becomes the current one, whether it is among them or not
    bool selectItems(const std::vector<LONGID>& ids, LONGID current, Focus focus = Focus::Comes);
    /// Whether rows have been waited for so long that somebody should be told.
    bool isSlow() const { return slow; }
    /// Shows what the protocols say of the current row's item.
    void showCurrentProtocol();
    /// Has what shows a page called by that function, which knows whether its lines are all there.
    void setPageShower(std::function<void(const std::function<void()>& show)> shower);
    /// While protocols are not available, clicks in the report column do nothing.
    void setProtocolsAvailable(bool available);
    /// What stands in the table when it has no rows.
    void setEmptyText(const QString& text);
    /// Adds an action about the selected items to the context menu.
    void addItemAction(QAction* action) { insertAction(endOfItemActions, action); }
    TableColumns& getColumns() const { return *columns; }
    /// Puts the selected rows on the clipboard, as they are shown: cells between tabs, below their titles.
    void copySelected();

Q_SIGNALS:
    void currentItemChanged();
    /// Other rows are selected.
    void selectedItemsChanged();
    /// So many rows are on the clipboard.
    void copied(int rowCount);
    void escapePressed();
    /// A value that was typed was not taken; tells why, in a sentence of plain text.
    void editRefused(const QString& reason);
    /// Other rows are shown, or the waiting for them has become long or is over.
    void rowsChanged();

protected:
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;

private:
    void showProtocol(const QModelIndex& index);
    void setUpActions();
    void fitNames();
    /// The columns of coordinates are there when some point has them.
    void showCoordinates();
    QModelIndexList findItems(const std::vector<LONGID>& ids) const;
    void selectAwaitedItems();
    void setSlow(bool isSlow);

    Document& document;
    ItemFilterModel* filterModel;
    QConcatenateTablesProxyModel* joinedModel;
    PointTableModel* pointModel;
    SectionTableModel* sectionModel;
    std::vector<LONGID> awaitedItems; ///< to be selected when the rows are in place
    LONGID awaitedCurrent = 0;
    Focus awaitedFocus = Focus::Comes;
    TableColumns* columns = nullptr;
    TableCopy* copy = nullptr;
    QAction* endOfItemActions = nullptr; ///< a separator
    QTimer* slowTimer;
    bool slow = false;
    std::function<void(const std::function<void()>& show)> showPage;
    bool protocolsAvailable = true;
    QString emptyText;
};

} // namespace orvel::desk
