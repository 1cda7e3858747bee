#pragma once

#include "host/host_export.h"
#include "host/model/IItemLinks.h"
#include "host/process/IProcessMonitor.h"
#include "host/process/ProgressImplementation.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <functional>
#include <map>
#include <memory>
#include <string>

class CProject;
class JournalPanel;
class ProjectRun;
class RunSession;
class QLabel;
class QLayout;
class QMessageBox;
class QProgressBar;
class QPushButton;
class QTextBrowser;
enum class LineKind;

/// The progress window: shows one processing run with its journal, stage and percentage, lets the user
/// pause and stop it, and leads to its protocol.
///
/// start() runs a function in a thread of its own. The function never gets the window: it gets an
/// OrderedMonitorProxy, whose calls arrive here in the GUI thread, in order and in batches (RunSession). So
/// every operation of this class, the overrides of derived classes included, runs in the GUI thread only.
///
/// A derived class that overrides one of the QString writers hides the wide ones of the same name; it
/// brings them back by `using CProcessMonitor::writeError;` and so on.
///
/// Destroying the window during a run is safe: the run is stopped and waited for, what it had still to
/// show is dropped. Overrides of a derived class must not be needed by then, so a derived class whose
/// overrides use its own members calls shutdown() first thing in its destructor.
class HOST_EXPORT CProcessMonitor : public QDialog,
                                    public qor::IProcessMonitor,
                                    public qor::ProgressImplementation
{
    Q_OBJECT

protected:
    // These stand first in the class: derived classes of other modules rely on the order.

    /// Shows an error line. @p text and @p detail are HTML; the detail, if any, stands behind the text.
    virtual void writeError(const QString& text, const QString& detail);
    /// Shows a warning line.
    virtual void writeWarning(const QString& text, const QString& detail);
    /// Shows a message line.
    virtual void writeMessage(const QString& text, const QString& detail);
    /// Shows a service line.
    virtual void write(const QString& text, const QString& detail);
    /// Whether the latest run was stopped by the user or ended by an exception.
    virtual bool getInterrupted() const;
    /// A run is about to start; the journal is empty already. The base writes the time as a service line.
    virtual void onStarted();
    /// The run's thread is over and its last line is delivered; the journal may have lines still to show.
    /// The base says in the stage line how it ended.
    virtual void onThreadFinished();
    /// The protocol button was pressed. The base writes the journal into a temporary page and opens it.
    Q_SLOT virtual void onProtocolPushed();

public:
    /// A run; it gets its monitor in its own thread.
    using RunFunction = std::function<void(qor::IProcessMonitor&)>;
    /// Gives the links of all items as they are now; null if it can't. Called in the GUI thread.
    using LinkSource = std::function<qor::ItemLinksPtr()>;

    /// When the user is asked before a run is stopped.
    enum class StopQuestion {
        OnDisplay, ///< when the window is visible on a display that somebody can look at
        Always,    ///< on every platform
        Never
    };

    /// A window in which no run works; @p parent owns it.
    explicit CProcessMonitor(QWidget* parent = nullptr, Qt::WindowFlags flags = {});
    /// Stops a run that still works and waits for it; see the class comment.
    ~CProcessMonitor() override;

    /// The journal. Its links are not followed by itself; connect to its anchorClicked(). Lines that nobody
    /// has seen yet are brought into its document when it is asked for, many of them bit by bit.
    QTextBrowser* getJournal() const;

    /// Empties the journal, calls onStarted() and runs @p function in a thread of its own. An exception
    /// that leaves the function becomes an error line and ends the run as an interrupted one.
    /// What onStarted() throws, or std::system_error when there can be no thread, is passed on; another run
    /// can be started then. One run at a time: while one works the call is refused with a warning on stderr,
    /// and while another monitor's run works on the same project with a word to the user.
    void start(RunFunction function);
    /// True from start() until the run's thread is joined and its last line delivered.
    bool isRunning() const;
    /// Processes events until the run has finished. For programs without a window and for tests.
    /// @return false when the event loop was left while the run still worked
    bool waitForFinished();
    /// Tells the run to stop, without a question to the user. It ends at its next look at
    /// isProcessRunning(); runFinished() tells when.
    void stop();
    /// Pauses the run or lets it go on. A paused run waits at its next checkpoint.
    void setPaused(bool paused);
    bool isPaused() const; ///< Whether the run is to wait at its next checkpoint.

    /// When the user is asked; StopQuestion::OnDisplay at first.
    void setStopQuestion(StopQuestion question);

    void setPercentage(int percentage) override;
    void finish() override;
    void startDetailedStage() override;

    void startStage(std::wstring name) override;
    void finishCurrentStage() override;
    /// The base shows it like a stage of startStage().
    void startProtocolStage(std::wstring name) override;
    void finishProtocolStage() override;
    bool isProcessRunning() const override;
    void setSilent(bool silent) override;
    bool getSilent() const override; ///< Whether lines are not shown.
    /// Nothing to wait for in the GUI thread; the run's own checkpoints are the proxy's.
    void pause() override;
    void writeError(std::wstring text) override; ///< Shows an error line, HTML.
    /// Shows an error line with a detail, both HTML.
    void writeError(std::wstring text, std::wstring detail) override;
    void writeWarning(std::wstring text) override; ///< Shows a warning line, HTML.
    /// Shows a warning line with a detail, both HTML.
    void writeWarning(std::wstring text, std::wstring detail) override;
    void writeMessage(std::wstring text) override; ///< Shows a message line, HTML.
    /// Shows a message line with a detail, both HTML.
    void writeMessage(std::wstring text, std::wstring detail) override;
    void write(std::wstring text) override;
    /// Shows a service line with a detail, both HTML.
    void write(std::wstring text, std::wstring detail) override;
    /// Whether a run, or somebody else since its start, wrote an error.
    bool wasErrors() const override;
    /// The base knows no links and returns @p text.
    std::wstring getItemLink(LONGID id, const std::wstring& text) override;

    /// While a run works: asks, stops the run and closes the window when the run is over.
    void reject() override;

Q_SIGNALS:
    /// The run's thread is over and onThreadFinished() has been called.
    void runFinished();

protected:
    /// Names the project that the runs work on. Without one the monitor knows of no other's runs.
    void setProject(const CProject* runProject);
    /// Tells from where a run may take the links of all items at once, so that it needs not wait for this
    /// window at each. They must be those of getItemLink(): a class that overrides it gives its own source,
    /// or an empty one.
    void setLinkSource(LinkSource source);
    /// Stops a run that still works and waits for it. Nothing more is delivered and no virtual function is
    /// called, neither now nor later; runFinished() is not emitted for that run.
    void shutdown();

    /// Which of the errors, or where there are none of the warnings, the journal turns to when the run is
    /// over: the one with this text, the first one for an empty text. The base knows of none.
    virtual QString getWorstLine() const;

    void closeEvent(QCloseEvent* event) override; ///< As reject().

private:
    void createWidgets();
    bool declineDuringRun();
    void pushProtocol();
    QLayout* createButtonRow();
    QPushButton* createButton(const QString& text);
    void prepareRun();
    void giveUpStart();
    void writeLine(LineKind kind, const QString& text, const QString& detail);
    void showDelivered(bool isBusy);
    void finishRun();
    void askToStop(bool thenClose);
    void showStopQuestion(bool thenClose);
    bool isQuestionWanted() const;
    void showState();
    void showTime();
    void showCounts();

    QLabel* stageLabel = nullptr;
    QLabel* timeLabel = nullptr;
    QLabel* countLabel = nullptr;
    QProgressBar* progressBar = nullptr;
    JournalPanel* journal = nullptr;
    QPushButton* stopButton = nullptr;
    QPushButton* pauseButton = nullptr;
    QPushButton* protocolButton = nullptr;
    QPushButton* closeButton = nullptr;
    QPointer<QMessageBox> questionBox;

    LinkSource linkSource;
    std::unique_ptr<RunSession> session; // of the latest run
    const CProject* project = nullptr;
    std::unique_ptr<ProjectRun> projectRun; // while a run works on the project
    QStringList stages;                     // open, the outermost first
    QString stateText;                      // shown while no stage is open
    QElapsedTimer runTime;
    std::map<LineKind, int> counts; // of the journal's lines
    StopQuestion stopQuestion = StopQuestion::OnDisplay;
    bool running = false;
    bool ending = false; // onThreadFinished() is at work
    bool closeWanted = false;
    bool stopWanted = false;
    bool silentMode = false;
    bool errorsShown = false;
    bool interrupted = false;
};
