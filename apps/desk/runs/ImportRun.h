#pragma once

#include "apps/desk/document/NetworkSnapshot.h"
#include "apps/desk/document/ToleranceRules.h"
#include "apps/desk/runs/ImportSource.h"
#include "host/process/IProcessMonitor.h"

#include <QString>
#include <QStringList>

#include <functional>
#include <memory>
#include <optional>

namespace orvel::desk {

class WorstLine;

/// Puts a network and a field book into the project and gives its snapshot; null if the run was stopped
/// before.
using NetworkTaker = std::function<std::shared_ptr<const NetworkSnapshot>(
    levelling::Network network, std::shared_ptr<const tacheometry::FieldBook> fieldBook)>;

/// A priori standard deviation of the sections of a level's file: sqrt(constant² + perKilometre² * length),
/// mm.
struct SectionSigma
{
    double constant = 0.0;
    double perKilometre = 0.0;
};

/// What the files of instruments do not say themselves.
struct ImportSettings
{
    /// The class sets the standard deviations if nobody has given them.
    SurveyRules rules;
    std::optional<SectionSigma> sigma;
};

/// A file that gives no network, and why, as plain text.
struct ImportRefusal
{
    QString fileName;
    QString reason;
    QStringList remarks = {}; ///< lines (HTML) about parts of a file that can be read and has no point
};

/// Reads the files, changes nothing, and tells of the first that gives no network.
///
/// @param parameters  of the network that they would be added to
std::optional<ImportRefusal> tryImport(const std::vector<ImportSource>& sources,
                                       const levelling::Parameters& parameters,
                                       const ImportSettings& settings,
                                       const std::function<bool()>& isStopped);

/// Writes the lines of an import that a file has ended.
void writeRefusal(qor::IProcessMonitor& monitor, const ImportRefusal& refusal);

/// Reads levelling networks from files, adds them in their order to a network, and has the project take it.
/// Every part of a file that was not used as it stands becomes a line that names the line number, and so does
/// what a file changes about points that are there already. A file without a template is gama-local XML or
/// that of a digital level (GSI, M5, REC_E), which its content tells.
///
/// @param base  what the files are added to; an empty one for a network of them alone
/// @param worst  gets the line farthest over its limit
/// @return why a file gave no network, as plain text; empty if all did or if the run was stopped
QString runImport(qor::IProcessMonitor& monitor, const std::vector<ImportSource>& sources,
                  const NetworkSnapshot& base, const NetworkTaker& takeNetwork,
                  const ImportSettings& settings = {}, WorstLine* worst = nullptr);

} // namespace orvel::desk
