#include "tests/support/CollectingApplication.h"

void CollectingApplication::showWarning(const QString& message, QObject* parent)
{
    warnings.append(message);
    warningParents.append(parent);
}
