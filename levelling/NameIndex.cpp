#include "levelling/NameIndex.h"

#include <QHash>

#include <utility>

namespace levelling {

namespace {

constexpr std::size_t kFirstSize = 64;

} // namespace

int NameIndex::add(const QString& name)
{
    if (2 * (names.size() + 1) > table.size())
        grow();
    const uint hash = qHash(name, static_cast<uint>(qGlobalQHashSeed()));
    std::size_t place = findStart(hash);
    while (table[place].number != kFree) {
        const Slot& slot = table[place];
        if (slot.hash == hash && names[static_cast<std::size_t>(slot.number)] == name)
            return slot.number;
        place = (place + 1) & (table.size() - 1);
    }
    table[place] = {hash, getCount()};
    names.push_back(name);
    return table[place].number;
}

/// Names that are alike have hashes that are: multiplied, these spread over the table.
std::size_t NameIndex::findStart(uint hash) const
{
    constexpr quint64 golden = 0x9E3779B97F4A7C15U;
    constexpr int upperHalf = 32;
    return static_cast<std::size_t>(hash * golden >> upperHalf) & (table.size() - 1);
}

void NameIndex::grow()
{
    const std::vector<Slot> old =
        std::exchange(table, std::vector<Slot>(table.empty() ? kFirstSize : 2 * table.size()));
    for (const Slot& slot : old) {
        if (slot.number == kFree)
            continue;
        std::size_t place = findStart(slot.hash);
        while (table[place].number != kFree)
            place = (place + 1) & (table.size() - 1);
        table[place] = slot;
    }
}

} // namespace levelling
