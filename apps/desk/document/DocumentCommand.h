#pragma once

#include "apps/desk/document/DocumentState.h"

#include <QUndoCommand>

namespace orvel::desk {

class Document;

/// A command of a document's undo stack: what it changes is what runs compute with, so that the project's
/// state is another one by it.
class DocumentCommand : public QUndoCommand
{
public:
    void redo() final;
    void undo() final;

protected:
    enum class Scope {
        Network,
        Settings, ///< the class, and limits
        Tests,    ///< the level of the tests or decimals, and maybe limits
    };

    /// To be pushed on the document's stack at once.
    DocumentCommand(Document& openDocument, Scope scope, const QString& text);

    Document& getDocument() const { return document; }

private:
    /// The state that another number for what is in scope makes of the state.
    static DocumentState makeState(DocumentState state, Scope scope, qint64 number);
    /// Makes the change, or takes it back.
    virtual void apply(bool isForward) = 0;

    Document& document;
    const DocumentState before;
    const DocumentState after;
};

} // namespace orvel::desk
