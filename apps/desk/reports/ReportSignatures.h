#pragma once

#include <QStringList>

namespace orvel::desk {

/// The place for signatures at the end of a report.
namespace reportsignatures {

/// What stands over its columns: nothing over the roles.
QStringList getColumns();
/// Who signs, a row each.
QStringList getRoles();

} // namespace reportsignatures

} // namespace orvel::desk
