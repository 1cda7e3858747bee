#pragma once

#include "levelling/TableTemplate.h"

#include <QByteArray>

namespace levelling {

/// Guesses how a text file is to be read, by its beginning: encoding, separator, decimal sign, rows at the
/// beginning without numbers, and columns and units by their headings, else by what they hold. A guess to
/// begin with: what it gives may have faults.
TableTemplate guessTemplate(const QByteArray& beginning);

} // namespace levelling
