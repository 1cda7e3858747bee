#pragma once

#include "tacheometry/FieldBook.h"

#include <memory>

class CQtArchive;

namespace orvel::desk {

/// The field book in a project file.
namespace fieldbookarchive {

void save(CQtArchive& archive, const tacheometry::FieldBook& fieldBook);
/// Loads what save() wrote.
///
/// @throws qor::CFileException  the file claims more set-ups or sights than can be worked with, or ends early
std::shared_ptr<const tacheometry::FieldBook> load(CQtArchive& archive);

/// Whether all numbers of what was loaded are such as computations need, and all files are some of so many.
bool isUsable(const tacheometry::FieldBook& fieldBook, int sourceCount);

} // namespace fieldbookarchive

} // namespace orvel::desk
