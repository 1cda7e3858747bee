#include "apps/desk/document/Document.h"
#include "apps/desk/document/StoredProject.h"
#include "apps/desk/runs/Tolerances.h"
#include "apps/desk/tolerances/ClassIndicator.h"
#include "apps/desk/tolerances/ToleranceDialog.h"
#include "apps/desk/tolerances/ToleranceFile.h"
#include "host/files/Error.h"
#include "tests/desk/DeskFixture.h"

#include <QBuffer>
#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QUndoStack>

#include <functional>
#include <limits>

using namespace orvel::desk;
using namespace orvel::test;

Q_DECLARE_METATYPE(std::function<void(ToleranceRules&)>)

/// By what a project judges its measurements.
class TestTolerances : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void usualRulesAreThoseOfTheClasses();
    void limitsGrowWithLengthOrStations();
    void forwardAndBackHaveLimitsOfTheirOwn();
    void rulesAreDescribed();
    void numbersHaveTheDecimalsOfTheRules();
    void fileChangesWhatItNames();
    void fileWithNothingHasTheUsualRules();
    void badFilesAreRefused_data();
    void badFilesAreRefused();
    void unusableRulesAreNoContent_data();
    void unusableRulesAreNoContent();
    void projectKeepsItsRules();
    void dialogGivesWhatItIsGiven();
    void dialogShowsTheLimits();
    void dialogTakesNoUnusableValue();
    void dialogGoesBackToTheUsualRules();
    void windowShowsTheClass();
    void windowTakesTheTolerances();
};

namespace {

ToleranceRules makeOwnRules()
{
    ToleranceRules rules;
    rules.of(LevellingClass::IV).loops = {ToleranceMeasure::Length, 15.0};
    rules.of(LevellingClass::IV).repeated = {ToleranceMeasure::Stations, 2.5};
    rules.of(LevellingClass::Technical).loops = {ToleranceMeasure::Stations, 10.0};
    rules.sigmaLimit = 2.5;
    rules.confidence = 0.99;
    rules.heightDecimals = 4;
    rules.millimetreDecimals = 1;
    return rules;
}

/// The field of a dialog that a screen reader calls so.
template<typename Field>
Field* field(const QWidget& dialog, const char* name)
{
    for (Field* field : dialog.findChildren<Field*>()) {
        if (field->accessibleName() == QString::fromUtf8(name))
            return field;
    }
    return nullptr;
}

} // namespace

void TestTolerances::usualRulesAreThoseOfTheClasses()
{
    const ToleranceRules rules;
    QCOMPARE(rules.of(LevellingClass::I).loops.factor, 3.0);
    QCOMPARE(rules.of(LevellingClass::IV).repeated.factor, 20.0);
    QCOMPARE(rules.of(LevellingClass::Technical).loops.factor, 50.0);
    QVERIFY(rules.of(LevellingClass::II).loops.measure == ToleranceMeasure::Length);
    QVERIFY(rules.isUsable());
    for (const LevellingClass levellingClass : kLevellingClasses)
        QVERIFY(!rules.isOwn(levellingClass));
    const ToleranceRules own = makeOwnRules();
    QVERIFY(own.isUsable());
    QVERIFY(own != rules);
    QVERIFY(own.isOwn(LevellingClass::IV));
}

void TestTolerances::limitsGrowWithLengthOrStations()
{
    const ToleranceRule byLength{ToleranceMeasure::Length, 20.0};
    const ToleranceRule byStations{ToleranceMeasure::Stations, 5.0};
    QCOMPARE(tolerances::findLimit({4.0, 25.0, 1.0}, byLength, 3.0), 40.0);
    QCOMPARE(tolerances::findLimit({4.0, 25.0, 1.0}, byStations, 3.0), 25.0);
    QCOMPARE(tolerances::findLimit({std::nullopt, 25.0, 1.5}, byLength, 3.0), 4.5);
    QCOMPARE(tolerances::findLimit({4.0, std::nullopt, 1.5}, byStations, 2.0), 3.0);
}

void TestTolerances::forwardAndBackHaveLimitsOfTheirOwn()
{
    const SurveyRules rules(LevellingClass::IV, makeOwnRules());
    const ToleranceBasis basis{4.0, 16.0, 1.0};
    const Tolerance loop = tolerances::judgeLoop(-33.0, basis, rules);
    QCOMPARE(loop.limit, 30.0);
    QCOMPARE(loop.ratio, 1.1);
    QVERIFY(loop.isExceeded);
    const Tolerance repeated = tolerances::judgeRepeated(10.0, basis, rules);
    QCOMPARE(repeated.limit, 10.0);
    QVERIFY(!repeated.isExceeded);
}

void TestTolerances::rulesAreDescribed()
{
    const ToleranceRules standard;
    QCOMPARE(tolerances::describeRules(standard, LevellingClass::III),
             QStringLiteral("Допуск невязок ходов и полигонов и расхождений измерений секции: ±10\u00A0мм·√L "
                            "(III класс), L — длина, км; без длины — 3 СКО"));
    QCOMPARE(tolerances::describeOwnLevel(standard), QString());
    QCOMPARE(tolerances::describeClassInUse({LevellingClass::IV, standard}), QStringLiteral("IV класс"));
    const ToleranceRules own = makeOwnRules();
    QCOMPARE(tolerances::describeRules(own, LevellingClass::IV),
             QStringLiteral(
                 "Допуск невязок ходов и полигонов: ±15\u00A0мм·√L (IV класс, свои допуски), L — длина, "
                 "км; без длины — 2,5 СКО. Допуск расхождений измерений секции: ±2,5\u00A0мм·√n (IV "
                 "класс, свои допуски), n — число станций; без числа станций — 2,5 СКО"));
    QCOMPARE(
        tolerances::describeLoopRule({LevellingClass::Technical, own}),
        QStringLiteral("±10\u00A0мм·√n (техническое нивелирование, свои допуски), n — число станций; без "
                       "числа станций — 2,5 СКО"));
    QCOMPARE(tolerances::describeOwnLevel(own),
             QStringLiteral("Доверительная вероятность критериев задана в допусках проекта: 0,99"));
}

void TestTolerances::numbersHaveTheDecimalsOfTheRules()
{
    const NumberFormat format(makeOwnRules());
    QCOMPARE(format.height(101.23456), QStringLiteral("101,2346"));
    QCOMPARE(format.rise(1.5), QStringLiteral("+1,5000"));
    QCOMPARE(format.misclosure(-3.26), QStringLiteral("\u22123,3"));
    QCOMPARE(format.sigma(0.06), QStringLiteral("0,1"));
    QCOMPARE(tolerances::describeSignedLimit({12.34, 2.0, true}, format),
             QStringLiteral("больше допуска ±12,3\u00A0мм"));
    QCOMPARE(NumberFormat().height(1.0), QStringLiteral("1,00000"));
    QCOMPARE(NumberFormat(ToleranceRules()).sigma(1.0), QStringLiteral("1,00"));
}

void TestTolerances::fileChangesWhatItNames()
{
    const ToleranceRules rules = tolerancefile::parse(
        R"({"classes": {"IV": {"loops": {"k": 15}, "repeated": {"k": 2.5, "by": "stations"}},
                        "technical": {"loops": {"by": "stations", "k": 10}}},
            "sigmaLimit": 2.5, "confidence": 0.99, "heightDecimals": 4, "millimetreDecimals": 1})");
    QVERIFY(rules == makeOwnRules());
}

void TestTolerances::fileWithNothingHasTheUsualRules()
{
    QVERIFY(tolerancefile::parse("{}") == ToleranceRules());
}

void TestTolerances::badFilesAreRefused_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QString>("refusal");
    const auto row = [](const char* json, const char* refusal) {
        QTest::newRow(json) << QByteArray(json) << QString::fromUtf8(refusal);
    };
    row("{", "это не JSON, ошибка в строке 1");
    row("[]",
        "файл допусков — это объект JSON {…} с ключами classes, sigmaLimit, confidence, heightDecimals, "
        "millimetreDecimals");
    row(R"({"clases": 1})", "неизвестный ключ «clases»: допустимы classes, sigmaLimit, confidence, "
                            "heightDecimals, millimetreDecimals");
    row(R"({"classes": 1})",
        "непригодное значение ключа «classes»: допустимо объект {…} с ключами I, II, III, IV, technical");
    row(R"({"classes": {"V": {}}})", "неизвестный ключ «classes.V»: допустимы I, II, III, IV, technical");
    row(R"({"classes": {"I": {"loop": {}}}})",
        "неизвестный ключ «classes.I.loop»: допустимы loops, repeated");
    row(R"({"classes": {"I": {"loops": {}}}})",
        "непригодное значение ключа «classes.I.loops.k»: допустимо число от 0,01 до 1000");
    row(R"({"classes": {"I": {"loops": {"k": 1001}}}})",
        "непригодное значение ключа «classes.I.loops.k»: допустимо число от 0,01 до 1000");
    row(R"({"classes": {"I": {"loops": {"k": 5, "by": "feet"}}}})",
        "непригодное значение ключа «classes.I.loops.by»: допустимо length, stations");
    row(R"({"sigmaLimit": 0})", "непригодное значение ключа «sigmaLimit»: допустимо число от 1 до 10");
    row(R"({"confidence": "0.9"})",
        "непригодное значение ключа «confidence»: допустимо число от 0,5 до 0,9999");
    row(R"({"heightDecimals": 2.5})",
        "непригодное значение ключа «heightDecimals»: допустимо целое число от 0 до 6");
    row(R"({"millimetreDecimals": 5})",
        "непригодное значение ключа «millimetreDecimals»: допустимо число от 0 до 4");
}

void TestTolerances::badFilesAreRefused()
{
    QFETCH(QByteArray, json);
    QFETCH(QString, refusal);
    QString told;
    try {
        tolerancefile::parse(json);
    } catch (const exceptions::Error& error) {
        told = QString::fromStdWString(error.getText());
    }
    QCOMPARE(told, refusal);
}

void TestTolerances::unusableRulesAreNoContent_data()
{
    QTest::addColumn<std::function<void(ToleranceRules&)>>("spoil");
    const auto row = [](const char* name, const std::function<void(ToleranceRules&)>& spoil) {
        QTest::newRow(name) << spoil;
    };
    const double none = std::numeric_limits<double>::quiet_NaN();
    row("factor", [](ToleranceRules& rules) { rules.of(LevellingClass::II).loops.factor = 0.0; });
    row("no factor", [none](ToleranceRules& rules) { rules.of(LevellingClass::II).repeated.factor = none; });
    row("measure", [](ToleranceRules& rules) {
        rules.of(LevellingClass::II).repeated.measure = static_cast<ToleranceMeasure>(3);
    });
    row("sigmas", [](ToleranceRules& rules) { rules.sigmaLimit = -1.0; });
    row("confidence", [](ToleranceRules& rules) { rules.confidence = 1.0; });
    row("heights", [](ToleranceRules& rules) { rules.heightDecimals = -1; });
    row("millimetres", [](ToleranceRules& rules) { rules.millimetreDecimals = 5; });
}

void TestTolerances::unusableRulesAreNoContent()
{
    QFETCH(std::function<void(ToleranceRules&)>, spoil);
    DeskFixture desk;
    Document document(desk.plugins, QStringLiteral("P"));
    Document::Content content = document.copyContent();
    spoil(content.toleranceRules);
    QVERIFY(!content.toleranceRules.isUsable());
    QVERIFY(!document.setContent(std::move(content)));
    QVERIFY(document.getToleranceRules() == ToleranceRules());
}

void TestTolerances::projectKeepsItsRules()
{
    DeskFixture desk;
    Document document(desk.plugins, QStringLiteral("P"));
    QSignalSpy changes(&document, &Document::surveyRulesChanged);
    document.setToleranceRules(document.getToleranceRules());
    QCOMPARE(changes.count(), 0);
    QVERIFY(!document.isModified());
    document.setToleranceRules(makeOwnRules());
    document.setLevellingClass(LevellingClass::Technical);
    QCOMPARE(changes.count(), 2);
    QVERIFY(document.isModified());
    document.getUndoStack().undo();
    QVERIFY(document.getLevellingClass() == LevellingClass::IV);
    QVERIFY(document.getToleranceRules() == makeOwnRules());
    document.getUndoStack().undo();
    QVERIFY(document.getToleranceRules() == ToleranceRules());
    QVERIFY(!document.isModified());
    document.getUndoStack().redo();
    document.getUndoStack().redo();
    QCOMPARE(changes.count(), 6);

    StoredProject project;
    project.content = document.copyContent();
    QBuffer file;
    file.open(QIODevice::ReadWrite);
    storedproject::write(project, file);
    file.seek(0);
    Document reopened(desk.plugins, QStringLiteral("P"));
    QVERIFY(reopened.setContent(storedproject::read(file).content));
    QVERIFY(reopened.getToleranceRules() == makeOwnRules());
    QVERIFY(reopened.getSurveyRules().levellingClass == LevellingClass::Technical);
}

void TestTolerances::dialogGivesWhatItIsGiven()
{
    DeskFixture desk;
    QVERIFY(ToleranceDialog({LevellingClass::IV, makeOwnRules()}, 0.95).getRules() == makeOwnRules());
    QVERIFY(ToleranceDialog({LevellingClass::IV, {}}, 0.95).getRules() == ToleranceRules());
}

void TestTolerances::dialogShowsTheLimits()
{
    DeskFixture desk;
    ToleranceDialog dialog({LevellingClass::IV, {}}, 0.95);
    const auto texts = [&] {
        QStringList shown;
        for (const QLabel* label : dialog.findChildren<QLabel*>())
            shown.append(label->text());
        return shown;
    };
    QVERIFY(texts().contains(QStringLiteral("IV класс (в проекте)")));
    QCOMPARE(texts().count(QStringLiteral("20,00; 40,00; 63,25")), 2);
    QVERIFY(texts().contains(QStringLiteral("123,45679\u00A0м; \u221212,35\u00A0мм")));
    field<QDoubleSpinBox>(dialog, "IV класс: ходы и полигоны, k")->setValue(15.0);
    field<QSpinBox>(dialog, "Знаков после запятой: невязки, поправки и СКО, мм")->setValue(1);
    QCOMPARE(texts().count(QStringLiteral("15,0; 30,0; 47,4")), 1);
    QVERIFY(texts().contains(QStringLiteral("123,45679\u00A0м; \u221212,3\u00A0мм")));
    QCOMPARE(dialog.getRules().of(LevellingClass::IV).loops.factor, 15.0);
    QCOMPARE(dialog.getRules().of(LevellingClass::IV).repeated.factor, 20.0);
}

void TestTolerances::dialogTakesNoUnusableValue()
{
    DeskFixture desk;
    ToleranceDialog dialog({LevellingClass::IV, {}}, 0.95);
    auto* factor = field<QDoubleSpinBox>(dialog, "I класс: ходы и полигоны, k");
    factor->selectAll();
    QTest::keyClicks(factor, QStringLiteral("0"));
    factor->interpretText();
    QVERIFY(dialog.getRules().isUsable());
    factor->selectAll();
    QTest::keyClicks(factor, QStringLiteral("4,5"));
    factor->interpretText();
    QCOMPARE(dialog.getRules().of(LevellingClass::I).loops.factor, 4.5);
    factor->selectAll();
    QTest::keyClicks(factor, QStringLiteral("12.5"));
    factor->interpretText();
    QCOMPARE(dialog.getRules().of(LevellingClass::I).loops.factor, 12.5);
    auto* confidence = field<QDoubleSpinBox>(dialog, "Доверительная вероятность");
    QVERIFY(!confidence->isEnabled());
    dialog.findChild<QCheckBox*>()->click();
    QVERIFY(confidence->isEnabled());
    QCOMPARE(dialog.getRules().confidence.value_or(0.0), 0.95);
}

void TestTolerances::dialogGoesBackToTheUsualRules()
{
    DeskFixture desk;
    ToleranceDialog dialog({LevellingClass::IV, makeOwnRules()}, 0.95);
    for (QPushButton* button : dialog.findChildren<QPushButton*>()) {
        if (button->text() == QStringLiteral("По &умолчанию"))
            button->click();
    }
    QVERIFY(dialog.getRules() == ToleranceRules());
}

void TestTolerances::windowShowsTheClass()
{
    DeskFixture desk;
    const auto window = desk.makeWindow();
    const auto* indicator = window->findChild<ClassIndicator*>();
    QVERIFY(indicator->isVisible());
    QCOMPARE(indicator->text(), QStringLiteral("IV класс: 20\u00A0мм·√L"));
    QVERIFY(triggerAction(*window, QStringLiteral("II класс: 5\u00A0мм·√L")));
    QCOMPARE(indicator->text(), QStringLiteral("II класс: 5\u00A0мм·√L"));
    window->getDocument().setToleranceRules(makeOwnRules());
    window->getDocument().setLevellingClass(LevellingClass::Technical);
    QCOMPARE(indicator->text(), QStringLiteral("техническое нивелирование, свои допуски: 10\u00A0мм·√n"));
    QCOMPARE(indicator->toolTip().count(QLatin1Char('\n')), 1);
    QVERIFY(triggerAction(*window, QStringLiteral("IV класс: 15\u00A0мм·√L")));
}

void TestTolerances::windowTakesTheTolerances()
{
    DeskFixture desk;
    const auto window = desk.makeWindow();
    QVERIFY(!window->getDocument().isModified());
    QTest::mouseClick(window->findChild<ClassIndicator*>(), Qt::LeftButton);
    auto* dialog = window->findChild<ToleranceDialog*>();
    field<QDoubleSpinBox>(*dialog, "IV класс: ходы и полигоны, k")->setValue(12.0);
    dialog->reject();
    QVERIFY(window->getDocument().getToleranceRules() == ToleranceRules());
    QTRY_VERIFY(!window->findChild<ToleranceDialog*>());
    QVERIFY(triggerAction(*window, QStringLiteral("Допуски…")));
    dialog = window->findChild<ToleranceDialog*>();
    QVERIFY(dialog);
    field<QDoubleSpinBox>(*dialog, "IV класс: ходы и полигоны, k")->setValue(12.0);
    dialog->accept();
    QCOMPARE(window->getDocument().getToleranceRules().of(LevellingClass::IV).loops.factor, 12.0);
    QVERIFY(window->getDocument().isModified());
    window->getDocument().setModified(false);
}

QTEST_MAIN(TestTolerances)
#include "tst_tolerances.moc"
