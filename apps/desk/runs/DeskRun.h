#pragma once

#include "apps/desk/runs/ImportRun.h"
#include "apps/desk/runs/ImportSource.h"
#include "apps/desk/runs/WorstLine.h"
#include "host/process/IProcessMonitor.h"

#include <QString>

#include <functional>
#include <memory>

namespace orvel::desk {

class Document;

/// Why a run did not do what it is for.
struct RunFailure
{
    enum class Kind {
        None,
        NoResult, ///< the network gives none
        Refused   ///< a file, or the order of the runs, is at fault
    };

    Kind kind = Kind::None;
    QString text; ///< one sentence of plain text

    /// A failure of that kind, or none if there is no text.
    static RunFailure make(Kind kind, const QString& text)
    {
        return text.isEmpty() ? RunFailure() : RunFailure{kind, text};
    }
};

/// A processing run of the desk, ready to be started.
struct DeskRun
{
    int protocolType = 0;
    /// The work, done in the run's thread.
    std::function<void(qor::IProcessMonitor&)> function;
    /// Takes over what the work gave; called in the window's thread when the run ended without interruption.
    std::function<void()> takeResults;
    /// Takes back what the work changed; called in the window's thread when the run was interrupted.
    std::function<void()> discardResults;
    /// The run will be waited for without processing events: it must not wait for the window's thread any
    /// more. Called in that thread.
    std::function<void()> letGo;
    /// When the run is refused, the protocol of the run before it stays.
    bool keepsProtocol = false;
    // To be read after the run.
    std::shared_ptr<WorstLine> worst = std::make_shared<WorstLine>();
    std::shared_ptr<RunFailure> failure = std::make_shared<RunFailure>();
};

/// Makes runs on the document as it is at this moment. The document outlives them.
namespace runs {

/// Import of networks from files, which all have a template or none has. The project that it makes gets the
/// name, and has no file yet; with an empty name it is still the project that it was, with another network.
/// If one of the files gives no network, nothing changes.
///
/// @param sigma  of the sections of levels' files; else the document's levelling class sets it
DeskRun makeImport(Document& document, const std::vector<ImportSource>& sources, ImportMode mode,
                   const QString& projectName, const std::optional<SectionSigma>& sigma = std::nullopt);
/// An import of files that give no network, as findRefusal has found: it says so, and changes nothing.
DeskRun makeRefusedImport(const std::vector<ImportSource>& sources, const ImportRefusal& refusal);
/// Reads the files before there are questions, and tells of the first that gives no network. What is no
/// regular file is read by the import only.
std::optional<ImportRefusal> findRefusal(const Document& document, const std::vector<ImportSource>& sources);
DeskRun makeCompile(const Document& document);
DeskRun makeAdjust(Document& document);
DeskRun makeL1Analysis(const Document& document);
/// Tracing of the lines.
DeskRun makeChains(const Document& document);
/// Analysis of the given heights.
DeskRun makeFixedPoints(const Document& document);
DeskRun makeTacheometry(Document& document);
/// Export in the format that the file's suffix names, see ExportFormats; for an unknown one a run that says
/// so.
DeskRun makeExport(const Document& document, const QString& filePath);
/// Export of the plan, points with coordinates and sections between them, as GeoJSON or as a DXF drawing.
DeskRun makeGeoJsonExport(const Document& document, const QString& filePath);
DeskRun makeDxfExport(const Document& document, const QString& filePath);
/// Export of the adjusted heights, and of coordinates where there are some, as CSV.
DeskRun makeHeightExport(const Document& document, const QString& filePath);
/// Export of the network as a gama-local file.
DeskRun makeNetworkExport(const Document& document, const QString& filePath);
/// An export that does nothing but tell why, in a sentence of plain text.
DeskRun makeRefusedExport(const QString& failure);

} // namespace runs

} // namespace orvel::desk
