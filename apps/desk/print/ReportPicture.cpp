#include "apps/desk/print/ReportPicture.h"

#include "apps/desk/document/Document.h"
#include "apps/desk/picture/NetworkPicture.h"
#include "apps/desk/picture/PictureFile.h"
#include "host/process/BesideWindow.h"

namespace orvel::desk {

namespace reportpicture {

QByteArray make(const Document& document)
{
    if (document.isEmpty())
        return {};
    const picture::PlanGraph graph = picture::PlanGraph::of(document);
    std::optional<picture::Layout> layout;
    performBesideWindow([&] { layout = picture::layOut(graph, [] { return false; }); });
    const picture::NetworkPicture drawn = picture::NetworkPicture::make(document, *layout);
    QByteArray svg;
    performBesideWindow([&] { svg = picture::renderSvgFile(drawn); });
    return svg;
}

} // namespace reportpicture

} // namespace orvel::desk
