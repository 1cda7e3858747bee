#pragma once

#include "Token.h"

#include <QStringList>

/// Gives short names to what a script declares with const, let, class and function, and to the private names
/// of its classes. The whole script must be there, since a name is changed wherever it stands. A name that
/// may be the name of a property, too, or that stands in a template string, keeps its length; so does what no
/// declaration names. A declared name must therefore not be that of a global which the script uses.
///
/// `ownNames` become short as properties, too, because no object that is not the script's own has them.
/// Throws std::runtime_error when one of them is not in the script, or is a text there, as which it could not
/// be changed.
void shortenNames(Tokens& script, const QStringList& ownNames);
