#include "apps/desk/reports/ReportInput.h"

#include "apps/desk/document/Document.h"
#include "apps/desk/runs/Tolerances.h"

#include <QFileInfo>

namespace orvel::desk {

ReportInput ReportInput::gather(const Document& document, const QDate& today)
{
    ReportInput input;
    input.date = today;
    input.project = document.getProject().getName();
    input.file = QFileInfo(document.getProject().getFilePath()).fileName();
    input.rules = document.getSurveyRules();
    input.snapshot = tolerances::applyLevel(document.shareSnapshot(), input.rules.tolerances);
    for (const LevellingPoint* point : document.getPoints())
        input.points.push_back({point->getName(), point->getPoint().fixed, point->getResult()});
    for (const LevellingSection* section : document.getSections())
        input.sections.push_back({section->getId(), section->getName(), section->getSection(),
                                  section->getResult(), section->isOff(), section->getOffReason()});
    input.isOutdated = document.areResultsOutdated();
    for (const HandChange& change : document.getHandChanges())
        input.handChanges.append(handchanges::describe(change));
    return input;
}

} // namespace orvel::desk
