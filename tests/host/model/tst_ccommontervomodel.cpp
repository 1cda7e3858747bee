#include "host/model/CCommonTervoModel.h"
#include "host/model/CItemManager.h"
#include "host/model/CProject.h"

#include <QtTest>

namespace {

/// Tells where its destruction is noted.
class MortalManager : public tervo::CItemManager
{
public:
    explicit MortalManager(bool* destroyedFlag) : isDestroyed(destroyedFlag) {}
    ~MortalManager() override { *isDestroyed = true; }

private:
    bool* isDestroyed;
};

} // namespace

class TestCCommonTervoModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAProjectModel();
    void hasNoItemManagerAtFirst();
    void ownsItsItemManager();
    void newItemManagerReplacesTheEarlier();
};

void TestCCommonTervoModel::isAProjectModel()
{
    CProject project(QStringLiteral("project"));
    CCommonTervoModel model(&project);
    const CModelElement* item = model.addItem(std::make_unique<CModelElement>());

    QCOMPARE(model.getProject(), &project);
    QCOMPARE(qobject_cast<CProjectModel*>(&model)->findItemAnywhere(1), item);
}

void TestCCommonTervoModel::hasNoItemManagerAtFirst()
{
    const CCommonTervoModel model(nullptr);

    QCOMPARE(model.getTervoObject(), static_cast<tervo::IItemManager*>(nullptr));
}

void TestCCommonTervoModel::ownsItsItemManager()
{
    bool isDestroyed = false;
    {
        CCommonTervoModel model(nullptr);
        auto manager = std::make_unique<MortalManager>(&isDestroyed);
        const MortalManager* given = manager.get();
        model.setTervoObject(std::move(manager));
        QCOMPARE(model.getTervoObject(), given);
        QVERIFY(!isDestroyed);
    }
    QVERIFY(isDestroyed);
}

void TestCCommonTervoModel::newItemManagerReplacesTheEarlier()
{
    bool isFirstDestroyed = false;
    CCommonTervoModel model(nullptr);
    model.setTervoObject(std::make_unique<MortalManager>(&isFirstDestroyed));
    auto second = std::make_unique<tervo::CItemManager>();
    const tervo::CItemManager* given = second.get();
    model.setTervoObject(std::move(second));

    QVERIFY(isFirstDestroyed);
    QCOMPARE(model.getTervoObject(), given);
}

QTEST_GUILESS_MAIN(TestCCommonTervoModel)
#include "tst_ccommontervomodel.moc"
