#pragma once

#include "apps/desk/gui/DeskActions.h"
#include "apps/desk/gui/UriFollower.h"
#include "apps/desk/process/JournalRecorder.h"
#include "apps/desk/process/RunMonitor.h"
#include "host/window/ProjectWindow.h"

#include <memory>
#include <optional>

class QDockWidget;
class QLabel;

namespace orvel::desk {

class DeskPages;
class DeskPrinting;
class Document;
class ItemEditor;
class ItemFilterBar;
class FileDrops;
class ItemTable;
class MessageBar;
class MonitorDisplay;
class OutdatedBar;
class ProtocolList;
class PlotPanel;
class ProtocolPanel;

namespace picture {
class PictureDock;
}

/// The project window of the desk: the table of points and sections, the runs, the protocols and the reports.
class DeskWindow : public ProjectWindow
{
    Q_OBJECT

public:
    /// A window with a document of its own. Plug-ins extend the window afterwards.
    explicit DeskWindow(std::unique_ptr<Document> projectDocument);
    ~DeskWindow() override;

    Document& getDocument() { return *document; }
    ItemTable& getTable() { return *table; }
    ProtocolPanel& getProtocolPanel() { return *protocolPanel; }
    picture::PictureDock& getPictureDock() { return *pictureDock; }
    DeskPages& getPages() { return *pages; }
    MessageBar& getMessageBar() { return *messageBar; }
    /// The progress window, made at its first use.
    RunMonitor& getMonitor();
    bool isRunWorking() const;

    /// Has the runs from now on recorded.
    void setRecordFile(const QString& path);

    /// Imports files into one network, after a question if there is one already. Text files are imported by a
    /// template, which a wizard asks for, behind the others.
    void importFiles(const QStringList& paths);
    void importFile(const QString& path) { importFiles({path}); }
    /// Shows the wizard that makes a template for the files and imports them.
    void showTemplateWizard(const QStringList& paths);
    void exportFile(const QString& path);
    /// False if the file could not be written; the user was told why.
    bool saveFile(const QString& path);
    /// Says, once, that the project's file could not be kept from other windows, if that is so.
    void tellOfLock();
    /// Saves, with a question for the file's name if there is none yet. False if the user gave up.
    bool save();
    /// True if there is nothing to lose, after questions about what there is; a run may be working still,
    /// which the user gave up.
    bool mayBeClosed();

    /// Selects the item, or says that there is none. With the internal name of a type only an item of that
    /// type is meant: another project of the same name has other items under the same ids.
    void locateItem(LONGID id, const QString& typeName = {});

    UriFollower& getUriFollower() { return uriFollower; }
    void bringToFront();

Q_SIGNALS:
    void newRequested();
    void openRequested(const QString& path);

protected:
    void childEvent(QChildEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    QWidget* createCentralWidget();
    void createProtocolDock();
    void createPlotDock();
    void createClassIndicator();
    void editTolerances();
    void createPictureDock();
    void restoreLayout();
    void saveLayout() const;

    void perform(DeskActions::Command command);
    void performEdit(DeskActions::Command command);
    void runAgain();
    void runNext();
    void showOutdated();
    bool chooseAndSave();
    void showCurrentItemProtocol();
    void goToProblem(bool isForward);
    void selectItemsOfLine(const std::vector<LONGID>& ids);
    void showMonitor();
    void openFile(const QString& path);
    void openFiles(const QStringList& paths);

    void start(const DeskRun& run);
    void finishRun();
    void endDisplay();
    void startImport(DeskRun run);
    void importSources(const std::vector<ImportSource>& sources);
    std::optional<ImportRefusal> findRefusal(const std::vector<ImportSource>& sources);
    std::optional<ImportMode> chooseMode();
    /// True if nothing is unsaved, or after it was saved or given up.
    bool mayLoseChanges();
    void updateTitle();
    void updateActions();
    void followSelection();
    void updateStatus();

    Document* document; // a child of the window
    std::unique_ptr<JournalRecorder> recorder;
    std::unique_ptr<RunMonitor> monitor;
    std::unique_ptr<MonitorDisplay> monitorDisplay; ///< of the monitor
    bool closeAfterRun = false;
    bool readsFiles = false;     ///< to see whether there is something to import
    QStringList tablesToImport;  // behind the run at work
    std::vector<int> typesToRun; // behind it, one after the other

    UriFollower uriFollower;
    FileDrops* drops;
    DeskPages* pages;
    DeskActions* actions;
    DeskActions::Situation situation; ///< that the actions know of
    MessageBar* messageBar = nullptr;
    ItemFilterBar* filterBar = nullptr;
    ItemTable* table = nullptr;
    ItemEditor* itemEditor = nullptr;
    OutdatedBar* outdatedBar = nullptr;
    ProtocolList* protocols = nullptr;
    QDockWidget* protocolDock = nullptr;
    ProtocolPanel* protocolPanel = nullptr;
    picture::PictureDock* pictureDock = nullptr;
    PlotPanel* plotPanel = nullptr;
    DeskPrinting* printing = nullptr;
    QLabel* status;
};

} // namespace orvel::desk
