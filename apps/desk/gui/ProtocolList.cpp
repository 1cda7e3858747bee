#include "apps/desk/gui/ProtocolList.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/ProtocolSummary.h"
#include "apps/desk/gui/GlyphIcon.h"

#include <QHeaderView>

namespace orvel::desk {

namespace {

constexpr int kTypeRole = Qt::UserRole;

} // namespace

ProtocolList::ProtocolList(QWidget* parent) : QTreeWidget(parent)
{
    setAccessibleName(Desk::tr("Последние протоколы"));
    setHeaderLabels(
        {Desk::tr("Обработка"), Desk::tr("Ошибок"), Desk::tr("Предупреждений"), Desk::tr("Сообщений")});
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setToolTip(Desk::tr("Двойной щелчок или Enter показывает страницу протокола"));
    header()->setStretchLastSection(false);
    header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    header()->setSectionResizeMode(0, QHeaderView::Stretch);
    connect(this, &QTreeWidget::itemActivated, this, [this](const QTreeWidgetItem* item) {
        Q_EMIT protocolRequested(item->data(0, kTypeRole).toInt());
    });
}

void ProtocolList::setSummary(const ProtocolSummary& summary)
{
    clear();
    for (const auto& [type, counts] : summary.types) {
        auto* item = new QTreeWidgetItem(this);
        item->setText(0, getTypeText(type));
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
    }
}

} // namespace orvel::desk
