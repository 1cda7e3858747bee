#pragma once

#include "apps/desk/process/JournalRecorder.h"
#include "apps/desk/process/RunMonitor.h"
#include "host/window/ProjectWindow.h"

#include <memory>
#include <vector>

class QAction;
class QLineEdit;
class QMenu;

namespace orvel::desk {

class Document;
class ItemTable;
class MessageBar;
class ProtocolList;

/// The project window of the desk: the table of points and sections, the runs, the protocols and the reports.
class DeskWindow : public ProjectWindow
{
    Q_OBJECT

public:
    /// What a window made of a URI.
    enum class UriAnswer {
        Taken,        ///< acted upon, or the user was told why not
        OtherProject, ///< it leads to another project
        NotUnderstood
    };

    /// A window with a document of its own. Plug-ins extend the window afterwards.
    explicit DeskWindow(std::unique_ptr<Document> projectDocument);
    ~DeskWindow() override;

    Document& getDocument() { return *document; }
    ItemTable& getTable() { return *table; }
    MessageBar& getMessageBar() { return *messageBar; }
    /// The progress window, made at its first use.
    RunMonitor& getMonitor();
    bool isRunWorking() const;

    /// Has the runs from now on recorded.
    void setRecordFile(const QString& path);

    /// Imports a network, after a question if that replaces one.
    void importFile(const QString& path);
    void exportFile(const QString& path);
    /// False if the file could not be written; the user was told why.
    bool saveFile(const QString& path);
    /// Saves, with a question for the file's name if there is none yet. False if the user gave up.
    bool save();
    /// True if there is nothing to lose, after questions about what there is; a run may be working still,
    /// which the user gave up.
    bool mayBeClosed();

    void showProtocol(int protocolType);
    void showReport(int reportType);
    /// Selects the item, or says that there is none.
    void locateItem(LONGID id);

    UriAnswer followUri(const QUrl& url);
    /// Tells the user why a URI was not followed.
    void explainUri(const QUrl& url);
    void bringToFront();

Q_SIGNALS:
    void newRequested();
    void openRequested(const QString& path);

protected:
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    QAction* addAction(QMenu* menu, const QString& text, const QIcon& icon, const QKeySequence& shortcut,
                       void (DeskWindow::*slot)()) const;
    void createActions();
    void createFileMenu();
    void createRunMenu();
    void createClassMenu(QMenu* menu);
    void createProtocolMenu();
    void createReportMenu();
    void createHelpMenu();
    void createToolBar();
    QWidget* createCentralWidget();
    void createProtocolDock();
    void restoreLayout();
    void saveLayout() const;

    void chooseAndOpen();
    void chooseAndImport();
    void chooseAndExport();
    bool chooseAndSave();
    /// A file named like the project, where the user's files are.
    QString suggestPath(const QString& suffix) const;
    void saveWithoutAnswer();
    void compile();
    void adjust();
    void analyse();
    void showCurrentItemProtocol();
    void showMonitor();
    void showHelp();
    void showAbout();
    void fillRecentMenu();
    void startSearch();
    void openFile(const QString& path);

    void start(const DeskRun& run);
    void finishRun();
    bool mayReplaceNetwork();
    bool mayStopRun();
    void updateTitle();
    void updateActions();
    void updateStatus();

    Document* document; // a child of the window
    std::unique_ptr<JournalRecorder> recorder;
    std::unique_ptr<RunMonitor> monitor;
    bool closeAfterRun = false;

    MessageBar* messageBar = nullptr;
    QLineEdit* search = nullptr;
    ItemTable* table = nullptr;
    ProtocolList* protocols = nullptr;
    QMenu* recentMenu = nullptr;
    QMenu* protocolMenu = nullptr;
    QAction* saveAction = nullptr;
    QAction* importAction = nullptr;
    QAction* exportAction = nullptr;
    QAction* compileAction = nullptr;
    QAction* adjustAction = nullptr;
    QAction* analyseAction = nullptr;
    QAction* itemProtocolAction = nullptr;
    std::vector<QAction*> idleActions;    ///< enabled while no run works
    std::vector<QAction*> networkActions; ///< enabled with a network while no run works
    std::vector<QAction*> resultActions;  ///< enabled with an adjusted network while no run works
};

} // namespace orvel::desk
