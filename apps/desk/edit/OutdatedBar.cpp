#include "apps/desk/edit/OutdatedBar.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/Document.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

namespace orvel::desk {

OutdatedBar::OutdatedBar(Document& openDocument, QWidget* parent)
    : QFrame(parent)
    , document(openDocument)
    , label(new QLabel(this))
    , button(new QPushButton(Desk::tr("Выполнить снова (Ctrl+R)"), this))
{
    setFrameShape(StyledPanel);
    auto* icon = new QLabel(this);
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(size));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(6, 3, 6, 3);
    row->addWidget(icon);
    row->addWidget(label, 1);
    row->addWidget(button);
    connect(button, &QPushButton::clicked, this, &OutdatedBar::runRequested);
    connect(&document, &Document::outdatedChanged, this, &OutdatedBar::showState);
    showState();
}

void OutdatedBar::setRunPossible(bool isPossible)
{
    button->setEnabled(isPossible);
}

void OutdatedBar::showState()
{
    QStringList names;
    for (const int type : document.getOutdatedTypes())
        names.append(getTypeText(type));
    label->setText(
        Desk::tr("Устарело, сеть или класс с тех пор изменены: %1").arg(names.join(QStringLiteral(", "))));
    setVisible(!names.isEmpty());
}

} // namespace orvel::desk
