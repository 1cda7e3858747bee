#pragma once

#include <QString>

#include <map>
#include <vector>

namespace orvel::desk {

class Document;

/// The reports of a project, each a whole HTML document that prints well.
namespace deskreports {

/// A kind of report: all that menu, pages, recorder and window know of it.
struct Report
{
    int type = 0;         ///< stands in links to the report
    int protocolType = 0; ///< the run whose page offers the report
    bool needsResults = false;
    const char* internalName = "";
    QString title; ///< in the language that is installed
    QString pluralTitle;
    QString (*make)(const Document& document) = nullptr;
};

/// All reports, in the order of the menu.
std::vector<Report> getReports();

/// The types of the reports that the page of each protocol type offers.
std::map<int, std::vector<int>> getTypesByProtocol();

/// Has the project's generator make them, and the pages offer them.
void registerReports(Document& document);

} // namespace deskreports

} // namespace orvel::desk
