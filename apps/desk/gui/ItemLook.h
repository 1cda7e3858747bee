#pragma once

#include "Orvel/store/COVMessage.h"

#include <QColor>
#include <QPalette>
#include <QVariant>
#include <QVector>

#include <optional>

namespace orvel::desk {

/// How a row of the item table shows the gravest line about its item: by a colour, by an icon beside the
/// name, and to those who hear it by a word.
namespace itemlook {

/// "error", "warning" or "message".
QString nameSeverity(COVMessage::MessageType kind);

/// The background of rows of that kind among others of the palette: as much of the kind's colour as leaves
/// the text readable. Invalid for messages.
QColor getBackground(COVMessage::MessageType kind, const QPalette& palette);

/// The colour of what is switched off or out of date, as pale as it can be and readable still; beside it a
/// word says so.
QColor getOffColor(const QPalette& palette);
/// The palette's colour of links, as much nearer to that of texts as it takes to be readable: desktops with
/// dark colours often leave links dark blue.
QColor getLinkColor(const QPalette& palette);
/// That a section is switched off, and why.
QString describeOff(const QString& reason);

/// How much two colours differ in brightness, from 1 to 21, as WCAG 2 has it.
double getContrast(const QColor& first, const QColor& second);

/// What follows from the gravest line, beside the texts.
QVector<int> getRoles();
/// Whether the look of a row has a say in that cell's data.
bool isAsked(int column, int role);
/// The cell's data then. The name is what the row is called.
QVariant present(const QString& name, const std::optional<COVMessage::MessageType>& severity, int role);

} // namespace itemlook

} // namespace orvel::desk
