#include "apps/desk/gui/TemplatePages.h"

#include "apps/desk/Desk.h"
#include "apps/desk/gui/FileDialogs.h"
#include "apps/desk/gui/RoleHeader.h"
#include "apps/desk/gui/TablePreviewModel.h"
#include "apps/desk/templates/TemplateTexts.h"
#include "host/files/Error.h"
#include "host/files/StringUtils.h"
#include "levelling/TemplateGuess.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QFileInfo>
#include <QFormLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QSpinBox>
#include <QTableView>

#include <algorithm>

namespace orvel::desk {

using levelling::ColumnRole;
using levelling::TableTemplate;

namespace {

constexpr int kMostSkippedRows = 1000000;
// Stands in the list of separators for columns of fixed width.
const QChar kNoSeparator = QChar(0);

QLabel* makeNote(QWidget* parent, const char* name)
{
    auto* note = new QLabel(parent);
    note->setObjectName(QLatin1String(name));
    note->setWordWrap(true);
    note->setTextFormat(Qt::PlainText);
    return note;
}

/// Chooses the entry with that value, which is added if it is missing.
void choose(QComboBox* list, const QVariant& value, const QString& text)
{
    const int known = list->findData(value);
    if (known < 0)
        list->addItem(text, value);
    list->setCurrentIndex(known < 0 ? list->count() - 1 : known);
}

/// The numbers of a list like "8, 8, 12"; none if it is not one.
std::vector<int> readWidths(const QString& text)
{
    std::vector<int> widths;
    for (const QString& part : text.split(QLatin1Char(','))) {
        bool ok = false;
        const int width = part.trimmed().toInt(&ok);
        if (!ok || width < 1 || width > formats::TextTable::kLongestLine)
            return {};
        widths.push_back(width);
    }
    return widths;
}

QString writeWidths(const std::vector<int>& widths)
{
    QStringList parts;
    for (const int width : widths)
        parts.append(QString::number(width));
    return parts.join(QStringLiteral(", "));
}

} // namespace

TemplateFilePage::TemplateFilePage(TemplateWizard& templateWizard, const QStringList& files)
    : wizard(templateWizard)
    , paths(files)
    , pathField(new QLineEdit(this))
    , templates(new QListWidget(this))
    , forgetButton(new QPushButton(Desk::tr("&Удалить шаблон"), this))
    , problem(makeNote(this, "fileProblem"))
{
    setTitle(Desk::tr("Файл и шаблон"));
    setSubTitle(
        Desk::tr("Шаблон говорит, как разделены строки и что в столбцах. Возьмите готовый или начните с "
                 "того, что видно по файлу."));
    auto* browseButton = new QPushButton(Desk::tr("Об&зор…"), this);
    auto* pathLabel = new QLabel(Desk::tr("Текстовый &файл:"), this);
    pathLabel->setBuddy(pathField);
    auto* templatesLabel = new QLabel(Desk::tr("&Начать с шаблона:"), this);
    templatesLabel->setBuddy(templates);
    pathField->setObjectName(QStringLiteral("path"));
    pathField->setAccessibleName(Desk::tr("Текстовый файл"));
    templates->setObjectName(QStringLiteral("templates"));
    templates->setAccessibleName(Desk::tr("Шаблоны"));
    forgetButton->setObjectName(QStringLiteral("forget"));
    auto* layout = new QGridLayout(this);
    layout->addWidget(pathLabel, 0, 0, 1, 2);
    layout->addWidget(pathField, 1, 0);
    layout->addWidget(browseButton, 1, 1);
    layout->addWidget(templatesLabel, 2, 0, 1, 2);
    layout->addWidget(templates, 3, 0);
    layout->addWidget(forgetButton, 3, 1, Qt::AlignTop);
    layout->addWidget(problem, 4, 0, 1, 2);

    pathField->setText(paths.join(QStringLiteral("; ")));
    connect(pathField, &QLineEdit::textEdited, this, &TemplateFilePage::takeText);
    connect(browseButton, &QPushButton::clicked, this, &TemplateFilePage::chooseFiles);
    connect(templates, &QListWidget::currentRowChanged, this, &TemplateFilePage::updateState);
    connect(forgetButton, &QPushButton::clicked, this, &TemplateFilePage::forgetTemplate);
    fillTemplates();
}

bool TemplateFilePage::isComplete() const
{
    return !paths.isEmpty() && std::all_of(paths.begin(), paths.end(), [](const QString& path) {
        const QFileInfo file(path);
        return file.isFile() && file.isReadable();
    });
}

bool TemplateFilePage::validatePage()
{
    QFile file(paths.constFirst());
    file.open(QIODevice::ReadOnly);
    wizard.beginning = file.read(TablePreviewModel::kBeginning);
    if (file.error() != QFileDevice::NoError) {
        problem->setText(Desk::tr("Файл не читается: %1").arg(utils::describeReason(file.errorString())));
        return false;
    }
    const int row = templates->currentRow();
    if (row > 0) {
        wizard.format = kept[static_cast<std::size_t>(row - 1)].format;
    } else {
        wizard.format = levelling::guessTemplate(wizard.beginning);
        wizard.format.name = QFileInfo(paths.constFirst()).completeBaseName();
    }
    return true;
}

void TemplateFilePage::chooseFiles()
{
    const QStringList chosen = filedialogs::chooseTables(this);
    if (chosen.isEmpty())
        return;
    paths = chosen;
    pathField->setText(paths.join(QStringLiteral("; ")));
    updateState();
}

void TemplateFilePage::takeText(const QString& text)
{
    // A name may have the sign in it, too.
    paths =
        QFileInfo(text).isFile() ? QStringList(text) : text.split(QStringLiteral("; "), Qt::SkipEmptyParts);
    updateState();
}

void TemplateFilePage::fillTemplates()
{
    kept = templatefolder::list();
    const QSignalBlocker silence(templates);
    templates->clear();
    templates->addItem(Desk::tr("Новый, по содержанию файла"));
    for (const templatefolder::KeptTemplate& one : kept) {
        templates->addItem(one.format.name);
        templates->item(templates->count() - 1)
            ->setToolTip(templatetexts::describe(one.format).toHtmlEscaped());
    }
    templates->setCurrentRow(0);
    updateState();
}

void TemplateFilePage::forgetTemplate()
{
    const templatefolder::KeptTemplate& one = kept[static_cast<std::size_t>(templates->currentRow() - 1)];
    const QString path = one.path;
    const bool isForgotten = templatefolder::forget(path);
    fillTemplates();
    if (!isForgotten)
        problem->setText(Desk::tr("Шаблон не удалён: файл «%1» остался на месте").arg(path));
}

void TemplateFilePage::updateState()
{
    forgetButton->setEnabled(templates->currentRow() > 0);
    QString text;
    if (paths.isEmpty())
        text = Desk::tr("Выберите текстовый файл: .csv, .txt или другой.");
    for (const QString& path : paths) {
        if (!QFileInfo(path).isFile() || !QFileInfo(path).isReadable())
            text = Desk::tr("Файл «%1» не найден или не читается.").arg(path);
    }
    problem->setText(text);
    Q_EMIT completeChanged();
}

TemplateColumnsPage::TemplateColumnsPage(TemplateWizard& templateWizard)
    : wizard(templateWizard)
    , separator(new QComboBox(this))
    , widths(new QLineEdit(this))
    , decimal(new QComboBox(this))
    , skipRows(new QSpinBox(this))
    , encoding(new QComboBox(this))
    , comment(new QLineEdit(this))
    , differenceUnit(new QComboBox(this))
    , lengthUnit(new QComboBox(this))
    , table(new QTableView(this))
    , preview(new TablePreviewModel(this))
    , header(new RoleHeader(TablePreviewModel::FirstCell, table))
    , state(makeNote(this, "state"))
{
    setTitle(Desk::tr("Столбцы"));
    setSubTitle(
        Desk::tr("Над каждым столбцом выберите, что в нём. Ниже — первые строки файла, как они читаются."));
    createFields();
    table->setObjectName(QStringLiteral("preview"));
    table->setAccessibleName(Desk::tr("Первые строки файла"));
    table->setHorizontalHeader(header);
    table->setModel(preview);
    table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    table->setTabKeyNavigation(false);
    table->setWordWrap(false);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(createForm());
    layout->addWidget(state);
    layout->addWidget(table, 1);
    connect(header, &RoleHeader::roleChosen, this, &TemplateColumnsPage::takeRole);
}

void TemplateColumnsPage::createFields()
{
    for (const char sign : {';', ',', '\t', '|', ' '})
        separator->addItem(templatetexts::describeSeparator(QLatin1Char(sign)), QChar(QLatin1Char(sign)));
    separator->addItem(Desk::tr("нет: столбцы постоянной ширины"), kNoSeparator);
    decimal->addItem(Desk::tr("точка"), QChar(QLatin1Char('.')));
    decimal->addItem(Desk::tr("запятая"), QChar(QLatin1Char(',')));
    skipRows->setRange(0, kMostSkippedRows);
    for (const char* name : {"UTF-8", "windows-1251", "UTF-16", "UTF-16LE", "UTF-16BE", "IBM866", "KOI8-R"})
        encoding->addItem(QLatin1String(name), QByteArray(name));
    encoding->addItem(Desk::tr("системная"), QByteArray("system"));
    widths->setPlaceholderText(QStringLiteral("8, 8, 10"));
    for (const auto unit : {levelling::DifferenceUnit::Metre, levelling::DifferenceUnit::Centimetre,
                            levelling::DifferenceUnit::Millimetre})
        differenceUnit->addItem(templatetexts::describeUnit(unit), static_cast<int>(unit));
    for (const auto unit : {levelling::LengthUnit::Kilometre, levelling::LengthUnit::Metre})
        lengthUnit->addItem(templatetexts::describeUnit(unit), static_cast<int>(unit));
    for (QComboBox* list : {separator, decimal, encoding, differenceUnit, lengthUnit}) {
        // The longest choice must not make the page wider than a small screen.
        list->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        list->setMinimumContentsLength(8);
        connect(list, QOverload<int>::of(&QComboBox::currentIndexChanged), this,
                &TemplateColumnsPage::takeFields);
    }
    connect(skipRows, QOverload<int>::of(&QSpinBox::valueChanged), this, &TemplateColumnsPage::takeFields);
    connect(widths, &QLineEdit::textChanged, this, &TemplateColumnsPage::takeFields);
    connect(comment, &QLineEdit::textChanged, this, &TemplateColumnsPage::takeFields);
}

QWidget* TemplateColumnsPage::createForm()
{
    auto* form = new QWidget(this);
    form->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Maximum);
    auto* left = new QFormLayout;
    auto* right = new QFormLayout;
    auto* both = new QHBoxLayout(form);
    both->setContentsMargins(0, 0, 0, 0);
    both->setSpacing(24);
    both->addLayout(left, 1);
    both->addLayout(right, 1);
    const auto add = [](QFormLayout* layout, const QString& text, QWidget* field, const char* name) {
        field->setObjectName(QLatin1String(name));
        field->setAccessibleName(QString(text).remove(QLatin1Char('&')).remove(QLatin1Char(':')));
        layout->addRow(text, field);
    };
    add(left, Desk::tr("&Разделитель столбцов:"), separator, "separator");
    add(left, Desk::tr("&Ширины столбцов, знаков:"), widths, "widths");
    add(left, Desk::tr("Деся&тичный знак:"), decimal, "decimal");
    add(left, Desk::tr("&Пропустить строк в начале:"), skipRows, "skipRows");
    add(right, Desk::tr("&Кодировка:"), encoding, "encoding");
    add(right, Desk::tr("Ко&мментарий начинается с:"), comment, "comment");
    add(right, Desk::tr("&Единица превышений:"), differenceUnit, "differenceUnit");
    add(right, Desk::tr("Единица д&лин:"), lengthUnit, "lengthUnit");
    return form;
}

void TemplateColumnsPage::initializePage()
{
    preview->setContent(wizard.beginning);
    showFormat();
    updatePreview();
}

bool TemplateColumnsPage::isComplete() const
{
    return findProblem().isEmpty();
}

void TemplateColumnsPage::showFormat()
{
    const TableTemplate& format = wizard.format;
    const formats::TableSyntax& syntax = format.syntax;
    // What the fields show is taken once they all do.
    const QSignalBlocker silences[] = {QSignalBlocker(separator),      QSignalBlocker(widths),
                                       QSignalBlocker(decimal),        QSignalBlocker(skipRows),
                                       QSignalBlocker(encoding),       QSignalBlocker(comment),
                                       QSignalBlocker(differenceUnit), QSignalBlocker(lengthUnit)};
    choose(separator, syntax.widths.empty() ? syntax.separator : kNoSeparator,
           templatetexts::describeSeparator(syntax.separator));
    widths->setText(writeWidths(syntax.widths));
    choose(decimal, format.decimal, format.decimal);
    skipRows->setValue(syntax.skipRows);
    choose(encoding, syntax.encoding, QString::fromUtf8(syntax.encoding));
    comment->setText(syntax.comment);
    choose(differenceUnit, static_cast<int>(format.differenceUnit), QString());
    choose(lengthUnit, static_cast<int>(format.lengthUnit), QString());
}

void TemplateColumnsPage::takeFields()
{
    TableTemplate& format = wizard.format;
    const QChar chosen = separator->currentData().toChar();
    areWidthsReadable = true;
    format.syntax.widths.clear();
    if (chosen == kNoSeparator) {
        format.syntax.widths = readWidths(widths->text());
        areWidthsReadable = !format.syntax.widths.empty();
    } else {
        format.syntax.separator = chosen;
    }
    format.decimal = decimal->currentData().toChar();
    format.syntax.skipRows = skipRows->value();
    format.syntax.encoding = encoding->currentData().toByteArray();
    format.syntax.comment = comment->text().trimmed();
    format.differenceUnit = static_cast<levelling::DifferenceUnit>(differenceUnit->currentData().toInt());
    format.lengthUnit = static_cast<levelling::LengthUnit>(lengthUnit->currentData().toInt());
    updatePreview();
}

void TemplateColumnsPage::takeRole(int column, ColumnRole role)
{
    std::vector<ColumnRole>& columns = wizard.format.columns;
    // What another column was, it is not any more.
    if (role != ColumnRole::Skip)
        std::replace(columns.begin(), columns.end(), role, ColumnRole::Skip);
    columns[static_cast<std::size_t>(column)] = role;
    updatePreview();
}

void TemplateColumnsPage::updatePreview()
{
    TableTemplate& format = wizard.format;
    // As many columns as the rows have now; those that the template names beyond are kept for rows to come.
    while (!format.columns.empty() && format.columns.back() == ColumnRole::Skip)
        format.columns.pop_back();
    preview->setFormat(format);
    const std::size_t columns = format.syntax.widths.empty()
                                    ? static_cast<std::size_t>(preview->getCellColumns())
                                    : format.syntax.widths.size();
    if (columns != format.columns.size()) {
        format.columns.resize(columns, ColumnRole::Skip);
        preview->setFormat(format);
    }
    header->setRoles(format.columns);
    QWidget* previous = lengthUnit;
    for (QComboBox* list : header->getLists()) {
        setTabOrder(previous, list);
        previous = list;
    }
    setTabOrder(previous, table);
    fitColumns();
    widths->setEnabled(separator->currentData().toChar() == kNoSeparator);
    differenceUnit->setEnabled(format.has(ColumnRole::Difference));
    lengthUnit->setEnabled(format.has(ColumnRole::Length));
    updateState();
}

/// Makes the columns as wide as what they hold and their lists; remarks are whole in their tool tips.
void TemplateColumnsPage::fitColumns()
{
    constexpr int widestRemark = 240;
    table->resizeColumnsToContents();
    table->setColumnWidth(TablePreviewModel::Remark,
                          std::min(table->columnWidth(TablePreviewModel::Remark), widestRemark));
    int column = TablePreviewModel::FirstCell;
    for (const QComboBox* list : header->getLists()) {
        table->setColumnWidth(column, std::max(table->columnWidth(column), list->sizeHint().width()));
        ++column;
    }
}

QString TemplateColumnsPage::findProblem() const
{
    if (!areWidthsReadable)
        return Desk::tr("Ширины столбцов — целые числа через запятую, например 8, 8, 10.");
    if (const auto fault = levelling::findFault(wizard.format)) {
        if (fault->kind == levelling::TemplateFault::Kind::RoleMissing)
            return Desk::
                tr("Не выбран столбец «%1». Секциям нужны оба пункта и превышение, пунктам — имя и отметка "
                   "или координаты.")
                    .arg(templatetexts::describeRole(fault->role));
        if (fault->kind == levelling::TemplateFault::Kind::RolesMixed)
            return Desk::tr("Столбцы секций и пунктов вместе не читаются: лишний «%1».")
                .arg(templatetexts::describeRole(fault->role));
        return templatetexts::describeFault(wizard.format, *fault);
    }
    if (preview->getUsableRows() == 0)
        return Desk::tr(
            "Из первых строк не годится ни одна: проверьте разделитель, десятичный знак и столбцы.");
    return QString();
}

void TemplateColumnsPage::updateState()
{
    const QString problem = findProblem();
    state->setText(problem.isEmpty() ? Desk::tr("Из первых строк годится %1, не прочитано %2.")
                                           .arg(QString::number(preview->getUsableRows()),
                                                QString::number(preview->getRefusedRows()))
                                     : problem);
    Q_EMIT completeChanged();
}

TemplateNamePage::TemplateNamePage(TemplateWizard& templateWizard)
    : wizard(templateWizard)
    , isKept(new QCheckBox(Desk::tr("&Сохранить шаблон для других файлов"), this))
    , name(new QLineEdit(this))
    , summary(makeNote(this, "summary"))
    , problem(makeNote(this, "nameProblem"))
{
    setTitle(Desk::tr("Имя шаблона"));
    setSubTitle(Desk::tr("Под этим именем шаблон стоит в протоколе и в списке готовых."));
    isKept->setObjectName(QStringLiteral("isKept"));
    isKept->setChecked(true);
    name->setObjectName(QStringLiteral("name"));
    name->setAccessibleName(Desk::tr("Имя шаблона"));
    name->setMaxLength(100);
    auto* layout = new QFormLayout(this);
    layout->addRow(Desk::tr("&Имя шаблона:"), name);
    layout->addRow(isKept);
    layout->addRow(summary);
    layout->addRow(problem);
    connect(name, &QLineEdit::textChanged, this, &TemplateNamePage::updateState);
}

void TemplateNamePage::initializePage()
{
    name->setText(wizard.format.name);
    updateState();
}

bool TemplateNamePage::isComplete() const
{
    return !name->text().trimmed().isEmpty();
}

bool TemplateNamePage::validatePage()
{
    wizard.format.name = name->text().trimmed();
    if (!isKept->isChecked())
        return true;
    try {
        templatefolder::keep(wizard.format);
    } catch (const exceptions::Error& error) {
        problem->setText(Desk::tr("Шаблон не сохранён: %1").arg(QString::fromStdWString(error.getText())));
        return false;
    }
    return true;
}

void TemplateNamePage::updateState()
{
    wizard.format.name = name->text().trimmed();
    summary->setText(templatetexts::describe(wizard.format));
    problem->setText(isComplete() ? QString() : Desk::tr("У шаблона должно быть имя."));
    Q_EMIT completeChanged();
}

} // namespace orvel::desk
