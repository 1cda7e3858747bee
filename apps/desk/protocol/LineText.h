#pragma once

#include <QString>

namespace orvel::desk {

/// What a reader of a protocol line sees: its HTML without the tags, a line break as a blank.
QString toPlainText(const QString& html);

} // namespace orvel::desk
