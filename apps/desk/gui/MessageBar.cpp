#include "apps/desk/gui/MessageBar.h"

#include "apps/desk/Desk.h"
#include "apps/desk/gui/GlyphIcon.h"

#include <QAccessible>
#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>
#include <QToolButton>

namespace orvel::desk {

MessageBar::MessageBar(QWidget* parent) : QFrame(parent), label(new QLabel(this))
{
    setFrameShape(StyledPanel);
    auto* icon = new QLabel(this);
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
    icon->setPixmap(makeIcon(Glyph::Info).pixmap(size, size));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    auto* closeButton = new QToolButton(this);
    closeButton->setAutoRaise(true);
    closeButton->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton, nullptr, this));
    closeButton->setToolTip(Desk::tr("Убрать сообщение"));
    closeButton->setAccessibleName(Desk::tr("Убрать сообщение"));
    connect(closeButton, &QToolButton::clicked, this, &QWidget::hide);

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 4, 4, 4);
    layout->addWidget(icon, 0, Qt::AlignTop);
    layout->addWidget(label, 1);
    layout->addWidget(closeButton, 0, Qt::AlignTop);
    hide();
}

void MessageBar::showMessage(const QString& text)
{
    label->setText(text);
    setAccessibleName(text);
    show();
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

QString MessageBar::getMessage() const
{
    return isHidden() ? QString() : label->text();
}

} // namespace orvel::desk
