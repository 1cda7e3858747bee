#pragma once

#include "apps/desk/document/ToleranceRules.h"
#include "apps/desk/runs/FileLines.h"
#include "levelling/LevelBook.h"
#include "levelling/NetworkMerge.h"

#include <QHash>

namespace orvel::desk {

/// Writes what an import tells of the lines that a level has observed.
class LevelLines
{
public:
    /// All outlive this object.
    ///
    /// @param pointIndices  of the points of the network that the file has entered, by their names
    /// @param entered  places of the file's points and sections in that network
    LevelLines(FileLines& fileLines, const levelling::LevelBookFindings& findings,
               const QHash<QString, int>& pointIndices, const levelling::NetworkAddition& entered);

    /// Two values that should agree and do not.
    void writeCheck(const levelling::LevelCheck& check);
    /// Every line, and what is not used. False if the run was stopped.
    bool writeSummary(const SurveyRules& rules);

private:
    void writeLine(std::size_t index, const SurveyRules& rules);
    void writeComparison();
    void writeUnused();
    /// Name of a point, as a link if it is one of the network.
    QString point(const QString& name);
    /// Where in the file and in the line it is.
    QString place(const levelling::LevelCheck& check);

    FileLines& lines;
    const levelling::LevelBookFindings& result;
    const QHash<QString, int>& indexOfPoint;
    const levelling::NetworkAddition& addition;
};

} // namespace orvel::desk
