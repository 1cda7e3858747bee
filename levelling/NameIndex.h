#pragma once

#include <QString>

#include <vector>

namespace levelling {

/// Numbers names: 0, 1 and so on, in the order in which they come first.
///
/// There is one table and no allocation for each name, as QHash has it: with a million names that takes most
/// of the time, since memory is far from the processor then.
class NameIndex
{
public:
    /// The number that the name has already, or the next one.
    int add(const QString& name);
    int getCount() const { return static_cast<int>(names.size()); }

private:
    static constexpr int kFree = -1;

    struct Slot
    {
        uint hash = 0;
        int number = kFree;
    };

    std::size_t findStart(uint hash) const;
    void grow();

    std::vector<QString> names;
    std::vector<Slot> table; ///< a power of two, at least half of them free
};

} // namespace levelling
