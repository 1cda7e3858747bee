#include "apps/desk/edit/NewSectionDialog.h"

#include "apps/desk/Desk.h"
#include "apps/desk/edit/CellEdit.h"

#include <QCompleter>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace orvel::desk {

namespace {

/// The positive number in a field that may be empty.
/// @return false for anything else
bool readIfThere(const QLineEdit& field, std::optional<double>& number)
{
    number.reset();
    if (field.text().trimmed().isEmpty())
        return true;
    number = celledits::parseNumber(field.text());
    return number && *number > 0.0;
}

} // namespace

NewSectionDialog::NewSectionDialog(const QStringList& pointNames, const QString& fromName,
                                   const QString& toName, QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(Desk::tr("Новое измерение"));
    auto* form = new QFormLayout;
    auto* column = new QVBoxLayout(this);
    column->addLayout(form);
    const auto addField = [this, form](const char* name, const QString& title, const QString& text) {
        auto* field = new QLineEdit(text, this);
        field->setObjectName(QLatin1String(name));
        form->addRow(title, field);
        return field;
    };
    from = addField("from", Desk::tr("&От пункта:"), fromName);
    to = addField("to", Desk::tr("&До пункта:"), toName);
    difference = addField("difference", Desk::tr("&Превышение, м:"), QString());
    distance = addField("distance", Desk::tr("&Длина, км:"), QString());
    stations = addField("stations", Desk::tr("&Станций:"), QString());
    sigma = addField("sigma", Desk::tr("С&КО, мм:"), QString());
    const QString rule = Desk::tr("по длине или числу станций");
    sigma->setPlaceholderText(rule);
    sigma->setMinimumWidth(sigma->fontMetrics().horizontalAdvance(rule + QStringLiteral("  ")));
    auto* completer = new QCompleter(pointNames, this);
    completer->setCaseSensitivity(Qt::CaseInsensitive);
    for (QLineEdit* field : {from, to})
        field->setCompleter(completer);

    // A letter of another alphabet looks the same and makes another point.
    auto* news = new QLabel(this);
    news->setTextFormat(Qt::PlainText);
    news->setWordWrap(true);
    news->setObjectName(QStringLiteral("news"));
    column->addWidget(news);
    const auto tellOfNews = [this, news, pointNames] {
        QStringList added;
        for (const QLineEdit* field : {from, to}) {
            const QString name = field->text().trimmed();
            if (!name.isEmpty() && !pointNames.contains(name))
                added.append(name);
        }
        news->setText(added.isEmpty() ? QString()
                                      : Desk::tr("Таких пунктов в сети ещё нет, они добавляются: %1")
                                            .arg(added.join(QStringLiteral(", "))));
    };
    for (const QLineEdit* field : {from, to})
        connect(field, &QLineEdit::textChanged, news, tellOfNews);

    problem = new QLabel(this);
    problem->setTextFormat(Qt::PlainText);
    problem->setWordWrap(true);
    problem->setObjectName(QStringLiteral("problem"));
    column->addWidget(problem);
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(Desk::tr("&Добавить"), QDialogButtonBox::AcceptRole);
    buttons->addButton(Desk::tr("&Отмена"), QDialogButtonBox::RejectRole);
    column->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    (fromName.isEmpty() ? from : toName.isEmpty() ? to : difference)->setFocus();
}

void NewSectionDialog::accept()
{
    const QString found = read();
    problem->setText(found);
    if (found.isEmpty())
        QDialog::accept();
}

QString NewSectionDialog::read()
{
    section = {};
    section.from = from->text().trimmed();
    section.to = to->text().trimmed();
    if (section.from.isEmpty() || section.to.isEmpty())
        return Desk::tr("Введите имена обоих пунктов.");
    if (section.from == section.to)
        return Desk::tr("Измерение ведёт от одного пункта к другому.");
    const std::optional<double> metres = celledits::parseNumber(difference->text());
    if (!metres)
        return Desk::tr("Введите превышение в метрах, как −1,2345.");
    section.difference = *metres;
    if (!readIfThere(*distance, section.distance))
        return Desk::tr("Длина — число километров больше нуля, как 0,85.");
    bool isCount = true;
    if (!stations->text().trimmed().isEmpty())
        section.stations = stations->text().trimmed().toInt(&isCount);
    if (!isCount || section.stations.value_or(1) <= 0)
        return Desk::tr("Станций — целое число больше нуля.");
    if (!readIfThere(*sigma, section.sigma))
        return Desk::tr("СКО — число миллиметров больше нуля, как 2,5.");
    if (!section.distance && !section.stations && !section.sigma)
        return Desk::tr("Без веса измерение не уравнять: введите длину, число станций или СКО.");
    return QString();
}

} // namespace orvel::desk
