#include "host/model/CProject.h"
#include "host/model/CProjectModel.h"
#include "host/model/CommonPropertyGetSetIsReadonlyStrategy.h"
#include "host/model/ItemTypes.h"
#include "host/model/ModelInitializer.h"
#include "host/model/ModelRevision.h"
#include "tests/host/model/RecordingObserver.h"
#include "tests/host/model/TypedItem.h"

#include <QtTest>

namespace {

constexpr int kPoint = 0x65ED7302;
constexpr int kProtocol = 0x65ED7303;
constexpr int kHeight = 5;

CModelElement* const kNoItem = nullptr;

using Items = std::vector<CModelElement*>;

std::unique_ptr<CModelElement> makeItem(int type = kGeneralItemType, LONGID id = 0)
{
    return std::make_unique<TypedItem>(type, id);
}

constexpr LONGID kManyItems = 100000;

/// Adds kManyItems points, with ids from 1, below one item, whose id is returned.
LONGID addPoints(CProjectModel& model)
{
    CModelElement* root = model.addItem(makeItem(kGeneralItemType, kManyItems + 1));
    for (LONGID id = 1; id <= kManyItems; ++id)
        model.addItem(makeItem(kPoint), root);
    return root->getId();
}

/// The model's signals, one line each.
class SignalLog
{
public:
    explicit SignalLog(const CProjectModel& model)
    {
        record(model, &CProjectModel::itemAdded, QStringLiteral("added"));
        record(model, &CProjectModel::itemAboutToBeRemoved, QStringLiteral("about to be removed"));
        record(model, &CProjectModel::itemRemoved, QStringLiteral("removed"));
        record(model, &CProjectModel::itemChanged, QStringLiteral("changed"));
        record(model, &CProjectModel::itemsAboutToBeReplaced, QStringLiteral("about to be replaced"));
        record(model, &CProjectModel::itemsReplaced, QStringLiteral("replaced"));
    }

    QStringList take() { return std::exchange(lines, QStringList()); }

private:
    void record(const CProjectModel& model, void (CProjectModel::*signal)(LONGID), const QString& word)
    {
        QObject::connect(&model, signal, &context, [this, word](LONGID id) {
            lines.append(QStringLiteral("%1 %2").arg(word).arg(id));
        });
    }

    void record(const CProjectModel& model, void (CProjectModel::*signal)(), const QString& words)
    {
        QObject::connect(&model, signal, &context, [this, words] { lines.append(words); });
    }

    QObject context;
    QStringList lines;
};

/// A property strategy whose answers are set from outside.
class SetStrategy : public CommonPropertyGetSetIsReadonlyStrategy
{
public:
    using CommonPropertyGetSetIsReadonlyStrategy::CommonPropertyGetSetIsReadonlyStrategy;

    bool setPropertyValue(CProjectModel* /*model*/, CModelElement* /*element*/, int /*propertyId*/,
                          const QVariant& newValue) override
    {
        if (!takesValues)
            return false;
        value = newValue;
        return true;
    }

    QVariant getPropertyValue(const CProjectModel* model, const CModelElement* element,
                              int propertyId) const override
    {
        askedModel = model;
        askedElement = element;
        askedPropertyId = propertyId;
        return value;
    }

    bool isPropertyReadonly(const CProjectModel* /*model*/, const CModelElement* /*element*/,
                            int /*propertyId*/) const override
    {
        return isReadonly;
    }

    QVariant value;
    bool takesValues = true;
    bool isReadonly = false;
    mutable const CProjectModel* askedModel = nullptr;
    mutable const CModelElement* askedElement = nullptr;
    mutable int askedPropertyId = 0;
};

/// Notes its two calls.
class RecordingInitializer : public ModelInitializer
{
public:
    RecordingInitializer(CProjectModel* projectModel, QStringList* commonLog, const QString& ownName)
        : ModelInitializer(projectModel)
        , log(commonLog)
        , name(ownName)
    {}

    void initSystemItems() override { log->append(name + QStringLiteral(" items")); }
    void initSubsystemRelations() override { log->append(name + QStringLiteral(" relations")); }

private:
    QStringList* log;
    QString name;
};

/// Changes itself while it is destroyed.
class RestlessItem : public CModelElement
{
public:
    ~RestlessItem() override { setName(QStringLiteral("dying")); }
};

} // namespace

class TestCProjectModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void knowsItsProject();
    void newItemGetsAFreeId();
    void freeIdsPassOverTakenOnes();
    void idOfARemovedItemIsNotGivenAgain();
    void itemKeepsTheIdThatItHas();
    void takenIdIsRefused();
    void idThatIsTwiceInASubtreeIsRefused();
    void refusedSubtreeLeavesTheModelUnchanged();
    void nullIsRefused();
    void parentOutsideOfTheTreeIsRefused();
    void topLevelItemsStandInTheOrderOfAddition();
    void childrenStandInTheOrderOfAddition();
    void subtreeIsAddedWhole();
    void unknownIdAndZeroAreNotFound();
    void itemWhoseIdChangesIsFoundByTheNewOne();
    void itemThatTakesAnothersIdDoesNotHideIt();
    void removedItemIsNotFound();
    void removedSubtreeIsNotFound();
    void unknownItemCannotBeRemoved();
    void systemItemStandsBesideTheTree();
    void systemItemGetsNoId();
    void systemItemWithAnIdIsFound();
    void systemItemWithATakenIdIsNotFoundByIt();
    void systemItemIsOwned();
    void systemItemIsAddedOnce();
    void systemItemCanBeRemovedByItsId();
    void notDeletableItemCannotBeRemoved();
    void itemsOfATypeStandInTheOrderOfAddition();
    void firstItemIsTheEarliestOfItsType();
    void signalsTellOfEveryItemOfTheTree();
    void itemsAreExchangedAtOnce();
    void exchangedItemsAreTheModelsOwn();
    void itemsGoBackAsTheyWere();
    void exchangeIsRefusedOverTheIdOfASystemItem();
    void exchangeTakesNoLongerForManyItems();
    void revisionGrowsWithEveryChangeOfTheItems();
    void signalsAreSilentAboutSystemItems();
    void removalIsAnnouncedWhileTheItemIsThere();
    void changesOfAnItemAreTold();
    void itemThatChangesWhileItIsDestroyedDoesNoHarm();
    void initializersRunInTheOrderOfKeysInTwoRounds();
    void initializerIsFoundByItsKey();
    void laterInitializerReplacesTheEarlier();
    void destroyedInitializerIsForgotten();
    void strategiesStandInTheOrderOfRegistration();
    void strategiesAreOwnedAndForgottenWhenDestroyed();
    void baseStrategyGivesNothingAndIsReadonly();
    void firstValidValueOfTheStrategiesCounts();
    void withoutAStrategysValueTheElementsOwnCounts();
    void strategyIsAskedAboutTheElementAndTheProperty();
    void valueGoesToTheFirstStrategyThatTakesIt();
    void valueThatNoStrategyTakesGoesToTheElement();
    void readonlyPropertyIsNotSet();
    void readonlyStrategyIsPassedOver();
    void propertyWithoutStrategiesIsWritable();
    void mentionedItemsAreAskedOfTheInstalledQuery();
    void hundredThousandItemsAreFoundById();
    void hundredThousandItemsAreFoundByTypeAndRemoved();
};

void TestCProjectModel::knowsItsProject()
{
    CProject project(QStringLiteral("project"));

    QCOMPARE(CProjectModel(&project).getProject(), &project);
    QCOMPARE(CProjectModel(nullptr).getProject(), static_cast<CProject*>(nullptr));
}

void TestCProjectModel::newItemGetsAFreeId()
{
    CProjectModel model(nullptr);
    CModelElement* first = model.addItem(makeItem());
    CModelElement* second = model.addItem(makeItem());

    QCOMPARE(first->getId(), LONGID(1));
    QCOMPARE(second->getId(), LONGID(2));
    QCOMPARE(model.findItemAnywhere(1), first);
    QCOMPARE(model.findItemAnywhere(2), second);
}

void TestCProjectModel::freeIdsPassOverTakenOnes()
{
    CProjectModel model(nullptr);
    model.addItem(makeItem(kPoint, 1));
    auto* systemItem = new TypedItem(kProtocol, 2);
    model.addSystemItem(systemItem, {});
    auto subtree = makeItem();
    subtree->addChild(makeItem(kPoint, 3));
    const CModelElement* added = model.addItem(std::move(subtree));

    QCOMPARE(added->getId(), LONGID(4));
    QCOMPARE(model.findItemAnywhere(3), added->getChildren().front().get());
}

void TestCProjectModel::idOfARemovedItemIsNotGivenAgain()
{
    CProjectModel model(nullptr);
    model.addItem(makeItem());
    model.removeItem(1);

    QCOMPARE(model.addItem(makeItem())->getId(), LONGID(2));
}

void TestCProjectModel::itemKeepsTheIdThatItHas()
{
    CProjectModel model(nullptr);
    CModelElement* item = model.addItem(makeItem(kPoint, 7000000000));

    QCOMPARE(item->getId(), LONGID(7000000000));
    QCOMPARE(model.findItemAnywhere(7000000000), item);
}

void TestCProjectModel::takenIdIsRefused()
{
    CProjectModel model(nullptr);
    CModelElement* first = model.addItem(makeItem(kPoint, 5));
    SignalLog log(model);

    QCOMPARE(model.addItem(makeItem(kPoint, 5)), kNoItem);
    QCOMPARE(model.findItemAnywhere(5), first);
    QCOMPARE(model.getItems(kPoint), Items{first});
    QCOMPARE(model.getTopLevelItems().size(), std::size_t(1));
    QCOMPARE(log.take(), QStringList());
}

void TestCProjectModel::idThatIsTwiceInASubtreeIsRefused()
{
    CProjectModel model(nullptr);
    auto subtree = makeItem(kPoint, 5);
    subtree->addChild(makeItem(kPoint, 5));

    QCOMPARE(model.addItem(std::move(subtree)), kNoItem);
    QCOMPARE(model.findItemAnywhere(5), kNoItem);
}

void TestCProjectModel::refusedSubtreeLeavesTheModelUnchanged()
{
    CProjectModel model(nullptr);
    CModelElement* parent = model.addItem(makeItem(kPoint, 5));
    auto subtree = makeItem(kPoint);
    subtree->addChild(makeItem(kPoint, 5));

    QCOMPARE(model.addItem(std::move(subtree), parent), kNoItem);
    QVERIFY(parent->getChildren().empty());
    QCOMPARE(model.getItems(kPoint), Items{parent});
    QCOMPARE(model.addItem(makeItem())->getId(), LONGID(1));
}

void TestCProjectModel::nullIsRefused()
{
    CProjectModel model(nullptr);

    QCOMPARE(model.addItem(nullptr), kNoItem);
    QVERIFY(model.getTopLevelItems().empty());
}

void TestCProjectModel::parentOutsideOfTheTreeIsRefused()
{
    CProjectModel model(nullptr);
    CModelElement stranger;
    auto* systemItem = new CModelElement;
    model.addSystemItem(systemItem, {});

    QCOMPARE(model.addItem(makeItem(kPoint, 5), &stranger), kNoItem);
    QCOMPARE(model.addItem(makeItem(kPoint, 5), systemItem), kNoItem);
    QCOMPARE(model.findItemAnywhere(5), kNoItem);
    QVERIFY(stranger.getChildren().empty());
}

void TestCProjectModel::topLevelItemsStandInTheOrderOfAddition()
{
    CProjectModel model(nullptr);
    CModelElement* second = model.addItem(makeItem(kPoint, 2));
    CModelElement* first = model.addItem(makeItem(kPoint, 1));

    QCOMPARE(model.getTopLevelItems().size(), std::size_t(2));
    QCOMPARE(model.getTopLevelItems()[0].get(), second);
    QCOMPARE(model.getTopLevelItems()[1].get(), first);
    QCOMPARE(second->getParent(), kNoItem);
}

void TestCProjectModel::childrenStandInTheOrderOfAddition()
{
    CProjectModel model(nullptr);
    CModelElement* parent = model.addItem(makeItem(kPoint, 2));
    CModelElement* child = model.addItem(makeItem(kPoint, 9), parent);
    CModelElement* laterChild = model.addItem(makeItem(kPoint, 8), parent);

    QCOMPARE(child->getParent(), parent);
    QCOMPARE(parent->getChildren().size(), std::size_t(2));
    QCOMPARE(parent->getChildren()[0].get(), child);
    QCOMPARE(parent->getChildren()[1].get(), laterChild);
    QCOMPARE(model.findItemAnywhere(9), child);
    QCOMPARE(model.getTopLevelItems().size(), std::size_t(1));
}

void TestCProjectModel::subtreeIsAddedWhole()
{
    CProjectModel model(nullptr);
    auto subtree = makeItem(kPoint, 10);
    CModelElement* child = subtree->addChild(makeItem());
    CModelElement* grandchild = child->addChild(makeItem(kPoint));
    SignalLog log(model);
    CModelElement* added = model.addItem(std::move(subtree));

    QCOMPARE(model.findItemAnywhere(10), added);
    QCOMPARE(model.findItemAnywhere(1), child);
    QCOMPARE(model.findItemAnywhere(2), grandchild);
    QCOMPARE(model.getItems(kPoint), Items({added, grandchild}));
    QCOMPARE(log.take(),
             QStringList({QStringLiteral("added 10"), QStringLiteral("added 1"), QStringLiteral("added 2")}));
}

void TestCProjectModel::unknownIdAndZeroAreNotFound()
{
    CProjectModel model(nullptr);
    model.addSystemItem(new CModelElement, {});
    model.addItem(makeItem());

    QCOMPARE(model.findItemAnywhere(0), kNoItem);
    QCOMPARE(model.findItemAnywhere(2), kNoItem);
    QCOMPARE(model.findItemAnywhere(-1), kNoItem);
}

void TestCProjectModel::itemWhoseIdChangesIsFoundByTheNewOne()
{
    CProjectModel model(nullptr);
    CModelElement* item = model.addItem(makeItem(kPoint, 5));
    item->setId(6);

    QCOMPARE(model.findItemAnywhere(5), kNoItem);
    QCOMPARE(model.findItemAnywhere(6), item);
    item->setId(0);
    QCOMPARE(model.findItemAnywhere(6), kNoItem);
    QCOMPARE(model.findItemAnywhere(0), kNoItem);
}

void TestCProjectModel::itemThatTakesAnothersIdDoesNotHideIt()
{
    CProjectModel model(nullptr);
    CModelElement* first = model.addItem(makeItem(kPoint, 5));
    CModelElement* second = model.addItem(makeItem(kPoint, 6));
    second->setId(5);
    QCOMPARE(model.findItemAnywhere(5), first);

    second->setId(7);
    QCOMPARE(model.findItemAnywhere(5), first);
    QCOMPARE(model.findItemAnywhere(7), second);
}

void TestCProjectModel::removedItemIsNotFound()
{
    CProjectModel model(nullptr);
    CModelElement* first = model.addItem(makeItem(kPoint));
    model.addItem(makeItem(kPoint));
    CModelElement* third = model.addItem(makeItem(kPoint));

    QVERIFY(model.removeItem(2));
    QCOMPARE(model.findItemAnywhere(2), kNoItem);
    QCOMPARE(model.getItems(kPoint), Items({first, third}));
    QCOMPARE(model.getTopLevelItems().size(), std::size_t(2));
    QCOMPARE(model.getTopLevelItems()[1].get(), third);
}

void TestCProjectModel::removedSubtreeIsNotFound()
{
    CProjectModel model(nullptr);
    CModelElement* root = model.addItem(makeItem());
    CModelElement* child = model.addItem(makeItem(kPoint), root);
    const qor::CGuardedPtr<CModelElement> grandchild(model.addItem(makeItem(kPoint), child));
    CModelElement* sibling = model.addItem(makeItem(kPoint), root);
    SignalLog log(model);

    QVERIFY(model.removeItem(child->getId()));
    QVERIFY(!grandchild);
    QCOMPARE(model.findItemAnywhere(2), kNoItem);
    QCOMPARE(model.findItemAnywhere(3), kNoItem);
    QCOMPARE(model.getItems(kPoint), Items{sibling});
    QCOMPARE(root->getChildren().size(), std::size_t(1));
    QCOMPARE(root->getChildren().front().get(), sibling);
    QCOMPARE(log.take(), QStringList({QStringLiteral("about to be removed 3"), QStringLiteral("removed 3"),
                                      QStringLiteral("about to be removed 2"), QStringLiteral("removed 2")}));
}

void TestCProjectModel::unknownItemCannotBeRemoved()
{
    CProjectModel model(nullptr);
    model.addItem(makeItem());
    model.addSystemItem(new CModelElement, {});

    QVERIFY(!model.removeItem(2));
    QVERIFY(!model.removeItem(0));
}

void TestCProjectModel::systemItemStandsBesideTheTree()
{
    CProjectModel model(nullptr);
    auto* systemItem = new TypedItem(kProtocol);
    model.addSystemItem(systemItem, {});
    const CModelElement* treeItem = model.addItem(makeItem());

    QVERIFY(model.isSystemItem(systemItem));
    QVERIFY(!model.isSystemItem(treeItem));
    QVERIFY(!model.isSystemItem(nullptr));
    QCOMPARE(model.getTopLevelItems().size(), std::size_t(1));
    QCOMPARE(model.getFirstItem(kProtocol), systemItem);
}

void TestCProjectModel::systemItemGetsNoId()
{
    CProjectModel model(nullptr);
    auto* systemItem = new CModelElement;
    model.addSystemItem(systemItem, {});

    QCOMPARE(systemItem->getId(), LONGID(0));
    QCOMPARE(model.addItem(makeItem())->getId(), LONGID(1));
}

void TestCProjectModel::systemItemWithAnIdIsFound()
{
    CProjectModel model(nullptr);
    auto* systemItem = new TypedItem(kProtocol, 77);
    model.addSystemItem(systemItem, {});

    QCOMPARE(model.findItemAnywhere(77), systemItem);
    systemItem->setId(78);
    QCOMPARE(model.findItemAnywhere(77), kNoItem);
    QCOMPARE(model.findItemAnywhere(78), systemItem);
}

void TestCProjectModel::systemItemWithATakenIdIsNotFoundByIt()
{
    CProjectModel model(nullptr);
    CModelElement* treeItem = model.addItem(makeItem(kPoint, 77));
    auto* systemItem = new TypedItem(kProtocol, 77);
    model.addSystemItem(systemItem, {});

    QCOMPARE(model.findItemAnywhere(77), treeItem);
    QCOMPARE(model.getFirstItem(kProtocol), systemItem);
}

void TestCProjectModel::systemItemIsOwned()
{
    auto model = std::make_unique<CProjectModel>(nullptr);
    auto* systemItem = new CModelElement;
    const qor::CGuardedPtr<CModelElement> pointer(systemItem);
    model->addSystemItem(systemItem, ItemTypeInfo::NotDeletable);
    model.reset();

    QVERIFY(!pointer);
}

void TestCProjectModel::systemItemIsAddedOnce()
{
    CProjectModel model(nullptr);
    auto* systemItem = new TypedItem(kProtocol);
    model.addSystemItem(systemItem, {});
    model.addSystemItem(systemItem, {});
    model.addSystemItem(nullptr, {});

    QCOMPARE(model.getItems(kProtocol), Items{systemItem});
}

void TestCProjectModel::systemItemCanBeRemovedByItsId()
{
    CProjectModel model(nullptr);
    model.addSystemItem(new TypedItem(kProtocol, 77), {});

    QVERIFY(model.removeItem(77));
    QCOMPARE(model.getFirstItem(kProtocol), kNoItem);
    QCOMPARE(model.findItemAnywhere(77), kNoItem);
}

void TestCProjectModel::notDeletableItemCannotBeRemoved()
{
    CProjectModel model(nullptr);
    auto* systemItem = new TypedItem(kProtocol, 77);
    model.addSystemItem(systemItem, ItemTypeInfo::NotDeletable);

    QVERIFY(!model.removeItem(77));
    QCOMPARE(model.findItemAnywhere(77), systemItem);
}

void TestCProjectModel::itemsOfATypeStandInTheOrderOfAddition()
{
    CProjectModel model(nullptr);
    CModelElement* first = model.addItem(makeItem(kPoint, 9));
    model.addItem(makeItem(kProtocol));
    auto* second = new TypedItem(kPoint);
    model.addSystemItem(second, {});
    CModelElement* third = model.addItem(makeItem(kPoint, 4), first);

    QCOMPARE(model.getItems(kPoint), Items({first, second, third}));
    QCOMPARE(model.getItems(kGeneralItemType), Items());
}

void TestCProjectModel::firstItemIsTheEarliestOfItsType()
{
    CProjectModel model(nullptr);
    model.addItem(makeItem());
    CModelElement* first = model.addItem(makeItem(kPoint, 9));
    CModelElement* second = model.addItem(makeItem(kPoint, 4));

    QCOMPARE(model.getFirstItem(kPoint), first);
    model.removeItem(9);
    QCOMPARE(model.getFirstItem(kPoint), second);
    model.removeItem(4);
    QCOMPARE(model.getFirstItem(kPoint), kNoItem);
    QCOMPARE(model.getFirstItem(kProtocol), kNoItem);
}

void TestCProjectModel::signalsTellOfEveryItemOfTheTree()
{
    CProjectModel model(nullptr);
    SignalLog log(model);
    model.addItem(makeItem(kPoint, 5));
    model.addItem(makeItem());
    model.removeItem(5);

    QCOMPARE(log.take(), QStringList({QStringLiteral("added 5"), QStringLiteral("added 1"),
                                      QStringLiteral("about to be removed 5"), QStringLiteral("removed 5")}));
}

void TestCProjectModel::itemsAreExchangedAtOnce()
{
    CProjectModel model(nullptr);
    model.addItem(makeItem(kPoint, 5));
    auto* systemItem = new TypedItem(kPoint, 77);
    model.addSystemItem(systemItem, {});
    auto items = std::make_unique<CItemTree>();
    CModelElement* first = items->addItem(makeItem(kPoint, 5));
    CModelElement* second = items->addItem(makeItem(kPoint, 6), first);
    SignalLog log(model);

    QVERIFY(model.exchangeItems(items));
    QCOMPARE(log.take(), QStringList({QStringLiteral("about to be replaced"), QStringLiteral("replaced")}));
    QCOMPARE(model.getTopLevelItems().size(), std::size_t(1));
    QCOMPARE(model.findItemAnywhere(5), first);
    QCOMPARE(model.findItemAnywhere(6), second);
    QCOMPARE(model.findItemAnywhere(77), systemItem);
    QCOMPARE(model.getItems(kPoint), Items({systemItem, first, second}));
    QCOMPARE(items->getTopLevelItems().size(), std::size_t(1));
    QVERIFY(items->findItem(5) != first);
}

void TestCProjectModel::exchangedItemsAreTheModelsOwn()
{
    CProjectModel model(nullptr);
    CModelElement* old = model.addItem(makeItem(kPoint, 5));
    auto items = std::make_unique<CItemTree>();
    CModelElement* item = items->addItem(makeItem(kPoint, 6));
    QVERIFY(model.exchangeItems(items));
    SignalLog log(model);

    item->setName(QStringLiteral("A"));
    item->setId(7);
    old->setName(QStringLiteral("B"));
    QVERIFY(model.addItem(makeItem(kPoint, 8), item) != nullptr);
    QCOMPARE(model.addItem(makeItem(kPoint, 9), old), kNoItem);
    QVERIFY(model.removeItem(7));
    QCOMPARE(log.take(),
             QStringList({QStringLiteral("changed 6"), QStringLiteral("changed 7"), QStringLiteral("added 8"),
                          QStringLiteral("about to be removed 8"), QStringLiteral("removed 8"),
                          QStringLiteral("about to be removed 7"), QStringLiteral("removed 7")}));
}

void TestCProjectModel::itemsGoBackAsTheyWere()
{
    CProjectModel model(nullptr);
    CModelElement* item = model.addItem(makeItem(kPoint, 5));
    auto items = std::make_unique<CItemTree>();
    items->addItem(makeItem(kPoint, 6));

    QVERIFY(model.exchangeItems(items));
    QVERIFY(model.exchangeItems(items));
    QCOMPARE(model.findItemAnywhere(5), item);
    QCOMPARE(model.findItemAnywhere(6), kNoItem);
    SignalLog log(model);
    item->setName(QStringLiteral("A"));
    QCOMPARE(log.take(), QStringList(QStringLiteral("changed 5")));
}

void TestCProjectModel::exchangeIsRefusedOverTheIdOfASystemItem()
{
    CProjectModel model(nullptr);
    CModelElement* old = model.addItem(makeItem(kPoint, 5));
    model.addSystemItem(new TypedItem(kProtocol, 77), {});
    auto items = std::make_unique<CItemTree>();
    items->addItem(makeItem(kPoint, 77));
    SignalLog log(model);

    QVERIFY(!model.exchangeItems(items));
    QCOMPARE(log.take(), QStringList());
    QCOMPARE(model.getTopLevelItems().front().get(), old);
    QVERIFY(items->findItem(77) != nullptr);
    std::unique_ptr<CItemTree> none;
    QVERIFY(!model.exchangeItems(none));
}

void TestCProjectModel::exchangeTakesNoLongerForManyItems()
{
    CProjectModel model(nullptr);
    auto items = std::make_unique<CItemTree>();
    for (LONGID id = 1; id <= kManyItems; ++id)
        items->addItem(makeItem(kPoint, id));
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 1001; ++i)
        QVERIFY(model.exchangeItems(items));
    QVERIFY2(timer.elapsed() < 1000, QByteArray::number(timer.elapsed()).constData());
    QCOMPARE(model.getTopLevelItems().size(), std::size_t(kManyItems));
}

void TestCProjectModel::revisionGrowsWithEveryChangeOfTheItems()
{
    CProject project(QStringLiteral("A"));
    CProjectModel model(&project);
    quint64 before = modelrevision::get();
    const auto hasGrown = [&before] { return std::exchange(before, modelrevision::get()) < before; };
    CModelElement* item = model.addItem(makeItem(kPoint, 5));
    QVERIFY(hasGrown());
    QCOMPARE(model.getTreeItemTypes().find(5), std::optional<int>(kPoint));
    const ItemTypeIndex types = model.getTreeItemTypes();
    item->setId(6);
    QVERIFY(hasGrown());
    QCOMPARE(types.find(5), std::optional<int>(kPoint));
    QCOMPARE(types.find(6), std::optional<int>());
    QCOMPARE(model.getTreeItemTypes().find(6), std::optional<int>(kPoint));
    model.addSystemItem(new TypedItem(kProtocol, 77), {});
    QVERIFY(hasGrown());
    QCOMPARE(model.getSystemItemTypes().find(77), std::optional<int>(kProtocol));
    model.removeItem(6);
    QVERIFY(hasGrown());
    project.setName(QStringLiteral("B"));
    QVERIFY(hasGrown());
    auto items = std::make_unique<CItemTree>();
    model.exchangeItems(items);
    QVERIFY(hasGrown());
    QVERIFY(!hasGrown());
}

void TestCProjectModel::signalsAreSilentAboutSystemItems()
{
    CProjectModel model(nullptr);
    SignalLog log(model);
    auto* systemItem = new TypedItem(kProtocol, 77);
    model.addSystemItem(systemItem, {});
    systemItem->setName(QStringLiteral("protocol"));
    model.removeItem(77);

    QCOMPARE(log.take(), QStringList());
}

void TestCProjectModel::removalIsAnnouncedWhileTheItemIsThere()
{
    CProjectModel model(nullptr);
    CModelElement* item = model.addItem(makeItem(kPoint, 5));
    const qor::CGuardedPtr<CModelElement> pointer(item);
    CModelElement* foundBefore = nullptr;
    bool isFoundAfter = true;
    bool isAliveAfter = true;
    connect(&model, &CProjectModel::itemAboutToBeRemoved,
            [&](LONGID id) { foundBefore = model.findItemAnywhere(id); });
    connect(&model, &CProjectModel::itemRemoved, [&](LONGID id) {
        isFoundAfter = model.findItemAnywhere(id) != nullptr || !model.getItems(kPoint).empty();
        isAliveAfter = pointer.get() != nullptr;
    });
    model.removeItem(5);

    QCOMPARE(foundBefore, item);
    QVERIFY(!isFoundAfter);
    QVERIFY(!isAliveAfter);
}

void TestCProjectModel::changesOfAnItemAreTold()
{
    CProjectModel model(nullptr);
    CModelElement* root = model.addItem(makeItem(kPoint, 5));
    CModelElement* child = model.addItem(makeItem(kPoint, 6), root);
    SignalLog log(model);
    root->setName(QStringLiteral("A"));
    child->setProperty(kHeight, 1.5);
    child->setId(7);

    QCOMPARE(log.take(), QStringList({QStringLiteral("changed 5"), QStringLiteral("changed 6"),
                                      QStringLiteral("changed 7")}));
}

void TestCProjectModel::itemThatChangesWhileItIsDestroyedDoesNoHarm()
{
    auto model = std::make_unique<CProjectModel>(nullptr);
    model->addItem(std::make_unique<RestlessItem>());
    model->addItem(std::make_unique<RestlessItem>());
    model->addSystemItem(new RestlessItem, {});
    SignalLog log(*model);
    model->removeItem(1);
    model.reset();

    QCOMPARE(log.take(), QStringList({QStringLiteral("about to be removed 1"), QStringLiteral("removed 1")}));
}

void TestCProjectModel::initializersRunInTheOrderOfKeysInTwoRounds()
{
    QStringList log;
    CProjectModel model(nullptr);
    model.addInitializer(30, new RecordingInitializer(&model, &log, QStringLiteral("30")));
    model.addInitializer(-1, new RecordingInitializer(&model, &log, QStringLiteral("-1")));
    model.addInitializer(7, new RecordingInitializer(&model, &log, QStringLiteral("7")));
    model.initialize();

    QCOMPARE(log, QStringList({QStringLiteral("-1 items"), QStringLiteral("7 items"),
                               QStringLiteral("30 items"), QStringLiteral("-1 relations"),
                               QStringLiteral("7 relations"), QStringLiteral("30 relations")}));
}

void TestCProjectModel::initializerIsFoundByItsKey()
{
    CProjectModel model(nullptr);
    auto* initializer = new ModelInitializer(&model);
    model.addInitializer(7, initializer);
    model.addInitializer(7, nullptr);
    model.initialize();

    QCOMPARE(model.getInitializer(7), initializer);
    QCOMPARE(model.getInitializer(8), static_cast<ModelInitializer*>(nullptr));
    QCOMPARE(initializer->getModel(), &model);
    QCOMPARE(initializer->parent(), &model);
}

void TestCProjectModel::laterInitializerReplacesTheEarlier()
{
    CProjectModel model(nullptr);
    const QPointer<ModelInitializer> earlier(new ModelInitializer(&model));
    model.addInitializer(7, earlier);
    model.addInitializer(7, earlier);
    QCOMPARE(model.getInitializer(7), earlier.data());
    auto* later = new ModelInitializer(&model);
    model.addInitializer(7, later);

    QVERIFY(earlier.isNull());
    QCOMPARE(model.getInitializer(7), later);
}

void TestCProjectModel::destroyedInitializerIsForgotten()
{
    CProjectModel model(nullptr);
    auto* initializer = new ModelInitializer(&model);
    model.addInitializer(7, initializer);
    delete initializer;
    model.initialize();

    QCOMPARE(model.getInitializer(7), static_cast<ModelInitializer*>(nullptr));
}

void TestCProjectModel::strategiesStandInTheOrderOfRegistration()
{
    CProjectModel model(nullptr);
    auto* first = new SetStrategy(&model);
    auto* second = new SetStrategy(&model);
    model.registerPropertyStrategy(kHeight, second);
    model.registerPropertyStrategy(kHeight, first);
    model.registerPropertyStrategy(kHeight, nullptr);

    QCOMPARE(model.getPropertyStrategies(kHeight),
             std::vector<CommonPropertyGetSetIsReadonlyStrategy*>({second, first}));
    QVERIFY(model.getPropertyStrategies(kHeight + 1).empty());
}

void TestCProjectModel::strategiesAreOwnedAndForgottenWhenDestroyed()
{
    auto model = std::make_unique<CProjectModel>(nullptr);
    auto* first = new SetStrategy(nullptr);
    const QPointer<SetStrategy> second(new SetStrategy(nullptr));
    model->registerPropertyStrategy(kHeight, first);
    model->registerPropertyStrategy(kHeight, second);
    delete first;
    QCOMPARE(model->getPropertyStrategies(kHeight),
             std::vector<CommonPropertyGetSetIsReadonlyStrategy*>({second}));
    model.reset();

    QVERIFY(second.isNull());
}

void TestCProjectModel::baseStrategyGivesNothingAndIsReadonly()
{
    CProjectModel model(nullptr);
    CModelElement element;
    CommonPropertyGetSetIsReadonlyStrategy strategy(nullptr);

    QVERIFY(!strategy.setPropertyValue(&model, &element, kHeight, 1));
    QCOMPARE(strategy.getPropertyValue(&model, &element, kHeight), QVariant());
    QVERIFY(strategy.isPropertyReadonly(&model, &element, kHeight));
}

void TestCProjectModel::firstValidValueOfTheStrategiesCounts()
{
    CProjectModel model(nullptr);
    auto* silent = new SetStrategy(&model);
    auto* first = new SetStrategy(&model);
    auto* second = new SetStrategy(&model);
    first->value = 1;
    second->value = 2;
    for (SetStrategy* strategy : {silent, first, second})
        model.registerPropertyStrategy(kHeight, strategy);
    CModelElement element;
    element.setProperty(kHeight, 3);

    QCOMPARE(model.getPropertyValue(element, kHeight), QVariant(1));
}

void TestCProjectModel::withoutAStrategysValueTheElementsOwnCounts()
{
    CProjectModel model(nullptr);
    model.registerPropertyStrategy(kHeight, new SetStrategy(&model));
    CModelElement element;
    element.setProperty(kHeight, 3);
    element.setProperty(kHeight + 1, 4);

    QCOMPARE(model.getPropertyValue(element, kHeight), QVariant(3));
    QCOMPARE(model.getPropertyValue(element, kHeight + 1), QVariant(4));
    QCOMPARE(model.getPropertyValue(element, kHeight + 2), QVariant());
}

void TestCProjectModel::strategyIsAskedAboutTheElementAndTheProperty()
{
    CProjectModel model(nullptr);
    auto* strategy = new SetStrategy(&model);
    model.registerPropertyStrategy(kHeight, strategy);
    const CModelElement element;
    model.getPropertyValue(element, kHeight);

    QCOMPARE(strategy->askedModel, &model);
    QCOMPARE(strategy->askedElement, &element);
    QCOMPARE(strategy->askedPropertyId, kHeight);
}

void TestCProjectModel::valueGoesToTheFirstStrategyThatTakesIt()
{
    CProjectModel model(nullptr);
    auto* refusing = new SetStrategy(&model);
    refusing->takesValues = false;
    auto* first = new SetStrategy(&model);
    auto* second = new SetStrategy(&model);
    for (SetStrategy* strategy : {refusing, first, second})
        model.registerPropertyStrategy(kHeight, strategy);
    CModelElement element;

    QVERIFY(model.setPropertyValue(element, kHeight, 8));
    QCOMPARE(refusing->value, QVariant());
    QCOMPARE(first->value, QVariant(8));
    QCOMPARE(second->value, QVariant());
    QCOMPARE(element.getProperty(kHeight), QVariant());
}

void TestCProjectModel::valueThatNoStrategyTakesGoesToTheElement()
{
    CProjectModel model(nullptr);
    auto* refusing = new SetStrategy(&model);
    refusing->takesValues = false;
    model.registerPropertyStrategy(kHeight, refusing);
    CModelElement element;

    QVERIFY(model.setPropertyValue(element, kHeight, 8));
    QCOMPARE(element.getProperty(kHeight), QVariant(8));
}

void TestCProjectModel::readonlyPropertyIsNotSet()
{
    CProjectModel model(nullptr);
    auto* strategy = new SetStrategy(&model);
    strategy->isReadonly = true;
    model.registerPropertyStrategy(kHeight, strategy);
    CModelElement element;

    QVERIFY(model.isPropertyReadonly(element, kHeight));
    QVERIFY(!model.setPropertyValue(element, kHeight, 8));
    QCOMPARE(strategy->value, QVariant());
    QCOMPARE(element.getProperty(kHeight), QVariant());
}

void TestCProjectModel::readonlyStrategyIsPassedOver()
{
    CProjectModel model(nullptr);
    auto* readonly = new SetStrategy(&model);
    readonly->isReadonly = true;
    auto* writable = new SetStrategy(&model);
    model.registerPropertyStrategy(kHeight, readonly);
    model.registerPropertyStrategy(kHeight, writable);
    CModelElement element;

    QVERIFY(!model.isPropertyReadonly(element, kHeight));
    QVERIFY(model.setPropertyValue(element, kHeight, 8));
    QCOMPARE(readonly->value, QVariant());
    QCOMPARE(writable->value, QVariant(8));
}

void TestCProjectModel::propertyWithoutStrategiesIsWritable()
{
    CProjectModel model(nullptr);
    CModelElement element;

    QVERIFY(!model.isPropertyReadonly(element, kHeight));
    QVERIFY(model.setPropertyValue(element, kHeight, 8));
    QCOMPARE(element.getProperty(kHeight), QVariant(8));
}

void TestCProjectModel::mentionedItemsAreAskedOfTheInstalledQuery()
{
    CProjectModel model(nullptr);
    QVERIFY(!model.isItemMentioned(5));

    model.setItemMentionedQuery([](LONGID id) { return id == 5; });
    QVERIFY(model.isItemMentioned(5));
    QVERIFY(!model.isItemMentioned(6));

    model.setItemMentionedQuery({});
    QVERIFY(!model.isItemMentioned(5));
}

void TestCProjectModel::hundredThousandItemsAreFoundById()
{
    CProjectModel model(nullptr);
    addPoints(model);

    for (LONGID id = 1; id <= kManyItems; ++id) {
        const CModelElement* item = model.findItemAnywhere(id);
        if (!item || item->getId() != id)
            QFAIL("an item is not found by its id");
    }
    QCOMPARE(model.findItemAnywhere(kManyItems + 2), kNoItem);
}

void TestCProjectModel::hundredThousandItemsAreFoundByTypeAndRemoved()
{
    CProjectModel model(nullptr);
    const LONGID rootId = addPoints(model);
    const Items points = model.getItems(kPoint);
    QCOMPARE(points.size(), std::size_t(kManyItems));
    QCOMPARE(model.getFirstItem(kPoint), points.front());
    QCOMPARE(points.back()->getId(), kManyItems);

    QVERIFY(model.removeItem(rootId));
    QCOMPARE(model.getFirstItem(kPoint), kNoItem);
    QCOMPARE(model.findItemAnywhere(kManyItems), kNoItem);
    QVERIFY(model.getTopLevelItems().empty());
}

QTEST_GUILESS_MAIN(TestCProjectModel)
#include "tst_cprojectmodel.moc"
