#pragma once

#include "apps/desk/document/DocumentState.h"
#include "apps/desk/document/FileState.h"
#include "apps/desk/document/HandChange.h"
#include "apps/desk/document/NetworkChange.h"
#include "apps/desk/document/NetworkItems.h"
#include "apps/desk/document/ProjectLock.h"
#include "apps/desk/document/ProtocolKeeper.h"
#include "apps/desk/document/ProtocolSummary.h"
#include "apps/desk/document/ToleranceRules.h"
#include "host/model/CCommonTervoModel.h"
#include "host/model/CProject.h"
#include "levelling/Adjustment.h"
#include "tacheometry/Computation.h"

#include <QHash>
#include <QObject>

#include <memory>
#include <optional>
#include <set>
#include <vector>

class COrvel;
class PluginManager;
class QUndoCommand;
class QUndoStack;

namespace orvel {
struct ProtocolState;
}

namespace orvel::desk {

/// The open project: the levelling network as items of a project model, and its protocol.
///
/// Points are elements of the model, sections are objects of its item manager; their ids are unique over
/// both. Belongs to the GUI thread; runs work on a snapshot.
class Document : public QObject
{
    Q_OBJECT

public:
    /// Everything that a project file holds of the network.
    struct Content
    {
        QString description;
        QStringList sources; ///< as the network has them
        levelling::Parameters parameters;
        LevellingClass levellingClass = LevellingClass::IV;
        ToleranceRules toleranceRules;
        std::vector<std::unique_ptr<LevellingPoint>> points;
        std::vector<std::unique_ptr<LevellingSection>> sections;
        std::vector<levelling::ObservedHeights> observedHeights;
        std::shared_ptr<const tacheometry::FieldBook> fieldBook =
            std::make_shared<const tacheometry::FieldBook>();
        std::vector<DeletedSection> deletedSections; ///< by hand
        DocumentStates states;
        /// The next new item's id, larger than all that were ever given.
        LONGID nextId = 0;
    };

    /// Where the project comes from: its name, and the file that it was loaded from or saved to, if any.
    struct Origin
    {
        QString name;
        QString filePath;
        FileState fileState;               ///< as the project was read or written
        std::shared_ptr<ProjectLock> lock; ///< of the file
    };

    /// An empty project. The plug-ins, which extend its model, must give it a protocol.
    Document(const PluginManager& plugins, const QString& projectName, QObject* parent = nullptr);
    ~Document() override;

    CProject& getProject() { return project; }
    Origin getOrigin() const;
    /// Names the project, and the file that it is saved to from now on. The protocol puts the name into its
    /// pages as it is, so angle brackets, which would begin mark-up, become others.
    void setOrigin(const Origin& newOrigin);
    /// A project of that name without a file.
    void setProjectName(const QString& name) { setOrigin({name, {}, {}, {}}); }
    /// Whether anybody has written the project's file since it was read or saved.
    bool isFileChanged() const;
    const CProject& getProject() const { return project; }
    CCommonTervoModel& getModel() { return model; }
    COrvel& getProtocol() const;

    const QString& getDescription() const { return head.description; }
    /// The files that the network comes from, as its items number them.
    const QStringList& getSources() const { return head.sources; }
    const levelling::Parameters& getParameters() const { return head.parameters; }
    LevellingClass getLevellingClass() const { return levellingClass; }
    /// By a command of the undo stack.
    void setLevellingClass(LevellingClass newClass);
    const ToleranceRules& getToleranceRules() const { return toleranceRules; }
    /// By a command of the undo stack.
    void setToleranceRules(const ToleranceRules& newRules);
    /// The class with the rules, for a run.
    SurveyRules getSurveyRules() const { return {levellingClass, toleranceRules}; }
    std::vector<LevellingPoint*> getPoints() const;
    std::vector<LevellingSection*> getSections() const;
    std::size_t countPoints() const { return model.getTopLevelItems().size(); }
    std::size_t countSections() const { return sectionManager->getItems().size(); }
    /// How many sections are switched off.
    std::size_t countOff() const;
    /// The point, or the section, of that id; null if there is none.
    const LevellingPoint* findPoint(LONGID id) const;
    const LevellingSection* findSection(LONGID id) const;
    /// The internal name of an item's type, as links have it; empty if there is no such item.
    QString findTypeName(LONGID id) const;
    bool isEmpty() const;
    /// Some point has an adjusted height.
    bool hasResults() const;
    /// Some point has coordinates, given or computed.
    bool hasCoordinates() const;

    /// Replaces the network. Points and sections that the old one had, by their names, keep their ids; no id
    /// is ever given to another item. Results are gone, and so are the protocols of the processing of the old
    /// network: nobody shall take them for those of the new one. To be called during a run, when the protocol
    /// has its lines in memory.
    void setNetwork(const levelling::Network& network);
    /// The same with items that are made already, from this network's snapshot and getNextId(). Gives the old
    /// network out. Takes a time that does not depend on the number of items.
    /// @param otherImport  protocol type of an import that has nothing to do with this network
    void takeNetwork(NetworkItems& items, std::optional<int> otherImport = std::nullopt);
    /// Puts one network into the other's place, the protocols left as they are.
    void exchangeItems(NetworkItems& items);
    /// The next new item's id.
    LONGID getNextId() const { return nextId; }
    /// The protocol types that were cleared when a network was taken last.
    const std::vector<int>& getClearedTypes() const { return clearedTypes; }
    /// Replaces the network by items that have ids. False, and nothing changed, if these are not unique, a
    /// section's ends are not two points, or a number is none that can be computed with.
    bool setContent(Content content);
    /// A copy of the network with its ids and results, for setContent().
    Content copyContent() const;
    /// What runs compute with: all points, and the sections that are not switched off, with their ids. It
    /// never changes; another network has another snapshot.
    const NetworkSnapshot& getSnapshot() const { return *shareSnapshot(); }
    /// The same for a run, which may keep it. Made anew after a change.
    std::shared_ptr<const NetworkSnapshot> shareSnapshot() const;
    /// The network with what is switched off.
    std::shared_ptr<const NetworkSnapshot> shareWholeSnapshot() const;

    /// The commands by which the project was changed by hand. Whoever has a run at work must not use it.
    QUndoStack& getUndoStack() const { return *undoStack; }
    /// Makes the change by a command of that text. False if there is nothing to change, or while edits are
    /// refused.
    bool applyChange(const QString& text, NetworkChange change);
    /// While a run works, the network stays as it is: it computes with it.
    void refuseEdits(bool areRefused) { editsRefused = areRefused; }
    bool areEditsRefused() const { return editsRefused; }
    /// What was done by hand to the network.
    HandStates getHandStates() const;
    /// The same as a list: points and sections in their order, then what was deleted.
    std::vector<HandChange> getHandChanges() const;
    /// A new item's id, given to nobody else.
    LONGID takeId() { return nextId++; }

    const DocumentState& getState() const { return states.current; }
    /// There are results, and the network is another one than that which they belong to.
    bool areResultsOutdated() const;
    /// There are lines of that type, and its run would compute with something else now.
    bool isProtocolOutdated(int protocolType) const;
    /// The types of outdated protocols, in the order in which they would be run again.
    std::vector<int> getOutdatedTypes() const;

    /// Gives the protocol that state, with a data file that was made just now.
    void setProtocolState(const ProtocolState& state, const QByteArray& dataContent);
    /// To be called before the protocol reads its data file, for a run, a page or to save it, and after it:
    /// restores lines that have gone missing, and counts the lines anew. Neither a run nor a page may be
    /// begun when the file is not whole.
    /// What takes long in it is done beside the window; see performBesideWindow().
    /// @param finishedRun  protocol type of a run that has ended of itself
    /// @return not whole, and nothing to tell, when one is at work already
    ProtocolKeeper::Outcome checkProtocol(std::optional<int> finishedRun = std::nullopt);
    /// checkProtocol() is at work.
    bool isChecking() const { return checking; }
    /// The lines of the protocols, as the data file held them when it was last checked.
    QByteArray getProtocolData() const { return keeper.getContent(); }
    /// The same for another thread.
    PackedBytes sharePackedData() const { return keeper.getBytes(); }
    const ProtocolSummary& getSummary() const { return summary; }

    /// Whether the project differs from what was saved last.
    bool isModified() const;
    void setModified(bool isChanged);

    /// What is known of points before tacheometry is computed, by name: given coordinates, and heights that
    /// are given with them, held or adjusted.
    QHash<QString, tacheometry::Position> getGivenPositions() const;
    /// Takes the points of a computation of the tacheometry as it is now; what it has not computed has no
    /// result.
    void setPolarResults(const tacheometry::Computation& computation);
    /// Takes the results of an adjustment of the network as it is now; one that failed leaves no results.
    void setAdjustment(const levelling::Adjustment& adjustment);

Q_SIGNALS:
    /// The points and sections will be others, or have changed.
    void networkAboutToBeReplaced();
    void networkReplaced();
    /// Values of these items were changed by hand, or whether they are switched off; no rows came or went.
    void itemsEdited(const std::vector<LONGID>& ids);
    /// Other results or protocols than before are outdated.
    void outdatedChanged();
    /// Results of the adjustment came.
    void resultsChanged();
    /// The protocols have other lines now.
    void summaryChanged();
    void modifiedChanged(bool isModified);
    /// The class of the levelling, or the tolerances, are others.
    void surveyRulesChanged();
    /// The project has another name or file.
    void originChanged();

private:
    friend class RulesCommand;
    friend class NetworkCommand;

    void setSummary(ProtocolSummary newSummary);
    void tellModified();
    void takeRules(const SurveyRules& rules);
    void tellOutdated();
    void performChange(const NetworkChange& change, bool isForward);
    void editItems(const NetworkChange& change, bool isForward);
    void moveRows(const NetworkChange& change, bool isForward);
    void putItems(NetworkItems& items);
    NetworkSnapshot makeSnapshot(bool isWhole) const;

    CProject project;
    FileState fileState;
    std::shared_ptr<ProjectLock> lock;
    CCommonTervoModel model;
    tervo::CItemManager* sectionManager; // owned by the model
    levelling::Network head;             ///< what the network has besides points and sections
    std::shared_ptr<const tacheometry::FieldBook> fieldBook;
    // Of the items; none until somebody asks after a change.
    mutable std::shared_ptr<const NetworkSnapshot> snapshot;
    mutable std::shared_ptr<const NetworkSnapshot> wholeSnapshot;
    mutable std::optional<std::size_t> offCount;
    mutable std::optional<bool> anyResults;
    std::vector<DeletedSection> deletedSections;
    QUndoStack* undoStack;
    bool editsRefused = false;
    DocumentStates states;
    std::set<int> toldOutdated; ///< the types; 0 for the results
    LevellingClass levellingClass = LevellingClass::IV;
    ToleranceRules toleranceRules;
    LONGID nextId;
    ProtocolKeeper keeper;
    bool isProcessingCleared = false; // by the run at work, with the network
    std::vector<int> clearedTypes;
    ProtocolSummary summary;
    ProtocolSummary replacedSummary; ///< the one before it, until that is freed beside the window
    bool checking = false;
    bool modified = false; ///< by something else than commands
    bool toldModified = false;
};

} // namespace orvel::desk
