#include "apps/desk/gui/SearchField.h"

#include "apps/desk/gui/GlyphIcon.h"

#include <QKeyEvent>

namespace orvel::desk {

SearchField::SearchField(const QString& hint, const QString& name, QWidget* parent) : QLineEdit(parent)
{
    setPlaceholderText(hint);
    setAccessibleName(name);
    setClearButtonEnabled(true);
    addAction(makeIcon(Glyph::Search), LeadingPosition);
}

void SearchField::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape && !text().isEmpty())
        clear();
    else
        QLineEdit::keyPressEvent(event);
}

} // namespace orvel::desk
