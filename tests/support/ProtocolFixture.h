#pragma once

#include "Orvel/store/COrvel.h"
#include "host/model/CCommonTervoModel.h"
#include "host/model/CProject.h"
#include "host/model/ItemTypes.h"
#include "tests/support/CollectingApplication.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <vector>

/// An item type that has no group on the page, though it has a record.
constexpr int kForeignItemType = 0x6DCD3799;

/// An element of a chosen type.
class TypedElement : public CModelElement
{
public:
    explicit TypedElement(int itemType) : type(itemType) {}

    int getType() const override { return type; }

private:
    int type;
};

/// A protocol in a project of an application, with everything that it needs around it. One exists at a time.
struct ProtocolFixture
{
    explicit ProtocolFixture(const QString& projectName = QStringLiteral("Проект 1"),
                             const QString& scheme = QStringLiteral("survey"));

    /// Adds an item to the project's model.
    CModelElement* addItem(LONGID id, int type);
    /// Adds a report generator to the model.
    void addReportGenerator();
    /// Puts the page template where the protocol looks for it.
    void writeTemplate(const QByteArray& content) const;
    /// A path in the application's temporary folder.
    QString tempPath(const QString& fileName) const;

    /// Appends messages to the store, as intake does.
    void addMessages(const std::vector<COVMessage>& list);
    /// Makes a data file that holds the messages, and leaves the store empty.
    void saveMessages(const std::vector<COVMessage>& list);

    CollectingApplication application;
    CProject project;
    CCommonTervoModel model;
    std::unique_ptr<COrvel> owner;
    COrvel& protocol;
};
