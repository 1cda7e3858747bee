#include "host/model/CItemManager.h"

#include <QtTest>

namespace {

constexpr qint64 kSectionType = 0x65ED7301;

class Section : public tervo::IItem
{
public:
    explicit Section(LONGID sectionId, const QString& sectionName = QString())
        : id(sectionId)
        , name(sectionName)
    {}

    LONGID getId() const override { return id; }
    qint64 getType() const override { return kSectionType; }
    QString getName() const override { return name; }

private:
    LONGID id;
    QString name;
};

std::vector<LONGID> getIds(const tervo::CItemManager& manager)
{
    std::vector<LONGID> ids;
    for (const auto& item : manager.getItems())
        ids.push_back(item->getId());
    return ids;
}

tervo::IItem* const kNoItem = nullptr;

} // namespace

class TestCItemManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void findsItemsById();
    void keepsItemsInTheOrderOfAddition();
    void refusesATakenId();
    void refusesZeroAndNull();
    void removedItemIsNotFound();
    void removedIdIsFreeAgain();
    void clearRemovesEverything();
    void manyItemsAreFound();
};

void TestCItemManager::findsItemsById()
{
    tervo::CItemManager manager;
    tervo::IItem* added = manager.addItem(std::make_unique<Section>(17, QStringLiteral("A–B")));
    const tervo::IItemManager& finder = manager;

    QCOMPARE(finder.findItem(17), added);
    QCOMPARE(added->getName(), QStringLiteral("A–B"));
    QCOMPARE(added->getType(), kSectionType);
    QCOMPARE(finder.findItem(18), kNoItem);
    QCOMPARE(finder.findItem(0), kNoItem);
}

void TestCItemManager::keepsItemsInTheOrderOfAddition()
{
    tervo::CItemManager manager;
    for (const LONGID id : {5, 3, 9})
        manager.addItem(std::make_unique<Section>(id));

    QCOMPARE(getIds(manager), std::vector<LONGID>({5, 3, 9}));
}

void TestCItemManager::refusesATakenId()
{
    tervo::CItemManager manager;
    tervo::IItem* first = manager.addItem(std::make_unique<Section>(5));

    QCOMPARE(manager.addItem(std::make_unique<Section>(5)), kNoItem);
    QCOMPARE(getIds(manager), std::vector<LONGID>({5}));
    QCOMPARE(manager.findItem(5), first);
}

void TestCItemManager::refusesZeroAndNull()
{
    tervo::CItemManager manager;

    QCOMPARE(manager.addItem(std::make_unique<Section>(0)), kNoItem);
    QCOMPARE(manager.addItem(nullptr), kNoItem);
    QVERIFY(manager.getItems().empty());
}

void TestCItemManager::removedItemIsNotFound()
{
    tervo::CItemManager manager;
    for (const LONGID id : {5, 3, 9})
        manager.addItem(std::make_unique<Section>(id));

    QVERIFY(manager.removeItem(3));
    QVERIFY(!manager.removeItem(3));
    QCOMPARE(manager.findItem(3), kNoItem);
    QCOMPARE(getIds(manager), std::vector<LONGID>({5, 9}));
}

void TestCItemManager::removedIdIsFreeAgain()
{
    tervo::CItemManager manager;
    manager.addItem(std::make_unique<Section>(5));
    manager.removeItem(5);
    tervo::IItem* second = manager.addItem(std::make_unique<Section>(5));

    QVERIFY(second != nullptr);
    QCOMPARE(manager.findItem(5), second);
}

void TestCItemManager::clearRemovesEverything()
{
    tervo::CItemManager manager;
    manager.addItem(std::make_unique<Section>(5));
    manager.clear();

    QVERIFY(manager.getItems().empty());
    QCOMPARE(manager.findItem(5), kNoItem);
    QVERIFY(manager.addItem(std::make_unique<Section>(5)) != nullptr);
}

void TestCItemManager::manyItemsAreFound()
{
    constexpr LONGID count = 100000;
    tervo::CItemManager manager;
    for (LONGID id = 1; id <= count; ++id)
        manager.addItem(std::make_unique<Section>(id * 7));

    for (LONGID id = 1; id <= count; ++id) {
        const tervo::IItem* item = manager.findItem(id * 7);
        if (!item || item->getId() != id * 7)
            QFAIL("an item is not found by its id");
    }
    QCOMPARE(manager.findItem(8), kNoItem);
}

QTEST_GUILESS_MAIN(TestCItemManager)
#include "tst_citemmanager.moc"
