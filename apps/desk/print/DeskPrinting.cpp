#include "apps/desk/print/DeskPrinting.h"

#include "Orvel/Toolkit.h"
#include "apps/desk/Desk.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/gui/FileDialogs.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/plots/PlotPanel.h"
#include "apps/desk/print/ProgressWork.h"
#include "apps/desk/print/ReportFile.h"
#include "apps/desk/print/ReportPaper.h"
#include "apps/desk/print/ShownContent.h"
#include "apps/desk/protocol/ProtocolPanel.h"
#include "apps/desk/protocol/ProtocolTreeModel.h"
#include "apps/desk/reports/ReportTexts.h"
#include "host/app/Application.h"
#include "host/files/WholeFile.h"

#include <QDesktopServices>
#include <QPrintDialog>
#include <QPrinter>
#include <QTreeView>
#include <QUrl>

#include <algorithm>
#include <utility>

namespace orvel::desk {

namespace {

constexpr qreal kMargin = 15.0; // mm

/// Something that windows show, with the general data of reports.
ReportContent beginShown(const Document& document, const QString& title)
{
    ReportContent report = reporttexts::begin(ReportInput::gather(document, QDate::currentDate()), title);
    report.isToBeSigned = false;
    return report;
}

PrintSubject::Maker makeShown(const Document& document, const QString& title, const QString& warning,
                              ReportTable table)
{
    ReportContent report = beginShown(document, title);
    report.warning = warning;
    report.tables.push_back(std::move(table));
    return [report = std::move(report)] { return report; };
}

PrintSubject::Maker makePictured(const Document& document, const QString& title, const QString& warning,
                                 const QByteArray& picture)
{
    ReportContent report = beginShown(document, title);
    report.warning = warning;
    report.picture = picture;
    return [report = std::move(report)] { return report; };
}

QString warnOfOldResults(const Document& document)
{
    return document.areResultsOutdated() ? reporttexts::warnOfOldResults() : QString();
}

} // namespace

DeskPrinting::DeskPrinting(Document& openDocument, ItemTable& itemTable, ProtocolPanel& linePanel,
                           const PlotPanel& plotPanel, QWidget* owner)
    : QObject(owner)
    , document(openDocument)
    , table(itemTable)
    , lines(linePanel)
    , plots(plotPanel)
    , picture(std::make_shared<ReportPicture>(openDocument))
    , window(owner)
{
    deskreports::registerPictures(openDocument, [drawn = picture] { return drawn->draw(); });
}

void DeskPrinting::showDialog()
{
    const std::vector<PrintSubject> subjects = listSubjects();
    // The lines are meant by who is in them; they come behind the table.
    const int chosen = lines.isAncestorOf(window->focusWidget()) && subjects[1].isAvailable ? 1 : 0;
    auto* dialog = new PrintDialog(subjects, chosen, window);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowModality(Qt::WindowModal);
    connect(dialog, &PrintDialog::requested, this,
            [this, subjects, dialog](int subject, PrintDialog::Target target) {
                dialog->accept();
                perform(subjects[static_cast<std::size_t>(subject)], target);
            });
    dialog->show();
}

std::vector<PrintSubject> DeskPrinting::listSubjects() const
{
    std::vector<PrintSubject> subjects{makeTableSubject(), makeLinesSubject()};
    for (const deskreports::Report& report : deskreports::getReports())
        subjects.push_back(makeReportSubject(report));
    subjects.push_back(makePictureSubject());
    subjects.push_back(makePlotSubject());
    return subjects;
}

PrintSubject DeskPrinting::makeReportSubject(const deskreports::Report& report) const
{
    PrintSubject subject;
    subject.title = report.title;
    subject.isAvailable = !report.needsResults || document.hasResults();
    subject.reason = Desk::tr("сначала выполните уравнивание");
    subject.prepare = [this, report] {
        return deskreports::prepare(document, report, [this] { return picture->draw(); });
    };
    return subject;
}

PrintSubject DeskPrinting::makePictureSubject() const
{
    PrintSubject subject;
    subject.title = Desk::tr("Схема сети");
    subject.isAvailable = !document.isEmpty();
    subject.reason = Desk::tr("в проекте нет ни одного пункта");
    subject.prepare = [this, title = subject.title] {
        return makePictured(document, title, QString(), picture->draw());
    };
    return subject;
}

PrintSubject DeskPrinting::makePlotSubject() const
{
    PrintSubject subject;
    subject.title = Desk::tr("График, как показан");
    subject.isAvailable = plots.isVisible() && plots.hasPlot();
    subject.reason = Desk::tr("сейчас его нет на экране");
    if (subject.isAvailable)
        subject.title = Desk::tr("График «%1», как показан").arg(plots.getPlot().title);
    subject.prepare = [this] {
        return makePictured(document, plots.getPlot().title, warnOfOldResults(document), plots.toSvg());
    };
    return subject;
}

PrintSubject DeskPrinting::makeTableSubject() const
{
    PrintSubject subject;
    subject.title = Desk::tr("Таблица пунктов и секций, как показана");
    subject.isAvailable = table.model()->rowCount() > 0;
    subject.reason = Desk::tr("в ней нет строк");
    subject.prepare = [this] {
        return makeShown(document, Desk::tr("Пункты и секции"), warnOfOldResults(document),
                         showncontent::makeTable(table));
    };
    return subject;
}

PrintSubject DeskPrinting::makeLinesSubject() const
{
    const auto* model = dynamic_cast<const ProtocolTreeModel*>(lines.getView().model());
    PrintSubject subject;
    subject.title = Desk::tr("Строки протокола, как показаны");
    subject.isAvailable = lines.isVisible() && !lines.isWorking() && model->rowCount() > 0;
    subject.reason = Desk::tr("сейчас их нет на экране");
    if (subject.isAvailable)
        subject.title =
            Desk::tr("Строки протокола «%1», как показаны").arg(getTypeText(lines.getProtocolType()));
    subject.prepare = [this, model] {
        const int type = lines.getProtocolType();
        return makeShown(document, Desk::tr("Протокол: %1").arg(getTypeText(type)),
                         document.isProtocolOutdated(type)
                             ? Desk::tr("Протокол устарел: сеть изменена после этой обработки.")
                             : QString(),
                         showncontent::makeLines(*model));
    };
    return subject;
}

void DeskPrinting::perform(const PrintSubject& subject, PrintDialog::Target target)
{
    ExceptionCatcher catcher;
    catcher.addErrorHandler([this](const QString& message) { Application::warning(message, window); });
    catcher.run([&] {
        switch (target) {
        case PrintDialog::Target::Printer:
            print(subject.prepare());
            break;
        case PrintDialog::Target::File:
            saveFile(subject.prepare(), subject.title);
            break;
        case PrintDialog::Target::Viewer:
            view(subject.prepare());
            break;
        }
    });
}

void DeskPrinting::print(const PrintSubject::Maker& make)
{
    ReportContent report;
    if (!performWithProgress(window, Desk::tr("Составление"),
                             [&](const auto& /*progress*/) { report = make(); }))
        return;
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(report.title);
    printer.setPageMargins(QMarginsF(kMargin, kMargin, kMargin, kMargin), QPageLayout::Millimeter);
    reportpaper::orient(printer, report);
    QPrintDialog dialog(&printer, window);
    if (dialog.exec() != QDialog::Accepted)
        return;
    reportpaper::Range range;
    if (printer.printRange() == QPrinter::PageRange)
        range = {std::max(1, printer.fromPage()), printer.toPage()};
    bool isPainted = false;
    const bool isDone = performWithProgress(window, Desk::tr("Печать"), [&](const auto& progress) {
        isPainted = reportpaper::paint(report, printer, range, [&](int percent) {
            const bool goesOn = progress(percent);
            if (!goesOn)
                printer.abort();
            return goesOn;
        });
    });
    if (isDone && !isPainted)
        Q_EMIT told(Desk::tr("Печать не началась: проверьте принтер или файл, в который печатается."));
}

void DeskPrinting::saveFile(const PrintSubject::Maker& make, const QString& title)
{
    const QString path = filedialogs::chooseReportTarget(window, title);
    if (!path.isEmpty() && write(make, path))
        Q_EMIT told(Desk::tr("Записано: %1").arg(path));
}

void DeskPrinting::view(const PrintSubject::Maker& make)
{
    const QString path = Application::getTmpFileName(QStringLiteral("report_%1.pdf"));
    if (!write(make, path))
        return;
    Application::instance()->registerTmpFile(path);
    if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        Q_EMIT told(Desk::tr("Просмотр не открылся: в системе не назначена программа для файлов PDF."));
}

/// False if the user stopped it.
bool DeskPrinting::write(const PrintSubject::Maker& make, const QString& path)
{
    QByteArray content;
    const bool isDone = performWithProgress(window, Desk::tr("Составление"), [&](const auto& progress) {
        content = reportfile::make(make(), path, progress);
    });
    if (isDone)
        files::writeAll(path, content);
    return isDone;
}

} // namespace orvel::desk
