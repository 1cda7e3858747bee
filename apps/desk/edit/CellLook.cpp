#include "apps/desk/edit/CellLook.h"

#include "apps/desk/Desk.h"
#include "apps/desk/gui/ItemLook.h"

#include <QApplication>
#include <QFont>
#include <QPalette>

namespace orvel::desk {

namespace celllook {

QVariant present(int role, bool isOff, bool isOutdated)
{
    if (!isOff && !isOutdated)
        return QVariant();
    if (role == Qt::ForegroundRole)
        return itemlook::getOffColor(QApplication::palette());
    if (role == Qt::FontRole) {
        QFont font = QApplication::font("QAbstractItemView");
        font.setStrikeOut(isOff);
        font.setItalic(isOutdated);
        return font;
    }
    if (role == Qt::ToolTipRole && isOutdated && !isOff)
        return Desk::tr("Результат устарел: сеть изменена после уравнивания");
    return QVariant();
}

} // namespace celllook

} // namespace orvel::desk
