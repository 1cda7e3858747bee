#pragma once

class COrvel;
class CProjectModel;

namespace orvel {

/// The protocol of a project model; null when it has none. Nobody keeps the pointer: it is looked up with
/// each use.
COrvel* findProjectProtocol(const CProjectModel* model);

} // namespace orvel
