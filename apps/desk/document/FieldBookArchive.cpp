#include "apps/desk/document/FieldBookArchive.h"

#include "apps/desk/document/ArchiveValues.h"

#include <algorithm>
#include <cmath>

namespace orvel::desk {

namespace {

using tacheometry::FieldBook;
using tacheometry::Position;
using tacheometry::Setup;
using tacheometry::Sight;

void serialize(CQtArchive& archive, Position& position)
{
    serializeValue(archive, position.x);
    serializeValue(archive, position.y);
    serializeValue(archive, position.height);
}

void serialize(CQtArchive& archive, Sight& sight)
{
    serializeValue(archive, sight.point);
    serializeValue(archive, sight.code);
    serializeValue(archive, sight.direction);
    serializeValue(archive, sight.zenith);
    serializeValue(archive, sight.slopeDistance);
    serializeValue(archive, sight.horizontalDistance);
    serializeValue(archive, sight.targetHeight);
    serializeValue(archive, sight.beyond);
    serializeValue(archive, sight.right);
    serialize(archive, sight.recorded);
    serializeValue(archive, sight.line);
}

/// Saves the items, or loads so many of them as the file says it has: one by one, since it may lie.
template<typename Item, typename Serialize>
void serializeList(CQtArchive& archive, std::vector<Item>& items, Serialize serializeItem)
{
    if (archive.isSaving()) {
        archive << static_cast<quint32>(items.size());
        for (Item& item : items)
            serializeItem(archive, item);
        return;
    }
    items.clear();
    for (quint32 rest = loadCount(archive, FieldBook::kMostSights); rest > 0; --rest) {
        items.emplace_back();
        serializeItem(archive, items.back());
    }
}

void serialize(CQtArchive& archive, Setup& setup)
{
    serializeValue(archive, setup.station);
    serializeValue(archive, setup.instrumentHeight);
    serializeValue(archive, setup.orientation);
    serializeValue(archive, setup.scale);
    serializeValue(archive, setup.source);
    serializeValue(archive, setup.line);
    serializeList(archive, setup.sights, [](CQtArchive& file, Sight& sight) { serialize(file, sight); });
}

bool isFinite(const std::optional<double>& number)
{
    return std::isfinite(number.value_or(0.0));
}

bool isPositive(const std::optional<double>& number)
{
    return isFinite(number) && number.value_or(1.0) > 0.0;
}

bool isUsable(const Sight& sight)
{
    return isFinite(sight.direction) && isFinite(sight.zenith) && isPositive(sight.slopeDistance) &&
           isPositive(sight.horizontalDistance) && std::isfinite(sight.targetHeight) &&
           std::isfinite(sight.beyond) && std::isfinite(sight.right) && isFinite(sight.recorded.x) &&
           isFinite(sight.recorded.y) && isFinite(sight.recorded.height);
}

} // namespace

namespace fieldbookarchive {

void save(CQtArchive& archive, const FieldBook& fieldBook)
{
    archive << static_cast<quint32>(fieldBook.setups.size());
    for (Setup setup : fieldBook.setups)
        serialize(archive, setup);
}

std::shared_ptr<const FieldBook> load(CQtArchive& archive)
{
    auto fieldBook = std::make_shared<FieldBook>();
    serializeList(archive, fieldBook->setups, [](CQtArchive& file, Setup& setup) { serialize(file, setup); });
    return fieldBook;
}

bool isUsable(const FieldBook& fieldBook, int sourceCount)
{
    return std::all_of(fieldBook.setups.begin(), fieldBook.setups.end(), [sourceCount](const Setup& setup) {
        return setup.source >= 0 && setup.source < sourceCount && isFinite(setup.instrumentHeight) &&
               isFinite(setup.orientation) && isPositive(setup.scale) &&
               std::all_of(setup.sights.begin(), setup.sights.end(),
                           [](const Sight& sight) { return orvel::desk::isUsable(sight); });
    });
}

} // namespace fieldbookarchive

} // namespace orvel::desk
