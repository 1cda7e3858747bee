#include "Orvel/integration/OrvelGUIExtension.h"

#include "Orvel/html/HtmlOutput.h"
#include "Orvel/integration/ExceptionCatcher.h"
#include "Orvel/integration/ProjectProtocol.h"
#include "Orvel/integration/ProtocolTemplate.h"
#include "Orvel/store/COrvel.h"
#include "host/app/Application.h"
#include "host/files/QtFile.h"
#include "host/model/CModelElement.h"
#include "host/window/ProjectWindow.h"

#include <QDesktopServices>
#include <QUrl>

namespace {

QString makePageFileName()
{
    return Application::getTmpFileName(QStringLiteral("protocol_%1.html"));
}

void writePage(const QString& path, const QString& html)
{
    QtFile file(path);
    file.open(QIODevice::WriteOnly);
    orvel::HtmlOutput output(*file.device());
    output << html;
    output.flush();
    file.close();
}

void openInBrowser(const QString& path)
{
    QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

} // namespace

OrvelGUIExtension::OrvelGUIExtension(ProjectWindow* projectWindow, QObject* parent)
    : ProjectWindowGUIExtension(projectWindow, parent)
{}

OrvelGUIExtension* OrvelGUIExtension::find(const ProjectGUI& gui)
{
    for (GUIExtension* extension : gui.getExtensions(kOrvelItemType)) {
        if (auto* viewer = dynamic_cast<OrvelGUIExtension*>(extension))
            return viewer;
    }
    return nullptr;
}

COrvel* OrvelGUIExtension::getOrvel() const
{
    return orvel::findProjectProtocol(getModel());
}

void OrvelGUIExtension::showItemOrvel(CModelElement* pEl)
{
    COrvel* protocol = getOrvel();
    if (!protocol || !pEl)
        return;
    orvel::copyProtocolTemplate();
    // Only the text decides whether there is a page to show.
    QString html;
    protocol->CreateItemHtml(pEl->getId(), html);
    if (html.isEmpty())
        return;
    const QString path = makePageFileName();

    orvel::ExceptionCatcher catcher;
    catcher.addErrorHandler([this](const QString& message) { Application::warning(message, this); });
    catcher.run([&] {
        writePage(path, html);
        openInBrowser(path);
    });
}

// A slot that shows something is not const, whatever it touches.
// NOLINTNEXTLINE(readability-make-member-function-const)
void OrvelGUIExtension::showOrvel(int protocolType)
{
    COrvel* protocol = getOrvel();
    if (!protocol)
        return;
    orvel::copyProtocolTemplate();
    const QString path = makePageFileName();
    if (!protocol->CreateProtocolFile(protocolType, path))
        return;
    Application::instance()->registerTmpFile(path);
    openInBrowser(path);
}
