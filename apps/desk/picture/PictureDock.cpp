#include "apps/desk/picture/PictureDock.h"

#include "apps/desk/Desk.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/picture/PicturePanel.h"

#include <QAction>

namespace orvel::desk::picture {

PictureDock::PictureDock(const Document& document, const ItemTable& table, QWidget* parent)
    : QDockWidget(Desk::tr("Схема сети"), parent)
    , panel(new PicturePanel(document, this))
{
    setObjectName(QStringLiteral("picture"));
    setWidget(panel);
    toggleViewAction()->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+N")));
    toggleViewAction()->setStatusTip(Desk::tr("Показать или убрать рисунок сети с ошибками протоколов"));
    connect(&table, &ItemTable::currentItemChanged, panel,
            [this, &table] { panel->setCurrentItem(table.getCurrentItem()); });
}

} // namespace orvel::desk::picture
