#include "apps/desk/gui/TableCopy.h"

#include "apps/desk/document/SpreadsheetText.h"
#include "apps/desk/gui/ItemColumns.h"
#include "apps/desk/gui/TableColumns.h"

#include <QClipboard>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QTableView>
#include <QTimer>

#include <algorithm>

namespace orvel::desk {

namespace {

constexpr qint64 kBudgetMs = 15;

/// A text that stays in its cell.
QString toCell(const QVariant& value)
{
    QString text = value.toString();
    for (QChar& character : text) {
        if (character == QLatin1Char('\t') || character == QLatin1Char('\n') ||
            character == QLatin1Char('\r'))
            character = QLatin1Char(' ');
    }
    // Spreadsheets know numbers by the minus of the keyboard.
    if (text.startsWith(QChar(0x2212)))
        text[0] = QLatin1Char('-');
    return spreadsheet::guard(text);
}

} // namespace

TableCopy::TableCopy(QTableView& tableView, const TableColumns& tableColumns)
    : QObject(&tableView)
    , view(tableView)
    , columns(tableColumns)
    , stepTimer(new QTimer(this))
{
    stepTimer->setSingleShot(true);
    connect(stepTimer, &QTimer::timeout, this, &TableCopy::proceed);
    const QAbstractItemModel* model = view.model();
    connect(model, &QAbstractItemModel::layoutAboutToBeChanged, this, &TableCopy::stop);
    connect(model, &QAbstractItemModel::modelAboutToBeReset, this, &TableCopy::stop);
}

std::vector<int> TableCopy::listSelectedRows(const QTableView& view)
{
    std::vector<int> rows;
    for (const QItemSelectionRange& range : view.selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.push_back(row);
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

void TableCopy::start()
{
    stop();
    rows = listSelectedRows(view);
    if (rows.empty())
        return;
    shownColumns = columns.listShown();
    // A column of pictures, which has no text.
    shownColumns.erase(std::remove(shownColumns.begin(), shownColumns.end(), int(itemcolumns::Report)),
                       shownColumns.end());
    writeTitles();
    proceed();
}

void TableCopy::proceed()
{
    QElapsedTimer time;
    time.start();
    while (done < rows.size() && !time.hasExpired(kBudgetMs))
        writeRow(rows[done++]);
    if (done < rows.size()) {
        stepTimer->start(0);
        return;
    }
    QGuiApplication::clipboard()->setText(text);
    const auto count = static_cast<int>(rows.size());
    stop();
    Q_EMIT copied(count);
}

void TableCopy::stop()
{
    stepTimer->stop();
    rows.clear();
    done = 0;
    text.clear();
}

void TableCopy::writeTitles()
{
    QStringList titles;
    for (const int column : shownColumns)
        titles.append(toCell(view.model()->headerData(column, Qt::Horizontal)));
    text = titles.join(QLatin1Char('\t')) + QLatin1Char('\n');
}

void TableCopy::writeRow(int row)
{
    bool isFirst = true;
    for (const int column : shownColumns) {
        if (!isFirst)
            text += QLatin1Char('\t');
        isFirst = false;
        text += toCell(view.model()->index(row, column).data());
    }
    text += QLatin1Char('\n');
}

} // namespace orvel::desk
