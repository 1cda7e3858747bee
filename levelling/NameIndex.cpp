#include "levelling/NameIndex.h"

#include <QHash>

namespace levelling {

int NameIndex::add(const QString& name)
{
    return numbers.try_emplace(name, getCount()).first->second;
}

std::size_t NameIndex::Hash::operator()(const QString& name) const
{
    return qHash(name, static_cast<uint>(qGlobalQHashSeed()));
}

} // namespace levelling
