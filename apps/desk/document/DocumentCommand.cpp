#include "apps/desk/document/DocumentCommand.h"

#include "apps/desk/document/Document.h"

namespace orvel::desk {

DocumentCommand::DocumentCommand(Document& openDocument, Scope scope, const QString& text)
    : QUndoCommand(text)
    , document(openDocument)
    , before(openDocument.getState())
    , after(scope == Scope::Network ? DocumentState{openDocument.takeStateNumber(), before.settings}
                                    : DocumentState{before.network, openDocument.takeStateNumber()})
{}

void DocumentCommand::redo()
{
    apply(true);
    document.setState(after);
}

void DocumentCommand::undo()
{
    apply(false);
    document.setState(before);
}

} // namespace orvel::desk
