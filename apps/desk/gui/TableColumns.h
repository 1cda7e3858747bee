#pragma once

#include <QObject>

#include <set>
#include <vector>

class QMenu;
class QTableView;

namespace orvel::desk {

/// The columns of the item table: which of them are shown, as the user chooses in the header's menu, in which
/// order and how wide.
class TableColumns : public QObject
{
    Q_OBJECT

public:
    /// Sets up the header of the view, which has its model and owns the object.
    explicit TableColumns(QTableView& tableView);

    /// Columns of coordinates are shown only where some point has them, chosen or not.
    void setHasCoordinates(bool hasThem);
    bool isChosen(int column) const { return chosen.count(column) > 0; }
    void choose(int column, bool isWanted);
    /// The columns, their order and widths of a new table, and the rows as in the file.
    void reset();

    /// The columns that are shown, from left to right.
    std::vector<int> listShown() const;
    /// The menu that chooses columns.
    QMenu* getMenu() { return menu; }

    QByteArray save() const;
    /// Takes what save() gave; anything else changes nothing.
    void restore(const QByteArray& state);

private:
    void setUpHeader();
    void setUpMenu();
    void setWidths();
    void updateShown();
    void sortAsInFile();
    void takeClick(int column);

    QTableView& view;
    QMenu* menu;
    std::set<int> chosen;
    bool hasCoordinates = false;
    int sortedColumn = -1; ///< by the latest click
};

} // namespace orvel::desk
