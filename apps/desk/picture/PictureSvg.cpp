#include "apps/desk/picture/PictureSvg.h"

#include "apps/desk/document/Document.h"
#include "apps/desk/picture/NetworkPicture.h"
#include "apps/desk/picture/PictureFile.h"

namespace orvel::desk::picture {

QString renderSvg(const Document& document)
{
    if (document.isEmpty())
        return {};
    const std::optional<Layout> layout = layOut(PlanGraph::of(document), [] { return false; });
    const QString file = QString::fromUtf8(renderSvgFile(NetworkPicture::make(document, *layout)));
    // The page has a declaration of its own.
    return file.mid(file.indexOf(QLatin1String("<svg")));
}

} // namespace orvel::desk::picture
