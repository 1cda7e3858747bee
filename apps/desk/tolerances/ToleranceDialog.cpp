#include "apps/desk/tolerances/ToleranceDialog.h"

#include "apps/desk/Desk.h"
#include "apps/desk/runs/Tolerances.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace orvel::desk {

namespace {

// Of lines so long, in km or stations, the preview shows the limits.
constexpr std::array kPreviewExtents{1.0, 4.0, 10.0};
// What the example of decimals shows.
constexpr double kExampleHeight = 123.456789;
constexpr double kExampleMisclosure = -12.3456;

/// That of the texts, whatever the system's is.
QLocale getTextLocale()
{
    return QLocale(Desk::tr("ru", "the language of the reports"));
}

/// Takes the comma and the point for the same, as the table does: a field of Qt leaves out the one that is
/// not the language's, and 12.5 would become 125.
class NumberBox : public QDoubleSpinBox
{
protected:
    QValidator::State validate(QString& input, int& cursor) const override
    {
        const QChar point = locale().decimalPoint();
        input.replace(QLatin1Char('.'), point).replace(QLatin1Char(','), point);
        return QDoubleSpinBox::validate(input, cursor);
    }
};

QDoubleSpinBox* makeSpinBox(double least, double largest, int decimals, double step, const QString& name)
{
    auto* box = new NumberBox;
    box->setLocale(getTextLocale());
    box->setDecimals(decimals);
    box->setRange(least, largest);
    box->setSingleStep(step);
    box->setAccessibleName(name);
    return box;
}

QSpinBox* makeDecimalsBox(int most, const QString& name)
{
    auto* box = new QSpinBox;
    box->setRange(0, most);
    box->setAccessibleName(name);
    return box;
}

QLabel* makeNote(const QString& text)
{
    auto* note = new QLabel(text);
    note->setWordWrap(true);
    return note;
}

} // namespace

ToleranceDialog::ToleranceDialog(const SurveyRules& rules, double networkConfidence, QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(Desk::tr("Допуски"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(createClassFields(rules.levellingClass));
    layout->addWidget(createOtherFields(networkConfidence));
    layout->addWidget(
        makeNote(Desk::tr("СКО секций из файлов приборов задаёт класс при импорте: ни другой класс, ни свои "
                          "допуски их не меняют. Протоколы показывают допуски, с которыми выполнены.")));
    layout->addWidget(createButtons());
    setRules(rules.tolerances);
}

QWidget* ToleranceDialog::createClassFields(LevellingClass current)
{
    auto* box = new QGroupBox(Desk::tr("Предельные невязки, мм"));
    auto* grid = new QGridLayout(box);
    const auto addHeader = [grid](int column, const QString& text) {
        grid->addWidget(new QLabel(text), 0, column, 1, column == 0 ? 1 : 3);
    };
    addHeader(1, Desk::tr("Ходы и полигоны"));
    addHeader(4, Desk::tr("Прямо и обратно, повторно"));
    const QString previewHeader = Desk::tr("1, 4, 10\u00A0км (ст.)");
    grid->addWidget(new QLabel(QStringLiteral("k")), 1, 1);
    grid->addWidget(new QLabel(previewHeader), 1, 3);
    grid->addWidget(new QLabel(QStringLiteral("k")), 1, 4);
    grid->addWidget(new QLabel(previewHeader), 1, 6);
    int row = 2;
    for (const LevellingClass levellingClass : kLevellingClasses) {
        const QString name = describeClass(levellingClass);
        auto* label = new QLabel(levellingClass == current ? Desk::tr("%1 (в проекте)").arg(name) : name);
        QFont font = label->font();
        font.setBold(levellingClass == current);
        label->setFont(font);
        grid->addWidget(label, row, 0);
        ClassFields& fields = classes[static_cast<std::size_t>(row) - 2];
        fields.loops = createRuleFields(grid, row, 1, Desk::tr("%1: ходы и полигоны").arg(name));
        fields.repeated = createRuleFields(grid, row, 4, Desk::tr("%1: повторные измерения").arg(name));
        ++row;
    }
    return box;
}

ToleranceDialog::RuleFields ToleranceDialog::createRuleFields(QGridLayout* grid, int row, int column,
                                                              const QString& name)
{
    RuleFields fields;
    fields.factor = makeSpinBox(ToleranceRule::kLeastFactor, ToleranceRule::kLargestFactor, 2, 1.0,
                                name + QStringLiteral(", k"));
    fields.measure = new QComboBox;
    fields.measure->addItem(Desk::tr("мм·√L"), static_cast<int>(ToleranceMeasure::Length));
    fields.measure->addItem(Desk::tr("мм·√n"), static_cast<int>(ToleranceMeasure::Stations));
    fields.measure->setToolTip(Desk::tr("√L — по длине в км, √n — по числу станций"));
    fields.measure->setAccessibleName(name);
    fields.preview = new QLabel;
    connect(fields.factor, QOverload<double>::of(&QDoubleSpinBox::valueChanged), this,
            &ToleranceDialog::updatePreview);
    connect(fields.measure, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
            &ToleranceDialog::updatePreview);
    grid->addWidget(fields.factor, row, column);
    grid->addWidget(fields.measure, row, column + 1);
    grid->addWidget(fields.preview, row, column + 2);
    return fields;
}

QWidget* ToleranceDialog::createOtherFields(double networkConfidence)
{
    auto* box = new QGroupBox(Desk::tr("Критерии и знаки"));
    auto* form = new QFormLayout(box);
    const QString sigmas = Desk::tr("Без длины (числа станций) предел, СКО невязки");
    sigmaLimit =
        makeSpinBox(ToleranceRules::kLeastSigmaLimit, ToleranceRules::kLargestSigmaLimit, 2, 0.5, sigmas);
    form->addRow(sigmas, sigmaLimit);
    hasConfidence = new QCheckBox(Desk::tr("Своя доверительная вероятность критериев (в файле сети %1)")
                                      .arg(numbers::shortest(networkConfidence)));
    confidence = makeSpinBox(ToleranceRules::kLeastConfidence, ToleranceRules::kLargestConfidence, 4, 0.01,
                             Desk::tr("Доверительная вероятность"));
    confidence->setValue(networkConfidence);
    confidence->setEnabled(false);
    connect(hasConfidence, &QCheckBox::toggled, confidence, &QWidget::setEnabled);
    form->addRow(hasConfidence, confidence);
    const QString heights = Desk::tr("Знаков после запятой: высоты и превышения, м");
    heightDecimals = makeDecimalsBox(ToleranceRules::kMostHeightDecimals, heights);
    form->addRow(heights, heightDecimals);
    const QString millimetres = Desk::tr("Знаков после запятой: невязки, поправки и СКО, мм");
    millimetreDecimals = makeDecimalsBox(ToleranceRules::kMostMillimetreDecimals, millimetres);
    form->addRow(millimetres, millimetreDecimals);
    example = new QLabel;
    form->addRow(Desk::tr("Образец"), example);
    for (QSpinBox* decimals : {heightDecimals, millimetreDecimals})
        connect(decimals, QOverload<int>::of(&QSpinBox::valueChanged), this, &ToleranceDialog::updatePreview);
    return box;
}

QWidget* ToleranceDialog::createButtons()
{
    auto* buttons = new QDialogButtonBox;
    buttons->addButton(Desk::tr("&Применить"), QDialogButtonBox::AcceptRole);
    buttons->addButton(Desk::tr("&Отмена"), QDialogButtonBox::RejectRole);
    QPushButton* defaults = buttons->addButton(Desk::tr("По &умолчанию"), QDialogButtonBox::ResetRole);
    defaults->setToolTip(Desk::tr("Вернуть допуски, с которыми начинает каждый проект"));
    connect(defaults, &QPushButton::clicked, this, [this] { setRules(ToleranceRules()); });
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    return buttons;
}

void ToleranceDialog::setRule(const RuleFields& fields, const ToleranceRule& rule)
{
    fields.factor->setValue(rule.factor);
    fields.measure->setCurrentIndex(fields.measure->findData(static_cast<int>(rule.measure)));
}

ToleranceRule ToleranceDialog::getRule(const RuleFields& fields)
{
    return {static_cast<ToleranceMeasure>(fields.measure->currentData().toInt()), fields.factor->value()};
}

void ToleranceDialog::setRules(const ToleranceRules& rules)
{
    for (std::size_t i = 0; i < classes.size(); ++i) {
        setRule(classes[i].loops, rules.classes[i].loops);
        setRule(classes[i].repeated, rules.classes[i].repeated);
    }
    sigmaLimit->setValue(rules.sigmaLimit);
    hasConfidence->setChecked(rules.confidence.has_value());
    if (rules.confidence)
        confidence->setValue(*rules.confidence);
    heightDecimals->setValue(rules.heightDecimals);
    millimetreDecimals->setValue(rules.millimetreDecimals);
    updatePreview();
}

ToleranceRules ToleranceDialog::getRules() const
{
    ToleranceRules rules;
    for (std::size_t i = 0; i < classes.size(); ++i)
        rules.classes[i] = {getRule(classes[i].loops), getRule(classes[i].repeated)};
    rules.sigmaLimit = sigmaLimit->value();
    if (hasConfidence->isChecked())
        rules.confidence = confidence->value();
    rules.heightDecimals = heightDecimals->value();
    rules.millimetreDecimals = millimetreDecimals->value();
    return rules;
}

void ToleranceDialog::updatePreview()
{
    const NumberFormat format(getRules());
    const auto show = [&](const RuleFields& fields) {
        QStringList limits;
        for (const double extent : kPreviewExtents)
            limits.append(format.sigma(tolerances::findLimit({extent, extent, 0.0}, getRule(fields), 0.0)));
        fields.preview->setText(limits.join(QStringLiteral("; ")));
    };
    for (const ClassFields& fields : classes) {
        show(fields.loops);
        show(fields.repeated);
    }
    example->setText(Desk::tr("%1\u00A0м; %2\u00A0мм")
                         .arg(format.height(kExampleHeight), format.misclosure(kExampleMisclosure)));
}

} // namespace orvel::desk
