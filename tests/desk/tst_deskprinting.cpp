#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/document/NetworkChange.h"
#include "apps/desk/gui/ItemFilterModel.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/gui/MessageBar.h"
#include "apps/desk/plots/PlotPanel.h"
#include "apps/desk/print/PrintDialog.h"
#include "apps/desk/print/ProgressWork.h"
#include "apps/desk/print/ShownContent.h"
#include "apps/desk/protocol/ProtocolPanel.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/TestFiles.h"

#include <QApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QHeaderView>
#include <QLineEdit>
#include <QListWidget>
#include <QPrintDialog>
#include <QProgressDialog>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include <chrono>
#include <stdexcept>
#include <thread>

using namespace orvel::desk;
using namespace orvel::test;

/// What a user prints.
class TestDeskPrinting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void emptyProjectPrintsNothing();
    void shortcutOffersWhatThereIs();
    void reportsNeedResults();
    void linesAreMeantByWhoIsInThem();
    void tableIsPrintedAsItIsShown();
    void linesArePrinted();
    void pictureIsPrinted();
    void shownPlotIsPrinted();
    void reportTellsWhatWasDoneByHand();
    void outdatedLinesSaySo();
    void reportIsSaved();
    void suffixIsAdded();
    void fileIsNotWrittenOverUnasked();
    void formatFollowsTheChoice();
    void failedSaveIsTold();
    void viewerGetsSheets();
    void missingViewerIsTold();
    void printerGetsTheReport();
    void givenUpPrintingPrintsNothing();
    void longWorkCanBeStopped();
    void finishedWorkIsDone();
    void failureOfWorkIsThrown();

private:
    void adjust();
    PrintDialog& openDialog();
    QStringList listTitles();
    void choose(const QString& title);
    void press(const QString& button);
    /// Saves what the dialog has chosen, and gives the file back.
    QByteArray save(const QString& name);

    std::unique_ptr<DeskFixture> desk;
    std::unique_ptr<DeskWindow> window;
};

namespace {

/// Does something with the next modal dialog of that kind.
template<typename Dialog>
class Visitor : public QObject
{
public:
    explicit Visitor(std::function<void(Dialog&)> visit) : act(std::move(visit))
    {
        QTimer::singleShot(0, this, &Visitor::look);
    }
    bool hasCome() const { return isDone; }

private:
    void look()
    {
        auto* dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        if (!dialog) {
            QTimer::singleShot(5, this, &Visitor::look);
            return;
        }
        isDone = true;
        act(*dialog);
    }

    std::function<void(Dialog&)> act;
    bool isDone = false;
};

} // namespace

void TestDeskPrinting::init()
{
    desk = std::make_unique<DeskFixture>();
    window = desk->makeWindow(samplePath(QStringLiteral("blunder.gkf")));
    window->getMonitor().hide();
}

void TestDeskPrinting::cleanup()
{
    window.reset();
    desk.reset();
}

void TestDeskPrinting::adjust()
{
    QVERIFY(triggerAction(*window, QStringLiteral("Уравнивание")));
    QVERIFY(window->getMonitor().waitForFinished());
    window->getMonitor().hide();
    QTRY_VERIFY(!window->getProtocolPanel().isWorking());
}

PrintDialog& TestDeskPrinting::openDialog()
{
    if (!triggerAction(*window, QStringLiteral("Печать…")))
        qFatal("Nothing can be printed.");
    return *window->findChild<PrintDialog*>();
}

QStringList TestDeskPrinting::listTitles()
{
    const QListWidget& list = window->findChild<PrintDialog*>()->getList();
    QStringList titles;
    for (int row = 0; row < list.count(); ++row)
        titles.append(list.item(row)->text());
    return titles;
}

void TestDeskPrinting::choose(const QString& title)
{
    // An earlier dialog is deleted by the event loop.
    QTRY_VERIFY(!window->findChild<PrintDialog*>());
    QListWidget& list = openDialog().getList();
    const QList<QListWidgetItem*> found = list.findItems(title, Qt::MatchExactly);
    QCOMPARE(found.size(), 1);
    list.setCurrentItem(found.front());
}

void TestDeskPrinting::press(const QString& text)
{
    for (auto* button : window->findChild<PrintDialog*>()->findChildren<QPushButton*>()) {
        if (button->text().remove(QLatin1Char('&')) == text) {
            QVERIFY(button->isEnabled());
            button->click();
            return;
        }
    }
    QFAIL(qPrintable(text));
}

QByteArray TestDeskPrinting::save(const QString& name)
{
    const QString path = desk->path(name);
    const Visitor<QFileDialog> visitor([&path](QFileDialog& dialog) {
        dialog.selectFile(path);
        QMetaObject::invokeMethod(&dialog, "accept");
    });
    press(QStringLiteral("Сохранить в файл…"));
    return visitor.hasCome() && QFile::exists(path) ? readFile(path) : QByteArray();
}

void TestDeskPrinting::emptyProjectPrintsNothing()
{
    const auto empty = desk->makeWindow();
    QVERIFY(!isActionEnabled(*empty, QStringLiteral("Печать…")));
}

void TestDeskPrinting::shortcutOffersWhatThereIs()
{
    QApplication::setActiveWindow(window.get());
    QTest::keyClick(window.get(), Qt::Key_P, Qt::ControlModifier);
    QVERIFY(window->findChild<PrintDialog*>());
    adjust();
    window->findChild<PrintDialog*>()->reject();
    QTRY_VERIFY(!window->findChild<PrintDialog*>());
    openDialog();
    QCOMPARE(listTitles().mid(0, 6),
             (QStringList{QStringLiteral("Таблица пунктов и секций, как показана"),
                          QStringLiteral("Строки протокола «Уравнивание», как показаны"),
                          QStringLiteral("Каталог высот"), QStringLiteral("Ведомость превышений и поправок"),
                          QStringLiteral("Ведомость ходов"), QStringLiteral("Ведомость секций")}));
}

void TestDeskPrinting::reportsNeedResults()
{
    QListWidget& list = openDialog().getList();
    QListWidgetItem* item = list.item(2);
    QCOMPARE(item->text(), QStringLiteral("Каталог высот — сначала выполните уравнивание"));
    QVERIFY(!(item->flags() & Qt::ItemIsEnabled));
    list.setCurrentItem(item);
    for (const auto* button : window->findChild<PrintDialog*>()->findChildren<QPushButton*>())
        QCOMPARE(button->isEnabled(), button->text() == QStringLiteral("&Закрыть"));
}

void TestDeskPrinting::linesAreMeantByWhoIsInThem()
{
    adjust();
    window->activateWindow();
    window->getProtocolPanel().getView().setFocus();
    QCOMPARE(openDialog().getList().currentRow(), 1);
    window->findChild<PrintDialog*>()->reject();
    QTRY_VERIFY(!window->findChild<PrintDialog*>());
    window->getTable().setFocus();
    QCOMPARE(openDialog().getList().currentRow(), 0);
}

void TestDeskPrinting::tableIsPrintedAsItIsShown()
{
    adjust();
    window->findChild<QLineEdit*>()->setText(QStringLiteral("М7"));
    ItemTable& table = window->getTable();
    QTRY_COMPARE(table.model()->rowCount(), 3);
    table.horizontalHeader()->moveSection(table.horizontalHeader()->visualIndex(1), 0);
    choose(QStringLiteral("Таблица пунктов и секций, как показана"));
    const QString page = QString::fromUtf8(save(QStringLiteral("table.html")));
    QVERIFY(page.contains(QStringLiteral("<h1>Пункты и секции</h1>")));
    QVERIFY(page.contains(QStringLiteral("<thead>\n<tr><th>Вид</th><th>Имя</th>")));
    const QAbstractItemModel& model = *table.model();
    for (int row = 0; row < model.rowCount(); ++row)
        QVERIFY(page.contains(
            QStringLiteral("<tr><td class=\"name\">%1</td><td class=\"name\">%2</td>")
                .arg(model.index(row, 1).data().toString(), model.index(row, 0).data().toString())));
    QCOMPARE(page.count(QStringLiteral("<tr>")), 4);
    // What is only shown is not to be signed.
    QVERIFY(!page.contains(QStringLiteral("Выполнил")));
}

void TestDeskPrinting::linesArePrinted()
{
    adjust();
    choose(QStringLiteral("Строки протокола «Уравнивание», как показаны"));
    const QString page = QString::fromUtf8(save(QStringLiteral("lines.html")));
    QVERIFY(page.contains(QStringLiteral("<h1>Протокол: Уравнивание</h1>")));
    QVERIFY(page.contains(QStringLiteral("colspan=\"2\">Результаты уравнивания (")));
    const ProtocolSummary::Counts counts =
        window->getDocument().getSummary().types.at(window->getProtocolPanel().getProtocolType());
    QCOMPARE(page.count(QStringLiteral("<td class=\"name\">ошибка</td>")), counts.errors);
    QCOMPARE(page.count(QStringLiteral("<td class=\"name\">предупреждение</td>")), counts.warnings);
    QCOMPARE(page.count(QStringLiteral("<tr class=\"marked\">")), counts.errors);
}

void TestDeskPrinting::pictureIsPrinted()
{
    choose(QStringLiteral("Схема сети"));
    const QString page = QString::fromUtf8(save(QStringLiteral("picture.html")));
    QVERIFY(page.contains(QStringLiteral("<h1>Схема сети</h1>")));
    QVERIFY(page.contains(QStringLiteral("<p>Сеть: пунктов ")));
    QCOMPARE(page.count(QStringLiteral("<img alt=\"Схема сети\" src=\"data:image/svg+xml;base64,")), 1);
    QVERIFY(!page.contains(QStringLiteral("<table")));
    QVERIFY(!page.contains(QStringLiteral("Выполнил")));
}

void TestDeskPrinting::shownPlotIsPrinted()
{
    adjust();
    openDialog();
    QCOMPARE(listTitles().constLast(), QStringLiteral("График, как показан — сейчас его нет на экране"));
    window->findChild<PrintDialog*>()->reject();
    QVERIFY(triggerAction(*window, QStringLiteral("Графики")));
    auto* plots = window->findChild<PlotPanel*>();
    QTRY_VERIFY(!plots->isWorking());
    plots->showPlot(plots::ResidualsByLength);
    choose(QStringLiteral("График «Поправки по длине», как показан"));
    const QString page = QString::fromUtf8(save(QStringLiteral("plot.html")));
    QVERIFY(page.contains(QStringLiteral("<h1>Поправки по длине</h1>")));
    QVERIFY(page.contains(QStringLiteral("<img alt=\"Поправки по длине\" src=\"data:image/svg+xml;base64,") +
                          QString::fromLatin1(plots->toSvg().toBase64())));
    QVERIFY(!page.contains(QStringLiteral("class=\"warning\"")));
    Document& document = window->getDocument();
    QVERIFY(document.applyChange(
        QString(), networkchange::switchOff(document, {document.getSections()[0]->getId()}, QString())));
    QTRY_VERIFY(!plots->isWorking());
    choose(QStringLiteral("График «Поправки по длине», как показан"));
    QVERIFY(
        QString::fromUtf8(save(QStringLiteral("old.html"))).contains(QStringLiteral("class=\"warning\"")));
}

void TestDeskPrinting::reportTellsWhatWasDoneByHand()
{
    adjust();
    Document& document = window->getDocument();
    const LevellingSection& section = *document.getSections()[0];
    QVERIFY(document.applyChange(
        QString(), networkchange::switchOff(document, {section.getId()}, QStringLiteral("ветер <"))));
    const QString change = QStringLiteral("<h2>Изменено вручную</h2>\n<table>\n<thead>\n<tr><th>№</th>"
                                          "<th>Изменение</th></tr>\n</thead>\n<tbody>\n<tr><td>1</td>"
                                          "<td class=\"name\">Секция %1 отключена: ветер &lt;</td></tr>\n")
                               .arg(section.getName());
    const QString warning = QStringLiteral("<p class=\"warning\">Результаты устарели: сеть изменена после "
                                           "уравнивания. Уравняйте её заново.</p>");
    choose(QStringLiteral("Ведомость превышений и поправок"));
    QString page = QString::fromUtf8(save(QStringLiteral("residuals.html")));
    QVERIFY(page.contains(warning));
    QVERIFY(page.contains(change));
    QVERIFY(page.contains(QStringLiteral("<td class=\"name\">отключена: ветер &lt;</td>")));
    QVERIFY(!page.contains(QStringLiteral("больше предела")));

    adjust();
    choose(QStringLiteral("Ведомость превышений и поправок"));
    page = QString::fromUtf8(save(QStringLiteral("again.html")));
    QVERIFY(!page.contains(QStringLiteral("class=\"warning\">")));
    QVERIFY(page.contains(change));
    QVERIFY(page.contains(
        QStringLiteral("секций %1; отключено секций 1</p>").arg(document.getSections().size() - 1)));

    choose(QStringLiteral("Ведомость секций"));
    page = QString::fromUtf8(save(QStringLiteral("sections.html")));
    QCOMPARE(page.count(QStringLiteral("<tr><td class=\"name\">%1</td>").arg(section.getName())), 1);
    QVERIFY(page.contains(QStringLiteral("colspan=\"11\">Отключены</th></tr>\n<tr><td class=\"name\">") +
                          section.getName()));
}

void TestDeskPrinting::outdatedLinesSaySo()
{
    adjust();
    Document& document = window->getDocument();
    QVERIFY(document.applyChange(
        QString(), networkchange::switchOff(document, {document.getSections()[0]->getId()}, QString())));
    choose(QStringLiteral("Строки протокола «Уравнивание», как показаны"));
    QVERIFY(QString::fromUtf8(save(QStringLiteral("lines.html")))
                .contains(QStringLiteral("<p class=\"warning\">Протокол устарел: сеть изменена после этой "
                                         "обработки.</p>")));
}

void TestDeskPrinting::reportIsSaved()
{
    adjust();
    choose(QStringLiteral("Ведомость превышений и поправок"));
    QVERIFY(save(QStringLiteral("report.pdf")).startsWith("%PDF-"));
    QCOMPARE(window->getMessageBar().getMessage(),
             QStringLiteral("Записано: %1").arg(desk->path(QStringLiteral("report.pdf"))));
}

void TestDeskPrinting::suffixIsAdded()
{
    choose(QStringLiteral("Ведомость ходов"));
    QCOMPARE(save(QStringLiteral("lines")), QByteArray());
    QVERIFY(readFile(desk->path(QStringLiteral("lines.pdf"))).startsWith("%PDF-"));
}

void TestDeskPrinting::fileIsNotWrittenOverUnasked()
{
    const QString known = desk->path(QStringLiteral("report 12.03.pdf"));
    writeFile(known, "known");
    choose(QStringLiteral("Ведомость ходов"));
    // The dialog leaves a name with a point as it is.
    const Visitor<QFileDialog> visitor([this](QFileDialog& dialog) {
        dialog.selectFile(desk->path(QStringLiteral("report 12.03")));
        QMetaObject::invokeMethod(&dialog, "accept");
        // It is there again, with the name that would be written over.
        QTimer::singleShot(0, &dialog, [&dialog] { dialog.reject(); });
    });
    press(QStringLiteral("Сохранить в файл…"));
    QVERIFY(visitor.hasCome());
    QCOMPARE(readFile(known), QByteArray("known"));
}

void TestDeskPrinting::formatFollowsTheChoice()
{
    choose(QStringLiteral("Ведомость ходов"));
    const Visitor<QFileDialog> visitor([this](QFileDialog& dialog) {
        dialog.selectFile(desk->path(QStringLiteral("lines.pdf")));
        dialog.selectNameFilter(dialog.nameFilters().last());
        Q_EMIT dialog.filterSelected(dialog.nameFilters().last());
        QMetaObject::invokeMethod(&dialog, "accept");
    });
    press(QStringLiteral("Сохранить в файл…"));
    QVERIFY(visitor.hasCome());
    QVERIFY(readFile(desk->path(QStringLiteral("lines.html"))).startsWith("<!DOCTYPE html>"));
}

void TestDeskPrinting::failedSaveIsTold()
{
    choose(QStringLiteral("Ведомость ходов"));
    QVERIFY(QDir(desk->folder.path()).mkdir(QStringLiteral("taken.pdf")));
    const Visitor<QFileDialog> visitor([this](QFileDialog& dialog) {
        // The dialog would go into the folder.
        dialog.setFileMode(QFileDialog::Directory);
        dialog.selectFile(desk->path(QStringLiteral("taken.pdf")));
        QMetaObject::invokeMethod(&dialog, "accept");
    });
    press(QStringLiteral("Сохранить в файл…"));
    QCOMPARE(desk->application.takeWarnings().size(), 1);
    QCOMPARE(window->getMessageBar().getMessage(), QString());
}

void TestDeskPrinting::viewerGetsSheets()
{
    choose(QStringLiteral("Ведомость секций"));
    press(QStringLiteral("Просмотр"));
    const QString path = desk->opened.getPaths().last();
    QVERIFY(path.endsWith(QStringLiteral(".pdf")));
    QVERIFY(readFile(path).startsWith("%PDF-"));
}

void TestDeskPrinting::missingViewerIsTold()
{
    choose(QStringLiteral("Ведомость секций"));
    QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
    press(QStringLiteral("Просмотр"));
    QCOMPARE(window->getMessageBar().getMessage(),
             QStringLiteral("Просмотр не открылся: в системе не назначена программа для файлов PDF."));
}

void TestDeskPrinting::printerGetsTheReport()
{
    choose(QStringLiteral("Ведомость ходов"));
    const QString path = desk->path(QStringLiteral("printed.pdf"));
    const Visitor<QPrintDialog> visitor([&path](QPrintDialog& dialog) {
        dialog.findChild<QLineEdit*>(QStringLiteral("filename"))->setText(path);
        dialog.accept();
    });
    press(QStringLiteral("Печать…"));
    QVERIFY(visitor.hasCome());
    QVERIFY(readFile(path).startsWith("%PDF-"));
    QCOMPARE(window->getMessageBar().getMessage(), QString());
}

void TestDeskPrinting::givenUpPrintingPrintsNothing()
{
    choose(QStringLiteral("Ведомость ходов"));
    const QString path = desk->path(QStringLiteral("printed.pdf"));
    const Visitor<QPrintDialog> visitor([&path](QPrintDialog& dialog) {
        dialog.findChild<QLineEdit*>(QStringLiteral("filename"))->setText(path);
        dialog.reject();
    });
    press(QStringLiteral("Печать…"));
    QVERIFY(visitor.hasCome());
    QVERIFY(!QFile::exists(path));
}

void TestDeskPrinting::longWorkCanBeStopped()
{
    int latest = 0;
    const Visitor<QProgressDialog> visitor([&latest](QProgressDialog& dialog) {
        QTRY_COMPARE(dialog.value(), 40);
        latest = dialog.value();
        dialog.findChild<QPushButton*>()->click();
    });
    const bool isDone = performWithProgress(window.get(), QStringLiteral("Работа"), [](const auto& progress) {
        while (progress(40))
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
    });
    QVERIFY(!isDone);
    QCOMPARE(latest, 40);
}

void TestDeskPrinting::finishedWorkIsDone()
{
    // At once, and with a dialog: the result counts however late its thread ends.
    for (const int duration : {0, 150}) {
        bool isThere = false;
        QVERIFY(performWithProgress(window.get(), QStringLiteral("Работа"), [&](const auto& progress) {
            std::this_thread::sleep_for(std::chrono::milliseconds(duration));
            isThere = progress(100);
        }));
        QVERIFY(isThere);
    }
}

void TestDeskPrinting::failureOfWorkIsThrown()
{
    const auto fail = [](const auto&) { throw std::runtime_error("no paper"); };
    QVERIFY_EXCEPTION_THROWN(performWithProgress(window.get(), QStringLiteral("Работа"), fail),
                             std::runtime_error);
}

QTEST_MAIN(TestDeskPrinting)
#include "tst_deskprinting.moc"
