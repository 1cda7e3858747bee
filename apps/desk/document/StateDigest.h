#pragma once

#include "apps/desk/document/NetworkChange.h"
#include "apps/desk/document/ToleranceRules.h"

#include <QtGlobal>

namespace orvel::desk {

/// Numbers that tell the states of a project apart: what runs compute alike with has the same number, in
/// every session.
///
/// The number of a network is the sum of those of its items, so that an edit changes it by what it changes
/// itself. It holds what can be changed by hand; the rest of an item stays as long as its id.
namespace statedigest {

quint64 of(const LevellingPoint& item);
quint64 of(const LevellingSection& item);
/// By what the change, made, raises the number of its network.
quint64 of(const NetworkChange& change);
/// Of the class and all that is judged by.
quint64 of(const SurveyRules& rules);
/// Of the level of the tests and the decimals alone.
quint64 ofTests(const ToleranceRules& rules);

} // namespace statedigest

} // namespace orvel::desk
