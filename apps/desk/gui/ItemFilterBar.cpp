#include "apps/desk/gui/ItemFilterBar.h"

#include "apps/desk/Desk.h"
#include "apps/desk/gui/ItemColumns.h"
#include "apps/desk/gui/ItemFilterModel.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/gui/SearchField.h"

#include <QAction>
#include <QActionGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolBar>

namespace orvel::desk {

namespace {

struct Choice
{
    int traits;
    QString text;
    QString explanation;
};

std::vector<Choice> listChoices()
{
    return {{0, Desk::tr("Всё"), Desk::tr("Показать все пункты и секции")},
            {itemcolumns::PointTrait, Desk::tr("Пункты"), Desk::tr("Показать только пункты")},
            {itemcolumns::SectionTrait, Desk::tr("Секции"), Desk::tr("Показать только секции")},
            {itemcolumns::OverLimitTrait, Desk::tr("Сверх допуска"),
             Desk::tr("Показать секции, о которых в протоколах есть ошибки")},
            {itemcolumns::OffTrait, Desk::tr("Отключённые"), Desk::tr("Показать отключённые секции")}};
}

} // namespace

ItemFilterBar::ItemFilterBar(ItemTable& itemTable, QWidget* parent)
    : QWidget(parent)
    , table(itemTable)
    , search(new SearchField(Desk::tr("Поиск по имени (Ctrl+F)"), Desk::tr("Поиск пунктов и секций"), this))
    , choices(new QActionGroup(this))
    , count(new QLabel(this))
{
    constexpr int leastLetters = 14;
    search->setMinimumWidth(leastLetters * fontMetrics().averageCharWidth());
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(search, 1);
    layout->addWidget(createChoices());
    layout->addWidget(count);
    ItemFilterModel* filter = table.getFilterModel();
    connect(search, &QLineEdit::textChanged, filter, &ItemFilterModel::setSearchText);
    connect(search, &QLineEdit::returnPressed, &table, QOverload<>::of(&QWidget::setFocus));
    connect(&table, &ItemTable::escapePressed, search, &QLineEdit::clear);
    connect(filter, &ItemFilterModel::layoutChanged, this, &ItemFilterBar::showCount);
    connect(filter, &ItemFilterModel::modelReset, this, &ItemFilterBar::showCount);
    showCount();
}

void ItemFilterBar::startSearch()
{
    search->setFocus();
    search->selectAll();
}

void ItemFilterBar::clear()
{
    search->clear();
    choices->actions().constFirst()->trigger();
}

/// A bar puts what it has no room for behind a button.
QToolBar* ItemFilterBar::createChoices()
{
    auto* bar = new QToolBar(this);
    for (const Choice& choice : listChoices()) {
        QAction* action = bar->addAction(choice.text);
        action->setToolTip(choice.explanation);
        action->setCheckable(true);
        action->setChecked(choice.traits == 0);
        action->setData(choice.traits);
        choices->addAction(action);
    }
    connect(choices, &QActionGroup::triggered, table.getFilterModel(), [this](const QAction* action) {
        table.getFilterModel()->setWantedTraits(action->data().toInt());
    });
    return bar;
}

void ItemFilterBar::showCount()
{
    const ItemFilterModel& filter = *table.getFilterModel();
    count->setText(
        Desk::tr("%1 из %2")
            .arg(QString::number(filter.rowCount()), QString::number(filter.sourceModel()->rowCount())));
}

} // namespace orvel::desk
