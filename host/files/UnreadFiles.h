#pragma once

#include <QString>

/// The files that could not be read, though they are there. Whoever found nothing in one may write it anew,
/// and what it holds would be lost.
namespace unreadfiles {

/// A file that is there could not be read.
void add(const QString& path);
/// The file has been read to its end after all.
void remove(const QString& path);

/// To be called before a file is replaced: one that could not be read gets a second name beside its own, and
/// the user is told.
/// @return false when that failed, with the reason in errno; the file must not be replaced then
bool keepBeside(const QString& path);

} // namespace unreadfiles
