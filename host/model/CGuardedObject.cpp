#include "host/model/CGuardedObject.h"

namespace qor {

CGuardedObject::CGuardedObject() = default;

CGuardedObject::CGuardedObject(const CGuardedObject& /*other*/)
{}

// NOLINTNEXTLINE(bugprone-unhandled-self-assignment): nothing is assigned.
CGuardedObject& CGuardedObject::operator=(const CGuardedObject& /*other*/)
{
    return *this;
}

CGuardedObject::~CGuardedObject()
{
    if (aliveFlag)
        *aliveFlag = false;
}

std::shared_ptr<const bool> CGuardedObject::getAliveFlag() const
{
    if (!aliveFlag)
        aliveFlag = std::make_shared<bool>(true);
    return aliveFlag;
}

} // namespace qor
