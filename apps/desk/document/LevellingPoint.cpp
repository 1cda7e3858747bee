#include "apps/desk/document/LevellingPoint.h"

#include "apps/desk/document/ArchiveValues.h"
#include "apps/desk/document/DeskTypes.h"

namespace orvel::desk {

LevellingPoint::LevellingPoint(LONGID pointId, const levelling::Point& networkPoint) : point(networkPoint)
{
    setId(pointId);
    setName(point.id);
}

int LevellingPoint::getType() const
{
    return kPointItemType;
}

void LevellingPoint::serialize(CQtArchive& archive)
{
    LONGID itemId = getId();
    serializeValue(archive, itemId);
    serializeValue(archive, point.id);
    serializeValue(archive, point.height);
    serializeValue(archive, point.fixed);
    serializeValue(archive, point.declared);
    serializeValue(archive, point.line);
    std::optional<double> height;
    std::optional<double> sigma;
    if (result) {
        height = result->height;
        sigma = result->sigma;
    }
    serializeValue(archive, height);
    serializeValue(archive, sigma);

    if (archive.isSaving())
        return;
    setId(itemId);
    setName(point.id);
    if (height && sigma)
        result = Result{*height, *sigma, std::nullopt};
    else
        result.reset();
}

void LevellingPoint::serializeAddition(CQtArchive& archive)
{
    serializeValue(archive, point.constrained);
    serializeValue(archive, point.observed);
    Result added = result ? *result : Result();
    serializeValue(archive, added.sigmaScale);
    if (result)
        result = added;
}

void LevellingPoint::serializeFieldData(CQtArchive& archive)
{
    serializeValue(archive, point.source);
    serializeValue(archive, point.x);
    serializeValue(archive, point.y);
    serializeValue(archive, point.surveyed);
    serializeValue(archive, polar.x);
    serializeValue(archive, polar.y);
    serializeValue(archive, polar.height);
}

std::optional<levelling::Point> LevellingPoint::getOriginal() const
{
    return hand ? hand->original : std::nullopt;
}

void LevellingPoint::setPoint(const levelling::Point& newPoint, const PointHandPointer& newHand)
{
    point = newPoint;
    hand = newHand;
    notify();
}

void LevellingPoint::setResult(const std::optional<Result>& adjusted)
{
    result = adjusted;
    notify();
}

void LevellingPoint::setPolarResult(const tacheometry::Position& computed)
{
    polar = computed;
    notify();
}

tacheometry::Position LevellingPoint::getPosition() const
{
    tacheometry::Position position = polar;
    if (point.hasPlan()) {
        position.x = point.x;
        position.y = point.y;
    }
    if (point.fixed || (point.hasPlan() && point.height))
        position.height = point.height;
    // A benchmark has the height at which it is held, also when that is another one than it was adjusted
    // with.
    if (result && !point.fixed)
        position.height = result->height;
    return position;
}

} // namespace orvel::desk
