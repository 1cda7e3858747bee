#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingPoint.h"
#include "apps/desk/gui/TemplateWizard.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/TestFiles.h"

#include <QFile>
#include <QTest>
#include <QTextBrowser>

using namespace orvel::desk;
using namespace orvel::test;

/// Imports that fail or are stopped leave no trace: no name, no mark of unsaved changes, no protocol in place
/// of a good one. What is not there, or cannot be read, is not asked about.
class TestFailedImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void emptyProjectStaysEmpty_data() { addFiles(); }
    void emptyProjectStaysEmpty();
    void networkAndProtocolStay_data() { addFiles(); }
    void networkAndProtocolStay();
    void unsavedChangesAreNotAskedAbout();
    void oneBadFileOfSeveral();
    void textFileThatHasVanished();
    void protocolOfATemplateStays();
    void stoppedImportLeavesEmptyProjectUnmodified();
    void stoppedImportLeavesSavedProjectUnmodified();
    void goodImportAfterwardsHasItsProtocol();
    void tableWithoutPoints();

private:
    static void addFiles();
    /// A file with the content in the folder of the test; none without content.
    QString makeFile(const QString& name, const QByteArray& content);
    QString journal() { return window->getMonitor().getJournal()->toPlainText(); }
    void importTable(const QString& path, bool isGoneMeanwhile);

    std::unique_ptr<DeskFixture> desk;
    std::unique_ptr<DeskWindow> window;
};

namespace {

const char* const kKept = "В проекте ничего не изменилось, протокол прежнего импорта остался.";

} // namespace

void TestFailedImport::init()
{
    desk = std::make_unique<DeskFixture>();
    window = desk->makeWindow();
}

void TestFailedImport::cleanup()
{
    window.reset();
    desk.reset();
}

void TestFailedImport::addFiles()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("network that is not there") << "nowhere.gkf" << QByteArray();
    QTest::newRow("network that is cut off") << "broken.gkf" << QByteArray("<gama-local>");
    QTest::newRow("field file that is not there") << "nowhere.gsi" << QByteArray();
    QTest::newRow("field file of no known kind") << "day.gsi" << QByteArray("nothing of that kind\n");
    QTest::newRow("field file of no known kind, M5") << "day.m5" << QByteArray("For\n");
    QTest::newRow("network without points") << "empty.gkf" << QByteArray("<gama-local/>");
    QTest::newRow("level's file without points, GSI")
        << "empty.gsi" << QByteArray("*410001+00000000?......2 \n");
    QTest::newRow("level's file without points, M5")
        << "empty.m5"
        << QByteArray("For M5|Adr     1|TO  Start-Line      aBFFB     1|                      |        "
                      "              |                      | \n");
    QTest::newRow("total station's file without points")
        << "empty.m5"
        << QByteArray("For M5|Adr 00001|TI   START                     |01            TS5     |02           "
                      "1001     |03           1.00     | \n");
}

QString TestFailedImport::makeFile(const QString& name, const QByteArray& content)
{
    if (!content.isEmpty())
        writeFile(desk->path(name), content);
    return desk->path(name);
}

void TestFailedImport::emptyProjectStaysEmpty()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    window->importFile(makeFile(name, content));
    QVERIFY(window->getMonitor().waitForFinished());
    QVERIFY(window->getMonitor().wasErrors());
    QCOMPARE(window->windowTitle(), QStringLiteral("Новый проект[*]"));
    QCOMPARE(window->getMonitor().windowTitle(), QStringLiteral("Импорт — Новый проект"));
    QVERIFY(!window->isWindowModified());
    QVERIFY(!journal().contains(QString::fromUtf8(kKept)));
}

void TestFailedImport::networkAndProtocolStay()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, content);
    window = desk->makeWindow(samplePath(QStringLiteral("two-benchmarks.gkf")));
    const QString path = desk->path(QStringLiteral("project.orvel"));
    QVERIFY(window->saveFile(path));
    const QByteArray protocols = window->getDocument().getProtocolData();
    const LONGID id = window->getDocument().getPoints()[0]->getId();
    const Answer unasked(QStringLiteral("Отмена"));
    window->importFile(makeFile(name, content));
    QVERIFY(window->getMonitor().waitForFinished());
    QVERIFY(window->getMonitor().wasErrors());
    QVERIFY(journal().contains(name));
    QVERIFY(journal().contains(QString::fromUtf8(kKept)));
    QCOMPARE(window->getDocument().getProtocolData(), protocols);
    QCOMPARE(window->getDocument().getPoints()[0]->getId(), id);
    QCOMPARE(window->windowTitle(), QStringLiteral("two-benchmarks[*] (%1)").arg(path));
    QVERIFY(!window->isWindowModified());
    QCOMPARE(desk->application.takeWarnings(), QStringList());
    QCOMPARE(unasked.getQuestion(), QString());
}

void TestFailedImport::unsavedChangesAreNotAskedAbout()
{
    window = desk->makeWindow(samplePath(QStringLiteral("two-benchmarks.gkf")));
    QVERIFY(window->isWindowModified());
    const Answer answer(QStringLiteral("Отмена"));
    window->importFile(makeFile(QStringLiteral("broken.gkf"), "<gama-local>"));
    QVERIFY(window->getMonitor().waitForFinished());
    QVERIFY(journal().contains(QStringLiteral("broken.gkf, строка 1: ошибка XML: ")));
    QCOMPARE(answer.getQuestion(), QString());
}

void TestFailedImport::oneBadFileOfSeveral()
{
    window = desk->makeWindow(samplePath(QStringLiteral("two-benchmarks.gkf")));
    const Answer answer(QStringLiteral("Отмена"));
    window->importFiles({samplePath(QStringLiteral("one-benchmark.gkf")),
                         makeFile(QStringLiteral("broken.gkf"), "<gama-local>"),
                         samplePath(QStringLiteral("level-loop.gsi"))});
    QVERIFY(window->getMonitor().waitForFinished());
    QVERIFY(journal().contains(QStringLiteral("broken.gkf, строка 1: ошибка XML: ")));
    QCOMPARE(answer.getQuestion(), QString());
    QCOMPARE(int(window->getDocument().getPoints().size()), 5);
}

void TestFailedImport::importTable(const QString& path, bool isGoneMeanwhile)
{
    window->showTemplateWizard({path});
    auto* wizard = window->findChild<TemplateWizard*>();
    wizard->next();
    wizard->next();
    if (isGoneMeanwhile)
        QVERIFY(QFile::remove(path));
    wizard->accept();
    QTRY_VERIFY(window->isRunWorking());
    QVERIFY(window->getMonitor().waitForFinished());
}

void TestFailedImport::textFileThatHasVanished()
{
    const QString path = desk->path(QStringLiteral("line.csv"));
    QVERIFY(QFile::copy(samplePath(QStringLiteral("line.csv")), path));
    importTable(path, true);
    QVERIFY(window->getMonitor().wasErrors());
    QCOMPARE(window->windowTitle(), QStringLiteral("Новый проект[*]"));
    QVERIFY(!window->isWindowModified());
}

void TestFailedImport::protocolOfATemplateStays()
{
    const QString path = desk->path(QStringLiteral("line.csv"));
    QVERIFY(QFile::copy(samplePath(QStringLiteral("line.csv")), path));
    importTable(path, false);
    QVERIFY(!window->getMonitor().wasErrors());
    const QByteArray protocols = window->getDocument().getProtocolData();
    const Answer answer(QStringLiteral("Отмена"));
    importTable(path, true);
    QVERIFY(window->getMonitor().wasErrors());
    QCOMPARE(window->getDocument().getProtocolData(), protocols);
    // Nor does a file of another kind leave a protocol of its own.
    window->importFile(QStringLiteral("/no/such/network.gkf"));
    QVERIFY(window->getMonitor().waitForFinished());
    QCOMPARE(window->getDocument().getProtocolData(), protocols);
    QCOMPARE(answer.getQuestion(), QString());
}

void TestFailedImport::stoppedImportLeavesEmptyProjectUnmodified()
{
    connect(&window->getDocument(), &Document::networkReplaced, &window->getMonitor(),
            &CProcessMonitor::stop);
    window->importFile(samplePath(QStringLiteral("one-benchmark.gkf")));
    QVERIFY(window->getMonitor().waitForFinished());
    QVERIFY(window->getMonitor().wasInterrupted());
    QVERIFY(window->getDocument().isEmpty());
    QCOMPARE(window->windowTitle(), QStringLiteral("Новый проект[*]"));
    QVERIFY(!window->isWindowModified());
}

void TestFailedImport::stoppedImportLeavesSavedProjectUnmodified()
{
    window = desk->makeWindow(samplePath(QStringLiteral("two-benchmarks.gkf")));
    const QString path = desk->path(QStringLiteral("project.orvel"));
    QVERIFY(window->saveFile(path));
    const QByteArray protocols = window->getDocument().getProtocolData();
    connect(&window->getDocument(), &Document::networkReplaced, &window->getMonitor(),
            &CProcessMonitor::stop);
    const Answer answer(QStringLiteral("Заменить"));
    window->importFile(samplePath(QStringLiteral("one-benchmark.gkf")));
    QVERIFY(window->getMonitor().waitForFinished());
    QVERIFY(window->getMonitor().wasInterrupted());
    QCOMPARE(window->windowTitle(), QStringLiteral("two-benchmarks[*] (%1)").arg(path));
    QVERIFY(!window->isWindowModified());
    QCOMPARE(window->getDocument().getProtocolData(), protocols);
}

void TestFailedImport::tableWithoutPoints()
{
    window = desk->makeWindow(samplePath(QStringLiteral("two-benchmarks.gkf")));
    const QString path = desk->path(QStringLiteral("line.csv"));
    QVERIFY(QFile::copy(samplePath(QStringLiteral("line.csv")), path));
    window->showTemplateWizard({path});
    auto* wizard = window->findChild<TemplateWizard*>();
    wizard->next();
    wizard->next();
    writeFile(path, "А;Б\n");
    const Answer unasked(QStringLiteral("Отмена"));
    wizard->accept();
    QTRY_VERIFY(window->isRunWorking());
    QVERIFY(window->getMonitor().waitForFinished());
    QCOMPARE(unasked.getQuestion(), QString());
    QVERIFY(journal().contains(
        QStringLiteral("%1: в файле нет ни одного пункта, импортировать нечего").arg(path)));
    QCOMPARE(int(window->getDocument().countPoints()), 5);
}

void TestFailedImport::goodImportAfterwardsHasItsProtocol()
{
    window = desk->makeWindow(samplePath(QStringLiteral("two-benchmarks.gkf")));
    window->importFile(QStringLiteral("/no/such/network.gkf"));
    QVERIFY(window->getMonitor().waitForFinished());
    const Answer answer(QStringLiteral("Заменить"));
    window->importFile(samplePath(QStringLiteral("one-benchmark.gkf")));
    QVERIFY(window->getMonitor().waitForFinished());
    QVERIFY(!window->getMonitor().wasErrors());
    QVERIFY(QString::fromUtf8(window->getDocument().getProtocolData())
                .contains(QStringLiteral("one-benchmark.gkf")));
}

QTEST_MAIN(TestFailedImport)
#include "tst_failedimport.moc"
