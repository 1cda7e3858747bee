#include "host/delegates/CProjectItemModel.h"
#include "host/enums/EnumData.h"
#include "host/model/CModelElement.h"
#include "host/model/CProjectModel.h"
#include "host/model/CommonPropertyGetSetIsReadonlyStrategy.h"

#include <QAbstractItemModelTester>
#include <QSortFilterProxyModel>
#include <QtTest>

#include <algorithm>

namespace {

constexpr int kPointType = 0x4A010000;
constexpr int kHeight = 11;
constexpr int kMentioned = 12;
constexpr int kReportDelegate = 21;

class Point : public CModelElement
{
public:
    Point(LONGID pointId, const QString& pointName)
    {
        setId(pointId);
        setName(pointName);
    }
    int getType() const override { return kPointType; }
};

std::unique_ptr<Point> makePoint(LONGID id)
{
    return std::make_unique<Point>(id, QStringLiteral("Rp %1").arg(id));
}

/// The ids of the tree as it should be shown: every item before what is below it.
void collectIds(const CModelElement::Children& items, QList<LONGID>& ids)
{
    for (const auto& item : items) {
        ids.append(item->getId());
        collectIds(item->getChildren(), ids);
    }
}

QList<LONGID> getExpectedIds(const CProjectModel& model)
{
    QList<LONGID> ids;
    collectIds(model.getTopLevelItems(), ids);
    return ids;
}

QList<LONGID> getShownIds(const CProjectItemModel& table)
{
    QList<LONGID> ids;
    for (int row = 0; row < table.rowCount(); ++row)
        ids.append(table.getItem(table.index(row, 0))->getId());
    return ids;
}

} // namespace

class TestCProjectItemModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void showsNameTypeAndProperties();
    void itemsComeInTheOrderOfTheTree();
    void systemItemsHaveNoRows();
    void followsAdditions();
    void followsSubtrees();
    void followsRemovals();
    void followsAnExchangeOfAllItems();
    void followsChanges();
    void followsManyRandomChanges();
    void indexLeadsToTheItemAndBack();
    void writableProperties();
    void delegateMakesAReadOnlyPropertyEditable();
    void sortsAndFiltersThroughAProxy();
    void hundredThousandItems();

private:
    std::unique_ptr<CProjectModel> model;
    const QVector<CProjectItemModel::Column> columns{
        {QStringLiteral("Имя"), CProjectItemModel::Source::Name},
        {QStringLiteral("Тип"), CProjectItemModel::Source::Type},
        {QStringLiteral("Высота"), CProjectItemModel::Source::Property, kHeight},
        {QStringLiteral("Протокол"), CProjectItemModel::Source::Property, kMentioned, kReportDelegate},
    };
};

void TestCProjectItemModel::init()
{
    registerEnumData(EnumData(kPointType, "Point", "Пункт", "Пункты"));
    model = std::make_unique<CProjectModel>(nullptr);
    // Its default is to call the property read-only.
    model->registerPropertyStrategy(kMentioned, new CommonPropertyGetSetIsReadonlyStrategy(model.get()));
}

void TestCProjectItemModel::showsNameTypeAndProperties()
{
    model->addItem(makePoint(5))->setProperty(kHeight, 123.456);
    const CProjectItemModel table(model.get(), columns);
    QCOMPARE(table.rowCount(), 1);
    QCOMPARE(table.columnCount(), 4);
    QCOMPARE(table.rowCount(table.index(0, 0)), 0);
    QCOMPARE(table.index(0, 0).data(), QVariant(QStringLiteral("Rp 5")));
    QCOMPARE(table.index(0, 1).data(), QVariant(QStringLiteral("Пункт")));
    QCOMPARE(table.index(0, 2).data(), QVariant(123.456));
    QCOMPARE(table.index(0, 2).data(Qt::EditRole), QVariant(123.456));
    QCOMPARE(table.index(0, 3).data(), QVariant());
    QCOMPARE(table.index(0, 1).data(CProjectItemModel::ItemIdRole), QVariant(qlonglong(5)));
    QCOMPARE(table.index(0, 0).data(Qt::DecorationRole), QVariant());
    QCOMPARE(table.headerData(2, Qt::Horizontal), QVariant(QStringLiteral("Высота")));
    QCOMPARE(table.headerData(4, Qt::Horizontal), QVariant(5));
    QCOMPARE(table.headerData(0, Qt::Vertical), QVariant(1));
    QVERIFY(table.getProjectModel() == model.get());
}

void TestCProjectItemModel::itemsComeInTheOrderOfTheTree()
{
    CModelElement* first = model->addItem(makePoint(1));
    model->addItem(makePoint(2));
    CModelElement* child = model->addItem(makePoint(3), first);
    model->addItem(makePoint(4), child);
    const CProjectItemModel table(model.get(), columns);
    QCOMPARE(getShownIds(table), (QList<LONGID>{1, 3, 4, 2}));
}

void TestCProjectItemModel::systemItemsHaveNoRows()
{
    const CProjectItemModel table(model.get(), columns);
    model->addSystemItem(makePoint(9).release(), {});
    QCOMPARE(table.rowCount(), 0);
    QVERIFY(!table.getIndex(9).isValid());
}

void TestCProjectItemModel::followsAdditions()
{
    CProjectItemModel table(model.get(), columns);
    const QAbstractItemModelTester tester(&table, QAbstractItemModelTester::FailureReportingMode::QtTest);
    CModelElement* first = model->addItem(makePoint(1));
    model->addItem(makePoint(2));
    CModelElement* child = model->addItem(makePoint(3), first);
    QCOMPARE(getShownIds(table), (QList<LONGID>{1, 3, 2}));
    model->addItem(makePoint(4), child);
    model->addItem(makePoint(5), first);
    QCOMPARE(getShownIds(table), (QList<LONGID>{1, 3, 4, 5, 2}));
}

void TestCProjectItemModel::followsSubtrees()
{
    CProjectItemModel table(model.get(), columns);
    const QAbstractItemModelTester tester(&table, QAbstractItemModelTester::FailureReportingMode::QtTest);
    CModelElement* first = model->addItem(makePoint(1));
    model->addItem(makePoint(2));
    auto subtree = makePoint(3);
    subtree->addChild(makePoint(4))->addChild(makePoint(5));
    subtree->addChild(makePoint(6));
    QSignalSpy inserted(&table, &QAbstractItemModel::rowsInserted);
    model->addItem(std::move(subtree), first);
    QCOMPARE(getShownIds(table), (QList<LONGID>{1, 3, 4, 5, 6, 2}));
    QCOMPARE(inserted.count(), 1);
    QVERIFY(model->removeItem(3));
    QCOMPARE(getShownIds(table), (QList<LONGID>{1, 2}));
}

void TestCProjectItemModel::followsRemovals()
{
    for (LONGID id = 1; id <= 5; ++id)
        model->addItem(makePoint(id));
    CProjectItemModel table(model.get(), columns);
    const QAbstractItemModelTester tester(&table, QAbstractItemModelTester::FailureReportingMode::QtTest);
    const QPersistentModelIndex fourth = table.getIndex(4, 2);
    QVERIFY(model->removeItem(2));
    QVERIFY(model->removeItem(5));
    QCOMPARE(getShownIds(table), (QList<LONGID>{1, 3, 4}));
    QCOMPARE(fourth.row(), 2);
    QVERIFY(!table.getIndex(2).isValid());
}

void TestCProjectItemModel::followsAnExchangeOfAllItems()
{
    model->addItem(makePoint(1));
    CProjectItemModel table(model.get(), columns);
    const QAbstractItemModelTester tester(&table, QAbstractItemModelTester::FailureReportingMode::QtTest);
    QSignalSpy reset(&table, &QAbstractItemModel::modelReset);
    QSignalSpy inserted(&table, &QAbstractItemModel::rowsInserted);
    auto items = std::make_unique<CItemTree>();
    for (LONGID id = 2; id <= 4; ++id)
        items->addItem(makePoint(id));
    QVERIFY(model->exchangeItems(items));
    QCOMPARE(reset.count(), 1);
    QCOMPARE(inserted.count(), 0);
    QCOMPARE(getShownIds(table), (QList<LONGID>{2, 3, 4}));
    QCOMPARE(table.getIndex(3).row(), 1);
    QVERIFY(!table.getIndex(1).isValid());
    model->addItem(makePoint(5));
    QCOMPARE(getShownIds(table), (QList<LONGID>{2, 3, 4, 5}));
}

void TestCProjectItemModel::followsChanges()
{
    for (LONGID id = 1; id <= 3; ++id)
        model->addItem(makePoint(id));
    const CProjectItemModel table(model.get(), columns);
    QSignalSpy changed(&table, &QAbstractItemModel::dataChanged);
    model->findItemAnywhere(2)->setName(QStringLiteral("Rp 2 bis"));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(changed.first().at(0).toModelIndex(), table.index(1, 0));
    QCOMPARE(changed.first().at(1).toModelIndex(), table.index(1, 3));
    QCOMPARE(table.index(1, 0).data(), QVariant(QStringLiteral("Rp 2 bis")));
}

void TestCProjectItemModel::followsManyRandomChanges()
{
    QRandomGenerator random(12345);
    const CProjectItemModel table(model.get(), columns);
    QList<LONGID> ids;
    for (LONGID id = 1; id <= 4000; ++id) {
        CModelElement* parent = nullptr;
        if (!ids.isEmpty() && random.bounded(3) != 0)
            parent = model->findItemAnywhere(ids[random.bounded(ids.size())]);
        QVERIFY(model->addItem(makePoint(id), parent) != nullptr);
        ids = getExpectedIds(*model);
        if (ids.size() > 300) {
            QVERIFY(model->removeItem(ids[random.bounded(ids.size())]));
            ids = getExpectedIds(*model);
        }
        const int row = random.bounded(ids.size());
        QCOMPARE(table.getIndex(ids[row]).row(), row);
        if (id % 100 == 0)
            QCOMPARE(getShownIds(table), ids);
    }
}

void TestCProjectItemModel::indexLeadsToTheItemAndBack()
{
    CModelElement* item = model->addItem(makePoint(7));
    const CProjectItemModel table(model.get(), columns);
    const CProjectItemModel otherTable(model.get(), columns);
    QCOMPARE(table.getIndex(7, 2), table.index(0, 2));
    QVERIFY(table.getItem(table.index(0, 2)) == item);
    QVERIFY(table.getItem(QModelIndex()) == nullptr);
    QVERIFY(table.getItem(otherTable.index(0, 0)) == nullptr);
    QVERIFY(!table.getIndex(8).isValid());
    QVERIFY(!table.getIndex(0).isValid());
}

void TestCProjectItemModel::writableProperties()
{
    model->addItem(makePoint(1));
    CProjectItemModel table(model.get(), columns);
    QVERIFY(table.flags(table.index(0, 2)) & Qt::ItemIsEditable);
    QVERIFY(!(table.flags(table.index(0, 0)) & Qt::ItemIsEditable));
    QVERIFY(!(table.flags(table.index(0, 1)) & Qt::ItemIsEditable));
    QSignalSpy changed(&table, &QAbstractItemModel::dataChanged);
    QVERIFY(table.setData(table.index(0, 2), 12.5));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(model->findItemAnywhere(1)->getProperty(kHeight), QVariant(12.5));
    QVERIFY(!table.setData(table.index(0, 2), 13.5, Qt::DisplayRole));
    QVERIFY(!table.setData(table.index(0, 0), QStringLiteral("name")));
    QVERIFY(!table.setData(table.index(0, 3), true));
    QVERIFY(!table.setData(QModelIndex(), 1));
}

void TestCProjectItemModel::delegateMakesAReadOnlyPropertyEditable()
{
    model->addItem(makePoint(1));
    const CProjectItemModel withDelegate(model.get(), columns);
    QVERIFY(withDelegate.flags(withDelegate.index(0, 3)) & Qt::ItemIsEditable);
    const CProjectItemModel without(
        model.get(), {{QStringLiteral("Протокол"), CProjectItemModel::Source::Property, kMentioned}});
    QVERIFY(!(without.flags(without.index(0, 0)) & Qt::ItemIsEditable));
}

void TestCProjectItemModel::sortsAndFiltersThroughAProxy()
{
    const QList<double> heights{30.5, 4.25, 100.0};
    for (int i = 0; i < heights.size(); ++i)
        model->addItem(makePoint(i + 1))->setProperty(kHeight, heights[i]);
    CProjectItemModel table(model.get(), columns);
    QSortFilterProxyModel proxy;
    proxy.setSourceModel(&table);
    const QAbstractItemModelTester tester(&proxy, QAbstractItemModelTester::FailureReportingMode::QtTest);
    proxy.sort(2);
    QCOMPARE(proxy.index(0, 2).data().toDouble(), 4.25);
    QCOMPARE(proxy.index(2, 2).data().toDouble(), 100.0);
    proxy.setFilterFixedString(QStringLiteral("Rp 3"));
    QCOMPARE(proxy.rowCount(), 1);
    QVERIFY(model->removeItem(3));
    QCOMPARE(proxy.rowCount(), 0);
}

void TestCProjectItemModel::hundredThousandItems()
{
    constexpr int count = 100000;
    constexpr int removedCount = 1100; // more than the table lets its rows shift before it counts them again
    const CProjectItemModel table(model.get(), columns);
    for (LONGID id = 1; id <= count; ++id)
        model->addItem(makePoint(id));
    QCOMPARE(table.rowCount(), count);
    for (LONGID id = 1; id <= count; id += 7)
        model->findItemAnywhere(id)->setProperty(kHeight, double(id));
    for (LONGID id = count - 2 * removedCount; id < count - removedCount; ++id)
        QVERIFY(model->removeItem(id));
    QCOMPARE(table.rowCount(), count - removedCount);
    QCOMPARE(table.getIndex(count).row(), count - removedCount - 1);
    QCOMPARE(getShownIds(table), getExpectedIds(*model));
}

QTEST_MAIN(TestCProjectItemModel)
#include "tst_cprojectitemmodel.moc"
