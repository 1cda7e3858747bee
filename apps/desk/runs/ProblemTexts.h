#pragma once

#include "levelling/Problem.h"

#include <QString>

namespace orvel::desk {

/// What is said of a problem of an input file.
namespace problems {

/// Why a file could not be read at all: one sentence of plain text that names the file and, where there is
/// one, the line.
QString describeFailure(const QString& filePath, const levelling::Problem& problem);

/// A protocol line (HTML) about a part of the file that was left out, or perhaps not taken as meant. The
/// arguments are HTML, too, so that points and sections can be links.
QString describe(const levelling::Problem& problem, const QStringList& arguments);

} // namespace problems

} // namespace orvel::desk
