#pragma once

#include "levelling/Network.h"

#include <QPair>

namespace levelling {

/// What is the same of sections that were imported twice: the ends, in their order, and the height
/// difference.
using SectionKey = QPair<quint64, double>;

inline SectionKey makeSectionKey(const Section& section)
{
    return {quint64(section.from) << 32 | quint64(section.to), section.difference};
}

} // namespace levelling
