#include "apps/desk/print/ReportPicture.h"

#include "apps/desk/document/Document.h"
#include "apps/desk/picture/NetworkPicture.h"
#include "apps/desk/picture/PictureFile.h"
#include "host/process/BesideWindow.h"

namespace orvel::desk {

QByteArray ReportPicture::draw()
{
    if (document.isEmpty())
        return {};
    // What is done beside the window lets timers come, and they may bring another network.
    for (picture::PlanGraph newGraph = picture::PlanGraph::of(document); !layout || !(newGraph == graph);
         newGraph = picture::PlanGraph::of(document)) {
        std::optional<picture::Layout> found;
        performBesideWindow([&] { found = picture::layOut(newGraph, [] { return false; }); });
        graph = std::move(newGraph);
        layout = std::move(found);
        ++layoutCount;
    }
    if (document.isEmpty())
        return {};
    const picture::NetworkPicture drawn = picture::NetworkPicture::make(document, *layout);
    QByteArray svg;
    performBesideWindow([&] { svg = picture::renderSvgFile(drawn); });
    return svg;
}

} // namespace orvel::desk
