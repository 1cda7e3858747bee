#include "apps/desk/runs/ImportSource.h"

namespace orvel::desk {

std::vector<std::vector<ImportSource>> groupSources(const std::vector<ImportSource>& sources)
{
    std::vector<std::vector<ImportSource>> groups;
    for (const ImportSource& source : sources) {
        if (groups.empty() || groups.back().back().format.has_value() != source.format.has_value())
            groups.emplace_back();
        groups.back().push_back(source);
    }
    return groups;
}

} // namespace orvel::desk
