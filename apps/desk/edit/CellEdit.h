#pragma once

#include <QString>

#include <optional>

namespace orvel::desk {

class Document;
class LevellingPoint;
class LevellingSection;

/// Editing of single values in the item table, by its columns.
namespace celledits {

/// The number that the text stands for, with a decimal comma or point; nothing if it is none.
std::optional<double> parseNumber(const QString& text);
/// The number with all its digits, as it is typed.
QString toText(double number);

/// Whether the cell's value can be changed; not while a run works.
bool isEditable(const Document& document, const LevellingPoint& point, int column);
bool isEditable(const Document& document, const LevellingSection& section, int column);
/// What stands in the cell's editor at first.
QString getText(const LevellingPoint& point, int column);
QString getText(const LevellingSection& section, int column);

/// What came of an attempt to change a value.
struct Outcome
{
    bool isTaken = false;
    QString problem; ///< one sentence of plain text; empty if it was taken
};

/// Gives the cell the value that stands in the text, by a command of the document's undo stack. A value that
/// it has already needs none.
Outcome edit(Document& document, const LevellingPoint& point, int column, const QString& text);
Outcome edit(Document& document, const LevellingSection& section, int column, const QString& text);

} // namespace celledits

} // namespace orvel::desk
