#pragma once

#include <QString>

/// Names that nobody has and nobody can guess.
namespace randomname {

/// Of that many small letters and digits.
constexpr int kLength = 16;

QString make();

} // namespace randomname
