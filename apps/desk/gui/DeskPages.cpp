#include "apps/desk/gui/DeskPages.h"

#include "Orvel/Toolkit.h"
#include "Orvel/integration/OrvelGUIExtension.h"
#include "Orvel/store/COrvel.h"
#include "Orvel/store/SavedProtocol.h"
#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/protocol/LinePage.h"
#include "apps/desk/reports/DeskReports.h"
#include "apps/desk/reports/PageLook.h"
#include "host/app/Application.h"
#include "host/reports/ReportsGeneratorItem.h"
#include "host/window/ProjectWindow.h"

#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUrl>

namespace orvel::desk {

namespace {

/// The pages that the viewer has made.
QStringList listPages()
{
    const QDir folder(Application::getTempFolder());
    QStringList paths;
    for (const QString& name : folder.entryList({QStringLiteral("protocol_*.html")}, QDir::Files))
        paths.append(folder.filePath(name));
    return paths;
}

} // namespace

DeskPages::DeskPages(Document& projectDocument, ProjectWindow& projectWindow)
    : QObject(&projectWindow)
    , document(projectDocument)
    , window(projectWindow)
{
    connect(&document, &Document::summaryChanged, this, [this] { pages.clear(); });
}

void DeskPages::showProtocol(int protocolType)
{
    if (document.isProtocolOutdated(protocolType)) {
        showLine(protocolType, QString());
        return;
    }
    const QString page = pages[protocolType];
    if (QFileInfo::exists(page)) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(page));
        return;
    }
    OrvelGUIExtension* viewer = OrvelGUIExtension::find(window);
    if (viewer && showPage([&] { viewer->showOrvel(protocolType); }))
        pages[protocolType] = ProtocolState::read(document.getProtocol()).pages[protocolType];
}

bool DeskPages::showPage(const std::function<void()>& show)
{
    if (!check())
        return false;
    const QStringList before = listPages();
    show();
    const ProtocolKeeper::Outcome outcome = document.checkProtocol();
    if (outcome.message.isEmpty()) {
        if (const QString lack = pagelook::describeLack(); !lack.isEmpty())
            Q_EMIT told(lack);
        return true;
    }
    for (const QString& page : listPages()) {
        if (!before.contains(page))
            QFile::remove(page);
    }
    Application::warning(outcome.message, &window);
    return false;
}

bool DeskPages::check(std::optional<int> finishedRun)
{
    const ProtocolKeeper::Outcome outcome = document.checkProtocol(finishedRun);
    if (!outcome.message.isEmpty())
        Application::warning(outcome.message, &window);
    return outcome.isWhole;
}

void DeskPages::showLine(int protocolType, const QString& text)
{
    const QString page =
        QDir(Application::getTempFolder()).filePath(QStringLiteral("lines_%1.html").arg(protocolType));
    ExceptionCatcher catcher;
    catcher.addErrorHandler([this](const QString& message) { Application::warning(message, &window); });
    catcher.run([&] {
        if (!QFileInfo::exists(pages[protocolType])) {
            bool isMade = false;
            const auto make = [&] { isMade = document.getProtocol().CreateProtocolFile(protocolType, page); };
            if (!showPage(make) || !isMade)
                return;
            pages[protocolType] = page;
        }
        const QString opened =
            linepage::write(pages[protocolType], text, document.isProtocolOutdated(protocolType));
        QDesktopServices::openUrl(QUrl::fromLocalFile(opened));
    });
}

void DeskPages::showReport(int reportType)
{
    const std::optional<deskreports::Report> report = deskreports::find(reportType);
    if (report && report->needsResults && !document.hasResults()) {
        Q_EMIT told(Desk::tr("Ведомости составляются по результатам. Сначала выполните уравнивание."));
        return;
    }
    const auto* generator = dynamic_cast<reports::ReportsGeneratorItem*>(
        window.getModel()->getFirstItem(reports::kReportsGeneratorType));
    ExceptionCatcher catcher;
    catcher.addErrorHandler([this](const QString& message) { Application::warning(message, &window); });
    catcher.run([&] {
        if (!generator->showReport(reportType))
            Q_EMIT told(Desk::tr("Ведомость не открылась: в системе не назначена программа для страниц "
                                 "HTML, или такой ведомости нет."));
    });
}

} // namespace orvel::desk
