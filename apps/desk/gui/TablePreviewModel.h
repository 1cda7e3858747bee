#pragma once

#include "levelling/TableTemplate.h"

#include <QAbstractTableModel>

#include <vector>

namespace orvel::desk {

/// The first rows of a text file as a template reads them: what becomes of a row stands before its cells, and
/// what is wrong with a cell stands in it.
class TablePreviewModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column { Remark, FirstCell };

    /// So many rows are shown.
    static constexpr int kMostRows = 100;
    /// So much of a file is enough for them, bytes.
    static constexpr qint64 kBeginning = qint64(256) << 10;

    using QAbstractTableModel::QAbstractTableModel;

    /// Shows the beginning of a file, cut off at kBeginning.
    void setContent(const QByteArray& beginning);
    void setFormat(const levelling::TableTemplate& newFormat);

    /// Columns with cells, without that of the remarks.
    int getCellColumns() const { return cellColumns; }
    int getUsableRows() const { return usableRows; }
    int getRefusedRows() const { return refusedRows; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    enum class State { Plain, Skipped, Refused };

    struct Cell
    {
        QString text;
        QString fault; ///< empty if there is none
    };

    struct Row
    {
        qint64 line = 0;
        State state = State::Plain;
        QString remark;
        std::vector<Cell> cells;
    };

    void readRows();
    Row makeRow(const formats::TableRow& tableRow);
    Cell getCell(const QModelIndex& index) const;

    QByteArray content;
    levelling::TableTemplate format;
    std::vector<Row> rows;
    int cellColumns = 0;
    int usableRows = 0;
    int refusedRows = 0;
};

} // namespace orvel::desk
