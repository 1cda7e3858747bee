#pragma once

#include "apps/desk/document/NetworkSnapshot.h"
#include "host/model/CCommonTervoModel.h"
#include "host/model/CItemManager.h"
#include "host/model/CProject.h"
#include "levelling/Adjustment.h"

#include <QObject>

#include <memory>
#include <vector>

class COrvel;
class LevellingPoint;
class LevellingSection;
class PluginManager;

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
        levelling::Parameters parameters;
        std::vector<std::unique_ptr<LevellingPoint>> points;
        std::vector<std::unique_ptr<LevellingSection>> sections;
        /// The next new item's id, larger than all that were ever given.
        LONGID nextId = 0;
    };

    /// An empty project. The plug-ins, which extend its model, must give it a protocol.
    Document(const PluginManager& plugins, const QString& projectName, QObject* parent = nullptr);
    ~Document() override;

    CProject& getProject() { return project; }
    CCommonTervoModel& getModel() { return model; }
    COrvel& getProtocol() const;

    const QString& getDescription() const { return description; }
    const levelling::Parameters& getParameters() const { return parameters; }
    std::vector<LevellingPoint*> getPoints() const;
    std::vector<LevellingSection*> getSections() const;
    bool isEmpty() const;
    /// Some point has an adjusted height.
    bool hasResults() const;

    /// Replaces the network. Points and sections that the old one had, by their names, keep their ids; no id
    /// is ever given to another item. Results are gone.
    void setNetwork(const levelling::Network& network);
    /// Replaces the network by items that have ids. False, and nothing changed, if these are not unique or a
    /// section's ends are no points.
    bool setContent(Content content);
    LONGID getNextId() const { return nextId; }
    NetworkSnapshot getSnapshot() const;

    /// Takes the results of an adjustment of the network as it is now; one that failed leaves no results.
    void setAdjustment(const levelling::Adjustment& adjustment);

signals:
    /// The points and sections are others now.
    void networkReplaced();
    /// Results of the adjustment came.
    void resultsChanged();

private:
    void replaceItems(Content content);

    CProject project;
    CCommonTervoModel model;
    tervo::CItemManager* sectionManager; // owned by the model
    QString description;
    levelling::Parameters parameters;
    LONGID nextId;
};
