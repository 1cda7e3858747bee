#pragma once

#include <QObject>
#include <QString>

#include <vector>

class QTableView;
class QTimer;

namespace orvel::desk {

class TableColumns;

/// Puts the selected rows of a table on the clipboard, as text in columns between tabs. What a spreadsheet
/// would take for a formula gets an apostrophe.
///
/// Many rows are written bit by bit while other events have their turn; rows that change their places
/// meanwhile end it, and the clipboard stays as it was.
class TableCopy : public QObject
{
    Q_OBJECT

public:
    /// The view, which has its model, owns the object.
    TableCopy(QTableView& tableView, const TableColumns& tableColumns);

    /// The selected rows of a view that selects whole rows, from top to bottom.
    static std::vector<int> listSelectedRows(const QTableView& view);

    void start();
    bool isWorking() const { return !rows.empty(); }

Q_SIGNALS:
    void copied(int rowCount);

private:
    void proceed();
    void stop();
    void writeTitles();
    void writeRow(int row);

    QTableView& view;
    const TableColumns& columns;
    QTimer* stepTimer;
    std::vector<int> rows; ///< to be copied; empty when nothing is
    std::size_t done = 0;  ///< of these
    std::vector<int> shownColumns;
    QString text;
};

} // namespace orvel::desk
