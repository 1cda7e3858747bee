#pragma once

#include "levelling/TableTemplate.h"

#include <QString>

namespace orvel::desk {

/// How templates of text files are told of; all of it is plain text.
namespace templatetexts {

/// What a column is for: "начальный пункт", "превышение".
QString describeRole(levelling::ColumnRole role);
QString describeUnit(levelling::DifferenceUnit unit);
QString describeUnit(levelling::LengthUnit unit);
/// "пробелы", "табуляция", or the character itself.
QString describeSeparator(QChar separator);

/// A template in one line: its name, signs, encoding and columns.
QString describe(const levelling::TableTemplate& format);

/// What keeps files from being read by a template, and what is needed: one sentence that names the key of the
/// template.
QString describeFault(const levelling::TableTemplate& format, const levelling::TemplateFault& fault);

/// Why a cell cannot be used, in a few words.
QString describeFault(const levelling::CellFault& fault);

} // namespace templatetexts

} // namespace orvel::desk
