#include "tacheometry/FieldBook.h"

namespace tacheometry {

std::size_t FieldBook::countSights() const
{
    std::size_t count = 0;
    for (const Setup& setup : setups)
        count += setup.sights.size();
    return count;
}

} // namespace tacheometry
