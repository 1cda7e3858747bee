#include "apps/desk/gui/TableColumns.h"

#include "apps/desk/Desk.h"
#include "apps/desk/gui/ItemColumns.h"

#include <QDataStream>
#include <QHeaderView>
#include <QMenu>
#include <QTableView>

namespace orvel::desk {

namespace {

/// What fits a window without being asked for.
const std::set<int>& getFirstChoice()
{
    using namespace itemcolumns;
    static const std::set<int> columns = {
        Name, Type, Severity, X, Y, Height, Sigma, Difference, Length, Residual, NormalisedResidual, Report};
    return columns;
}

bool isCoordinate(int column)
{
    return column == itemcolumns::X || column == itemcolumns::Y;
}

/// Whether the largest values are what one looks for in the column.
bool isLargestFirst(int column)
{
    return column == itemcolumns::Residual || column == itemcolumns::NormalisedResidual ||
           column == itemcolumns::Lines;
}

} // namespace

TableColumns::TableColumns(QTableView& tableView)
    : QObject(&tableView)
    , view(tableView)
    , menu(new QMenu(Desk::tr("&Столбцы"), &tableView))
    , chosen(getFirstChoice())
{
    setUpHeader();
    setUpMenu();
    updateShown();
}

void TableColumns::setHasCoordinates(bool hasThem)
{
    hasCoordinates = hasThem;
    updateShown();
}

void TableColumns::choose(int column, bool isWanted)
{
    // A row without a name tells nothing.
    if (isWanted)
        chosen.insert(column);
    else if (column != itemcolumns::Name)
        chosen.erase(column);
    updateShown();
}

void TableColumns::reset()
{
    QHeaderView* header = view.horizontalHeader();
    for (int column = 0; column < itemcolumns::kCount; ++column)
        header->moveSection(header->visualIndex(column), column);
    chosen = getFirstChoice();
    updateShown();
    setWidths();
    sortAsInFile();
}

std::vector<int> TableColumns::listShown() const
{
    const QHeaderView* header = view.horizontalHeader();
    std::vector<int> columns;
    for (int place = 0; place < header->count(); ++place) {
        const int column = header->logicalIndex(place);
        if (!header->isSectionHidden(column))
            columns.push_back(column);
    }
    return columns;
}

QByteArray TableColumns::save() const
{
    QStringList keys;
    for (const int column : chosen)
        keys.append(itemcolumns::getKey(column));
    QByteArray state;
    QDataStream stream(&state, QIODevice::WriteOnly);
    stream << itemcolumns::kCount << keys << view.horizontalHeader()->saveState();
    return state;
}

void TableColumns::restore(const QByteArray& state)
{
    QDataStream stream(state);
    int count = 0;
    QStringList keys;
    QByteArray header;
    stream >> count;
    // The state of a header with other columns would hide and widen the wrong ones.
    if (count != itemcolumns::kCount)
        return;
    stream >> keys >> header;
    if (stream.status() != QDataStream::Ok || !view.horizontalHeader()->restoreState(header))
        return;
    chosen = {itemcolumns::Name};
    for (int column = 0; column < itemcolumns::kCount; ++column) {
        if (keys.contains(itemcolumns::getKey(column)))
            chosen.insert(column);
    }
    sortedColumn = view.horizontalHeader()->sortIndicatorSection();
    updateShown();
}

void TableColumns::setUpHeader()
{
    QHeaderView* header = view.horizontalHeader();
    header->setHighlightSections(false);
    header->setSectionsMovable(true);
    header->setSectionResizeMode(QHeaderView::Interactive);
    header->setStretchLastSection(true);
    setWidths();
    sortAsInFile();
    view.setSortingEnabled(true);
    connect(header, &QHeaderView::sectionClicked, this, &TableColumns::takeClick);
    header->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(header, &QWidget::customContextMenuRequested, this,
            [this, header](const QPoint& place) { menu->popup(header->mapToGlobal(place)); });
}

void TableColumns::setUpMenu()
{
    for (int column = 0; column < itemcolumns::kCount; ++column) {
        QAction* action = menu->addAction(itemcolumns::getTitle(column));
        action->setCheckable(true);
        action->setEnabled(column != itemcolumns::Name);
        action->setData(column);
        action->setToolTip(itemcolumns::getExplanation(column));
        connect(action, &QAction::triggered, this,
                [this, column](bool isWanted) { choose(column, isWanted); });
    }
    menu->setToolTipsVisible(true);
    menu->addSeparator();
    connect(menu->addAction(Desk::tr("Строки в порядке &файла")), &QAction::triggered, this,
            &TableColumns::sortAsInFile);
    connect(menu->addAction(Desk::tr("&Обычные столбцы")), &QAction::triggered, this, &TableColumns::reset);
}

void TableColumns::setWidths()
{
    QHeaderView* header = view.horizontalHeader();
    const QFontMetrics metrics = view.fontMetrics();
    const int digit = metrics.horizontalAdvance(QLatin1Char('0'));
    for (int column = 0; column < itemcolumns::kCount; ++column) {
        const int titleWidth = metrics.horizontalAdvance(itemcolumns::getTitle(column));
        header->resizeSection(column, qMax(titleWidth + 2 * digit, 10 * digit));
    }
    header->resizeSection(itemcolumns::Name, 20 * digit);
    header->resizeSection(itemcolumns::Type, 16 * digit);
    header->resizeSection(itemcolumns::Severity, 16 * digit);
    header->resizeSection(itemcolumns::Note, 30 * digit);
}

void TableColumns::updateShown()
{
    for (int column = 0; column < itemcolumns::kCount; ++column)
        view.setColumnHidden(column, !isChosen(column) || (isCoordinate(column) && !hasCoordinates));
    for (QAction* action : menu->actions()) {
        if (action->isCheckable())
            action->setChecked(isChosen(action->data().toInt()));
    }
}

/// Until a title is clicked.
void TableColumns::sortAsInFile()
{
    view.horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    sortedColumn = -1;
}

/// The header has the smallest first at the first click; of some columns one wants to see the largest.
void TableColumns::takeClick(int column)
{
    QHeaderView* header = view.horizontalHeader();
    if (column != sortedColumn && isLargestFirst(column))
        header->setSortIndicator(column, Qt::DescendingOrder);
    sortedColumn = column;
}

} // namespace orvel::desk
