#pragma once

#include "apps/desk/document/HandState.h"
#include "host/model/IItemManager.h"

#include <optional>

class CQtArchive;

namespace orvel::desk {

/// A measured section as an object of the project's item manager.
class LevellingSection : public tervo::IItem
{
public:
    /// What the adjustment gave.
    struct Result
    {
        double residual = 0.0;                    ///< adjusted - observed, mm
        std::optional<double> normalisedResidual; ///< as it is tested; none if nothing checks the section
        std::optional<double> redundancy;         ///< share of a gross error that the residual shows
        std::optional<double> grossError;         ///< that would explain the residual best, mm
        std::optional<double> detectableError;    ///< the least one that the test finds, mm
    };

    /// An empty section, to be loaded.
    LevellingSection() = default;
    LevellingSection(LONGID sectionId, const levelling::Section& networkSection, const QString& sectionName);

    LONGID getId() const override;
    qint64 getType() const override;
    QString getName() const override;

    /// Saves or loads the id, the name, the section as the network has it, and the result.
    void serialize(CQtArchive& archive);
    /// Saves or loads what the second version of the project file added.
    void serializeAddition(CQtArchive& archive);
    /// Saves or loads what the third version of the project file added.
    void serializeFieldData(CQtArchive& archive);

    /// Its ends are indices of the project's points.
    const levelling::Section& getSection() const { return section; }
    /// Switched off by hand: no run knows of it.
    bool isOff() const { return hand && hand->isOff; }
    QString getOffReason() const { return hand ? hand->offReason : QString(); }
    bool isAddedByHand() const { return hand && hand->isAdded; }
    /// As it was imported, if it was changed by hand; its ends are not kept.
    std::optional<levelling::Section> getOriginal() const;
    /// What was done to it by hand; null for nothing.
    const SectionHandPointer& getHand() const { return hand; }
    /// Puts another measurement into the place of this one.
    void setSection(const levelling::Section& newSection, const SectionHandPointer& newHand);
    const std::optional<Result>& getResult() const { return result; }
    void setResult(const std::optional<Result>& adjusted);

private:
    LONGID id = 0;
    QString name;
    levelling::Section section;
    std::optional<Result> result;
    SectionHandPointer hand;
};

} // namespace orvel::desk
