#pragma once

#include <QString>

#include <functional>
#include <memory>
#include <tsl/hopscotch_map.h>
#include <utility>

namespace levelling {

/// Numbers names: 0, 1 and so on, in the order in which they come first.
///
/// QHash has a node in memory for each name: with a million names their making and freeing takes most of the
/// time, since memory is far from the processor then. This is one table, with the hashes in it.
class NameIndex
{
public:
    /// The number that the name has already, or the next one.
    int add(const QString& name);
    int getCount() const { return static_cast<int>(numbers.size()); }

private:
    struct Hash
    {
        std::size_t operator()(const QString& name) const;
    };

    static constexpr unsigned int kNeighbours = 30; // the library's own choice where hashes are kept
    using Numbers = tsl::hopscotch_map<QString, int, Hash, std::equal_to<QString>,
                                       std::allocator<std::pair<QString, int>>, kNeighbours, true>;

    Numbers numbers;
};

} // namespace levelling
