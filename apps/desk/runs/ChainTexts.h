#pragma once

#include "levelling/Chains.h"

#include <QString>

namespace orvel::desk {

/// What lines between benchmarks and nodes are called.
namespace chaintexts {

QString nameKind(levelling::ChainKind kind);

/// What is wrong with a line of that kind; empty if nothing is.
QString describeLack(levelling::ChainKind kind);

} // namespace chaintexts

} // namespace orvel::desk
