#include "apps/common/Version.h"

namespace orvel::apps {

QString getVersion()
{
    return QStringLiteral(ORVEL_VERSION);
}

} // namespace orvel::apps
