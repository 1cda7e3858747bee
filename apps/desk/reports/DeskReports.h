#pragma once

#include "apps/desk/reports/ReportContent.h"
#include "apps/desk/reports/ReportInput.h"

#include <QByteArray>
#include <QString>

#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace orvel::desk {

class Document;

/// The reports of a project.
namespace deskreports {

/// A kind of report: all that menu, pages, recorder, command line and window know of it.
struct Report
{
    int type = 0;         ///< stands in links to the report
    int protocolType = 0; ///< the run whose page offers the report
    bool needsResults = false;
    bool hasPicture = false; ///< of the network, on sheets and in files
    QString name;            ///< on the command line
    const char* internalName = "";
    QString title; ///< in the language that is installed
    QString pluralTitle;
    ReportContent (*make)(const ReportInput& input) = nullptr; ///< in any thread; may take long
};

/// All reports, in the order of the menu.
std::vector<Report> getReports();

std::optional<Report> find(int type);
std::optional<Report> findByName(const QString& name);

/// The types of the reports that the page of each protocol type offers.
std::map<int, std::vector<int>> getTypesByProtocol();

/// Draws the network as reports take it, SVG; in the thread of the document.
using PictureMaker = std::function<QByteArray()>;

/// Collects what a report of today is made of, in the thread of the document; what it gives makes the report,
/// in any thread.
///
/// @param drawPicture  for reports that have a picture; may be empty
std::function<ReportContent()> prepare(const Document& document, const Report& report,
                                       const PictureMaker& drawPicture);

/// Has the project's generator make them without a picture, and the pages offer them.
void registerReports(Document& document);
/// Has the generator put the picture into the reports that have one.
void registerPictures(Document& document, const PictureMaker& drawPicture);

} // namespace deskreports

} // namespace orvel::desk
