#include "host/delegates/CItemDelegate.h"

#include <QComboBox>
#include <QHelpEvent>
#include <QLineEdit>
#include <QStandardItemModel>
#include <QTableView>
#include <QToolTip>
#include <QtTest>

namespace {

class ToleranceDelegate : public CItemDelegate
{
public:
    using CItemDelegate::CItemDelegate;
    using CItemDelegate::initStyleOption;

    Qt::Alignment getDefaultAlign() const override { return Qt::AlignRight | Qt::AlignVCenter; }
    double getEpsilon() const override { return 0.001; }
    bool isShowToolTip() const override { return hasToolTips; }

    bool hasToolTips = true;
};

} // namespace

class TestCItemDelegate : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void editorValueOfAComboBoxIsItsUserData();
    void editorValueOfOtherEditorsIsTheirUserProperty();
    void editorShowsTheValue();
    void valueGoesIntoTheModel();
    void differenceBelowEpsilonChangesNothing();
    void modelsAlignmentComesFirst();
    void toolTipIsTheModelsOwnOrTheText();
    void toolTipShowsMarkupAsItIs();
    void noToolTipWithoutConsent();

private:
    QStandardItemModel model{1, 1};
    QModelIndex index;
    ToleranceDelegate delegate;
};

void TestCItemDelegate::init()
{
    model.clear();
    model.setItem(0, 0, new QStandardItem);
    index = model.index(0, 0);
    delegate.hasToolTips = true;
}

void TestCItemDelegate::editorValueOfAComboBoxIsItsUserData()
{
    QComboBox editor;
    QVERIFY(!delegate.getEditorValue(nullptr).isValid());
    editor.addItem(QStringLiteral("one"), 1);
    editor.addItem(QStringLiteral("two"));
    QCOMPARE(delegate.getEditorValue(&editor), QVariant(1));
    editor.setCurrentIndex(1);
    QCOMPARE(delegate.getEditorValue(&editor), QVariant(QStringLiteral("two")));
}

void TestCItemDelegate::editorValueOfOtherEditorsIsTheirUserProperty()
{
    QLineEdit lineEdit(QStringLiteral("Rp 1"));
    QCOMPARE(delegate.getEditorValue(&lineEdit), QVariant(QStringLiteral("Rp 1")));
    QCOMPARE(delegate.getValue(&lineEdit), QVariant(QStringLiteral("Rp 1")));
    QWidget plainWidget;
    QVERIFY(!delegate.getEditorValue(&plainWidget).isValid());
}

void TestCItemDelegate::editorShowsTheValue()
{
    model.setData(index, QStringLiteral("b"), Qt::EditRole);
    QLineEdit lineEdit;
    delegate.setEditorData(&lineEdit, index);
    QCOMPARE(lineEdit.text(), QStringLiteral("b"));
    QComboBox comboBox;
    comboBox.addItem(QStringLiteral("b"), QStringLiteral("a"));
    comboBox.addItem(QStringLiteral("c"), QStringLiteral("b"));
    delegate.setEditorData(&comboBox, index);
    QCOMPARE(comboBox.currentText(), QStringLiteral("c"));
    comboBox.setItemData(1, QVariant());
    delegate.setEditorData(&comboBox, index);
    QCOMPARE(comboBox.currentText(), QStringLiteral("b"));
}

void TestCItemDelegate::valueGoesIntoTheModel()
{
    QLineEdit editor(QStringLiteral("Rp 2"));
    delegate.setModelData(&editor, &model, index);
    QCOMPARE(index.data(Qt::EditRole), QVariant(QStringLiteral("Rp 2")));
    QWidget plainWidget;
    delegate.setModelData(&plainWidget, &model, index);
    QCOMPARE(index.data(Qt::EditRole), QVariant(QStringLiteral("Rp 2")));
}

void TestCItemDelegate::differenceBelowEpsilonChangesNothing()
{
    model.setData(index, 1.25, Qt::EditRole);
    QSignalSpy changed(&model, &QAbstractItemModel::dataChanged);
    QComboBox editor;
    editor.addItem(QString(), 1.2505);
    editor.addItem(QString(), 1.252);
    delegate.setModelData(&editor, &model, index);
    QCOMPARE(changed.count(), 0);
    editor.setCurrentIndex(1);
    delegate.setModelData(&editor, &model, index);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(index.data(Qt::EditRole), QVariant(1.252));
}

void TestCItemDelegate::modelsAlignmentComesFirst()
{
    QStyleOptionViewItem option;
    delegate.initStyleOption(&option, index);
    QCOMPARE(option.displayAlignment, Qt::AlignRight | Qt::AlignVCenter);
    model.setData(index, int(Qt::AlignHCenter), Qt::TextAlignmentRole);
    delegate.initStyleOption(&option, index);
    QCOMPARE(option.displayAlignment, Qt::Alignment(Qt::AlignHCenter));
}

void TestCItemDelegate::toolTipIsTheModelsOwnOrTheText()
{
    model.setData(index, QStringLiteral("Rp 3"), Qt::DisplayRole);
    QCOMPARE(delegate.getToolTipText(index), QStringLiteral("Rp 3"));
    model.setData(index, QStringLiteral("грунтовый репер"), Qt::ToolTipRole);
    QCOMPARE(delegate.getToolTipText(index), QStringLiteral("грунтовый репер"));
}

void TestCItemDelegate::toolTipShowsMarkupAsItIs()
{
    QTableView view;
    view.setModel(&model);
    view.show();
    model.setData(index, QStringLiteral("<b>Rp 4</b>"), Qt::DisplayRole);
    QStyleOptionViewItem option;
    option.rect = view.visualRect(index);
    QHelpEvent event(QEvent::ToolTip, option.rect.center(),
                     view.viewport()->mapToGlobal(option.rect.center()));
    QVERIFY(delegate.helpEvent(&event, &view, option, index));
    QCOMPARE(QToolTip::text(), QStringLiteral("<p>&lt;b&gt;Rp 4&lt;/b&gt;</p>"));
}

void TestCItemDelegate::noToolTipWithoutConsent()
{
    QTableView view;
    view.setModel(&model);
    view.show();
    model.setData(index, QStringLiteral("Rp 5"), Qt::DisplayRole);
    delegate.hasToolTips = false;
    QStyleOptionViewItem option;
    option.rect = view.visualRect(index);
    QHelpEvent event(QEvent::ToolTip, option.rect.center(),
                     view.viewport()->mapToGlobal(option.rect.center()));
    QVERIFY(!delegate.helpEvent(&event, &view, option, index));
}

QTEST_MAIN(TestCItemDelegate)
#include "tst_citemdelegate.moc"
