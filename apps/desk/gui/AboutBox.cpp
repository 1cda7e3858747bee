#include "apps/desk/gui/AboutBox.h"

#include "apps/desk/Desk.h"
#include "apps/desk/gui/GlyphIcon.h"

#include <QMessageBox>

namespace orvel::desk {

void showAboutBox(QWidget* parent)
{
    auto* box =
        new QMessageBox(QMessageBox::NoIcon, Desk::tr("О программе"),
                        Desk::tr("Обработка нивелирования %1").arg(QCoreApplication::applicationVersion()),
                        QMessageBox::NoButton, parent);
    box->setIconPixmap(makeApplicationIcon().pixmap(64, 64));
    box->setInformativeText(
        Desk::tr("Обработка нивелирных сетей с протоколами, каждая строка которых ведёт к своим "
                 "пунктам и секциям."));
    box->addButton(Desk::tr("&Закрыть"), QMessageBox::RejectRole);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

} // namespace orvel::desk
