#pragma once

#include "apps/desk/document/HandState.h"
#include "host/model/CModelElement.h"
#include "tacheometry/FieldBook.h"

#include <optional>

namespace orvel::desk {

/// A point of the levelling network as an item of the project.
class LevellingPoint : public CModelElement
{
public:
    /// What the adjustment gave.
    struct Result
    {
        double height = 0.0; ///< m
        double sigma = 0.0;  ///< mm, scaled as the network's sigma-act asks
        /// A posteriori standard deviation of unit weight of its part as a multiple of the a priori one; none
        /// if sigma is not scaled by it.
        std::optional<double> sigmaScale;
    };

    /// An empty point, to be loaded.
    LevellingPoint() = default;
    LevellingPoint(LONGID pointId, const levelling::Point& networkPoint);

    int getType() const override;
    /// Saves or loads the id, the point as the network has it, and the result.
    void serialize(CQtArchive& archive) override;
    /// Saves or loads what the second version of the project file added.
    void serializeAddition(CQtArchive& archive);
    /// Saves or loads what the third version of the project file added.
    void serializeFieldData(CQtArchive& archive);

    const levelling::Point& getPoint() const { return point; }
    bool isAddedByHand() const { return hand && hand->isAdded; }
    /// As it was imported, if it was changed by hand.
    std::optional<levelling::Point> getOriginal() const;
    /// What was done to it by hand; null for nothing.
    const PointHandPointer& getHand() const { return hand; }
    /// Gives it another part in the network; its name stays.
    void setPoint(const levelling::Point& newPoint, const PointHandPointer& newHand);
    const std::optional<Result>& getResult() const { return result; }
    void setResult(const std::optional<Result>& adjusted);
    /// What the tacheometric computation gave; empty if nothing.
    const tacheometry::Position& getPolarResult() const { return polar; }
    void setPolarResult(const tacheometry::Position& computed);
    /// Where the point is: as it is given, otherwise as it was computed; and its height as it is given to
    /// computations, adjusted or else computed.
    tacheometry::Position getPosition() const;

private:
    levelling::Point point;
    std::optional<Result> result;
    tacheometry::Position polar;
    PointHandPointer hand;
};

} // namespace orvel::desk
