#include "apps/desk/protocol/ProtocolList.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/ProtocolSummary.h"
#include "apps/desk/gui/GlyphIcon.h"
#include "apps/desk/gui/ItemLook.h"
#include "apps/desk/protocol/ProtocolTreeModel.h"

#include <QHeaderView>
#include <QSignalBlocker>

#include <algorithm>
#include <vector>

namespace orvel::desk {

namespace {

constexpr int kTypeRole = Qt::UserRole;

using TypeCounts = std::vector<std::pair<int, ProtocolSummary::Counts>>;

/// The types, the latest run's first.
TypeCounts sortByTime(const ProtocolSummary& summary)
{
    TypeCounts types(summary.types.begin(), summary.types.end());
    std::stable_sort(types.begin(), types.end(),
                     [](const auto& a, const auto& b) { return a.second.ended > b.second.ended; });
    return types;
}

/// The time of day; of another day, the day as well.
QString describeTime(const QDateTime& time)
{
    const bool isToday = time.date() == QDate::currentDate();
    return time.toString(isToday ? QStringLiteral("hh:mm:ss") : QStringLiteral("dd.MM.yyyy hh:mm"));
}

} // namespace

ProtocolList::ProtocolList(QWidget* parent) : QTreeWidget(parent)
{
    setAccessibleName(Desk::tr("Последние протоколы"));
    setHeaderLabels({Desk::tr("Обработка"), Desk::tr("Ошибок"), Desk::tr("Предупреждений"),
                     Desk::tr("Сообщений"), Desk::tr("Время")});
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setToolTip(Desk::tr("Двойной щелчок или Enter показывает страницу протокола"));
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    // Where there is little room a name is cut rather than its counts.
    header()->setSectionResizeMode(0, QHeaderView::Stretch);
    header()->setStretchLastSection(false);
    setMinimumWidth(32 * fontMetrics().averageCharWidth());
    int column = 1;
    for (const COVMessage::MessageType kind : ProtocolTree::kKinds) {
        // The words would need more room than the numbers.
        headerItem()->setToolTip(column, headerItem()->text(column));
        headerItem()->setData(column, Qt::AccessibleTextRole, headerItem()->text(column));
        headerItem()->setText(column, QString());
        headerItem()->setIcon(column++, ProtocolTreeModel::getKindIcon(kind));
    }
    connect(this, &QTreeWidget::itemActivated, this, [this](const QTreeWidgetItem* item) {
        Q_EMIT protocolRequested(item->data(0, kTypeRole).toInt());
    });
    connect(this, &QTreeWidget::currentItemChanged, this, [this](const QTreeWidgetItem* item) {
        if (item)
            Q_EMIT protocolChosen(item->data(0, kTypeRole).toInt());
    });
}

void ProtocolList::setSummary(const ProtocolSummary& summary)
{
    const int chosen = currentItem() ? currentItem()->data(0, kTypeRole).toInt() : 0;
    {
        const QSignalBlocker blocker(this);
        clear();
        for (const auto& [type, counts] : sortByTime(summary))
            addType(type, counts);
    }
    showOutdated();
    choose(chosen);
    if (!currentItem() && topLevelItemCount() > 0)
        setCurrentItem(topLevelItem(0));
}

void ProtocolList::setOutdated(const std::vector<int>& types)
{
    outdatedTypes = types;
    showOutdated();
}

void ProtocolList::showOutdated()
{
    for (int i = 0; i < topLevelItemCount(); ++i) {
        QTreeWidgetItem* item = topLevelItem(i);
        const int type = item->data(0, kTypeRole).toInt();
        const bool isOutdated =
            std::find(outdatedTypes.begin(), outdatedTypes.end(), type) != outdatedTypes.end();
        item->setText(0, isOutdated ? Desk::tr("%1 (устарело)").arg(getTypeText(type)) : getTypeText(type));
        item->setToolTip(0,
                         isOutdated ? Desk::tr("Сеть или класс изменены после этой обработки") : QString());
        item->setForeground(0, isOutdated ? QBrush(itemlook::getOffColor(palette())) : QBrush());
    }
}

void ProtocolList::choose(int protocolType)
{
    for (int i = 0; i < topLevelItemCount(); ++i) {
        if (topLevelItem(i)->data(0, kTypeRole).toInt() == protocolType)
            setCurrentItem(topLevelItem(i));
    }
}

void ProtocolList::addType(int type, const ProtocolSummary::Counts& counts)
{
    auto* item = new QTreeWidgetItem(this);
    item->setText(0, getTypeText(type));
    item->setToolTip(0, getTypeText(type));
    item->setIcon(0, makeIcon(Glyph::Protocol));
    item->setData(0, kTypeRole, type);
    int column = 1;
    for (const int count : {counts.errors, counts.warnings, counts.messages}) {
        item->setText(column, QString::number(count));
        item->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
        ++column;
    }
    if (counts.errors > 0) {
        QFont bold = font();
        bold.setBold(true);
        item->setFont(1, bold);
    }
    item->setText(column, describeTime(counts.ended));
    item->setTextAlignment(column, Qt::AlignRight | Qt::AlignVCenter);
}

} // namespace orvel::desk
