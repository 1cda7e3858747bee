#pragma once

#include "levelling/Network.h"
#include "tacheometry/FieldBookReading.h"

namespace orvel::desk {

/// The points of a total station's file as points of the project: those with given coordinates, then
/// stations and targets, each once.
levelling::Network makeSurveyNetwork(const tacheometry::FieldBookReading& reading);

} // namespace orvel::desk
