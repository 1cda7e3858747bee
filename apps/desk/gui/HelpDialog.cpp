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
               Desk::tr("Экспорт"),
               Desk::tr(
                   "Записывает уравненные высоты и их СКО в таблицу CSV или всю сеть с измерениями в файл "
                   ".gkf, который читают другие программы уравнивания.")) +
           makeSection(
               Desk::tr("Ведомости и печать"),
               Desk::tr(
                   "Каталог высот, ведомости поправок, ходов и секций открываются из меню «Ведомости»: с "
                   "допусками, критериями и местом для подписей. Ctrl+P печатает ведомость, таблицу или "
                   "строки протокола, как они показаны, или записывает их в PDF; на каждом листе — "
                   "заголовок и номер."));
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
