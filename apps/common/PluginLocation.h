#pragma once

#include <QString>

namespace orvel::apps {

/// Path of the plug-in: beside the executable's folder in the build tree, in the library folder where it is
/// installed. When it is in neither, the path where an installed one should be. Needs a QCoreApplication.
QString locatePlugin();

} // namespace orvel::apps
