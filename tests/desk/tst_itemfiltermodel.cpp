#include "apps/desk/gui/ItemColumns.h"
#include "apps/desk/gui/ItemFilterModel.h"

#include <QAbstractItemModelTester>
#include <QCollator>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QStandardItemModel>
#include <QtTest>

#include <algorithm>

using namespace orvel::desk;

namespace {

/// The table of these tests has the columns that a search looks at, and this one.
constexpr int kHeight = 2;

int getTraits(const QString& kind)
{
    return kind == QStringLiteral("секция") ? itemcolumns::SectionTrait : itemcolumns::PointTrait;
}

QList<QStandardItem*> makeRow(const QString& name, const QString& kind, const QVariant& height)
{
    QList<QStandardItem*> row;
    for (const QVariant& value : {QVariant(name), QVariant(kind), height}) {
        auto* item = new QStandardItem(value.toString());
        item->setData(value, itemcolumns::SortRole);
        row.append(item);
    }
    row.first()->setData(getTraits(kind), itemcolumns::TraitsRole);
    return row;
}

void setCell(QStandardItemModel& table, int row, int column, const QVariant& value)
{
    if (column == itemcolumns::Type)
        table.item(row, 0)->setData(getTraits(value.toString()), itemcolumns::TraitsRole);
    table.item(row, column)->setData(value, itemcolumns::SortRole);
    table.item(row, column)->setText(value.toString());
}

/// What the user asks of a table, and the plain way to it.
struct Request
{
    int column = -1;
    Qt::SortOrder order = Qt::AscendingOrder;
    QString search;
    int traits = 0;

    void send(ItemFilterModel& filter) const
    {
        filter.sort(column, order);
        filter.setSearchText(search);
        filter.setWantedTraits(traits);
    }

    /// The rows of the table that are to be seen, in their order.
    QVector<int> arrange(const QStandardItemModel& table) const
    {
        QVector<int> rows;
        for (int row = 0; row < table.rowCount(); ++row) {
            if (isMeant(table, row))
                rows.append(row);
        }
        if (column >= 0)
            std::stable_sort(rows.begin(), rows.end(), [&](int left, int right) {
                return isBefore(getValue(table, left), getValue(table, right));
            });
        return rows;
    }

private:
    bool isMeant(const QStandardItemModel& table, int row) const
    {
        if ((table.item(row, 0)->data(itemcolumns::TraitsRole).toInt() & traits) != traits)
            return false;
        const QStringList words = search.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        return std::all_of(words.begin(), words.end(), [&](const QString& word) {
            return table.item(row, itemcolumns::Name)->text().contains(word, Qt::CaseInsensitive) ||
                   table.item(row, itemcolumns::Type)->text().contains(word, Qt::CaseInsensitive);
        });
    }

    QVariant getValue(const QStandardItemModel& table, int row) const
    {
        return table.item(row, column)->data(itemcolumns::SortRole);
    }

    bool isBefore(const QVariant& left, const QVariant& right) const
    {
        if (!left.isValid() || !right.isValid())
            return left.isValid() && !right.isValid();
        return order == Qt::AscendingOrder ? isLess(left, right) : isLess(right, left);
    }

    static bool isLess(const QVariant& left, const QVariant& right)
    {
        if (left.type() != QVariant::String)
            return left.toDouble() < right.toDouble();
        QCollator collator{QLocale().language() == QLocale::C ? QLocale(QLocale::Russian) : QLocale()};
        collator.setNumericMode(true);
        collator.setCaseSensitivity(Qt::CaseInsensitive);
        return collator.compare(left.toString(), right.toString()) < 0;
    }
};

/// Tables, changes and requests as they come.
class Chance
{
public:
    explicit Chance(quint32 seed) : random(seed) {}

    int pick(int count) { return static_cast<int>(random.bounded(count)); }

    QList<QStandardItem*> makeRow()
    {
        const QString name = makeName();
        const QString kind = makeKind();
        return ::makeRow(name, kind, makeHeight());
    }

    Request makeRequest()
    {
        const QStringList searches{QString(),           QString(),
                                   QStringLiteral("1"), QStringLiteral("рп 1"),
                                   QStringLiteral("B"), QStringLiteral("реп исх"),
                                   QStringLiteral("-")};
        return {pick(4) - 1, pick(2) == 0 ? Qt::AscendingOrder : Qt::DescendingOrder,
                searches[pick(searches.size())], pick(3)};
    }

    /// One change of any kind.
    void change(QStandardItemModel& table)
    {
        const int row = pick(table.rowCount() + 1);
        switch (pick(6)) {
        case 0:
            table.insertRow(row, makeRow());
            break;
        case 1:
            table.removeRows(row, std::min(1 + pick(3), table.rowCount() - row));
            break;
        case 2:
            table.sort(pick(2));
            break;
        default:
            if (row == table.rowCount())
                return;
            changeCell(table, row);
            break;
        }
    }

private:
    void changeCell(QStandardItemModel& table, int row)
    {
        switch (pick(3)) {
        case 0:
            setCell(table, row, itemcolumns::Name, makeName());
            break;
        case 1:
            setCell(table, row, itemcolumns::Type, makeKind());
            break;
        default:
            setCell(table, row, kHeight, makeHeight());
        }
    }

    QString makeKind()
    {
        const QStringList kinds{QStringLiteral("пункт"), QStringLiteral("Исходный репер"),
                                QStringLiteral("секция"), QString()};
        return kinds[pick(kinds.size())];
    }

    QString makeName()
    {
        const QStringList beginnings{QStringLiteral("Рп "), QStringLiteral("рп "), QStringLiteral("A-"),
                                     QStringLiteral("b")};
        return beginnings[pick(beginnings.size())] + QString::number(pick(30));
    }

    QVariant makeHeight() { return pick(4) == 0 ? QVariant() : QVariant(0.5 * pick(20) - 5); }

    QRandomGenerator random;
};

void wait(const ItemFilterModel& filter)
{
    while (filter.isWorking())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
}

/// The rows of the table behind those of the filter.
QVector<int> getSourceRows(const ItemFilterModel& filter)
{
    QVector<int> rows;
    for (int row = 0; row < filter.rowCount(); ++row)
        rows.append(filter.mapToSource(filter.index(row, 0)).row());
    return rows;
}

QString getNames(const QAbstractItemModel& model)
{
    QStringList names;
    for (int row = 0; row < model.rowCount(); ++row)
        names.append(model.index(row, itemcolumns::Name).data().toString());
    return names.join(QLatin1Char('|'));
}

/// Rows that somebody holds, with the rows of the source that they show.
using KeptIndexes = std::vector<std::pair<QPersistentModelIndex, QPersistentModelIndex>>;

/// Every third row.
KeptIndexes keepIndexes(const ItemFilterModel& model)
{
    KeptIndexes kept;
    for (int row = 0; row < model.rowCount(); row += 3) {
        const QModelIndex index = model.index(row, itemcolumns::Name);
        kept.emplace_back(index, model.mapToSource(index));
    }
    return kept;
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
    void choiceFollowsTheTable();
    void searchKeepsTheSelectedRow();
    void sortKeepsManySelectedRows();
    void anotherTableIsReadAnew();
    void randomTables_data();
    void randomTables();
    void longTableShowsWhatItShowedUntilTheOrderIsThere();
    void changeDuringWorkIsSeen();
    void manyChangesAreTakenTogether();
    void filterMayGoDuringWork();
    void tableMayGoDuringWork();
    void typedLetterFindsTheNextRow();
    void saysWhatTheSearchMeans();

private:
    void makeLongTable(int rowCount);

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
    filter->sort(kHeight);
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 10|Рп 100|Рп 9"));
    filter->sort(kHeight, Qt::DescendingOrder);
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 100|Рп 10|Рп 9"));
}

void TestItemFilterModel::sortingFollowsTheTable()
{
    filter->sort(kHeight);
    table->insertRow(1, makeRow(QStringLiteral("Рп 11"), QString(), 5));
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 10|Рп 11|Рп 100|Рп 9"));
    setCell(*table, 2, kHeight, 7);
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 10|Рп 11|Рп 9|Рп 100"));
    table->removeRow(0);
    setCell(*table, 0, kHeight, 8);
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

void TestItemFilterModel::choiceFollowsTheTable()
{
    filter->setWantedTraits(itemcolumns::SectionTrait);
    QVERIFY(filter->isFiltering());
    QCOMPARE(getNames(*filter), QString());
    setCell(*table, 1, itemcolumns::Type, QStringLiteral("секция"));
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 9"));
    QVERIFY(filter->isMeant(table->index(1, 0)));
    QVERIFY(!filter->isMeant(table->index(2, 0)));
    filter->setSearchText(QStringLiteral("10"));
    QCOMPARE(getNames(*filter), QString());
    filter->setWantedTraits(0);
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 10|Рп 100"));
}

void TestItemFilterModel::sortKeepsManySelectedRows()
{
    QItemSelectionModel selection(filter.get());
    selection.select(QItemSelection(filter->index(0, 0), filter->index(1, 2)), QItemSelectionModel::Select);
    const auto getSelected = [&] {
        QStringList names;
        for (const QModelIndex& index : selection.selectedRows())
            names.append(index.data().toString());
        names.sort();
        return names.join(QLatin1Char('|'));
    };
    QCOMPARE(getSelected(), QStringLiteral("Рп 10|Рп 9"));
    filter->sort(itemcolumns::Name, Qt::DescendingOrder);
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 100|Рп 10|Рп 9"));
    QCOMPARE(getSelected(), QStringLiteral("Рп 10|Рп 9"));
    filter->setSearchText(QStringLiteral("10"));
    QCOMPARE(getSelected(), QStringLiteral("Рп 10"));
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

/// Makes every table a long one, read a few rows at a time.
void TestItemFilterModel::makeLongTable(int rowCount)
{
    cleanup();
    table = std::make_unique<QStandardItemModel>();
    Chance chance(7);
    for (int row = 0; row < rowCount; ++row)
        table->appendRow(chance.makeRow());
    filter = std::make_unique<ItemFilterModel>(ItemFilterModel::Limits{0, 3});
    filter->setSourceModel(table.get());
    tester = std::make_unique<QAbstractItemModelTester>(
        filter.get(), QAbstractItemModelTester::FailureReportingMode::QtTest);
}

void TestItemFilterModel::randomTables_data()
{
    QTest::addColumn<int>("immediateRows");
    QTest::addColumn<int>("rowsAtOnce");
    QTest::newRow("short tables") << 20000 << 50000;
    QTest::newRow("long tables") << 0 << 50000;
    QTest::newRow("long tables, bit by bit") << 0 << 7;
    QTest::newRow("short and long tables") << 20 << 7;
}

// Requests and changes come at any moment of the work on the request before; in the end the rows are those of
// the last request on the last state, and each persistent index is where its row is.
void TestItemFilterModel::randomTables()
{
    QFETCH(int, immediateRows);
    QFETCH(int, rowsAtOnce);
    for (quint32 seed = 1; seed <= 200; ++seed) {
        Chance chance(seed);
        QStandardItemModel source;
        const int rowCount = chance.pick(40);
        for (int row = 0; row < rowCount; ++row)
            source.appendRow(chance.makeRow());
        ItemFilterModel model(ItemFilterModel::Limits{immediateRows, rowsAtOnce});
        model.setSourceModel(&source);
        const QAbstractItemModelTester modelTester(&model,
                                                   QAbstractItemModelTester::FailureReportingMode::QtTest);
        Request request;
        for (int round = 0; round < 4; ++round) {
            const KeptIndexes kept = keepIndexes(model);
            for (int step = chance.pick(5); step >= 0; --step) {
                if (chance.pick(2) == 0) {
                    request = chance.makeRequest();
                    request.send(model);
                } else {
                    chance.change(source);
                }
                for (int pause = chance.pick(4); pause > 0; --pause)
                    QCoreApplication::processEvents();
            }
            wait(model);
            QCOMPARE(getSourceRows(model), request.arrange(source));
            for (const auto& [index, sourceIndex] : kept) {
                // One that was hidden meanwhile is gone for good.
                if (index.isValid())
                    QCOMPARE(model.mapToSource(index), QModelIndex(sourceIndex));
            }
        }
    }
}

void TestItemFilterModel::longTableShowsWhatItShowedUntilTheOrderIsThere()
{
    makeLongTable(40);
    const QSignalSpy works(filter.get(), &ItemFilterModel::workingChanged);
    int layouts = 0;
    connect(filter.get(), &ItemFilterModel::layoutChanged, this, [&layouts] { ++layouts; });
    const QString before = getNames(*filter);
    const QPersistentModelIndex current = filter->index(11, itemcolumns::Name);
    const QString currentName = current.data().toString();
    const Request first{itemcolumns::Name, Qt::AscendingOrder, {}};
    const Request second{kHeight, Qt::DescendingOrder, QStringLiteral("1")};
    first.send(*filter);
    QVERIFY(filter->isWorking());
    QCOMPARE(getNames(*filter), before);
    second.send(*filter);
    wait(*filter);
    // What was overtaken was never shown.
    QCOMPARE(layouts, 1);
    QCOMPARE(getSourceRows(*filter), second.arrange(*table));
    QCOMPARE(works, QList<QVariantList>({{true}, {false}}));
    QCOMPARE(current.isValid(), currentName.contains(QLatin1Char('1')));
    // File order needs no work.
    Request().send(*filter);
    QCOMPARE(getNames(*filter), before);
    QVERIFY(!filter->isWorking());
}

void TestItemFilterModel::changeDuringWorkIsSeen()
{
    makeLongTable(40);
    const Request request{kHeight, Qt::AscendingOrder, {}};
    // Before, between and after the reading of the values, and while they are computed with.
    for (int events = 0; events < 20; ++events) {
        request.send(*filter);
        for (int i = 0; i < events; ++i)
            QCoreApplication::processEvents();
        setCell(*table, 17, kHeight, 100 + events);
        wait(*filter);
        QCOMPARE(getSourceRows(*filter), request.arrange(*table));
    }
}

void TestItemFilterModel::manyChangesAreTakenTogether()
{
    makeLongTable(40);
    const Request request{kHeight, Qt::AscendingOrder, {}};
    request.send(*filter);
    wait(*filter);
    int layouts = 0;
    connect(filter.get(), &ItemFilterModel::layoutChanged, this, [&layouts] { ++layouts; });
    for (int row = 0; row < table->rowCount(); ++row)
        setCell(*table, row, kHeight, row * 17 % 40);
    wait(*filter);
    QCOMPARE(layouts, 1);
    QCOMPARE(getSourceRows(*filter), request.arrange(*table));
}

void TestItemFilterModel::filterMayGoDuringWork()
{
    for (int events = 0; events < 20; ++events) {
        makeLongTable(40);
        Request{itemcolumns::Name, Qt::AscendingOrder, QStringLiteral("1")}.send(*filter);
        for (int i = 0; i < events; ++i)
            QCoreApplication::processEvents();
        cleanup();
        QCoreApplication::processEvents();
    }
}

void TestItemFilterModel::tableMayGoDuringWork()
{
    for (int events = 0; events < 20; ++events) {
        makeLongTable(40);
        Request{itemcolumns::Name, Qt::AscendingOrder, QStringLiteral("1")}.send(*filter);
        for (int i = 0; i < events; ++i)
            QCoreApplication::processEvents();
        table.reset();
        QCOMPARE(filter->rowCount(), 0);
        wait(*filter);
        QCOMPARE(filter->rowCount(), 0);
    }
}

void TestItemFilterModel::typedLetterFindsTheNextRow()
{
    for (const char* name : {"а1", "Б1", "А2", "б2"})
        table->appendRow(makeRow(QString::fromUtf8(name), QString(), QVariant()));
    filter->sort(itemcolumns::Name, Qt::DescendingOrder);
    QCOMPARE(getNames(*filter), QStringLiteral("Рп 100|Рп 10|Рп 9|б2|Б1|А2|а1"));
    const auto find = [this](int startRow, const char* text) {
        const QModelIndexList found = filter->match(filter->index(startRow, itemcolumns::Name),
                                                    Qt::DisplayRole, QString::fromUtf8(text));
        return found.isEmpty() ? -1 : found.constFirst().row();
    };
    QCOMPARE(find(0, "б"), 3);
    QCOMPARE(find(3, "б"), 3);
    QCOMPARE(find(4, "Б"), 4);
    QCOMPARE(find(5, "б"), 3);
    QCOMPARE(find(6, "а2"), 5);
    QCOMPARE(find(2, "в"), -1);
    filter->setSearchText(QStringLiteral("2"));
    QCOMPARE(getNames(*filter), QStringLiteral("б2|А2"));
    QCOMPARE(find(0, "а"), 1);
    QCOMPARE(find(0, "а1"), -1);
}

void TestItemFilterModel::saysWhatTheSearchMeans()
{
    const auto getMeant = [this] {
        QString meant;
        for (int row = 0; row < table->rowCount(); ++row)
            meant += filter->isMeant(table->index(row, 0)) ? QLatin1Char('1') : QLatin1Char('0');
        return meant;
    };
    QCOMPARE(getMeant(), QStringLiteral("111"));
    filter->setSearchText(QStringLiteral("РП пУнкт"));
    QCOMPARE(getMeant(), QStringLiteral("110"));
    filter->setSearchText(QStringLiteral("10"));
    QCOMPARE(getMeant(), QStringLiteral("101"));
}

QTEST_GUILESS_MAIN(TestItemFilterModel)
#include "tst_itemfiltermodel.moc"
