#pragma once

#include "apps/desk/picture/Layout.h"

#include <QByteArray>

#include <optional>

namespace orvel::desk {

class Document;

/// The picture of the network for reports. The places of the points are sought once for each network.
class ReportPicture
{
public:
    /// The document outlives the picture.
    explicit ReportPicture(const Document& projectDocument) : document(projectDocument) {}

    /// The picture as SVG; empty if there is no point. What takes long in it is done beside the window; see
    /// performBesideWindow().
    QByteArray draw();
    /// How often places have been sought.
    int getLayoutCount() const { return layoutCount; }

private:
    const Document& document;
    picture::PlanGraph graph; ///< that places were last sought for
    std::optional<picture::Layout> layout;
    int layoutCount = 0;
};

} // namespace orvel::desk
