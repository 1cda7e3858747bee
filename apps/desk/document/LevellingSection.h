#pragma once

#include "host/model/IItemManager.h"
#include "levelling/Network.h"

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
    const std::optional<Result>& getResult() const { return result; }
    void setResult(const std::optional<Result>& adjusted);

private:
    LONGID id = 0;
    QString name;
    levelling::Section section;
    std::optional<Result> result;
};

} // namespace orvel::desk
