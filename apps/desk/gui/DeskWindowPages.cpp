// Pages of protocols, of lines and of items, and reports.

#include "Orvel/Toolkit.h"
#include "Orvel/integration/OrvelGUIExtension.h"
#include "Orvel/store/COrvel.h"
#include "Orvel/store/SavedProtocol.h"
#include "apps/desk/Desk.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/gui/DeskWindow.h"
#include "apps/desk/gui/ItemFilterModel.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/gui/MessageBar.h"
#include "apps/desk/protocol/LinePage.h"
#include "apps/desk/protocol/ProtocolList.h"
#include "apps/desk/reports/DeskReports.h"
#include "apps/desk/reports/PageLook.h"
#include "host/app/Application.h"
#include "host/reports/ReportsGeneratorItem.h"

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
    QStringList pages;
    for (const QString& name : folder.entryList({QStringLiteral("protocol_*.html")}, QDir::Files))
        pages.append(folder.filePath(name));
    return pages;
}

} // namespace

void DeskWindow::showProtocol(int protocolType)
{
    if (document->isProtocolOutdated(protocolType)) {
        openPage(protocolType, QString());
        return;
    }
    const QString page = pages[protocolType];
    if (QFileInfo::exists(page)) {
        QDesktopServices::openUrl(QUrl::fromLocalFile(page));
        return;
    }
    OrvelGUIExtension* viewer = OrvelGUIExtension::find(*this);
    if (viewer && showPage([&] { viewer->showOrvel(protocolType); }))
        pages[protocolType] = ProtocolState::read(document->getProtocol()).pages[protocolType];
}

/// Has a page shown. One whose lines have had to be restored was made without them, and is withdrawn before a
/// browser has come to it.
bool DeskWindow::showPage(const std::function<void()>& show)
{
    if (!checkProtocol())
        return false;
    const QStringList before = listPages();
    show();
    const ProtocolKeeper::Outcome outcome = document->checkProtocol();
    if (outcome.message.isEmpty()) {
        if (const QString lack = pagelook::describeLack(); !lack.isEmpty())
            messageBar->showMessage(lack);
        return true;
    }
    for (const QString& page : listPages()) {
        if (!before.contains(page))
            QFile::remove(page);
    }
    Application::warning(outcome.message, this);
    return false;
}

/// Whether the lines of the protocols are all there.
bool DeskWindow::checkProtocol(std::optional<int> finishedRun)
{
    const ProtocolKeeper::Outcome outcome = document->checkProtocol(finishedRun);
    if (!outcome.message.isEmpty())
        Application::warning(outcome.message, this);
    return outcome.isWhole;
}

void DeskWindow::showLine(int protocolType, const QString& text)
{
    if (!isRunWorking())
        openPage(protocolType, text);
}

/// Opens the page of a protocol at the line with that text, or at its beginning, and has it say whether it is
/// out of date.
void DeskWindow::openPage(int protocolType, const QString& lineText)
{
    const QString page =
        QDir(Application::getTempFolder()).filePath(QStringLiteral("lines_%1.html").arg(protocolType));
    ExceptionCatcher catcher;
    catcher.addErrorHandler([this](const QString& message) { Application::warning(message, this); });
    catcher.run([&] {
        if (!QFileInfo::exists(pages[protocolType])) {
            bool isMade = false;
            const auto make = [&] {
                isMade = document->getProtocol().CreateProtocolFile(protocolType, page);
            };
            if (!showPage(make) || !isMade)
                return;
            pages[protocolType] = page;
        }
        const QString opened =
            linepage::write(pages[protocolType], lineText, document->isProtocolOutdated(protocolType));
        QDesktopServices::openUrl(QUrl::fromLocalFile(opened));
    });
}

void DeskWindow::showReport(int reportType)
{
    const std::optional<deskreports::Report> report = deskreports::find(reportType);
    if (report && report->needsResults && !document->hasResults()) {
        messageBar->showMessage(
            Desk::tr("Ведомости составляются по результатам. Сначала выполните уравнивание."));
        return;
    }
    const auto* generator = dynamic_cast<reports::ReportsGeneratorItem*>(
        getModel()->getFirstItem(reports::kReportsGeneratorType));
    ExceptionCatcher catcher;
    catcher.addErrorHandler([this](const QString& message) { Application::warning(message, this); });
    catcher.run([&] {
        if (!generator->showReport(reportType))
            messageBar->showMessage(
                Desk::tr("Ведомость не открылась: в системе не назначена программа для страниц "
                         "HTML, или такой ведомости нет."));
    });
}

void DeskWindow::showCurrentItemProtocol()
{
    if (getModel()->isItemMentioned(table->getCurrentItem()))
        table->showCurrentProtocol();
    else
        messageBar->showMessage(Desk::tr("О выделенном в протоколах нет строк."));
}

} // namespace orvel::desk
