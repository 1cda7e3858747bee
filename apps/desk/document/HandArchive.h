#pragma once

#include "apps/desk/document/Document.h"

class CQtArchive;

namespace orvel::desk {

/// What was done by hand, in the project file.
namespace handarchive {

void save(CQtArchive& archive, const Document::Content& content);
/// Gives the items of the content what was done to them by hand.
void load(CQtArchive& archive, Document::Content& content);

} // namespace handarchive

} // namespace orvel::desk
