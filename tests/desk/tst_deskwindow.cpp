#include "Orvel/store/ProtocolTypes.h"
#include "Orvel/store/SavedProtocol.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/document/ProjectLock.h"
#include "apps/desk/gui/DeskPages.h"
#include "apps/desk/gui/HelpDialog.h"
#include "apps/desk/gui/ItemColumns.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/gui/MessageBar.h"
#include "apps/desk/gui/RecentFiles.h"
#include "apps/desk/protocol/ProtocolList.h"
#include "host/files/CFileException.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/TestFiles.h"

#include <QAction>
#include <QDir>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QRegularExpression>
#include <QStatusBar>
#include <QTest>
#include <QTextBrowser>
#include <QUndoStack>
#include <QUrlQuery>

using namespace orvel::desk;
using namespace orvel::test;

Q_DECLARE_METATYPE(UriFollower::Answer)

/// What a user does in the window.
class TestDeskWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void emptyProjectOffersImportOnly();
    void importNamesTheProject();
    void runsNeedTheirInput();
    void newUserFindsWorstMeasurement();
    void protocolButtonOpensPage();
    void protocolListOpensPage();
    void exportWritesHeights();
    void unreadableFileLeavesProject();
    void importAsksBeforeReplacing_data();
    void importAsksBeforeReplacing();
    void importTellsOfChangesByHand();
    void reimportKeepsIdsAndDropsOldProtocols();
    void stoppedImportGivesNetworkBack();
    void importIntoSavedProjectStartsAnother();
    void failedImportLeavesSavedProject();
    void additionStaysInTheSavedProject();
    void additionDropsResults();
    void stoppedAdditionGivesNetworkBack();
    void changedFileIsNotWrittenOverUnasked_data();
    void changedFileIsNotWrittenOverUnasked();
    void lockedFileIsNotWritten();
    void vanishedDataFileComesBack_data();
    void vanishedDataFileComesBack();
    void closingAsksForUnsavedChanges_data();
    void closingAsksForUnsavedChanges();
    void closingDuringRunAsks_data();
    void closingDuringRunAsks();
    void failedSaveSaysWhatToDo();
    void droppedNetworkIsImported();
    void droppedFieldFileIsToldByItsContent();
    void droppedFilesAreOneNetwork();
    void droppedProjectIsRequested();
    void otherWindowsTakeFiles_data();
    void otherWindowsTakeFiles();
    void droppedTextIsRefused();
    void recentFilesAreOffered();
    void searchIsClearedForLinkedItem();
    void linkToMissingItemIsExplained();
    void urisAreFollowed_data();
    void urisAreFollowed();
    void uriDuringRunWaits();
    void equalUrisAreOne();
    void pageIsReusedWhileItsLinesAreTheSame();
    void uriOfAnotherTypeSelectsNothing();
    void reportsAreWritten();
    void reportNeedsResults();
    void classChangesTolerance();
    void countsOutliveOtherWords();
    void anotherRowLeavesTheCommandsAlone();
    void helpTellsOfEveryRun();
    void everythingHasAccessibleName();
    void progressWindowLeavesTheTableFree();
    void layoutIsKept();

private:
    /// Runs the action to its end.
    void run(const char* action);
    QString lastPage() const;
    QString uri(const char* host, qint64 id, const QString& project = QStringLiteral("two-benchmarks")) const;

    std::unique_ptr<DeskFixture> desk;
    std::unique_ptr<DeskWindow> window;
};

void TestDeskWindow::init()
{
    desk = std::make_unique<DeskFixture>();
    window = desk->makeWindow(samplePath(QStringLiteral("two-benchmarks.gkf")));
}

void TestDeskWindow::cleanup()
{
    window.reset();
    desk.reset();
}

void TestDeskWindow::run(const char* action)
{
    QVERIFY2(triggerAction(*window, QString::fromUtf8(action)), action);
    QVERIFY(window->getMonitor().waitForFinished());
}

QString TestDeskWindow::lastPage() const
{
    return QString::fromUtf8(readFile(desk->opened.getPaths().constLast()));
}

QString TestDeskWindow::uri(const char* host, qint64 id, const QString& project) const
{
    return QStringLiteral("orvel://%1?id=%2&project=%3")
        .arg(QString::fromLatin1(host), QString::number(id),
             QString::fromLatin1(QUrl::toPercentEncoding(project)));
}

void TestDeskWindow::emptyProjectOffersImportOnly()
{
    window = desk->makeWindow();
    QCOMPARE(window->windowTitle(), QStringLiteral("Новый проект[*]"));
    QVERIFY(!window->isWindowModified());
    for (const char* action : {"Предобработка", "Уравнивание", "L1-анализ", "Анализ исходных данных",
                               "Трассирование ходов", "Экспорт…"})
        QVERIFY2(!isActionEnabled(*window, QString::fromUtf8(action)), action);
    QVERIFY(isActionEnabled(*window, QStringLiteral("Импорт сети…")));
}

void TestDeskWindow::importNamesTheProject()
{
    QCOMPARE(window->windowTitle(), QStringLiteral("two-benchmarks[*]"));
    QVERIFY(window->isWindowModified());
    QCOMPARE(window->getMonitor().windowTitle(), QStringLiteral("Импорт — two-benchmarks"));
    // There is nothing to see in it.
    QVERIFY(!window->getMonitor().isVisible());
    QVERIFY(window->getMonitor().getJournal()->toPlainText().contains(
        QStringLiteral("Прочитано пунктов: 5, из них исходных реперов: 2; секций: 7")));
}

void TestDeskWindow::runsNeedTheirInput()
{
    QVERIFY(isActionEnabled(*window, QStringLiteral("Уравнивание")));
    QVERIFY(isActionEnabled(*window, QStringLiteral("Экспорт…")));
    QVERIFY(!isActionEnabled(*window, QStringLiteral("Каталог высот")));
    run("Уравнивание");
    QVERIFY(isActionEnabled(*window, QStringLiteral("Каталог высот")));
}

void TestDeskWindow::newUserFindsWorstMeasurement()
{
    run("Предобработка");
    run("Уравнивание");
    QTextBrowser* journal = window->getMonitor().getJournal();
    QVERIFY(journal->toPlainText().contains(
        QStringLiteral("Наибольшая стьюдентизированная поправка 1,61, предел 1,93: секция BMY – C")));
    const QString html = journal->toHtml();
    const LONGID worst = window->getDocument().getSections()[2]->getId();
    QVERIFY(html.contains(QStringLiteral("id=%1&amp;").arg(worst)));

    Q_EMIT journal->anchorClicked(QUrl(uri("locate-item", worst)));
    QCOMPARE(window->getTable().currentIndex().data().toString(), QStringLiteral("BMY – C"));
    QCOMPARE(desk->opened.getPaths(), QStringList());
}

void TestDeskWindow::protocolButtonOpensPage()
{
    run("Уравнивание");
    QPushButton* protocolButton = nullptr;
    for (auto* button : window->getMonitor().findChildren<QPushButton*>()) {
        if (button->text().remove(QLatin1Char('&')) == QStringLiteral("Протокол"))
            protocolButton = button;
    }
    QVERIFY(protocolButton);
    protocolButton->click();
    QCOMPARE(desk->opened.getPaths().size(), 1);
    QVERIFY(lastPage().contains(QStringLiteral("<h1>Уравнивание</h1>")));
    QVERIFY(lastPage().contains(QStringLiteral("generate-report?id=%1").arg(kHeightCatalogue)));

    QVERIFY(triggerAction(*window, QStringLiteral("Предобработка")));
    QVERIFY(!protocolButton->isEnabled());
    QVERIFY(window->getMonitor().waitForFinished());
    QVERIFY(protocolButton->isEnabled());
}

void TestDeskWindow::protocolListOpensPage()
{
    run("L1-анализ");
    auto* list = window->findChild<ProtocolList*>();
    QCOMPARE(list->topLevelItemCount(), 2);
    const QTreeWidgetItem* item = list->topLevelItem(0);
    QCOMPARE(item->text(0), QStringLiteral("L1-анализ"));
    QCOMPARE(item->text(1), QStringLiteral("0"));
    QCOMPARE(item->text(2), QStringLiteral("0"));
    list->setCurrentItem(list->topLevelItem(0));
    Q_EMIT list->itemActivated(list->topLevelItem(0), 0);
    QVERIFY(lastPage().contains(QStringLiteral("<h1>L1-анализ</h1>")));
}

void TestDeskWindow::exportWritesHeights()
{
    run("Уравнивание");
    const QString path = desk->path(QStringLiteral("heights.csv"));
    window->exportFile(path);
    QVERIFY(window->getMonitor().waitForFinished());
    QVERIFY(readFile(path).contains("\nA,105.15040,32.756\n"));
}

void TestDeskWindow::unreadableFileLeavesProject()
{
    const QString path = desk->path(QStringLiteral("broken.gkf"));
    writeFile(path, "<gama-local>");
    const LONGID id = window->getDocument().getPoints()[0]->getId();
    window->importFile(path);
    QVERIFY(window->getMonitor().waitForFinished());
    QVERIFY(window->getMonitor().wasErrors());
    QVERIFY(window->getMonitor().getJournal()->toPlainText().contains(
        QStringLiteral("broken.gkf, строка 1: ошибка XML: ")));
    QCOMPARE(window->getDocument().getPoints()[0]->getId(), id);
}

void TestDeskWindow::importAsksBeforeReplacing_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<int>("pointCount");
    QTest::newRow("replace") << "Заменить" << 8;
    QTest::newRow("add") << "Добавить" << 13;
    QTest::newRow("cancel") << "Отмена" << 5;
}

void TestDeskWindow::importAsksBeforeReplacing()
{
    QFETCH(QString, button);
    QFETCH(int, pointCount);
    const Answer answer(button);
    window->importFile(samplePath(QStringLiteral("one-benchmark.gkf")));
    QCOMPARE(answer.getQuestion(),
             QStringLiteral("Заменить сеть проекта «two-benchmarks» или добавить к ней? Результаты и "
                            "протоколы обработки прежней сети будут потеряны."));
    QVERIFY(window->getMonitor().waitForFinished());
    QCOMPARE(int(window->getDocument().getPoints().size()), pointCount);
    // Links name the project, so it keeps its name.
    QCOMPARE(window->windowTitle(), QStringLiteral("two-benchmarks[*]"));
}

void TestDeskWindow::importTellsOfChangesByHand()
{
    Document& document = window->getDocument();
    const LONGID id = document.getSections()[0]->getId();
    document.applyChange(QString(), networkchange::switchOff(document, {id}, QString()));
    document.applyChange(QString(),
                         networkchange::changeSections(
                             document, {id}, [](levelling::Section& section) { section.difference += 0.5; }));
    const Answer answer(QStringLiteral("Добавить"));
    window->importFile(samplePath(QStringLiteral("one-benchmark.gkf")));
    QCOMPARE(answer.getQuestion(),
             QStringLiteral("Заменить сеть проекта «two-benchmarks» или добавить к ней? Результаты и "
                            "протоколы обработки прежней сети будут потеряны. При замене пропадут и "
                            "изменения, сделанные вручную: 2."));
    QVERIFY(window->getMonitor().waitForFinished());
    // What is added to leaves them.
    QCOMPARE(int(document.getHandChanges().size()), 2);
}

void TestDeskWindow::reimportKeepsIdsAndDropsOldProtocols()
{
    run("Уравнивание");
    const LONGID pointId = window->getDocument().getPoints()[2]->getId();
    const LONGID sectionId = window->getDocument().getSections()[6]->getId();
    const Answer answer(QStringLiteral("Заменить"));
    window->importFile(samplePath(QStringLiteral("two-benchmarks.gkf")));
    QVERIFY(window->getMonitor().waitForFinished());
    QCOMPARE(window->getDocument().getPoints()[2]->getId(), pointId);
    QCOMPARE(window->getDocument().getSections()[6]->getId(), sectionId);
    QVERIFY(!window->getDocument().hasResults());
    QCOMPARE(int(window->getDocument().getSummary().types.count(enums::Adjust)), 0);
    QCOMPARE(int(window->getDocument().getSummary().types.count(enums::Import)), 1);
}

void TestDeskWindow::stoppedImportGivesNetworkBack()
{
    run("Уравнивание");
    const LONGID pointId = window->getDocument().getPoints()[2]->getId();
    // Stopped as soon as the new network is in the project.
    connect(&window->getDocument(), &Document::networkReplaced, &window->getMonitor(),
            &CProcessMonitor::stop);
    const Answer answer(QStringLiteral("Заменить"));
    window->importFile(samplePath(QStringLiteral("one-benchmark.gkf")));
    QVERIFY(window->getMonitor().waitForFinished());
    QVERIFY(window->getMonitor().wasInterrupted());
    QCOMPARE(int(window->getDocument().getPoints().size()), 5);
    QCOMPARE(window->getDocument().getPoints()[2]->getId(), pointId);
    QVERIFY(window->getDocument().hasResults());
    QCOMPARE(window->getDocument().getSummary().types.at(enums::Adjust).warnings, 1);
}

void TestDeskWindow::importIntoSavedProjectStartsAnother()
{
    run("Уравнивание");
    const QString path = desk->path(QStringLiteral("project.orvel"));
    QVERIFY(window->saveFile(path));
    const QByteArray saved = readFile(path);
    const Answer answer(QStringLiteral("Заменить"));
    window->importFile(samplePath(QStringLiteral("one-benchmark.gkf")));
    QVERIFY(window->getMonitor().waitForFinished());
    QCOMPARE(int(window->getDocument().getPoints().size()), 8);
    QCOMPARE(window->getDocument().getProject().getFilePath(), QString());
    QCOMPARE(window->windowTitle(), QStringLiteral("one-benchmark[*]"));
    QVERIFY(window->isWindowModified());
    QCOMPARE(readFile(path), saved);
    // The file is free for others.
    QVERIFY(ProjectLock::take(path));
}

void TestDeskWindow::failedImportLeavesSavedProject()
{
    const QString path = desk->path(QStringLiteral("project.orvel"));
    QVERIFY(window->saveFile(path));
    window->importFile(QStringLiteral("/no/such/network.gkf"));
    QVERIFY(window->getMonitor().waitForFinished());
    QCOMPARE(window->getDocument().getProject().getFilePath(), path);
    QCOMPARE(window->windowTitle(), QStringLiteral("two-benchmarks[*] (%1)").arg(path));
    // However the file was named, the title tells which it is.
    QVERIFY(window->saveFile(QDir().relativeFilePath(path)));
    QCOMPARE(window->windowTitle(), QStringLiteral("two-benchmarks[*] (%1)").arg(path));
    QVERIFY_EXCEPTION_THROWN(ProjectLock::take(path), qor::CFileException);
}

void TestDeskWindow::additionStaysInTheSavedProject()
{
    const QString path = desk->path(QStringLiteral("project.orvel"));
    QVERIFY(window->saveFile(path));
    const Answer answer(QStringLiteral("Добавить"));
    window->importFile(samplePath(QStringLiteral("one-benchmark.gkf")));
    QVERIFY(window->getMonitor().waitForFinished());
    QCOMPARE(window->getDocument().getProject().getFilePath(), path);
    QVERIFY(window->isWindowModified());
    QCOMPARE(window->getDocument().getSnapshot().network.sources,
             QStringList({QStringLiteral("two-benchmarks.gkf"), QStringLiteral("one-benchmark.gkf")}));
}

void TestDeskWindow::additionDropsResults()
{
    run("Уравнивание");
    const LONGID pointId = window->getDocument().getPoints()[2]->getId();
    const Answer answer(QStringLiteral("Добавить"));
    window->importFile(samplePath(QStringLiteral("one-benchmark.gkf")));
    QVERIFY(window->getMonitor().waitForFinished());
    QCOMPARE(window->getDocument().getPoints()[2]->getId(), pointId);
    QVERIFY(!window->getDocument().hasResults());
    QCOMPARE(int(window->getDocument().getSummary().types.count(enums::Adjust)), 0);
}

void TestDeskWindow::stoppedAdditionGivesNetworkBack()
{
    run("Уравнивание");
    connect(&window->getDocument(), &Document::networkReplaced, &window->getMonitor(),
            &CProcessMonitor::stop);
    const Answer answer(QStringLiteral("Добавить"));
    window->importFile(samplePath(QStringLiteral("one-benchmark.gkf")));
    QVERIFY(window->getMonitor().waitForFinished());
    QVERIFY(window->getMonitor().wasInterrupted());
    QCOMPARE(int(window->getDocument().getPoints().size()), 5);
    QVERIFY(window->getDocument().hasResults());
}

void TestDeskWindow::changedFileIsNotWrittenOverUnasked_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("isSaved");
    QTest::newRow("overwrite") << "Записать поверх" << true;
    QTest::newRow("cancel") << "Отмена" << false;
}

void TestDeskWindow::changedFileIsNotWrittenOverUnasked()
{
    QFETCH(QString, button);
    QFETCH(bool, isSaved);
    const QString path = desk->path(QStringLiteral("project.orvel"));
    QVERIFY(window->saveFile(path));
    // Saved twice by this window nobody else is asked for.
    run("Предобработка");
    QVERIFY(window->save());
    run("Уравнивание");
    writeFile(path, "somebody else's work");
    const Answer answer(button);
    QCOMPARE(window->save(), isSaved);
    QCOMPARE(
        answer.getQuestion(),
        QStringLiteral("Другая программа изменила файл «%1» после того, как он был открыт. Записать поверх? "
                       "То, что она записала, будет потеряно.")
            .arg(path));
    QCOMPARE(readFile(path) == "somebody else's work", !isSaved);
    QCOMPARE(window->isWindowModified(), !isSaved);
}

void TestDeskWindow::lockedFileIsNotWritten()
{
    const QString path = desk->path(QStringLiteral("project.orvel"));
    const auto lock = ProjectLock::take(path);
    QVERIFY(!window->saveFile(path));
    const QStringList warnings = desk->application.takeWarnings();
    QCOMPARE(warnings.size(), 1);
    QVERIFY(
        warnings[0].contains(QStringLiteral("открыт в другом окне: tst_deskwindow, процесс %1, компьютер ")
                                 .arg(QCoreApplication::applicationPid())));
    QVERIFY(!QFile::exists(path));
}

void TestDeskWindow::vanishedDataFileComesBack_data()
{
    QTest::addColumn<QString>("action");
    QTest::addColumn<bool>("isFolderGone");
    for (const char* action : {"save", "list", "progress window", "report column", "report", "Предобработка",
                               "Уравнивание", "export", "import"})
        QTest::newRow(action) << QString::fromUtf8(action) << false;
    QTest::newRow("save, with its folder") << "save" << true;
    QTest::newRow("run, with its folder") << "Уравнивание" << true;
}

void TestDeskWindow::vanishedDataFileComesBack()
{
    QFETCH(QString, action);
    QFETCH(bool, isFolderGone);
    run("Предобработка");
    run("Уравнивание");
    const QString project = desk->path(QStringLiteral("project.orvel"));
    const auto countLines = [](const QByteArray& data, int type) {
        return data.count("ptype=\"" + QByteArray::number(type) + '"');
    };
    const QString dataFile = orvel::ProtocolState::read(window->getDocument().getProtocol()).dataFilePath;
    const QByteArray before = readFile(dataFile);
    if (isFolderGone)
        QVERIFY(QDir(QFileInfo(dataFile).absolutePath()).removeRecursively());
    else
        QVERIFY(QFile::remove(dataFile));

    if (action == QLatin1String("save")) {
        QVERIFY(window->saveFile(project));
    } else if (action == QLatin1String("list")) {
        window->getPages().showProtocol(enums::Adjust);
    } else if (action == QLatin1String("progress window")) {
        Q_EMIT window->getMonitor().showOrvel(enums::Adjust);
    } else if (action == QLatin1String("report column")) {
        QVERIFY(window->getTable().selectItem(window->getDocument().getPoints()[0]->getId()));
        window->getTable().showCurrentProtocol();
    } else if (action == QLatin1String("report")) {
        window->getPages().showReport(kHeightCatalogue);
    } else if (action == QLatin1String("export")) {
        window->exportFile(desk->path(QStringLiteral("h.csv")));
        QVERIFY(window->getMonitor().waitForFinished());
    } else if (action == QLatin1String("import")) {
        const Answer answer(QStringLiteral("Заменить"));
        window->importFile(samplePath(QStringLiteral("one-benchmark.gkf")));
        QVERIFY(window->getMonitor().waitForFinished());
        // The lines of the old network are gone with it.
        QCOMPARE(desk->application.takeWarnings().size(), 1);
        QCOMPARE(window->getDocument().getSummary().types.size(), std::size_t(1));
        return;
    } else {
        run(action.toUtf8().constData());
    }

    // A report needs no lines.
    if (action == QLatin1String("report")) {
        QCOMPARE(desk->application.takeWarnings(), QStringList());
        QVERIFY(window->saveFile(project));
    }
    QCOMPARE(
        desk->application.takeWarnings(),
        QStringList(QStringLiteral("Файл протоколов «%1» пропал или не прочитался. Строки прежних запусков "
                                   "записаны в него заново.")
                        .arg(dataFile)));
    const QByteArray after = readFile(dataFile);
    for (const int type : {enums::Import, enums::Compile, enums::Adjust})
        QCOMPARE(countLines(after, type), countLines(before, type));
    const bool isProtocolShown = action != QLatin1String("report") && !desk->opened.getPaths().isEmpty();
    QVERIFY(!isProtocolShown || lastPage().contains(QStringLiteral("<div class=\"Content")));
}

void TestDeskWindow::closingAsksForUnsavedChanges_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("isClosed");
    QTest::addColumn<bool>("isSaved");
    QTest::newRow("save") << "Сохранить" << true << true;
    QTest::newRow("do not save") << "Не сохранять" << true << false;
    QTest::newRow("cancel") << "Отмена" << false << false;
}

void TestDeskWindow::closingAsksForUnsavedChanges()
{
    QFETCH(QString, button);
    QFETCH(bool, isClosed);
    QFETCH(bool, isSaved);
    const QString path = desk->path(QStringLiteral("project.orvel"));
    QVERIFY(window->saveFile(path));
    QVERIFY(!window->isWindowModified());
    const QByteArray before = readFile(path);
    run("Предобработка");
    QVERIFY(window->isWindowModified());

    const Answer answer(button);
    QCOMPARE(window->close(), isClosed);
    QCOMPARE(answer.getQuestion(),
             QStringLiteral("Сохранить изменения в проекте «two-benchmarks»? Без сохранения "
                            "результаты и протоколы будут потеряны."));
    QCOMPARE(window->isVisible(), !isClosed);
    QCOMPARE(readFile(path) != before, isSaved);
}

void TestDeskWindow::closingDuringRunAsks_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<bool>("isClosed");
    QTest::newRow("stop") << "Остановить" << true;
    QTest::newRow("go on") << "Продолжить" << false;
}

void TestDeskWindow::closingDuringRunAsks()
{
    QFETCH(QString, button);
    QFETCH(bool, isClosed);
    QVERIFY(window->saveFile(desk->path(QStringLiteral("project.orvel"))));
    QVERIFY(triggerAction(*window, QStringLiteral("Уравнивание")));
    window->getMonitor().setPaused(true);
    const Answer answer(button);
    window->close();
    QCOMPARE(answer.getQuestion(), QStringLiteral("Остановить обработку и закрыть окно?"));
    window->getMonitor().setPaused(false);
    window->getMonitor().waitForFinished();
    QCOMPARE(window->getMonitor().wasInterrupted(), isClosed);
    QCOMPARE(window->isVisible(), !isClosed);
}

void TestDeskWindow::failedSaveSaysWhatToDo()
{
    QVERIFY(!window->saveFile(desk->path(QStringLiteral("no/such/folder.orvel"))));
    const QStringList warnings = desk->application.takeWarnings();
    QCOMPARE(warnings.size(), 1);
    QVERIFY(warnings[0].startsWith(QStringLiteral("Проект не сохранён. ")));
    QVERIFY(warnings[0].contains(QStringLiteral("folder.orvel")));
    QVERIFY(warnings[0].endsWith(QStringLiteral("Выберите другое место командой «Сохранить как».")));
    QVERIFY(window->isWindowModified());
}

namespace {

/// Drops the data on the widget; whether it was taken.
bool drop(QWidget& window, const QMimeData& data)
{
    QDragEnterEvent enter(QPoint(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.setAccepted(false);
    QCoreApplication::sendEvent(&window, &enter);
    if (!enter.isAccepted())
        return false;
    QDropEvent event(QPointF(10, 10), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    event.setAccepted(false);
    QCoreApplication::sendEvent(&window, &event);
    return event.isAccepted();
}

} // namespace

void TestDeskWindow::droppedNetworkIsImported()
{
    window = desk->makeWindow();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(samplePath(QStringLiteral("blunder.gkf")))});
    QVERIFY(drop(*window, data));
    QTRY_COMPARE(int(window->getDocument().getPoints().size()), 12);
    QVERIFY(window->getMonitor().waitForFinished());
    QCOMPARE(window->windowTitle(), QStringLiteral("blunder[*]"));
}

void TestDeskWindow::droppedFieldFileIsToldByItsContent()
{
    window = desk->makeWindow();
    const QString path = desk->path(QStringLiteral("day.1"));
    QVERIFY(QFile::copy(samplePath(QStringLiteral("level-loop.gsi")), path));
    window->getDocument().setLevellingClass(LevellingClass::II);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(path)});
    QVERIFY(drop(*window, data));
    QTRY_COMPARE(int(window->getDocument().getPoints().size()), 5);
    QVERIFY(window->getMonitor().waitForFinished());
    QCOMPARE(window->getDocument().getParameters().sigmaApriori, 2.5);
}

void TestDeskWindow::droppedFilesAreOneNetwork()
{
    window = desk->makeWindow();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(samplePath(QStringLiteral("two-benchmarks.gkf"))),
                  QUrl::fromLocalFile(samplePath(QStringLiteral("one-benchmark.gkf")))});
    QVERIFY(drop(*window, data));
    QTRY_COMPARE(int(window->getDocument().getPoints().size()), 13);
    QVERIFY(window->getMonitor().waitForFinished());
    QCOMPARE(window->windowTitle(), QStringLiteral("two-benchmarks[*]"));
}

void TestDeskWindow::droppedProjectIsRequested()
{
    QStringList requested;
    connect(window.get(), &DeskWindow::openRequested, this,
            [&](const QString& path) { requested.append(path); });
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(QStringLiteral("/some/project.orvel"))});
    QVERIFY(drop(*window, data));
    QTRY_COMPARE(requested, QStringList(QStringLiteral("/some/project.orvel")));
}

void TestDeskWindow::otherWindowsTakeFiles_data()
{
    QTest::addColumn<QString>("action");
    QTest::newRow("progress") << "Окно выполнения";
    QTest::newRow("help") << "Что делает каждая обработка";
}

void TestDeskWindow::otherWindowsTakeFiles()
{
    QFETCH(QString, action);
    window = desk->makeWindow();
    QVERIFY(triggerAction(*window, action));
    QTextBrowser* text = nullptr;
    for (const QWidget* other : QApplication::topLevelWidgets()) {
        if (other != window.get() && other->isVisible())
            text = other->findChild<QTextBrowser*>();
    }
    QVERIFY(text);
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(samplePath(QStringLiteral("blunder.gkf")))});
    QVERIFY(drop(*text->viewport(), data));
    QTRY_COMPARE(int(window->getDocument().getPoints().size()), 12);
    QVERIFY(window->getMonitor().waitForFinished());
}

void TestDeskWindow::droppedTextIsRefused()
{
    QMimeData data;
    data.setText(QStringLiteral("not a file"));
    QVERIFY(!drop(*window, data));
}

void TestDeskWindow::recentFilesAreOffered()
{
    const QString path = desk->path(QStringLiteral("a&b.orvel"));
    QVERIFY(window->saveFile(path));
    const QString sample = QFileInfo(samplePath(QStringLiteral("two-benchmarks.gkf"))).absoluteFilePath();
    QCOMPARE(recentfiles::get(), QStringList({path, sample}));
    QCOMPARE(recentfiles::getFolder(), QFileInfo(path).path());

    QStringList requested;
    connect(window.get(), &DeskWindow::openRequested, this,
            [&](const QString& file) { requested.append(file); });
    for (auto* menu : window->findChildren<QMenu*>())
        Q_EMIT menu->aboutToShow();
    QString text = path;
    QVERIFY(triggerAction(*window, text.remove(QLatin1Char('&'))));
    QCOMPARE(requested, QStringList(path));

    QVERIFY(QFile::remove(path));
    QCOMPARE(recentfiles::get(), QStringList(sample));
}

void TestDeskWindow::searchIsClearedForLinkedItem()
{
    auto* search = window->findChild<QLineEdit*>();
    search->setText(QStringLiteral("BMX"));
    QCOMPARE(window->getTable().model()->rowCount(), 3);
    window->locateItem(window->getDocument().getPoints()[4]->getId());
    QCOMPARE(search->text(), QString());
    QCOMPARE(window->getTable().currentIndex().data().toString(), QStringLiteral("C"));
}

void TestDeskWindow::linkToMissingItemIsExplained()
{
    window->locateItem(4711);
    QCOMPARE(window->getMessageBar().getMessage(),
             QStringLiteral("Этого пункта или этой секции в проекте больше нет."));
}

void TestDeskWindow::urisAreFollowed_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<UriFollower::Answer>("answer");
    const auto taken = UriFollower::Answer::Taken;
    const auto other = UriFollower::Answer::OtherProject;
    const auto declined = UriFollower::Answer::NotUnderstood;
    const QString project = QStringLiteral("&project=two-benchmarks");
    QTest::newRow("item") << QStringLiteral("orvel://locate-item?type=LevellingPoint&id=1000003") + project
                          << taken;
    QTest::newRow("protocol") << QStringLiteral("orvel://generate-protocol?id=%1").arg(int(enums::Import)) +
                                     project
                              << taken;
    QTest::newRow("report") << QStringLiteral("orvel://generate-report?id=%1").arg(kHeightCatalogue) + project
                            << taken;
    QTest::newRow("another project") << "orvel://locate-item?id=1000003&project=Other" << other;
    QTest::newRow("no project") << "orvel://locate-item?id=1000003" << other;
    QTest::newRow("no such protocol")
        << QStringLiteral("orvel://generate-protocol?id=%1").arg(int(enums::UndefProtocol)) + project
        << declined;
    QTest::newRow("no id") << QStringLiteral("orvel://locate-item?type=LevellingPoint") + project << declined;
    QTest::newRow("id is no number") << QStringLiteral("orvel://generate-protocol?id=abc") + project
                                     << declined;
    QTest::newRow("report beyond 32 bits")
        << QStringLiteral("orvel://generate-report?id=%1").arg(qint64(kHeightCatalogue) + (qint64(1) << 32)) +
               project
        << declined;
    QTest::newRow("unknown command") << QStringLiteral("orvel://delete-item?id=1000003") + project
                                     << declined;
    QTest::newRow("another scheme") << QStringLiteral("survey://locate-item?id=1000003") + project
                                    << declined;
}

void TestDeskWindow::urisAreFollowed()
{
    QFETCH(QString, address);
    QFETCH(UriFollower::Answer, answer);
    QCOMPARE(window->getUriFollower().follow(QUrl(address)), answer);
}

void TestDeskWindow::uriDuringRunWaits()
{
    QVERIFY(triggerAction(*window, QStringLiteral("Уравнивание")));
    QCOMPARE(window->getUriFollower().follow(QUrl(uri("generate-protocol", enums::Import))),
             UriFollower::Answer::Taken);
    QCOMPARE(window->getMessageBar().getMessage(),
             QStringLiteral("Идёт обработка. Откройте ссылку ещё раз, когда она закончится."));
    QCOMPARE(desk->opened.getPaths(), QStringList());
    QVERIFY(window->getMonitor().waitForFinished());
    QCOMPARE(window->getUriFollower().follow(QUrl(uri("generate-protocol", enums::Adjust))),
             UriFollower::Answer::Taken);
    QVERIFY(lastPage().contains(QStringLiteral("H = 105,15040\u00A0м")));
}

void TestDeskWindow::equalUrisAreOne()
{
    const auto countPages = [] {
        return QDir(Application::getTempFolder()).entryList({QStringLiteral("protocol_*.html")}).size();
    };
    const int before = countPages();
    for (int i = 0; i < 500; ++i) {
        const QString address = uri("generate-protocol", enums::Import) + QStringLiteral("&n=%1").arg(i);
        QCOMPARE(window->getUriFollower().follow(QUrl(address)), UriFollower::Answer::Taken);
    }
    QCOMPARE(desk->opened.getPaths().size(), 1);
    QCOMPARE(countPages(), before + 1);
    // Another one is another, and after a while it is a new one.
    QCOMPARE(window->getUriFollower().follow(QUrl(uri("generate-protocol", enums::Adjust))),
             UriFollower::Answer::Taken);
    QCOMPARE(desk->opened.getPaths().size(), 2);
    QTest::qWait(2100);
    window->getUriFollower().follow(QUrl(uri("generate-protocol", enums::Import)));
    QCOMPARE(desk->opened.getPaths().size(), 3);
    QCOMPARE(desk->opened.getPaths()[2], desk->opened.getPaths()[0]);
}

void TestDeskWindow::pageIsReusedWhileItsLinesAreTheSame()
{
    run("Уравнивание");
    window->getPages().showProtocol(enums::Adjust);
    window->getPages().showProtocol(enums::Adjust);
    QCOMPARE(desk->opened.getPaths().size(), 2);
    QCOMPARE(desk->opened.getPaths()[1], desk->opened.getPaths()[0]);
    run("Уравнивание");
    window->getPages().showProtocol(enums::Adjust);
    QVERIFY(desk->opened.getPaths()[2] != desk->opened.getPaths()[0]);
    // One that somebody removed is made anew.
    QVERIFY(QFile::remove(desk->opened.getPaths()[2]));
    window->getPages().showProtocol(enums::Adjust);
    QVERIFY(QFile::exists(desk->opened.getPaths()[3]));
}

void TestDeskWindow::uriOfAnotherTypeSelectsNothing()
{
    const LONGID point = window->getDocument().getPoints()[3]->getId();
    const LONGID section = window->getDocument().getSections()[1]->getId();
    const auto follow = [this](LONGID id, const char* type) {
        window->getUriFollower().follow(
            QUrl(uri("locate-item", id) + QStringLiteral("&type=%1").arg(QLatin1String(type))));
    };
    follow(section, "LevellingSection");
    QCOMPARE(window->getTable().getCurrentItem(), section);
    QCOMPARE(window->getMessageBar().getMessage(), QString());
    follow(point, "LevellingSection");
    QCOMPARE(window->getTable().getCurrentItem(), section);
    QCOMPARE(window->getMessageBar().getMessage(),
             QStringLiteral("Этого пункта или этой секции в проекте больше нет."));
    // The right link behind a wrong one is another request.
    follow(point, "LevellingPoint");
    QCOMPARE(window->getTable().getCurrentItem(), point);
}

void TestDeskWindow::reportsAreWritten()
{
    run("Уравнивание");
    QCOMPARE(window->getUriFollower().follow(QUrl(uri("generate-report", kHeightCatalogue))),
             UriFollower::Answer::Taken);
    QVERIFY(lastPage().contains(QStringLiteral("<tr><td class=\"name\">A</td><td class=\"name\">определяемый "
                                               "пункт</td><td>105,15040</td><td>32,76</td></tr>")));
    QVERIFY(triggerAction(*window, QStringLiteral("Ведомость превышений и поправок")));
    const QString row = lastPage()
                            .section(QStringLiteral("<tr><td class=\"name\">BMY – C</td>"), 1)
                            .section(QStringLiteral("</tr>"), 0, 0);
    QCOMPARE(row,
             QStringLiteral(
                 "<td>2,000</td><td>1,41</td><td>\u22121,25000</td><td>\u221252,80</td><td>\u22121,30280</td>"
                 "<td>\u22121,61</td><td>0,56</td><td>+94,29</td><td>206,15</td><td class=\"name\"></td>"));
}

void TestDeskWindow::reportNeedsResults()
{
    QCOMPARE(window->getUriFollower().follow(QUrl(uri("generate-report", kHeightCatalogue))),
             UriFollower::Answer::Taken);
    QCOMPARE(window->getMessageBar().getMessage(),
             QStringLiteral("Ведомости составляются по результатам. Сначала выполните уравнивание."));
    QCOMPARE(desk->opened.getPaths(), QStringList());
}

void TestDeskWindow::classChangesTolerance()
{
    QVERIFY(window->saveFile(desk->path(QStringLiteral("project.orvel"))));
    QVERIFY(triggerAction(*window, QStringLiteral("I класс: 3\u00A0мм·√L")));
    QVERIFY(window->isWindowModified());
    run("Предобработка");
    QVERIFY(window->getMonitor().getJournal()->toPlainText().contains(QStringLiteral("±3 мм·√L (I класс)")));
    QCOMPARE(window->getDocument().getSummary().types.at(enums::Compile).errors, 4);
}

void TestDeskWindow::countsOutliveOtherWords()
{
    const auto findStatus = [this] {
        for (const QLabel* label : window->statusBar()->findChildren<QLabel*>()) {
            if (label->isVisible())
                return label->text();
        }
        return QString();
    };
    const QString counts = QStringLiteral("Пунктов: 5, секций: 7, показано: 12");
    QCOMPARE(findStatus(), counts);
    // As the explanation of a menu's entry does.
    window->statusBar()->showMessage(QStringLiteral("explanation"));
    QCOMPARE(findStatus(), QString());
    window->statusBar()->clearMessage();
    QCOMPARE(findStatus(), counts);
    Document& document = window->getDocument();
    document.applyChange(QString(),
                         networkchange::switchOff(document, {document.getSections()[0]->getId()}, QString()));
    QCOMPARE(findStatus(), QStringLiteral("Пунктов: 5, секций: 7 (отключено: 1), показано: 12"));
    document.getUndoStack().undo();
    QCOMPARE(findStatus(), counts);
}

void TestDeskWindow::anotherRowLeavesTheCommandsAlone()
{
    ItemTable& table = window->getTable();
    table.selectRow(0);
    const auto findStatus = [this] { return window->statusBar()->findChildren<QLabel*>().first(); };
    findStatus()->setText(QStringLiteral("as it was"));
    table.selectRow(1);
    QCOMPARE(findStatus()->text(), QStringLiteral("as it was"));
    // There is no row any more that they could be about.
    table.clearSelection();
    QVERIFY(findStatus()->text() != QStringLiteral("as it was"));
    QVERIFY(!isActionEnabled(*window, QStringLiteral("Удалить измерения")));
}

void TestDeskWindow::helpTellsOfEveryRun()
{
    QVERIFY(triggerAction(*window, QStringLiteral("Что делает каждая обработка")));
    const HelpDialog* help = nullptr;
    for (const QWidget* each : QApplication::topLevelWidgets()) {
        if (const auto* dialog = qobject_cast<const HelpDialog*>(each))
            help = dialog;
    }
    QVERIFY(help && help->isVisible());
    // The desk can be brought in front of it, and takes it along when it goes.
    QCOMPARE(help->windowType(), Qt::Window);
    QVERIFY(!help->parentWidget());
    QVERIFY(!help->testAttribute(Qt::WA_QuitOnClose));
    const QString text = help->findChild<QTextBrowser*>()->toPlainText();
    for (const char* name : {"Импорт", "Предобработка", "Уравнивание", "L1-анализ",
                             "Общий анализ исходных данных", "Авто трассирование", "Экспорт"})
        QVERIFY2(text.contains(QString::fromUtf8(name) + QLatin1Char('\n')), name);
    // And of every key in the menus.
    int keys = 0;
    for (const QAction* action : window->findChildren<QAction*>()) {
        for (const QKeySequence& shortcut : action->shortcuts()) {
            const QString key = shortcut.toString(QKeySequence::PortableText);
            if (QRegularExpression(QStringLiteral("^Ctrl\\+[0-9]$")).match(key).hasMatch())
                continue;
            ++keys;
            QVERIFY2(text.contains(QRegularExpression(QStringLiteral("(?<![+A-Za-z0-9])%1(?![A-Za-z0-9])")
                                                          .arg(QRegularExpression::escape(key)))),
                     qPrintable(key));
        }
    }
    QVERIFY2(keys > 30, qPrintable(QString::number(keys)));
    QVERIFY(text.contains(QStringLiteral("Ctrl и цифра")));
}

void TestDeskWindow::everythingHasAccessibleName()
{
    run("Уравнивание");
    for (const QWidget* widget : window->findChildren<QWidget*>()) {
        const bool takesFocus = widget->focusPolicy() != Qt::NoFocus && widget->isVisibleTo(window.get());
        const bool isNamed = !widget->accessibleName().isEmpty() || !widget->toolTip().isEmpty() ||
                             !widget->property("text").toString().isEmpty() ||
                             !widget->windowTitle().isEmpty();
        // Parts of a named widget speak for it.
        const bool isPart = widget->parentWidget() && !widget->parentWidget()->accessibleName().isEmpty();
        QVERIFY2(!takesFocus || isNamed || isPart, widget->metaObject()->className());
    }
}

void TestDeskWindow::progressWindowLeavesTheTableFree()
{
    const RunMonitor& monitor = window->getMonitor();
    // The desk can be brought in front of it.
    QCOMPARE(monitor.windowType(), Qt::Window);
    QVERIFY(!monitor.parentWidget());
    QVERIFY(!monitor.testAttribute(Qt::WA_QuitOnClose));
    QVERIFY(!monitor.isVisible());
    run("Предобработка");
    QVERIFY(monitor.hasProblems());
    QVERIFY(monitor.isVisible());
    run("Трассирование ходов");
    QCOMPARE(monitor.isVisible(), monitor.hasProblems());
    QVERIFY(triggerAction(*window, QStringLiteral("Окно выполнения")));
    QVERIFY(monitor.isVisible());
    window->getDocument().setModified(false);
    QVERIFY(window->close());
    QVERIFY(!monitor.isVisible());
}

void TestDeskWindow::layoutIsKept()
{
    QVERIFY(window->saveFile(desk->path(QStringLiteral("project.orvel"))));
    window->resize(900, 600);
    window->getTable().setColumnWidth(itemcolumns::Type, 77);
    QVERIFY(window->close());
    const auto another = desk->makeWindow();
    QCOMPARE(another->size(), QSize(900, 600));
    QCOMPARE(another->getTable().columnWidth(itemcolumns::Type), 77);
}

QTEST_MAIN(TestDeskWindow)
#include "tst_deskwindow.moc"
