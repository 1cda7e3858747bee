#pragma once

#include <QString>

namespace orvel::desk {

class Document;

/// The reports of a project, each a whole HTML document that prints well.
namespace deskreports {

/// Heights of all points with their standard deviations.
QString makeHeightCatalogue(const Document& document);
/// Measured height differences with their residuals.
QString makeResidualList(const Document& document);

/// Has the project's generator make them, and the page of the adjustment offer them.
void registerReports(Document& document);

} // namespace deskreports

} // namespace orvel::desk
