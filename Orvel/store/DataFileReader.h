#pragma once

#include "Orvel/store/COVMessage.h"

#include <QByteArray>

#include <optional>
#include <vector>

class QIODevice;

namespace datafile {

using Messages = std::vector<COVMessage>;

/// The messages of a data file in exactly the form that `write` gives it; nothing for any other file, also
/// for one that means the same.
std::optional<Messages> readOwnForm(const QByteArray& content);

/// The messages of any XML file that holds a protocol; nothing when it does not parse or holds something
/// else. Never returns when an "li" is damaged.
std::optional<Messages> readAnyForm(QIODevice& device);

} // namespace datafile
