#include "apps/desk/gui/ItemTable.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/gui/ItemColumns.h"
#include "apps/desk/gui/ItemFilterModel.h"
#include "apps/desk/gui/PointTableModel.h"
#include "apps/desk/gui/ReportColumnDelegate.h"
#include "apps/desk/gui/SectionTableModel.h"

#include <QConcatenateTablesProxyModel>
#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>

#include <utility>

namespace orvel::desk {

ItemTable::ItemTable(Document& document, ProjectWindow* projectWindow, QWidget* parent)
    : QTableView(parent)
    , filterModel(new ItemFilterModel(this))
{
    auto* joined = new QConcatenateTablesProxyModel(this);
    joined->addSourceModel(new PointTableModel(document, this));
    joined->addSourceModel(new SectionTableModel(document, this));
    filterModel->setSourceModel(joined);
    setModel(filterModel);

    setAccessibleName(Desk::tr("Пункты и секции"));
    setItemDelegateForColumn(itemcolumns::Report, new ReportColumnDelegate(projectWindow, this));
    setSelectionBehavior(SelectRows);
    setSelectionMode(SingleSelection);
    setEditTriggers(NoEditTriggers);
    setAlternatingRowColors(true);
    setTabKeyNavigation(false);
    setWordWrap(false);
    setVerticalScrollMode(ScrollPerPixel);
    setUpHeader();
    connect(this, &QTableView::clicked, this, &ItemTable::showProtocol);
}

LONGID ItemTable::getCurrentItem() const
{
    return currentIndex().data(itemcolumns::ItemIdRole).toLongLong();
}

bool ItemTable::selectItem(LONGID id)
{
    for (int row = 0; row < filterModel->rowCount(); ++row) {
        const QModelIndex index = filterModel->index(row, itemcolumns::Name);
        if (index.data(itemcolumns::ItemIdRole).toLongLong() != id)
            continue;
        setCurrentIndex(index);
        scrollTo(index, PositionAtCenter);
        setFocus();
        return true;
    }
    return false;
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

void ItemTable::keyPressEvent(QKeyEvent* event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && currentIndex().isValid())
        showCurrentProtocol();
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
    Q_EMIT currentItemChanged();
}

void ItemTable::showProtocol(const QModelIndex& index)
{
    // The delegate shows the page in place of an editor.
    if (showPage && protocolsAvailable && index.isValid() && index.column() == itemcolumns::Report)
        showPage([&] { edit(index, AllEditTriggers, nullptr); });
}

void ItemTable::setUpHeader()
{
    QHeaderView* header = horizontalHeader();
    header->setHighlightSections(false);
    header->setSectionsMovable(true);
    header->setSectionResizeMode(QHeaderView::Interactive);
    header->setStretchLastSection(true);
    const int digit = fontMetrics().horizontalAdvance(QLatin1Char('0'));
    for (int column = 0; column < itemcolumns::kCount; ++column) {
        const int titleWidth = fontMetrics().horizontalAdvance(itemcolumns::getTitle(column));
        header->resizeSection(column, qMax(titleWidth + 2 * digit, 10 * digit));
    }
    header->resizeSection(itemcolumns::Name, 18 * digit);
    header->resizeSection(itemcolumns::Type, 16 * digit);
    verticalHeader()->hide();
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    // In the order of the file, until a title is clicked.
    header->setSortIndicator(-1, Qt::AscendingOrder);
    setSortingEnabled(true);
}

} // namespace orvel::desk
