#pragma once

#include "apps/desk/document/LevellingClass.h"
#include "apps/desk/runs/FileLines.h"
#include "levelling/LevelBook.h"

#include <QHash>

namespace orvel::desk {

/// Writes what an import tells of the lines that a level has observed.
class LevelLines
{
public:
    /// All outlive this object.
    ///
    /// @param fileNetwork  what the file has given
    /// @param pointIndices  of the points of the network that it has entered, by their names
    /// @param firstSection  index that the first section of the file has there
    LevelLines(FileLines& fileLines, const levelling::LevelBookFindings& findings,
               const levelling::Network& fileNetwork, const QHash<QString, int>& pointIndices,
               int firstSection);

    /// Two values that should agree and do not.
    void writeCheck(const levelling::LevelCheck& check);
    /// Every line, and what is not used. False if the run was stopped.
    bool writeSummary(LevellingClass levellingClass);

private:
    void writeLine(std::size_t index, LevellingClass levellingClass);
    void writeComparison();
    void writeUnused();
    /// Name of a point, as a link if it is one of the network.
    QString point(const QString& name);
    /// Where in the file and in the line it is.
    QString place(const levelling::LevelCheck& check);

    FileLines& lines;
    const levelling::LevelBookFindings& result;
    const levelling::Network& network;
    const QHash<QString, int>& indexOfPoint;
    const int sectionOffset;
};

} // namespace orvel::desk
