#pragma once

#include "tacheometry/FieldBookReading.h"

#include <QString>
#include <QStringList>

namespace orvel::desk {

/// What is said of the file of a total station.
namespace surveytexts {

/// Why a file could not be read at all: one sentence of plain text that names the file and, where there is
/// one, the line.
QString describeFailure(const QString& filePath, const tacheometry::Problem& problem);

/// Whether the first argument of the kind is the name of a point.
bool namesPoint(tacheometry::ProblemKind kind);

/// A protocol line (HTML) about a part of the file that was left out, or perhaps not taken as meant. The
/// arguments are HTML, too.
QString describe(const tacheometry::Problem& problem, const QStringList& arguments);

/// What was read: set-ups, sights, coordinates; and with which settings the instrument measured. HTML.
QStringList describeContent(const tacheometry::FieldBookReading& reading);

} // namespace surveytexts

} // namespace orvel::desk
