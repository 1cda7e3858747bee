#include "Orvel/store/COrvel.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/ProjectFile.h"
#include "apps/desk/gui/MessageBar.h"
#include "host/enums/EnumData.h"
#include "tests/desk/DeskFixture.h"
#include "tests/support/ExpectedFile.h"
#include "tests/support/MessageText.h"
#include "tests/support/TestFiles.h"

#include <QDir>
#include <QProcess>
#include <QTest>

using namespace orvel::desk;
using namespace orvel::test;

/// The journal of a session, replayed elsewhere.
class TestJournalRecorder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void replayGivesSamePages();
    void replayGivesSamePagesOfSavedProject();
    void journalOfSmallNetwork();
    void headlessRunsAreRecorded_data();
    void headlessRunsAreRecorded();
    void unwritableJournalIsReported();

private:
    void run(const char* action);
    /// Ends the session and compares its pages with those of the replayed journal.
    void compareReplay(const std::vector<int>& types);

    std::unique_ptr<DeskFixture> desk;
    std::unique_ptr<DeskWindow> window;
    QString journal;
};

namespace {

/// Replays a journal in its folder. What the program says on stderr.
QString replay(const QString& journal)
{
    QProcess process;
    process.setWorkingDirectory(QFileInfo(journal).path());
    process.start(QStringLiteral(REPLAY_PROGRAM), {journal});
    process.waitForFinished();
    return QString::fromUtf8(process.readAllStandardError());
}

} // namespace

void TestJournalRecorder::init()
{
    desk = std::make_unique<DeskFixture>();
    journal = desk->path(QStringLiteral("session.jsonl"));
    window = desk->makeWindow();
    window->setRecordFile(journal);
    window->importFile(samplePath(QStringLiteral("blunder.gkf")));
    QVERIFY(window->getMonitor().waitForFinished());
}

void TestJournalRecorder::cleanup()
{
    window.reset();
    desk.reset();
}

void TestJournalRecorder::run(const char* action)
{
    QVERIFY(triggerAction(*window, QString::fromUtf8(action)));
    QVERIFY(window->getMonitor().waitForFinished());
}

void TestJournalRecorder::compareReplay(const std::vector<int>& types)
{
    std::map<int, QString> pages;
    for (const int type : types)
        window->getDocument().getProtocol().CreateProtocolHtml(type, pages[type]);
    window.reset();
    QCOMPARE(replay(journal), QString());
    for (const int type : types) {
        const QString name = QString::fromStdString(getEnumData(type).getTextInternal());
        const QString replayed = QString::fromUtf8(readFile(desk->path(name + QStringLiteral(".html"))));
        QVERIFY(replayed.size() > 1000);
        QCOMPARE(withoutDates(replayed), withoutDates(pages[type]));
    }
}

void TestJournalRecorder::replayGivesSamePages()
{
    run("Предобработка");
    run("Уравнивание");
    run("L1-анализ");
    run("Предобработка");
    const Answer answer(QStringLiteral("Заменить"));
    window->importFile(samplePath(QStringLiteral("two-benchmarks.gkf")));
    QVERIFY(window->getMonitor().waitForFinished());
    run("Уравнивание");
    compareReplay({enums::Import, enums::Adjust, enums::Compile, enums::L1Analysis});
}

void TestJournalRecorder::replayGivesSamePagesOfSavedProject()
{
    run("Предобработка");
    const QString path = desk->path(QStringLiteral("project.orvel"));
    QVERIFY(window->saveFile(path));

    auto document = std::make_unique<Document>(desk->plugins, QString());
    projectfile::load(*document, path);
    window = std::make_unique<DeskWindow>(std::move(document));
    desk->plugins.extendProjectGUI(window.get());
    window->setRecordFile(journal);
    run("Уравнивание");
    QString compilePage;
    window->getDocument().getProtocol().CreateProtocolHtml(enums::Compile, compilePage);
    compareReplay({enums::Adjust});
}

void TestJournalRecorder::journalOfSmallNetwork()
{
    window = desk->makeWindow();
    window->setRecordFile(journal);
    window->importFile(testNetworkPath(QStringLiteral("small.gkf")));
    QVERIFY(window->getMonitor().waitForFinished());
    window.reset();
    const QString folder = QStringLiteral(DESK_TEST_DATA "/");
    QCOMPARE(compareWithFile(QString::fromUtf8(readFile(journal)).remove(folder),
                             QStringLiteral(DESK_EXPECTED "/session.jsonl")),
             QString());
}

void TestJournalRecorder::headlessRunsAreRecorded_data()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("Russian") << "ru";
    QTest::newRow("English") << "en";
}

void TestJournalRecorder::headlessRunsAreRecorded()
{
    QFETCH(QString, language);
    const QString other = desk->path(QStringLiteral("headless.jsonl"));
    QProcess process;
    process.setWorkingDirectory(desk->folder.path());
    process.start(QStringLiteral(DESK_PROGRAM),
                  {QStringLiteral("--headless"), QStringLiteral("--language"), language,
                   QStringLiteral("--import"), samplePath(QStringLiteral("blunder.gkf")),
                   QStringLiteral("--record"), other, QStringLiteral("--run"), QStringLiteral("adjust"),
                   QStringLiteral("--pages"), QStringLiteral("pages")});
    QVERIFY(process.waitForFinished());
    QCOMPARE(QString::fromUtf8(process.readAllStandardError()), QString());
    QCOMPARE(replay(other), QString());
    QCOMPARE(withoutDates(QString::fromUtf8(readFile(desk->path(QStringLiteral("Adjust.html"))))),
             withoutDates(QString::fromUtf8(readFile(desk->path(QStringLiteral("pages/Adjust.html"))))));
}

void TestJournalRecorder::unwritableJournalIsReported()
{
    window = desk->makeWindow();
    window->setRecordFile(desk->path(QStringLiteral("no/folder.jsonl")));
    window->importFile(samplePath(QStringLiteral("blunder.gkf")));
    QVERIFY(window->getMonitor().waitForFinished());
    QVERIFY(window->getMessageBar().getMessage().startsWith(
        QStringLiteral("Журнал «%1» не записывается: ").arg(desk->path(QStringLiteral("no/folder.jsonl")))));
    QCOMPARE(int(window->getDocument().getPoints().size()), 12);
}

QTEST_MAIN(TestJournalRecorder)
#include "tst_journalrecorder.moc"
