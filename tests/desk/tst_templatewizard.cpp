#include "Orvel/store/ProtocolTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/gui/RoleHeader.h"
#include "apps/desk/gui/TablePreviewModel.h"
#include "apps/desk/gui/TemplateWizard.h"
#include "apps/desk/templates/TemplateFile.h"
#include "apps/desk/templates/TemplateFolder.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/TestFiles.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSpinBox>
#include <QTableView>
#include <QTest>

using namespace orvel::desk;
using namespace orvel::test;

/// What a user does in the wizard that makes a template.
class TestTemplateWizard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void wellKnownFileNeedsNoChoice();
    void faultsStandInTheirCells();
    void settingsAreSeenAtOnce();
    void roleMovesFromColumnToColumn();
    void missingRoleHoldsTheWizard();
    void fixedWidths();
    void keptTemplateIsOffered();
    void templateIsForgotten();
    void templateOfTheSameNameIsReplaced();
    void oddNamesAreKept();
    void everythingIsReachedByKeys();
    void everythingHasAccessibleName();
    void unreadableFileIsNamed();
    void severalFilesAreOneNetwork();
    void networkAndTableAreImportedInTurn();
    void replacedNetworkTakesItsImportAlong();

private:
    /// Opens the wizard for a file of the test, on its second page.
    void showColumns(const QByteArray& text, const QString& name = QStringLiteral("line.csv"));
    template<typename Widget>
    Widget& find(const char* name) const
    {
        auto* widget = wizard->findChild<Widget*>(QLatin1String(name));
        if (!widget)
            qFatal("no %s", name);
        return *widget;
    }
    void choose(const char* list, const char* text)
    {
        find<QComboBox>(list).setCurrentText(QString::fromUtf8(text));
    }
    /// Answers the last page, and waits for the import.
    void finish()
    {
        wizard->accept();
        QCoreApplication::processEvents();
        QVERIFY(window->getMonitor().waitForFinished());
    }
    QString state() const { return find<QLabel>("state").text(); }
    bool mayGoOn() const { return wizard->button(QWizard::NextButton)->isEnabled(); }
    /// The cells of a row of the preview, the remark behind them.
    QString row(int index) const;
    QString roles() const;

    std::unique_ptr<DeskFixture> desk;
    std::unique_ptr<DeskWindow> window;
    TemplateWizard* wizard = nullptr;
};

namespace {

const QByteArray kLine = "от;до;превышение, мм;длина, км\n"
                         "Рп1;М2;1234,5;0,5\n"
                         "М2;М3;-345,6;0,7\n";

} // namespace

void TestTemplateWizard::init()
{
    desk = std::make_unique<DeskFixture>();
    window = desk->makeWindow();
}

void TestTemplateWizard::cleanup()
{
    window.reset();
    desk.reset();
}

void TestTemplateWizard::showColumns(const QByteArray& text, const QString& name)
{
    writeFile(desk->path(name), text);
    window->showTemplateWizard({desk->path(name)});
    wizard = window->findChild<TemplateWizard*>();
    wizard->next();
}

QString TestTemplateWizard::row(int index) const
{
    const QAbstractItemModel& model = *find<QTableView>("preview").model();
    QStringList cells;
    for (int column = TablePreviewModel::FirstCell; column < model.columnCount(); ++column)
        cells.append(model.index(index, column).data().toString());
    cells.append(model.index(index, TablePreviewModel::Remark).data().toString());
    return cells.join(QLatin1Char('|'));
}

QString TestTemplateWizard::roles() const
{
    QStringList names;
    for (const levelling::ColumnRole role : wizard->getFormat().columns)
        names.append(levelling::getRoleName(role));
    return names.join(QLatin1Char(','));
}

void TestTemplateWizard::wellKnownFileNeedsNoChoice()
{
    showColumns(kLine);
    QCOMPARE(roles(), QStringLiteral("from,to,dh,length"));
    QCOMPARE(state(), QStringLiteral("Из первых строк годится 2, не прочитано 0."));
    QCOMPARE(row(0), QStringLiteral("от|до|превышение, мм|длина, км|шапка, пропускается"));
    QCOMPARE(row(1), QStringLiteral("Рп1|М2|1234,5|0,5|годится"));
    QVERIFY(mayGoOn());
    wizard->next();
    QCOMPARE(find<QLineEdit>("name").text(), QStringLiteral("line"));
    finish();

    const levelling::Network& network = window->getDocument().getSnapshot().network;
    QCOMPARE(int(network.sections.size()), 2);
    QCOMPARE(network.sections[0].difference, 1.2345);
    QCOMPARE(*network.sections[1].distance, 0.7);
    QCOMPARE(window->windowTitle(), QStringLiteral("line[*]"));
    QCOMPARE(int(window->getDocument().getSummary().types.count(enums::ImportTemplate)), 1);
    const std::vector<templatefolder::KeptTemplate> kept = templatefolder::list();
    QCOMPARE(int(kept.size()), 1);
    QCOMPARE(kept[0].format.name, QStringLiteral("line"));
    QCOMPARE(kept[0].format.decimal, QChar(QLatin1Char(',')));
    QVERIFY(kept[0].format.differenceUnit == levelling::DifferenceUnit::Millimetre);
}

void TestTemplateWizard::faultsStandInTheirCells()
{
    showColumns("A;B;1.5;0.5\n"
                "B;;x;y\n"
                "C;D;1,5;z\n"
                "\n"
                "# note\n"
                "D;E;1;-1\n"
                "\"E;F;1\n"
                "E;F;1;0.5\n");
    find<QSpinBox>("skipRows").setValue(0);
    choose("role0", "начальный пункт");
    choose("role1", "конечный пункт");
    choose("role2", "превышение");
    choose("role3", "длина");
    QCOMPARE(row(0), QStringLiteral("A|B|1.5|0.5|годится"));
    QCOMPARE(row(1), QStringLiteral("B|⚠ пусто|x ⚠ непригодное число|y ⚠ непригодное число|не прочитана: "
                                    "конечный пункт: пусто; превышение: непригодное число; длина: "
                                    "непригодное число"));
    QCOMPARE(row(2), QStringLiteral("C|D|1,5 ⚠ другой десятичный знак|z ⚠ непригодное число|не прочитана: "
                                    "превышение: другой десятичный знак; длина: непригодное число"));
    QCOMPARE(row(3), QStringLiteral("||||пустая, пропускается"));
    QCOMPARE(row(4), QStringLiteral("||||комментарий, пропускается"));
    QCOMPARE(row(5), QStringLiteral("D|E|1|-1 ⚠ непригодное число|годится, но длина: непригодное число"));
    QCOMPARE(row(6), QStringLiteral("||||не прочитана: кавычка не закрыта"));
    QCOMPARE(state(), QStringLiteral("Из первых строк годится 3, не прочитано 3."));
    const QAbstractItemModel& model = *find<QTableView>("preview").model();
    QVERIFY(model.index(1, 2).data(Qt::BackgroundRole).isValid());
    QVERIFY(model.index(1, 0).data(Qt::BackgroundRole).isValid());
    QVERIFY(!model.index(0, 2).data(Qt::BackgroundRole).isValid());
    QCOMPARE(model.headerData(4, Qt::Vertical, Qt::DisplayRole).toString(), QStringLiteral("5"));
}

void TestTemplateWizard::settingsAreSeenAtOnce()
{
    showColumns(kLine);
    choose("decimal", "точка");
    QCOMPARE(state(), QStringLiteral("Из первых строк не годится ни одна: проверьте разделитель, десятичный "
                                     "знак и столбцы."));
    QVERIFY(!mayGoOn());
    choose("decimal", "запятая");
    QVERIFY(mayGoOn());
    find<QSpinBox>("skipRows").setValue(2);
    QCOMPARE(row(1), QStringLiteral("Рп1|М2|1234,5|0,5|шапка, пропускается"));
    QCOMPARE(state(), QStringLiteral("Из первых строк годится 1, не прочитано 0."));
    find<QSpinBox>("skipRows").setValue(1);
    choose("encoding", "windows-1251");
    QVERIFY(row(1).startsWith(QString::fromUtf8("Рџ")) || !row(1).startsWith(QStringLiteral("Рп1")));
    choose("encoding", "UTF-8");
    find<QLineEdit>("comment").setText(QStringLiteral("Рп"));
    QCOMPARE(row(1), QStringLiteral("||||комментарий, пропускается"));
    choose("differenceUnit", "м");
    QVERIFY(wizard->getFormat().differenceUnit == levelling::DifferenceUnit::Metre);
    choose("lengthUnit", "м");
    QVERIFY(wizard->getFormat().lengthUnit == levelling::LengthUnit::Metre);
}

void TestTemplateWizard::roleMovesFromColumnToColumn()
{
    showColumns(kLine);
    choose("role3", "число штативов");
    QCOMPARE(roles(), QStringLiteral("from,to,dh,stations"));
    QCOMPARE(row(1), QStringLiteral("Рп1|М2|1234,5|0,5 ⚠ непригодное число|годится, но число штативов: "
                                    "непригодное число"));
    choose("role0", "конечный пункт");
    choose("role1", "начальный пункт");
    QCOMPARE(roles(), QStringLiteral("to,from,dh,stations"));
    QCOMPARE(find<QComboBox>("role1").currentText(), QStringLiteral("начальный пункт"));
    QVERIFY(mayGoOn());
}

void TestTemplateWizard::missingRoleHoldsTheWizard()
{
    showColumns(kLine);
    choose("role2", "не читать");
    QCOMPARE(state(), QStringLiteral("Не выбран столбец «превышение». Секциям нужны оба пункта и превышение, "
                                     "пунктам — имя и отметка или координаты."));
    QVERIFY(!mayGoOn());
    choose("role2", "отметка, м");
    QCOMPARE(state(), QStringLiteral("Столбцы секций и пунктов вместе не читаются: лишний «отметка, м»."));
    choose("role2", "превышение");
    QVERIFY(mayGoOn());
}

void TestTemplateWizard::fixedWidths()
{
    showColumns("A   B      1.25  0.5\n"
                "B   C     -1.50  0.7\n");
    choose("separator", "нет: столбцы постоянной ширины");
    QCOMPARE(state(), QStringLiteral("Ширины столбцов — целые числа через запятую, например 8, 8, 10."));
    QVERIFY(!mayGoOn());
    find<QLineEdit>("widths").setText(QStringLiteral("4, 4, 8, 5"));
    QCOMPARE(row(1), QStringLiteral("B|C|-1.50|0.7|годится"));
    QVERIFY(mayGoOn());
    wizard->next();
    finish();
    QCOMPARE(window->getDocument().getSnapshot().network.sections[1].difference, -1.5);
    QCOMPARE(templatefolder::list()[0].format.syntax.widths, (std::vector<int>{4, 4, 8, 5}));
}

void TestTemplateWizard::keptTemplateIsOffered()
{
    levelling::TableTemplate format;
    format.name = QStringLiteral("Мой формат");
    format.syntax.separator = QLatin1Char(':');
    format.columns = {levelling::ColumnRole::To, levelling::ColumnRole::From,
                      levelling::ColumnRole::Difference};
    templatefolder::keep(format);
    writeFile(desk->path(QStringLiteral("a.txt")), "A:B:1\n");
    window->showTemplateWizard({desk->path(QStringLiteral("a.txt"))});
    wizard = window->findChild<TemplateWizard*>();
    auto& list = find<QListWidget>("templates");
    QCOMPARE(list.item(1)->text(), QStringLiteral("Мой формат"));
    list.setCurrentRow(1);
    wizard->next();
    QCOMPARE(roles(), QStringLiteral("to,from,dh"));
    QCOMPARE(find<QComboBox>("separator").currentText(), QStringLiteral("«:»"));
    wizard->next();
    QCOMPARE(find<QLineEdit>("name").text(), QStringLiteral("Мой формат"));
}

void TestTemplateWizard::templateIsForgotten()
{
    levelling::TableTemplate format;
    format.name = QStringLiteral("old");
    format.columns = {levelling::ColumnRole::Point, levelling::ColumnRole::Height};
    const QString path = templatefolder::keep(format);
    window->showTemplateWizard({});
    wizard = window->findChild<TemplateWizard*>();
    auto& button = find<QAbstractButton>("forget");
    QVERIFY(!button.isEnabled());
    find<QListWidget>("templates").setCurrentRow(1);
    QVERIFY(button.isEnabled());
    button.click();
    QCOMPARE(find<QListWidget>("templates").count(), 1);
    QVERIFY(!QFile::exists(path));
    QVERIFY(!button.isEnabled());
}

void TestTemplateWizard::templateOfTheSameNameIsReplaced()
{
    levelling::TableTemplate format;
    format.columns = {levelling::ColumnRole::Point, levelling::ColumnRole::Height};
    format.name = QStringLiteral("A/B");
    const QString path = templatefolder::keep(format);
    format.decimal = QLatin1Char(',');
    QCOMPARE(templatefolder::keep(format), path);
    // Another name that would be the same file.
    format.name = QStringLiteral("A:B");
    QVERIFY(templatefolder::keep(format) != path);
    const std::vector<templatefolder::KeptTemplate> kept = templatefolder::list();
    QCOMPARE(int(kept.size()), 2);
    QCOMPARE(kept[0].format.decimal, QChar(QLatin1Char(',')));
}

void TestTemplateWizard::oddNamesAreKept()
{
    levelling::TableTemplate format;
    format.columns = {levelling::ColumnRole::Point, levelling::ColumnRole::Height};
    const QString folder = QDir(templatefolder::getFolder()).absolutePath();
    for (const QString& name : {QStringLiteral("../../evil"), QStringLiteral("."), QStringLiteral("<b>&\"%1"),
                                QString(300, QChar(0x0416)), QStringLiteral("a\nb")}) {
        format.name = name;
        const QString path = templatefolder::keep(format);
        QCOMPARE(QFileInfo(path).absolutePath(), folder);
        QCOMPARE(templatefile::read(path).name, name);
    }
}

void TestTemplateWizard::everythingIsReachedByKeys()
{
    showColumns(kLine);
    QSet<QWidget*> reached;
    find<QComboBox>("separator").setFocus();
    for (int i = 0; i < 60; ++i) {
        reached.insert(wizard->focusWidget());
        QTest::keyClick(wizard->focusWidget(), Qt::Key_Tab);
    }
    for (const char* name : {"decimal", "encoding", "role0", "role1", "role2", "role3", "differenceUnit"})
        QVERIFY2(reached.contains(&find<QComboBox>(name)), name);
    QVERIFY(reached.contains(&find<QTableView>("preview")));
    QVERIFY(reached.contains(wizard->button(QWizard::NextButton)));
    // A role is chosen by its arrow keys.
    auto& list = find<QComboBox>("role3");
    list.setFocus();
    const int before = list.currentIndex();
    QTest::keyClick(&list, Qt::Key_Down);
    QCOMPARE(list.currentIndex(), before + 1);
    QCOMPARE(roles(), QStringLiteral("from,to,dh,stations"));
}

void TestTemplateWizard::everythingHasAccessibleName()
{
    showColumns(kLine);
    for (const auto* widget : wizard->findChildren<QWidget*>()) {
        if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisible() ||
            widget->inherits("QAbstractButton") || widget->objectName().startsWith(QLatin1String("qt_")))
            continue;
        QVERIFY2(!widget->accessibleName().isEmpty(), qPrintable(widget->objectName()));
    }
    QCOMPARE(find<QComboBox>("role0").accessibleName(), QStringLiteral("Столбец 1: что в нём"));
}

void TestTemplateWizard::unreadableFileIsNamed()
{
    window->showTemplateWizard({});
    wizard = window->findChild<TemplateWizard*>();
    QCOMPARE(find<QLabel>("fileProblem").text(),
             QStringLiteral("Выберите текстовый файл: .csv, .txt или другой."));
    QVERIFY(!mayGoOn());
    QTest::keyClicks(&find<QLineEdit>("path"), QStringLiteral("/no/such.csv"));
    QCOMPARE(find<QLabel>("fileProblem").text(),
             QStringLiteral("Файл «/no/such.csv» не найден или не читается."));
    QVERIFY(!mayGoOn());
}

void TestTemplateWizard::severalFilesAreOneNetwork()
{
    writeFile(desk->path(QStringLiteral("a.csv")), "A;B;1.5;0.5\n");
    writeFile(desk->path(QStringLiteral("b.csv")), "B;C;2.5;0.5\n");
    window->importFiles({desk->path(QStringLiteral("a.csv")), desk->path(QStringLiteral("b.csv"))});
    wizard = window->findChild<TemplateWizard*>();
    wizard->next();
    wizard->next();
    finish();
    const levelling::Network& network = window->getDocument().getSnapshot().network;
    QCOMPARE(int(network.points.size()), 3);
    QCOMPARE(network.sources, QStringList({QStringLiteral("a.csv"), QStringLiteral("b.csv")}));
}

void TestTemplateWizard::networkAndTableAreImportedInTurn()
{
    writeFile(desk->path(QStringLiteral("heights.csv")), "BMX;100.5;\nZ;1.0;\n");
    window->importFiles(
        {desk->path(QStringLiteral("heights.csv")), samplePath(QStringLiteral("two-benchmarks.gkf"))});
    QVERIFY(window->getMonitor().waitForFinished());
    wizard = window->findChild<TemplateWizard*>();
    QVERIFY(wizard);
    wizard->next();
    QCOMPARE(roles().left(12), QStringLiteral("point,height"));
    wizard->next();
    const Answer answer(QStringLiteral("Добавить"));
    finish();
    const levelling::Network& network = window->getDocument().getSnapshot().network;
    QCOMPARE(int(network.points.size()), 6);
    QCOMPARE(*network.points[0].height, 100.5);
    QCOMPARE(int(window->getDocument().getSummary().types.count(enums::Import)), 1);
    QCOMPARE(int(window->getDocument().getSummary().types.count(enums::ImportTemplate)), 1);
}

void TestTemplateWizard::replacedNetworkTakesItsImportAlong()
{
    showColumns(kLine);
    wizard->next();
    finish();
    const auto hasProtocol = [this](int type) {
        return window->getDocument().getSummary().types.count(type) == 1;
    };
    QVERIFY(hasProtocol(enums::ImportTemplate));
    {
        const Answer answer(QStringLiteral("Добавить"));
        window->importFile(samplePath(QStringLiteral("two-benchmarks.gkf")));
        QVERIFY(window->getMonitor().waitForFinished());
    }
    QVERIFY(hasProtocol(enums::ImportTemplate) && hasProtocol(enums::Import));
    const Answer answer(QStringLiteral("Заменить"));
    window->importFile(samplePath(QStringLiteral("one-benchmark.gkf")));
    QVERIFY(window->getMonitor().waitForFinished());
    QVERIFY(!hasProtocol(enums::ImportTemplate) && hasProtocol(enums::Import));
}

QTEST_MAIN(TestTemplateWizard)
#include "tst_templatewizard.moc"
