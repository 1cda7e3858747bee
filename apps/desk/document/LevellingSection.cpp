#include "apps/desk/document/LevellingSection.h"

#include "apps/desk/document/ArchiveValues.h"
#include "apps/desk/document/DeskTypes.h"

namespace orvel::desk {

LevellingSection::LevellingSection(LONGID sectionId, const levelling::Section& networkSection,
                                   const QString& sectionName)
    : id(sectionId)
    , name(sectionName)
    , section(networkSection)
{}

LONGID LevellingSection::getId() const
{
    return id;
}

qint64 LevellingSection::getType() const
{
    return kSectionItemType;
}

QString LevellingSection::getName() const
{
    return name;
}

void LevellingSection::serialize(CQtArchive& archive)
{
    serializeValue(archive, id);
    serializeValue(archive, name);
    serializeValue(archive, section.from);
    serializeValue(archive, section.to);
    serializeValue(archive, section.difference);
    serializeValue(archive, section.distance);
    serializeValue(archive, section.stdev);
    serializeValue(archive, section.sigma);
    serializeValue(archive, section.line);
    std::optional<double> residual;
    std::optional<double> normalisedResidual;
    if (result) {
        residual = result->residual;
        normalisedResidual = result->normalisedResidual;
    }
    serializeValue(archive, residual);
    serializeValue(archive, normalisedResidual);
    if (archive.isSaving())
        return;
    if (residual)
        result = Result{*residual, normalisedResidual, {}, {}, {}};
    else
        result.reset();
}

void LevellingSection::serializeAddition(CQtArchive& archive)
{
    Result added = result ? *result : Result();
    serializeValue(archive, added.redundancy);
    serializeValue(archive, added.grossError);
    serializeValue(archive, added.detectableError);
    if (result)
        result = added;
}

void LevellingSection::serializeFieldData(CQtArchive& archive)
{
    serializeValue(archive, section.stations);
    serializeValue(archive, section.readingDifference);
    serializeValue(archive, section.source);
    serializeValue(archive, section.date);
    serializeValue(archive, section.note);
}

std::optional<levelling::Section> LevellingSection::getOriginal() const
{
    return hand ? hand->original : std::nullopt;
}

void LevellingSection::setSection(const levelling::Section& newSection, const SectionHandPointer& newHand)
{
    section = newSection;
    hand = newHand;
}

void LevellingSection::setResult(const std::optional<Result>& adjusted)
{
    result = adjusted;
}

} // namespace orvel::desk
