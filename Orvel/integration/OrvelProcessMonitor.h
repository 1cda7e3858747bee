#pragma once

#include "Orvel/orvel_export.h"
#include "Orvel/store/COVMessage.h"
#include "host/model/LongId.h"
#include "host/process/CProcessMonitor.h"

#include <functional>
#include <string>

class COrvel;
class CProjectModel;
class ProjectWindow;
class QUrl;

/// The progress window of a run that keeps a protocol: what the run writes is shown in the journal and filed
/// in the project's protocol under the monitor's protocol type.
class ORVEL_EXPORT OrvelProcessMonitor : public CProcessMonitor
{
    Q_OBJECT

public:
    /// A monitor for runs on the project of `window`. The project's model must hold a protocol.
    explicit OrvelProcessMonitor(ProjectWindow* window, QWidget* parent = nullptr,
                                 Qt::WindowFlags flags = {});
    ~OrvelProcessMonitor() override;

    /// Called with the id of an item whose link in the journal is clicked. Without a handler such links are
    /// opened by the system.
    void setOnItemClicked(std::function<void(LONGID)> handler);

    /// Set it before the run starts: lines and the end of the run go to the type of that moment.
    void setProtocolType(int type);
    int getProtocolType() const; ///< The type under which lines are filed; `UndefProtocol` at first.

    /// With true the protocol button keeps the base dialog's behaviour.
    void setUseSystemProtocolViewer(bool use);

    /// The project's protocol; null when the model has none.
    COrvel* getOrvel() const;

    void startProtocolStage(std::wstring name) override;
    void finishProtocolStage() override;
    std::wstring getItemLink(LONGID id, const std::wstring& text) override;

    using CProcessMonitor::write;
    using CProcessMonitor::writeError;
    using CProcessMonitor::writeMessage;
    using CProcessMonitor::writeWarning;

Q_SIGNALS:
    /// The user wants to see the protocol of the monitor's type.
    void showOrvel(int protocolType);

protected:
    void writeError(const QString& text, const QString& detail) override;
    void writeWarning(const QString& text, const QString& detail) override;
    void writeMessage(const QString& text, const QString& detail) override;
    void write(const QString& text, const QString& detail) override;
    void onStarted() override;
    void onThreadFinished() override;

protected Q_SLOTS:
    void onProtocolPushed() override;

private:
    void addOrvelMessage(const QString& text, COVMessage::MessageType kind) const;
    void performOnProtocol(void (COrvel::*step)(int)) const;
    void applyJournalStyle();
    void connectViewer(const ProjectWindow& window) const;
    void followJournalLink(const QUrl& url) const;

    CProjectModel* model;
    int protocolType;
    bool useSystemProtocolViewer;
    std::function<void(LONGID)> onItemClicked;
};
