#include "apps/desk/document/DocumentCommand.h"

#include "apps/desk/document/Document.h"

namespace orvel::desk {

DocumentCommand::DocumentCommand(Document& openDocument, Scope scope, const QString& text)
    : QUndoCommand(text)
    , document(openDocument)
    , before(openDocument.getState())
    , after(makeState(before, scope, openDocument.takeStateNumber()))
{}

DocumentState DocumentCommand::makeState(DocumentState state, Scope scope, qint64 number)
{
    switch (scope) {
    case Scope::Network:
        state.network = number;
        break;
    case Scope::Tests:
        state.tests = number;
        [[fallthrough]];
    case Scope::Settings:
        state.settings = number;
        break;
    }
    return state;
}

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
