#include "Orvel/integration/OrvelGUIExtension.h"
#include "Orvel/store/COrvel.h"
#include "Orvel/store/SavedProtocol.h"
#include "apps/desk/document/DeskTypes.h"
#include "apps/desk/document/Document.h"
#include "apps/desk/document/LevellingPoint.h"
#include "apps/desk/document/LevellingSection.h"
#include "apps/desk/gui/DeskPages.h"
#include "apps/desk/gui/ItemTable.h"
#include "apps/desk/gui/MessageBar.h"
#include "tests/desk/DeskFixture.h"
#include "tests/reliability/FailingCalls.h"
#include "tests/support/TestFiles.h"

#include <QFileInfo>
#include <QTest>

#include <algorithm>
#include <cerrno>
#include <functional>

using namespace orvel::desk;
using namespace orvel::test;

/// A full disk, a broken one, a folder that may not be written to: every call that changes a file fails once.
class TestFailingWrites : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void everyCallOfARunsEnd_data();
    void everyCallOfARunsEnd();
    void everyCallOfSavingAProject_data();
    void everyCallOfSavingAProject();
    void everyCallOfAPage_data();
    void everyCallOfAPage();
    void everyCallOfAnItemPage_data();
    void everyCallOfAnItemPage();
    void pageWithoutItsLinesIsWithdrawn_data();
    void pageWithoutItsLinesIsWithdrawn();
    void everyCallOfAReport_data();
    void everyCallOfAReport();
    void everyCallOfAnExport_data();
    void everyCallOfAnExport();

private:
    /// What an action is to keep, what it does, and whether it says that it did.
    struct Scenario
    {
        QString file;      ///< whole before and after; may be missing before
        QByteArray folder; ///< below which the calls fail
        std::function<bool()> act;
        std::function<bool(const QByteArray& content)> isWhole;
    };

    /// The first item of which the protocols speak.
    template<typename Item>
    LONGID findMentioned(const std::vector<Item*>& items) const
    {
        const auto found = std::find_if(items.begin(), items.end(), [this](const Item* item) {
            return window->getDocument().getProtocol().IsMessages(item->getId());
        });
        return found == items.end() ? 0 : (*found)->getId();
    }
    /// Performs the action with each of its calls failing in turn, until none is left to fail.
    void failEachCall(const Scenario& scenario, int error);
    /// Everything that the user was told since the last time.
    QStringList takeMessages();
    QString dataFile() const;
    QByteArray tempFolder() const;

    std::unique_ptr<DeskFixture> desk;
    std::unique_ptr<DeskWindow> window;
};

namespace {

constexpr int kDecisiveCalls = 4;

void addErrorRows()
{
    QTest::addColumn<int>("error");
    QTest::newRow("full disk") << ENOSPC;
    QTest::newRow("I/O error") << EIO;
    QTest::newRow("no permission") << EACCES;
}

bool isWholeDataFile(const QByteArray& content)
{
    return content.startsWith("<?xml version=\"1.0\" encoding=\"utf-8\"?>\n") &&
           content.endsWith("</messagelist>\n");
}

bool isWholePage(const QByteArray& content)
{
    return content.toLower().startsWith("<!doctype html>") && content.trimmed().endsWith("</html>");
}

/// What the file holds, and nothing where there is none.
QByteArray contentOf(const QString& path)
{
    return QFileInfo::exists(path) ? readFile(path) : QByteArray();
}

} // namespace

void TestFailingWrites::initTestCase()
{
    desk = std::make_unique<DeskFixture>();
    window = desk->makeWindow(samplePath(QStringLiteral("blunder.gkf")));
    QVERIFY(triggerAction(*window, QStringLiteral("Уравнивание")));
    QVERIFY(window->getMonitor().waitForFinished());
    QCOMPARE(takeMessages(), QStringList());
}

void TestFailingWrites::cleanupTestCase()
{
    window.reset();
    desk.reset();
}

QStringList TestFailingWrites::takeMessages()
{
    QStringList messages = desk->application.takeWarnings();
    const QString shown = window->getMessageBar().getMessage();
    if (!shown.isEmpty())
        messages.append(shown);
    window->getMessageBar().hide();
    return messages;
}

QString TestFailingWrites::dataFile() const
{
    return orvel::ProtocolState::read(window->getDocument().getProtocol()).dataFilePath;
}

QByteArray TestFailingWrites::tempFolder() const
{
    return QFile::encodeName(Application::getTempFolder());
}

void TestFailingWrites::failEachCall(const Scenario& scenario, int error)
{
    int decisive = 0;
    for (int number = 1;; ++number) {
        const QByteArray before = contentOf(scenario.file);
        bool isDone = false;
        QByteArray call;
        {
            const FailingCalls calls(scenario.folder, number, error);
            isDone = scenario.act();
            call = calls.getFailedCall();
        }
        const QByteArray after = contentOf(scenario.file);
        const QStringList messages = takeMessages();
        const QByteArray what = "call " + QByteArray::number(number) + ", " + call + ": " +
                                messages.join(QLatin1Char('|')).toUtf8();
        if (isDone) {
            // No call failed, or one that there is another way for.
            QVERIFY2(messages.isEmpty(), what.constData());
            QVERIFY2(scenario.isWhole(after), what.constData());
        } else {
            QVERIFY2(messages.size() == 1, what.constData());
            QVERIFY2(after == before, what.constData());
            ++decisive;
        }
        if (call.isEmpty())
            break;
    }
    // Opening, writing, reaching the disk, replacing: less would not be a test.
    QVERIFY2(decisive >= kDecisiveCalls, QByteArray::number(decisive).constData());
    // The application goes on.
    QVERIFY(scenario.act());
    QCOMPARE(takeMessages(), QStringList());
    QVERIFY(scenario.isWhole(contentOf(scenario.file)));
}

void TestFailingWrites::everyCallOfARunsEnd_data()
{
    addErrorRows();
}

void TestFailingWrites::everyCallOfARunsEnd()
{
    QFETCH(int, error);
    COrvel& protocol = window->getDocument().getProtocol();
    int run = 0;
    const auto act = [&] {
        // Another protocol each time, so that the file changes.
        const QString text = QStringLiteral("%1 ").arg(++run).repeated(100000);
        protocol.ProtocolBegin(enums::Export);
        protocol.AddMessageRaw(text, enums::Export, COVMessage::Error);
        protocol.ProtocolEnd(enums::Export);
        return contentOf(dataFile()).contains(text.toUtf8());
    };
    failEachCall({dataFile(), tempFolder(), act, isWholeDataFile}, error);
}

void TestFailingWrites::everyCallOfSavingAProject_data()
{
    addErrorRows();
}

void TestFailingWrites::everyCallOfSavingAProject()
{
    QFETCH(int, error);
    const QString path = desk->path(QStringLiteral("project.orvel"));
    window->saveFile(path);
    int run = 0;
    const auto act = [&] {
        window->getDocument().getProject().setName(QStringLiteral("Project %1").arg(++run));
        window->getDocument().setModified(true);
        const bool isSaved = window->saveFile(path);
        // What was not saved is still to be saved.
        return isSaved && !window->getDocument().isModified();
    };
    const auto isWhole = [](const QByteArray& content) { return content.startsWith("ORVP"); };
    failEachCall({path, QFile::encodeName(QFileInfo(path).path()), act, isWhole}, error);
}

void TestFailingWrites::everyCallOfAPage_data()
{
    addErrorRows();
}

void TestFailingWrites::everyCallOfAPage()
{
    QFETCH(int, error);
    const QString path = desk->path(QStringLiteral("page.html"));
    COrvel& protocol = window->getDocument().getProtocol();
    QVERIFY(protocol.CreateProtocolFile(enums::Adjust, path));
    const QByteArray page = readFile(path);
    int decisive = 0;
    for (int number = 1;; ++number) {
        const FailingCalls calls(QFile::encodeName(QFileInfo(path).path()), number, error);
        // A page that cannot be written is told by the answer alone.
        decisive += protocol.CreateProtocolFile(enums::Adjust, path) ? 0 : 1;
        QCOMPARE(takeMessages(), QStringList());
        QVERIFY(readFile(path) == page);
        if (!calls.hasFailed())
            break;
    }
    QVERIFY(decisive >= kDecisiveCalls);
    QVERIFY(protocol.CreateProtocolFile(enums::Adjust, path));
}

void TestFailingWrites::everyCallOfAnItemPage_data()
{
    addErrorRows();
}

void TestFailingWrites::everyCallOfAnItemPage()
{
    QFETCH(int, error);
    OrvelGUIExtension* viewer = OrvelGUIExtension::find(*window);
    CModelElement* point = window->getDocument().getPoints()[1];
    const QByteArray data = readFile(dataFile());
    int decisive = 0;
    for (int number = 1;; ++number) {
        const int opened = desk->opened.getUrls().size();
        QByteArray call;
        {
            const FailingCalls calls(tempFolder(), number, error);
            viewer->showItemOrvel(point);
            call = calls.getFailedCall();
        }
        const QByteArray what = "call " + QByteArray::number(number) + ", " + call;
        const QStringList messages = takeMessages();
        QVERIFY2(readFile(dataFile()) == data, what.constData());
        // The page shows also when the data file could not be written back.
        const bool isShown = desk->opened.getUrls().size() > opened;
        QVERIFY2(messages.size() <= 1, what.constData());
        QVERIFY2(isShown || messages.size() == 1, what.constData());
        if (isShown)
            QVERIFY2(isWholePage(readFile(desk->opened.getPaths().last())), what.constData());
        decisive += messages.size();
        if (call.isEmpty())
            break;
    }
    QVERIFY(decisive >= 2 * kDecisiveCalls);
}

void TestFailingWrites::pageWithoutItsLinesIsWithdrawn_data()
{
    QTest::addColumn<QString>("way");
    for (const char* way :
         {"list of protocols", "progress window", "report column of a point", "report column of a section"})
        QTest::newRow(way) << QString::fromLatin1(way);
}

void TestFailingWrites::pageWithoutItsLinesIsWithdrawn()
{
    QFETCH(QString, way);
    const auto show = [&] {
        // Counts the lines anew, so that no page is reused.
        Q_EMIT window->getDocument().summaryChanged();
        if (way == QLatin1String("list of protocols"))
            window->getPages().showProtocol(enums::Adjust);
        else if (way == QLatin1String("progress window"))
            Q_EMIT window->getMonitor().showOrvel(enums::Adjust);
        else
            window->getTable().showCurrentProtocol();
    };
    const bool isPoint = way.endsWith(QLatin1String("point"));
    const Document& document = window->getDocument();
    const LONGID item = isPoint ? findMentioned(document.getPoints()) : findMentioned(document.getSections());
    QVERIFY(window->getTable().selectItem(item));
    // Those of the template's script left out.
    const auto countLines = [](const QByteArray& page) {
        return page.mid(page.lastIndexOf("</script>")).count("<div class=\"Content\">");
    };
    int openedBefore = desk->opened.getUrls().size();
    show();
    QCOMPARE(desk->opened.getUrls().size(), openedBefore + 1);
    const int wanted = countLines(readFile(desk->opened.getPaths().constLast()));
    QVERIFY(wanted > 1);
    int withdrawn = 0;
    for (int number = 1;; ++number) {
        openedBefore = desk->opened.getUrls().size();
        QByteArray call;
        {
            const FailingCalls calls(tempFolder(), number, EIO, FailingCalls::Meant::ReadingToo);
            show();
            call = calls.getFailedCall();
        }
        const QByteArray where = "call " + QByteArray::number(number) + ", " + call;
        const QStringList messages = takeMessages();
        for (const QString& page : desk->opened.getPaths().mid(openedBefore)) {
            const bool isThere = QFile::exists(page);
            QVERIFY2(!isThere || countLines(readFile(page)) == wanted, where.constData());
            QVERIFY2(isThere || !messages.isEmpty(), where.constData());
            withdrawn += isThere ? 0 : 1;
        }
        if (call.isEmpty())
            break;
    }
    QVERIFY(withdrawn > 0);
}

void TestFailingWrites::everyCallOfAReport_data()
{
    addErrorRows();
}

void TestFailingWrites::everyCallOfAReport()
{
    QFETCH(int, error);
    int decisive = 0;
    for (int number = 1;; ++number) {
        const int opened = desk->opened.getUrls().size();
        QByteArray call;
        {
            const FailingCalls calls(tempFolder(), number, error);
            window->getPages().showReport(kHeightCatalogue);
            call = calls.getFailedCall();
        }
        const QStringList messages = takeMessages();
        const bool isShown = desk->opened.getUrls().size() > opened;
        QCOMPARE(messages.size(), isShown ? 0 : 1);
        QVERIFY(!isShown || isWholePage(readFile(desk->opened.getPaths().last())));
        decisive += messages.size();
        if (call.isEmpty())
            break;
    }
    QVERIFY(decisive >= kDecisiveCalls);
}

void TestFailingWrites::everyCallOfAnExport_data()
{
    addErrorRows();
}

void TestFailingWrites::everyCallOfAnExport()
{
    QFETCH(int, error);
    const QString path = desk->path(QStringLiteral("heights.csv"));
    window->exportFile(path);
    QVERIFY(window->getMonitor().waitForFinished());
    const QByteArray before = readFile(path);
    QVERIFY(before.startsWith("point,height_m,sigma_mm\n"));
    int decisive = 0;
    for (int number = 1;; ++number) {
        QByteArray call;
        {
            const FailingCalls calls(QFile::encodeName(QFileInfo(path).path()), number, error);
            window->exportFile(path);
            QVERIFY(window->getMonitor().waitForFinished());
            call = calls.getFailedCall();
        }
        QVERIFY(readFile(path) == before);
        QCOMPARE(takeMessages(), QStringList());
        // The one message is the one error of the run's protocol.
        const int errors = window->getDocument().getSummary().types.at(enums::Export).errors;
        QVERIFY(errors == 0 || errors == 1);
        decisive += errors;
        if (call.isEmpty())
            break;
    }
    QVERIFY(decisive >= kDecisiveCalls);
}

QTEST_MAIN(TestFailingWrites)
#include "tst_failingwrites.moc"
