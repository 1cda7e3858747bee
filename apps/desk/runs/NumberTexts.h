#pragma once

#include <QString>

namespace orvel::desk {

/// Numbers as protocols, tables and files show them: a decimal point in every language, no "-0".
namespace numbers {

QString fixed(double value, int decimals);
/// With "+" before what is not negative.
QString withSign(double value, int decimals);
/// So many significant digits, without an exponent.
QString significant(double value, int digits);

/// Height or height difference, m.
QString height(double metres);
/// Length of a line, km.
QString length(double kilometres);
/// Residual or misclosure, mm, with its sign.
QString misclosure(double millimetres);
/// Standard deviation or limit, mm.
QString sigma(double millimetres);

} // namespace numbers

} // namespace orvel::desk
