#pragma once

#include "host/model/LongId.h"

#include <QString>

#include <map>
#include <set>

class CQtArchive;

/// The parts of a protocol's state as they stand in an archive. Loading throws qor::CFileException with code
/// 1 when a count is over its limit: 1,000,000 ids, 100 page paths.
namespace orvel::protocolarchive {

void saveIds(CQtArchive& archive, const std::set<LONGID>& ids);
void loadIds(CQtArchive& archive, std::set<LONGID>& ids);
void savePaths(CQtArchive& archive, const std::map<int, QString>& paths);
void loadPaths(CQtArchive& archive, std::map<int, QString>& paths);

} // namespace orvel::protocolarchive
