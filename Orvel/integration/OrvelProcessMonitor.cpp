#include "Orvel/integration/OrvelProcessMonitor.h"

#include "Orvel/integration/OrvelGUIExtension.h"
#include "Orvel/integration/ProjectProtocol.h"
#include "Orvel/store/COrvel.h"
#include "Orvel/store/ProtocolTypes.h"
#include "host/app/Application.h"
#include "host/model/CProjectModel.h"
#include "host/process/BesideWindow.h"
#include "host/window/ProjectWindow.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QPointer>
#include <QScopeGuard>
#include <QTextBrowser>
#include <QTextDocument>
#include <QTextStream>
#include <QUrlQuery>

#include <utility>

namespace {

/// The id that a link names; 0 when it names none.
LONGID getLinkedItem(const QUrl& url)
{
    // toLongLong gives 0 for what is not a number, and no item has the id 0.
    return url.hasQuery() ? QUrlQuery(url).queryItemValue(QStringLiteral("id")).toLongLong() : 0;
}

} // namespace

OrvelProcessMonitor::OrvelProcessMonitor(ProjectWindow* window, QWidget* parent, Qt::WindowFlags flags)
    : CProcessMonitor(parent, flags)
    , model(window->getModel())
    , protocolType(enums::UndefProtocol)
    , useSystemProtocolViewer(false)
{
    connect(
        getJournal(), &QTextBrowser::anchorClicked, getJournal(),
        [this](const QUrl& url) { followJournalLink(url); }, Qt::DirectConnection);
    setProject(model->getProject());
    setLinkSource([this] {
        const COrvel* protocol = getOrvel();
        return protocol ? protocol->GetItemLinks() : nullptr;
    });
    applyJournalStyle();
    connectViewer(*window);
}

OrvelProcessMonitor::~OrvelProcessMonitor()
{
    shutdown();
}

void OrvelProcessMonitor::setOnItemClicked(std::function<void(LONGID)> handler)
{
    onItemClicked = std::move(handler);
}

void OrvelProcessMonitor::setProtocolType(int type)
{
    protocolType = type;
}

int OrvelProcessMonitor::getProtocolType() const
{
    return protocolType;
}

void OrvelProcessMonitor::setUseSystemProtocolViewer(bool use)
{
    useSystemProtocolViewer = use;
}

COrvel* OrvelProcessMonitor::getOrvel() const
{
    return orvel::findProjectProtocol(model);
}

void OrvelProcessMonitor::startProtocolStage(std::wstring name)
{
    getOrvel()->startProtocolStage(QString::fromStdWString(name), protocolType);
}

void OrvelProcessMonitor::finishProtocolStage()
{
    getOrvel()->finishProtocolStage();
}

std::wstring OrvelProcessMonitor::getItemLink(LONGID id, const std::wstring& text)
{
    const COrvel* protocol = getOrvel();
    return protocol ? protocol->GetItemLink(id, text) : CProcessMonitor::getItemLink(id, text);
}

void OrvelProcessMonitor::writeError(const QString& text, const QString& detail)
{
    CProcessMonitor::writeError(text, detail);
    addOrvelMessage(text, COVMessage::Error);
}

void OrvelProcessMonitor::writeWarning(const QString& text, const QString& detail)
{
    CProcessMonitor::writeWarning(text, detail);
    addOrvelMessage(text, COVMessage::Warning);
}

void OrvelProcessMonitor::writeMessage(const QString& text, const QString& detail)
{
    CProcessMonitor::writeMessage(text, detail);
    addOrvelMessage(text, COVMessage::Message);
}

void OrvelProcessMonitor::write(const QString& text, const QString& detail)
{
    CProcessMonitor::write(text, detail);
    addOrvelMessage(text, COVMessage::Service);
}

void OrvelProcessMonitor::onStarted()
{
    // The base dialog's start hook is left out on purpose.
    performOnProtocol(&COrvel::ProtocolBegin);
}

void OrvelProcessMonitor::onThreadFinished()
{
    const QPointer<OrvelProcessMonitor> self = this;
    // An interrupted run leaves its protocol without the closing lines.
    if (!getInterrupted())
        performOnProtocol(&COrvel::ProtocolEnd);
    else
        CProcessMonitor::write(
            QCoreApplication::translate("Orvel", "Строки остановленной обработки в протокол не записаны. Его "
                                                 "страница покажет прежнюю обработку, если она была."),
            QString());
    if (!self.isNull())
        CProcessMonitor::onThreadFinished();
}

/// Begins or ends the run in the protocol. Its data file is read and written beside the windows.
void OrvelProcessMonitor::performOnProtocol(void (COrvel::*step)(int)) const
{
    COrvel& protocol = *getOrvel();
    protocol.setLongWork(performBesideWindow);
    const auto atEnd = qScopeGuard([&protocol] { protocol.setLongWork({}); });
    (protocol.*step)(protocolType);
}

void OrvelProcessMonitor::onProtocolPushed()
{
    if (useSystemProtocolViewer)
        CProcessMonitor::onProtocolPushed();
    else
        Q_EMIT showOrvel(protocolType);
}

void OrvelProcessMonitor::addOrvelMessage(const QString& text, COVMessage::MessageType kind) const
{
    if (!text.isEmpty())
        getOrvel()->AddMessageRaw(text, protocolType, kind);
}

void OrvelProcessMonitor::applyJournalStyle()
{
    const QDir folder(Application::getTempFolder() + QStringLiteral("/protocol_file"));
    QFile file(folder.filePath(QStringLiteral("monitor.css")));
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
        return;
    const QString style = QTextStream(&file).readAll();
    if (!style.isEmpty())
        getJournal()->document()->setDefaultStyleSheet(style);
}

void OrvelProcessMonitor::connectViewer(const ProjectWindow& window) const
{
    if (OrvelGUIExtension* viewer = OrvelGUIExtension::find(window))
        connect(this, &OrvelProcessMonitor::showOrvel, viewer, &OrvelGUIExtension::showOrvel);
}

void OrvelProcessMonitor::followJournalLink(const QUrl& url) const
{
    const LONGID id = onItemClicked ? getLinkedItem(url) : 0;
    if (id == 0) {
        QDesktopServices::openUrl(url);
        return;
    }
    // A handler may set another one.
    const std::function<void(LONGID)> handler = onItemClicked;
    handler(id);
}
