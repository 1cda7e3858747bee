#include "host/model/ModelRevision.h"

#include <atomic>

namespace modelrevision {

namespace {

std::atomic<quint64> revision{0};

} // namespace

quint64 get()
{
    return revision;
}

void advance()
{
    ++revision;
}

} // namespace modelrevision
