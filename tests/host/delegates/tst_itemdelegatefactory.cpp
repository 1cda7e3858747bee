#include "host/delegates/CItemDelegate.h"
#include "host/delegates/ItemDelegateFactory.h"

#include <QtTest>

namespace {

/// Makes delegates that are named after what was asked for.
class NamingCreator : public IDelegateCreator
{
public:
    explicit NamingCreator(bool* destructionFlag = nullptr) : isDestroyed(destructionFlag) {}
    NamingCreator(const NamingCreator&) = delete;
    NamingCreator& operator=(const NamingCreator&) = delete;
    ~NamingCreator() override
    {
        if (isDestroyed != nullptr)
            *isDestroyed = true;
    }

    QAbstractItemDelegate* createDelegate(int delegateId, CProjectModel*, int propertyId,
                                          QObject* parent) const override
    {
        auto* delegate = new CItemDelegate(parent);
        delegate->setObjectName(QStringLiteral("%1/%2").arg(delegateId).arg(propertyId));
        return delegate;
    }

private:
    bool* isDestroyed;
};

} // namespace

class TestItemDelegateFactory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void instanceLivesWithTheFactory();
    void delegateComesFromItsCreator();
    void unknownIdGivesNoDelegate();
    void idIsTakenOnlyOnce();
};

void TestItemDelegateFactory::instanceLivesWithTheFactory()
{
    QVERIFY(ItemDelegateFactory::instance() == nullptr);
    {
        ItemDelegateFactory factory;
        QVERIFY(ItemDelegateFactory::instance() == &factory);
    }
    QVERIFY(ItemDelegateFactory::instance() == nullptr);
}

void TestItemDelegateFactory::delegateComesFromItsCreator()
{
    QObject parent;
    ItemDelegateFactory factory;
    QVERIFY(factory.registerExtension(5, std::make_unique<NamingCreator>()));
    const QAbstractItemDelegate* delegate = factory.createDelegate(5, nullptr, 12, &parent);
    QVERIFY(delegate != nullptr);
    QCOMPARE(delegate->objectName(), QStringLiteral("5/12"));
    QVERIFY(delegate->parent() == &parent);
}

void TestItemDelegateFactory::unknownIdGivesNoDelegate()
{
    const ItemDelegateFactory factory;
    QVERIFY(factory.createDelegate(5, nullptr, 12, this) == nullptr);
}

void TestItemDelegateFactory::idIsTakenOnlyOnce()
{
    bool isDestroyed = false;
    ItemDelegateFactory factory;
    QVERIFY(!factory.registerExtension(5, nullptr));
    QVERIFY(factory.registerExtension(5, std::make_unique<NamingCreator>()));
    QVERIFY(!factory.registerExtension(5, std::make_unique<NamingCreator>(&isDestroyed)));
    QVERIFY(isDestroyed);
    QVERIFY(factory.registerExtension(6, std::make_unique<NamingCreator>()));
}

QTEST_APPLESS_MAIN(TestItemDelegateFactory)
#include "tst_itemdelegatefactory.moc"
