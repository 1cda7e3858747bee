#pragma once

#include "host/model/LongId.h"

#include <QStringList>

#include <vector>

/// Links and ids found by regular expressions.
namespace reference {

/// The links of a text, in their order.
QStringList findAnchors(const QString& text);

/// The ids of the links of a text, in their order.
std::vector<LONGID> findIds(const QString& text);

} // namespace reference
