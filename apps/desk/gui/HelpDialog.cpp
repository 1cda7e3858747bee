#include "apps/desk/gui/HelpDialog.h"

#include "apps/desk/Desk.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/gui/ScreenSize.h"
#include "apps/desk/runs/RunKinds.h"

#include <QDialogButtonBox>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace orvel::desk {

namespace {

QString makeSection(const QString& title, const QString& text)
{
    return QStringLiteral("<h3>%1</h3><p>%2</p>").arg(title.toHtmlEscaped(), text.toHtmlEscaped());
}

QString makeRunSections()
{
    QString html;
    for (const RunKind& kind : runs::getKinds())
        html += makeSection(getTypeText(kind.protocolType), kind.help);
    return html;
}

QString makeKeySection()
{
    QStringList runKeys;
    for (const RunKind& kind : runs::getKinds())
        runKeys.append(QStringLiteral("%1 — %2").arg(kind.shortcut, getTypeText(kind.protocolType)));
    const QStringList paragraphs{
        runKeys.join(QStringLiteral(", ")),
        Desk::tr("Ctrl+R — выполнить устаревшие обработки снова, Ctrl+J — окно выполнения, Ctrl+T — допуски"),
        Desk::tr("F2 — изменить значение в таблице, F4 — отключить или включить выделенные секции, Ins — "
                 "добавить измерение, Del — удалить выделенные, Ctrl+Z — отменить правку, Ctrl+Shift+Z или "
                 "Ctrl+Y — вернуть её"),
        Desk::tr("F8 и Shift+F8 — следующая и предыдущая ошибка, Ctrl+L или Enter — страница о выделенном, "
                 "Ctrl и цифра — страница протокола, Ctrl+F — поиск, Ctrl+C — копировать строки"),
        Desk::tr("Ctrl+Shift+N — схема сети, Ctrl+Shift+G — графики, F1 — эта справка"),
        Desk::tr("Ctrl+N — новый проект, Ctrl+O — открыть, Ctrl+S — сохранить, Ctrl+Shift+S — сохранить как, "
                 "Ctrl+I — импорт, Ctrl+Shift+I — импорт по шаблону, Ctrl+E — экспорт, Ctrl+P — печать, "
                 "Ctrl+Q — выход")};
    QString html = QStringLiteral("<h3>%1</h3>").arg(Desk::tr("Клавиши").toHtmlEscaped());
    for (const QString& paragraph : paragraphs)
        html += QStringLiteral("<p>%1</p>").arg(paragraph.toHtmlEscaped());
    return html;
}

QString makeHelp()
{
    return makeSection(
               Desk::tr("С чего начать"),
               Desk::tr(
                   "Импортируйте файл нивелирной сети (.gkf) или цифрового нивелира (GSI, M5, REC_E), "
                   "выполните предобработку, затем уравнивание; для файла тахеометра (GSI, M5) — расчёт "
                   "тахеометрии. "
                   "Каждая обработка пишет протокол. Ссылка на пункт или секцию в протоколе выделяет этот "
                   "пункт или секцию в таблице, а щелчок в столбце «Протокол» показывает все их строки.")) +
           makeSection(
               Desk::tr("Импорт"),
               Desk::tr(
                   "Читает измерения из одного или нескольких файлов. Всё, что в файле не удалось "
                   "использовать, названо в протоколе с номером строки файла. Новая сеть заменяет прежнюю "
                   "или добавляется к ней: одноимённые пункты становятся одним пунктом, действует то, что "
                   "сказано о нём последним; ссылки на одноимённые пункты и секции сохраняются.")) +
           makeSection(
               Desk::tr("Импорт по шаблону"),
               Desk::tr(
                   "Читает секции или отметки пунктов из текстового файла (.csv, .txt). Шаблон говорит, как "
                   "разделены строки и что в столбцах; его составляет мастер, показывая первые строки файла, "
                   "и хранит под именем. В протоколе названы шаблон, пропущенные строки с причиной, "
                   "повторы и значения, похожие на другую единицу.")) +
           makeRunSections() +
           makeSection(
               Desk::tr("Правка сети"),
               Desk::tr(
                   "Сомнительные секции отключаются (F4): они остаются в проекте, но обработки о них не "
                   "знают. Значения меняются прямо в таблице (F2), измерения добавляются и удаляются, пункты "
                   "становятся исходными реперами и освобождаются; всё это можно отменить. Результаты и "
                   "протоколы, после которых сеть изменена, названы устаревшими, Ctrl+R выполняет "
                   "такие обработки снова.")) +
           makeSection(
               Desk::tr("Экспорт"),
               Desk::tr(
                   "Записывает уравненные высоты и их СКО в таблицу CSV или всю сеть с измерениями в файл "
                   ".gkf, который читают другие программы уравнивания.")) +
           makeSection(
               Desk::tr("Ведомости и печать"),
               Desk::tr(
                   "Каталог высот, ведомости поправок, ходов и секций открываются из меню «Ведомости»: с "
                   "допусками, критериями и местом для подписей. Ctrl+P печатает ведомость, таблицу или "
                   "строки протокола, как они показаны, схему сети или график или записывает их в PDF; на "
                   "каждом листе — заголовок и номер.")) +
           makeKeySection();
}

} // namespace

// A dialog would stay above the other windows.
HelpDialog::HelpDialog(QWidget* parent) : QDialog(parent, Qt::Window)
{
    setWindowTitle(Desk::tr("Что делает каждая обработка"));
    auto* text = new QTextBrowser(this);
    text->setAccessibleName(windowTitle());
    text->setHtml(makeHelp());
    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(Desk::tr("&Закрыть"), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(text, 1);
    layout->addWidget(buttons);
    resizeToScreen(*this, {620, 560});
}

HelpDialog& HelpDialog::showBeside(const QWidget* window)
{
    // So would a child of the window.
    auto* dialog = new HelpDialog;
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAttribute(Qt::WA_QuitOnClose, false);
    connect(window, &QObject::destroyed, dialog, &QObject::deleteLater);
    dialog->show();
    return *dialog;
}

} // namespace orvel::desk
