#include "Orvel/integration/CReportDelegate.h"
#include "Orvel/integration/OrvelGUIExtension.h"
#include "host/delegates/CProjectItemModel.h"
#include "tests/integration/WindowFixture.h"
#include "tests/support/TestFiles.h"

#include <QComboBox>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QStandardItemModel>
#include <QTableView>
#include <QtTest>

#include <memory>
#include <set>

namespace {

constexpr int kImport = 0x1235B704;

/// The item table of a project whose protocol mentions the items 5 and 7, but not 6.
struct TableFixture : WindowFixture
{
    TableFixture()
        : table(&model, {{QStringLiteral("Отчёт"), CProjectItemModel::Source::Property,
                          kWarningReportProperty, kWarningReportDelegate}})
    {
        addProtocol();
        model.setItemMentionedQuery([this](LONGID id) { return mentioned.count(id) != 0; });
        for (const LONGID id : {5, 6, 7})
            addItem(id);
        runProtocol(kImport, QStringLiteral("Р5"), 5);
    }

    /// What the delegate makes of an attempt to edit the item's cell.
    QWidget* edit(LONGID id) const { return edit(table.getIndex(id)); }
    QWidget* edit(const QModelIndex& index) const
    {
        QWidget editorParent;
        QWidget* editor = delegate.createEditor(&editorParent, QStyleOptionViewItem(), index);
        if (!editorParent.children().isEmpty())
            qFatal("The delegate has made a widget");
        return editor;
    }

    std::set<LONGID> mentioned = {5, 7};
    CProjectItemModel table;
    CReportDelegate delegate;
};

} // namespace

class TestCReportDelegate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasNoMetaObjectOfItsOwn();
    void editingShowsTheProtocolOfAnItemThatIsMentioned();
    void editingDoesNothingForAnItemThatIsNotMentioned();
    void editingInATableShowsTheProtocolAndOpensNoEditor();
    void doubleClickInATableShowsTheProtocol();

    void editingDoesNothingInAModelOfAnotherKind();
    void editingDoesNothingWithoutAnItem();
    void editingDoesNothingWithoutAWindow();
    void editingDoesNothingWithoutAViewer();
    void editingUsesTheFirstViewerOnly();
    void editingTakesTheWindowOfTheTablesProject();

    void cellsShowNoText_data();
    void cellsShowNoText();
    void valueOfAComboBoxIsItsUserData();
    void valueOfAnyOtherEditorIsInvalid();
};

void TestCReportDelegate::hasNoMetaObjectOfItsOwn()
{
    QObject parent;
    const auto* delegate = new CReportDelegate(&parent);
    QCOMPARE(delegate->parent(), &parent);
    QCOMPARE(delegate->metaObject(), &CItemDelegate::staticMetaObject);
}

void TestCReportDelegate::editingShowsTheProtocolOfAnItemThatIsMentioned()
{
    TableFixture fixture;
    fixture.addViewer();
    QCOMPARE(fixture.edit(5), nullptr);
    QCOMPARE(fixture.opened.getPaths().size(), 1);
    QVERIFY(readFile(fixture.opened.getPaths()[0]).contains("id=5&project="));
}

void TestCReportDelegate::editingDoesNothingForAnItemThatIsNotMentioned()
{
    TableFixture fixture;
    fixture.addViewer();
    // The query decides, not what the protocol holds.
    fixture.mentioned = {7};
    QCOMPARE(fixture.edit(5), nullptr);
    QCOMPARE(fixture.edit(6), nullptr);
    QCOMPARE(fixture.opened.getUrls(), QList<QUrl>());
    QCOMPARE(fixture.getPages(), QStringList());
}

void TestCReportDelegate::editingInATableShowsTheProtocolAndOpensNoEditor()
{
    TableFixture fixture;
    fixture.addViewer();
    QTableView view;
    view.setModel(&fixture.table);
    view.setItemDelegateForColumn(0, &fixture.delegate);
    const auto countEditors = [&] { return view.viewport()->findChildren<QWidget*>().size(); };

    view.edit(fixture.table.getIndex(6));
    QCOMPARE(fixture.opened.getUrls().size(), 0);
    view.edit(fixture.table.getIndex(5));
    QCOMPARE(fixture.opened.getUrls().size(), 1);

    for (const LONGID id : {5, 6}) {
        QCOMPARE(view.indexWidget(fixture.table.getIndex(id)), nullptr);
        QVERIFY(!view.isPersistentEditorOpen(fixture.table.getIndex(id)));
    }
    QCOMPARE(countEditors(), 0);
}

void TestCReportDelegate::doubleClickInATableShowsTheProtocol()
{
    TableFixture fixture;
    fixture.addViewer();
    QTableView view;
    view.setModel(&fixture.table);
    view.setItemDelegateForColumn(0, &fixture.delegate);
    view.resize(400, 300);
    view.show();
    QVERIFY(QTest::qWaitForWindowExposed(&view));

    const auto doubleClick = [&](LONGID id) {
        const QPoint centre = view.visualRect(fixture.table.getIndex(id)).center();
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, centre);
        QTest::mouseDClick(view.viewport(), Qt::LeftButton, {}, centre);
    };
    doubleClick(6);
    QCOMPARE(fixture.opened.getUrls().size(), 0);
    doubleClick(5);
    QCOMPARE(fixture.opened.getUrls().size(), 1);
}

void TestCReportDelegate::editingDoesNothingInAModelOfAnotherKind()
{
    TableFixture fixture;
    fixture.addViewer();
    const QStandardItemModel foreign(3, 1);
    QCOMPARE(fixture.edit(foreign.index(0, 0)), nullptr);

    QSortFilterProxyModel sorted;
    sorted.setSourceModel(&fixture.table);
    QCOMPARE(fixture.edit(sorted.mapFromSource(fixture.table.getIndex(5))), nullptr);
    QCOMPARE(fixture.opened.getUrls(), QList<QUrl>());
}

void TestCReportDelegate::editingDoesNothingWithoutAnItem()
{
    TableFixture fixture;
    fixture.addViewer();
    QCOMPARE(fixture.edit(QModelIndex()), nullptr);
    // The index of a row that is no more.
    const QModelIndex last = fixture.table.getIndex(7);
    QCOMPARE(last.row(), 2);
    QVERIFY(fixture.model.removeItem(7));
    QCOMPARE(fixture.edit(last), nullptr);
    QCOMPARE(fixture.opened.getUrls(), QList<QUrl>());
}

void TestCReportDelegate::editingDoesNothingWithoutAWindow()
{
    TableFixture fixture;
    CProject windowless(QStringLiteral("Проект 1"));
    CProjectModel model(&windowless);
    model.addSystemItem(new COrvel(&model, QStringLiteral("survey")), {});
    model.setItemMentionedQuery([](LONGID) { return true; });
    auto item = std::make_unique<CModelElement>();
    item->setId(5);
    QVERIFY(model.addItem(std::move(item)));
    const CProjectItemModel table(&model, fixture.table.getColumns());
    fixture.addViewer();

    QCOMPARE(fixture.edit(table.getIndex(5)), nullptr);
    QCOMPARE(fixture.opened.getUrls(), QList<QUrl>());
}

void TestCReportDelegate::editingDoesNothingWithoutAViewer()
{
    TableFixture fixture;
    fixture.window.addExtension(kOrvelItemType, new GUIExtension(&fixture.window, nullptr));
    fixture.window.addExtension(1, new OrvelGUIExtension(&fixture.window, nullptr));
    QCOMPARE(fixture.edit(5), nullptr);
    QCOMPARE(fixture.opened.getUrls(), QList<QUrl>());
}

void TestCReportDelegate::editingUsesTheFirstViewerOnly()
{
    TableFixture fixture;
    fixture.window.addExtension(kOrvelItemType, new GUIExtension(&fixture.window, nullptr));
    fixture.addViewer();
    fixture.addViewer();
    QCOMPARE(fixture.edit(5), nullptr);
    QCOMPARE(fixture.opened.getUrls().size(), 1);
}

void TestCReportDelegate::editingTakesTheWindowOfTheTablesProject()
{
    TableFixture fixture;
    CProject otherProject(QStringLiteral("Проект 2"));
    CProjectModel otherModel(&otherProject);
    ProjectWindow otherWindow(&otherModel);
    otherWindow.addExtension(kOrvelItemType, new OrvelGUIExtension(&otherWindow, &otherWindow));
    QCOMPARE(fixture.edit(5), nullptr);
    QCOMPARE(fixture.opened.getUrls(), QList<QUrl>());
    fixture.addViewer();
    QCOMPARE(fixture.edit(5), nullptr);
    QCOMPARE(fixture.opened.getUrls().size(), 1);
}

void TestCReportDelegate::cellsShowNoText_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::newRow("true") << QVariant(true);
    QTest::newRow("false") << QVariant(false);
    QTest::newRow("number") << QVariant(12.5);
    QTest::newRow("text") << QVariant(QStringLiteral("текст"));
    QTest::newRow("invalid") << QVariant();
}

void TestCReportDelegate::cellsShowNoText()
{
    QFETCH(QVariant, value);
    const CReportDelegate delegate;
    QCOMPARE(delegate.displayText(value, QLocale(QLocale::Russian)), QString());
}

void TestCReportDelegate::valueOfAComboBoxIsItsUserData()
{
    const CReportDelegate delegate;
    QComboBox comboBox;
    QCOMPARE(delegate.getEditorValue(&comboBox), QVariant());
    comboBox.addItem(QStringLiteral("первая"), 11);
    comboBox.addItem(QStringLiteral("вторая"), QStringLiteral("22"));
    comboBox.addItem(QStringLiteral("третья"));
    comboBox.setItemData(2, 33, Qt::UserRole + 1);
    QCOMPARE(delegate.getEditorValue(&comboBox), QVariant(11));
    comboBox.setCurrentIndex(1);
    QCOMPARE(delegate.getEditorValue(&comboBox), QVariant(QStringLiteral("22")));
    comboBox.setCurrentIndex(2);
    QCOMPARE(delegate.getEditorValue(&comboBox), QVariant());
    comboBox.setCurrentIndex(-1);
    QCOMPARE(delegate.getEditorValue(&comboBox), QVariant());
}

void TestCReportDelegate::valueOfAnyOtherEditorIsInvalid()
{
    const CReportDelegate delegate;
    QLineEdit lineEdit(QStringLiteral("текст"));
    QCOMPARE(delegate.getEditorValue(&lineEdit), QVariant());
    QWidget widget;
    QCOMPARE(delegate.getEditorValue(&widget), QVariant());
    QCOMPARE(delegate.getEditorValue(nullptr), QVariant());
}

QTEST_MAIN(TestCReportDelegate)
#include "tst_creportdelegate.moc"
