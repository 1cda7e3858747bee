#pragma once

#include "apps/desk/document/ToleranceRules.h"

#include <QObject>

#include <map>
#include <vector>

class QAction;
class QIcon;
class QKeySequence;
class QMainWindow;
class QMenu;

namespace orvel::desk {

/// The commands of a window: its menus and tool bar, and when which command can be given.
class DeskActions : public QObject
{
    Q_OBJECT

public:
    enum class Command {
        New,
        Open,
        Save,
        SaveAs,
        Import,
        ImportTable,
        Export,
        Print,
        Quit,
        EditTolerances,
        Undo,
        Redo,
        EditValue,
        SwitchSections,
        SetSigma,
        HoldPoints,
        FreePoints,
        AddSection,
        DeleteSections,
        RunAgain,
        ShowMonitor,
        ShowItemProtocol,
        NextProblem,
        PreviousProblem,
        ShowHelp,
        ShowAbout
    };

    /// What decides which commands can be given.
    struct Situation
    {
        bool isRunWorking = false;
        bool hasNetwork = false;
        bool hasResults = false;
        bool hasCurrentItem = false;
        bool hasSelection = false;
        // What can be undone and made again; empty for nothing.
        QString undoText;
        QString redoText;
        std::vector<int> outdatedTypes = {}; ///< of protocols
    };

    /// Adds the menus and the tool bar to the window, which owns the object.
    DeskActions(QMainWindow& window, const SurveyRules& rules);

    /// Enables the commands that can be given.
    void update(const Situation& situation);
    /// Marks the class, and names the limits of all.
    void showRules(const SurveyRules& rules);
    QAction* getAction(Command command) const { return actions.at(command); }
    /// What can be done with the selected items, for other menus.
    std::vector<QAction*> getItemActions() const;
    /// Adds a further entry to the menu of the protocols.
    void addToProtocolMenu(QAction* action);
    /// Adds an entry that shows a panel to the menu of the panels.
    void addToViewMenu(QAction* action);

Q_SIGNALS:
    void triggered(orvel::desk::DeskActions::Command command);
    void classChosen(orvel::desk::LevellingClass levellingClass);
    void fileRequested(const QString& path);
    void runRequested(int protocolType);
    void protocolRequested(int protocolType);
    void reportRequested(int reportType);

private:
    /// What a command needs. All but the first need that no run works.
    enum class Need { Nothing, Idle, Network, Results, Item, Selection, Outdated, Undo, Redo };

    static bool isMet(Need need, const Situation& situation);
    void createFileMenu();
    void createEditMenu();
    void createRunMenu();
    void createClassMenu(QMenu* menu, const SurveyRules& rules);
    void createProtocolMenu();
    void createReportMenu();
    void createHelpMenu();
    void createToolBar();
    QAction* add(QMenu* menu, Command command, Need need, const QString& text, const QIcon& icon,
                 const QKeySequence& shortcut);
    void fillRecentMenu();

    QMainWindow& window;
    std::map<Command, QAction*> actions;
    std::map<int, QAction*> runActions;      // by protocol type
    std::map<int, QAction*> protocolActions; // by protocol type
    std::map<LevellingClass, QAction*> classActions;
    std::vector<std::pair<QAction*, Need>> needs;
    QMenu* runMenu = nullptr;
    QMenu* recentMenu = nullptr;
    QMenu* protocolMenu = nullptr;
    QMenu* viewMenu = nullptr;
};

} // namespace orvel::desk
