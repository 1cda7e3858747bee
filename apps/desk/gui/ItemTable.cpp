#include "apps/desk/gui/ItemTable.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/gui/ItemColumns.h"
#include "apps/desk/gui/ItemFilterModel.h"
#include "apps/desk/gui/NameColumnDelegate.h"
#include "apps/desk/gui/PointTableModel.h"
#include "apps/desk/gui/ReportColumnDelegate.h"
#include "apps/desk/gui/SectionTableModel.h"
#include "apps/desk/gui/TableColumns.h"
#include "apps/desk/gui/TableCopy.h"

#include <QAction>
#include <QConcatenateTablesProxyModel>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QStyle>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace orvel::desk {

namespace {

// Work that takes less is not spoken of.
constexpr int kSlowMs = 200;

} // namespace

ItemTable::ItemTable(Document& openDocument, ProjectWindow* projectWindow, QWidget* parent)
    : QTableView(parent)
    , document(openDocument)
    , filterModel(new ItemFilterModel(this))
    , joinedModel(new QConcatenateTablesProxyModel(this))
    , pointModel(new PointTableModel(document, this))
    , sectionModel(new SectionTableModel(document, this))
    , slowTimer(new QTimer(this))
{
    joinedModel->addSourceModel(pointModel);
    joinedModel->addSourceModel(sectionModel);
    filterModel->setSourceModel(joinedModel);
    setModel(filterModel);

    setAccessibleName(Desk::tr("Пункты и секции"));
    setItemDelegateForColumn(itemcolumns::Name, new NameColumnDelegate(this));
    setItemDelegateForColumn(itemcolumns::Report, new ReportColumnDelegate(projectWindow, this));
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(DoubleClicked | EditKeyPressed);
    setAlternatingRowColors(true);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setVerticalScrollMode(ScrollPerPixel);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    columns = new TableColumns(*this);
    copy = new TableCopy(*this, *columns);
    connect(copy, &TableCopy::copied, this, &ItemTable::copied);
    setUpActions();
    showCoordinates();
    connect(&document, &Document::networkReplaced, this, &ItemTable::showCoordinates);
    connect(&document, &Document::networkReplaced, this, &ItemTable::fitNames);
    connect(&document, &Document::resultsChanged, this, &ItemTable::showCoordinates);
    connect(this, &QTableView::clicked, this, &ItemTable::showProtocol);
    connect(pointModel, &PointTableModel::editRefused, this, &ItemTable::editRefused);
    connect(sectionModel, &SectionTableModel::editRefused, this, &ItemTable::editRefused);
    slowTimer->setSingleShot(true);
    slowTimer->setInterval(kSlowMs);
    connect(slowTimer, &QTimer::timeout, this, [this] { setSlow(true); });
    connect(filterModel, &ItemFilterModel::layoutChanged, this, &ItemTable::rowsChanged);
    connect(filterModel, &ItemFilterModel::workingChanged, this, [this](bool isWorking) {
        if (isWorking) {
            slowTimer->start();
            return;
        }
        slowTimer->stop();
        selectAwaitedItems();
        setSlow(false);
    });
}

LONGID ItemTable::getCurrentItem() const
{
    return currentIndex().data(itemcolumns::ItemIdRole).toLongLong();
}

std::vector<LONGID> ItemTable::getSelectedItems() const
{
    std::vector<LONGID> items;
    for (const int row : TableCopy::listSelectedRows(*this))
        items.push_back(model()->index(row, 0).data(itemcolumns::ItemIdRole).toLongLong());
    return items;
}

void ItemTable::endEditing()
{
    QWidget* editor = state() == EditingState ? indexWidget(currentIndex()) : nullptr;
    if (!editor)
        return;
    commitData(editor);
    closeEditor(editor, QAbstractItemDelegate::NoHint);
}

void ItemTable::copySelected()
{
    copy->start();
}

void ItemTable::editCurrentValue()
{
    const auto isValue = [](const QModelIndex& index) {
        return index.column() != itemcolumns::Report && (index.flags() & Qt::ItemIsEditable) != 0;
    };
    QModelIndex index = currentIndex();
    for (int column = 0; column < itemcolumns::kCount && !isValue(index); ++column)
        index = currentIndex().siblingAtColumn(column);
    if (!isValue(index) || state() == EditingState)
        return;
    setCurrentIndex(index);
    edit(index);
}

bool ItemTable::selectItems(const std::vector<LONGID>& ids, LONGID current, Focus focus)
{
    const QModelIndexList found = findItems(ids);
    if (found.size() != static_cast<int>(ids.size()) ||
        !std::all_of(found.begin(), found.end(),
                     [this](const QModelIndex& index) { return filterModel->isMeant(index); }))
        return false;
    awaitedItems = ids;
    awaitedCurrent = current;
    awaitedFocus = focus;
    selectAwaitedItems();
    return true;
}

/// The items' rows below search and sorting.
QModelIndexList ItemTable::findItems(const std::vector<LONGID>& ids) const
{
    QModelIndexList found;
    for (const QModelIndex& section : sectionModel->findSections(ids))
        found.append(joinedModel->mapFromSource(section));
    for (const LONGID id : ids) {
        if (document.findPoint(id))
            found.append(joinedModel->mapFromSource(pointModel->findPoint(id)));
    }
    return found;
}

void ItemTable::selectAwaitedItems()
{
    if (awaitedItems.empty())
        return;
    const std::vector<LONGID> ids = awaitedItems;
    QItemSelection rows;
    for (const QModelIndex& item : findItems(ids)) {
        const QModelIndex index = filterModel->mapFromSource(item);
        rows.select(index, index);
    }
    const QModelIndex current = filterModel->mapFromSource(findItems({awaitedCurrent}).value(0));
    if (current.isValid()) {
        selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
        scrollTo(current, PositionAtCenter);
        if (awaitedFocus == Focus::Comes)
            setFocus();
    }
    awaitedItems = filterModel->isWorking() ? ids : std::vector<LONGID>();
}

void ItemTable::setSlow(bool isSlow)
{
    if (slow == isSlow)
        return;
    slow = isSlow;
    Q_EMIT rowsChanged();
}

void ItemTable::showCurrentProtocol()
{
    showProtocol(currentIndex().siblingAtColumn(itemcolumns::Report));
}

void ItemTable::setPageShower(std::function<void(const std::function<void()>& show)> shower)
{
    showPage = std::move(shower);
}

void ItemTable::setProtocolsAvailable(bool available)
{
    protocolsAvailable = available;
}

void ItemTable::setEmptyText(const QString& text)
{
    emptyText = text;
    viewport()->update();
}

void ItemTable::showCoordinates()
{
    columns->setHasCoordinates(document.hasCoordinates());
}

bool ItemTable::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event)
{
    // The report column has no value: what is done there shows a page, and is asked for apart.
    const bool isPage = index.column() == itemcolumns::Report && trigger != AllEditTriggers;
    return !isPage && QTableView::edit(index, trigger, event);
}

void ItemTable::keyPressEvent(QKeyEvent* event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    // Enter that ends the editing of a value comes here as well, before the editor goes.
    if (isEnter && state() != EditingState && currentIndex().isValid())
        showCurrentProtocol();
    else if (event->matches(QKeySequence::Copy))
        copySelected(); // the view would take the current cell alone
    else if (event->key() == Qt::Key_Escape)
        Q_EMIT escapePressed();
    else
        QTableView::keyPressEvent(event);
}

void ItemTable::paintEvent(QPaintEvent* event)
{
    QTableView::paintEvent(event);
    if (model()->rowCount() > 0)
        return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(20, 20, -20, -20), Qt::AlignCenter | Qt::TextWordWrap,
                     emptyText);
}

void ItemTable::currentChanged(const QModelIndex& current, const QModelIndex& previous)
{
    QTableView::currentChanged(current, previous);
    // Somebody has chosen another row.
    awaitedItems.clear();
    Q_EMIT currentItemChanged();
}

void ItemTable::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected)
{
    QTableView::selectionChanged(selected, deselected);
    Q_EMIT selectedItemsChanged();
}

void ItemTable::showProtocol(const QModelIndex& index)
{
    // The delegate shows the page in place of an editor.
    if (showPage && protocolsAvailable && index.isValid() && index.column() == itemcolumns::Report)
        showPage([&] { edit(index, AllEditTriggers, nullptr); });
}

/// Gives the names what they need of the room that the last column has to spare.
void ItemTable::fitNames()
{
    // So many tell well enough how long names are.
    constexpr int looked = 1000;
    const int digit = fontMetrics().horizontalAdvance(QLatin1Char('0'));
    int longest = 0;
    for (const QAbstractItemModel* items :
         {static_cast<QAbstractItemModel*>(pointModel), static_cast<QAbstractItemModel*>(sectionModel)}) {
        for (int row = 0; row < std::min(items->rowCount(), looked); ++row) {
            const QString name = items->index(row, itemcolumns::Name).data().toString();
            longest = std::max(longest, fontMetrics().horizontalAdvance(name));
        }
    }
    const int width = columnWidth(itemcolumns::Name);
    const QHeaderView* header = horizontalHeader();
    const int last = header->logicalIndex(header->count() - 1);
    const int room = header->viewport()->width() - header->length() + columnWidth(last) - 10 * digit;
    const int icon = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    const int wanted = std::min(longest + icon + 4 * digit, 50 * digit);
    if (wanted > width && room > 0)
        setColumnWidth(itemcolumns::Name, std::min(wanted, width + room));
}

void ItemTable::setUpActions()
{
    setContextMenuPolicy(Qt::ActionsContextMenu);
    endOfItemActions = new QAction(this);
    endOfItemActions->setSeparator(true);
    addAction(endOfItemActions);
    auto* copyAction = new QAction(Desk::tr("&Копировать строки"), this);
    copyAction->setShortcut(QKeySequence::Copy);
    copyAction->setShortcutContext(Qt::WidgetShortcut);
    connect(copyAction, &QAction::triggered, this, &ItemTable::copySelected);
    addAction(copyAction);
    addAction(columns->getMenu()->menuAction());
}

} // namespace orvel::desk
