#include "apps/desk/gui/ItemColumns.h"
#include "apps/desk/gui/ItemFilterModel.h"

#include <QAbstractItemModelTester>
#include <QStandardItemModel>
#include <QtTest>

using namespace orvel::desk;

namespace {

QList<QStandardItem*> makeRow(const QString& name, const QString& kind, const QVariant& height)
{
    QList<QStandardItem*> row;
    for (const QVariant& value : {QVariant(name), QVariant(kind), height}) {
        auto* item = new QStandardItem(value.toString());
        item->setData(value, itemcolumns::SortRole);
        row.append(item);
    }
    return row;
}

void setCell(QStandardItemModel& table, int row, int column, const QVariant& value)
{
    table.item(row, column)->setData(value, itemcolumns::SortRole);
    table.item(row, column)->setText(value.toString());
}

QString getNames(const QAbstractItemModel& model)
{
    QStringList names;
    for (int row = 0; row < model.rowCount(); ++row)
        names.append(model.index(row, itemcolumns::Name).data().toString());
    return names.join(QLatin1Char('|'));
}

} // namespace

/// The sorting and the search of the item table, on a table of their own.
class TestItemFilterModel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void sortsNamesAsPeopleCount();
    void sortsNamesWithoutRegardToCase();
    void rowsOfOneKindKeepTheirOrder();
    void emptyCellsStandLastInEitherOrder();
    void sortingFollowsTheTable();
    void searchFollowsTheTable();
    void searchKeepsTheSelectedRow();
    void anotherTableIsReadAnew();

private:
    std::unique_ptr<QStandardItemModel> table;
    std::unique_ptr<ItemFilterModel> filter;
    std::unique_ptr<QAbstractItemModelTester> tester;
};

void TestItemFilterModel::init()
{
    table = std::make_unique<QStandardItemModel>();
    filter = std::make_unique<ItemFilterModel>();
    filter->setSourceModel(table.get());
    tester = std::make_unique<QAbstractItemModelTester>(
        filter.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
    const QString point = QStringLiteral("пункт");
    table->appendRow(makeRow(QStringLiteral("Рп 10"), point, 2.5));
    table->appendRow(makeRow(QStringLiteral("Рп 9"), point, QVariant()));
    table->appendRow(makeRow(QStringLiteral("Рп 100"), QStringLiteral("репер"), 10));
}

void TestItemFilterModel::cleanup()
{
    tester.reset();
    filter.reset();
    table.reset();
}

void TestItemFilterModel::sortsNamesAsPeopleCount()
{
    filter->sort(itemcolumns::Name);
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 9|Рп 10|Рп 100"));
    filter->sort(itemcolumns::Name, Qt::DescendingOrder);
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 100|Рп 10|Рп 9"));
}

void TestItemFilterModel::sortsNamesWithoutRegardToCase()
{
    table->appendRow(makeRow(QStringLiteral("рп 11"), QString(), QVariant()));
    table->appendRow(makeRow(QStringLiteral("Ёлка"), QString(), QVariant()));
    table->appendRow(makeRow(QStringLiteral("жук"), QString(), QVariant()));
    filter->sort(itemcolumns::Name);
    QCOMPARE(getNames(*filter), QStringLiteral("Ёлка|жук|Рп 9|Рп 10|рп 11|Рп 100"));
}

void TestItemFilterModel::rowsOfOneKindKeepTheirOrder()
{
    filter->sort(itemcolumns::Type);
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 10|Рп 9|Рп 100"));
}

void TestItemFilterModel::emptyCellsStandLastInEitherOrder()
{
    filter->sort(itemcolumns::Height);
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 10|Рп 100|Рп 9"));
    filter->sort(itemcolumns::Height, Qt::DescendingOrder);
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 100|Рп 10|Рп 9"));
}

void TestItemFilterModel::sortingFollowsTheTable()
{
    filter->sort(itemcolumns::Height);
    table->insertRow(1, makeRow(QStringLiteral("Рп 11"), QString(), 5));
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 10|Рп 11|Рп 100|Рп 9"));
    setCell(*table, 2, itemcolumns::Height, 7);
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 10|Рп 11|Рп 9|Рп 100"));
    table->removeRow(0);
    setCell(*table, 0, itemcolumns::Height, 8);
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 9|Рп 11|Рп 100"));
    table->removeRows(0, 3);
    table->appendRow(makeRow(QStringLiteral("Рп 2"), QString(), 2));
    table->appendRow(makeRow(QStringLiteral("Рп 1"), QString(), 1));
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 1|Рп 2"));
}

void TestItemFilterModel::searchFollowsTheTable()
{
    filter->setSearchText(QStringLiteral("10 пункт"));
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 10"));
    table->insertRow(0, makeRow(QStringLiteral("Рп 210"), QStringLiteral("пункт"), 5));
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 210|Рп 10"));
    setCell(*table, 3, itemcolumns::Type, QStringLiteral("Пункт"));
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 210|Рп 10|Рп 100"));
    table->removeRow(1);
    setCell(*table, 1, itemcolumns::Name, QStringLiteral("Рп 109"));
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 210|Рп 109|Рп 100"));
    filter->setSearchText(QString());
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 210|Рп 109|Рп 100"));
}

void TestItemFilterModel::searchKeepsTheSelectedRow()
{
    filter->sort(itemcolumns::Name);
    const QPersistentModelIndex selected = filter->index(2, itemcolumns::Name);
    const QPersistentModelIndex hidden = filter->index(0, itemcolumns::Name);
    filter->setSearchText(QStringLiteral("10"));
    QCOMPARE(selected.row(), 1);
    QCOMPARE(selected.data().toString(), QStringLiteral("Рп 100"));
    QVERIFY(!hidden.isValid());
}

void TestItemFilterModel::anotherTableIsReadAnew()
{
    filter->sort(itemcolumns::Name);
    filter->setSearchText(QStringLiteral("Рп"));
    QStandardItemModel other;
    other.appendRow(makeRow(QStringLiteral("Рп 4"), QString(), 1));
    other.appendRow(makeRow(QStringLiteral("Рп 3"), QString(), 1));
    filter->setSourceModel(&other);
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 3|Рп 4"));
    table->appendRow(makeRow(QStringLiteral("Рп 5"), QString(), 1));
    other.clear();
    QCOMPARE(getNames(*filter), QString());
    filter->setSourceModel(table.get());
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 5|Рп 9|Рп 10|Рп 100"));
}

QTEST_GUILESS_MAIN(TestItemFilterModel)
#include "tst_itemfiltermodel.moc"
