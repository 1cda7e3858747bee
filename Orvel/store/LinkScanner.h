#pragma once

#include "host/model/LongId.h"

#include <QStringView>

#include <optional>

/// Finds links and the item ids in them in the text of a protocol line.
///
/// A link is what lies between "<a" and the first "</a>" behind it, both included and in lower case; an id is
/// the run of digits behind "id=". The search is linear in the text, whatever it holds.
namespace orvel::links {

/// The part of a text from `begin` up to, not including, `end`.
struct Range
{
    int begin;
    int end;
};

/// First link in `text` that begins at `from` or later.
std::optional<Range> findAnchor(QStringView text, int from);

/// The first link in `text` that holds "id=" and the id, also as the beginning of a longer number; empty when
/// there is none.
QStringView getItemAnchor(QStringView text, LONGID id);

/// Digits of the first "id=" in `text` at `from` or later that digits follow.
std::optional<Range> findIdDigits(QStringView text, int from);

} // namespace orvel::links
