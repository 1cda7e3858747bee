#include "Orvel/integration/OrvelProcessMonitor.h"
#include "tests/integration/WindowFixture.h"
#include "tests/support/OrvelTestAccess.h"

#include <QRandomGenerator>
#include <QTest>
#include <QTextBrowser>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

/// Runs that write, open stages, ask for links from several threads and are stopped, all at random, while the
/// project changes its name: nothing overtakes, nothing that was written before the stop is lost, and each
/// link is right at the moment.
class TestThreads : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void linesKeepTheirOrderAndNoneIsLost();

private:
    int runs = 60;
};

namespace {

using Access = OrvelTestAccess;

constexpr int kType = enums::Compile;

class Monitor : public OrvelProcessMonitor
{
public:
    using OrvelProcessMonitor::getInterrupted;
    using OrvelProcessMonitor::OrvelProcessMonitor;
};

/// What a run did, for the test to look at while it does it.
struct Deeds
{
    std::atomic<int> lines{0}; ///< given away completely
    std::atomic<bool> ended{false};
};

/// The name of the project, "v" and a number that grows while runs ask for links, which show it.
class ProjectVersion
{
public:
    explicit ProjectVersion(CProject& versionedProject) : project(versionedProject) { advance(); }

    void advance()
    {
        const int next = ++begun;
        project.setName(QStringLiteral("v%1").arg(next));
        completed = next;
    }
    int getBegun() const { return begun; }
    int getCompleted() const { return completed; }

private:
    CProject& project;
    std::atomic<int> begun{0};
    std::atomic<int> completed{0};
};

/// Threads of a run that ask for links as long as they live.
class LinkAskers
{
public:
    LinkAskers(qor::IProcessMonitor& runMonitor, const ProjectVersion& projectVersion,
               std::atomic<int>& errors)
        : monitor(runMonitor)
        , version(projectVersion)
        , mistakes(errors)
    {
        for (int i = 0; i < 3; ++i)
            threads.emplace_back([this, i] { ask(i); });
    }
    ~LinkAskers()
    {
        isOver = true;
        for (std::thread& thread : threads)
            thread.join();
    }

private:
    void ask(int first)
    {
        for (int number = first; !isOver && monitor.isProcessRunning(); number += 3) {
            const int earliest = version.getCompleted();
            const QString link = QString::fromStdWString(monitor.getItemLink(number, L"item"));
            const int latest = version.getBegun();
            if (!isRight(link, number, earliest, latest) && monitor.isProcessRunning())
                ++mistakes;
        }
    }

    /// Whether it is the link as it was at some moment while it was asked for.
    static bool isRight(const QString& link, int id, int earliest, int latest)
    {
        for (int each = earliest; each <= latest; ++each) {
            if (link == QStringLiteral("<a href=\"survey://locate-item?type=&id=%1&project=v%2\">item</a>")
                            .arg(id)
                            .arg(each))
                return true;
        }
        return false;
    }

    qor::IProcessMonitor& monitor;
    const ProjectVersion& version;
    std::atomic<int>& mistakes;
    std::atomic<bool> isOver{false};
    std::vector<std::thread> threads;
};

/// Writes numbered lines, "N" plain or "N <link>" with the link of item N, with stages between them.
void work(qor::IProcessMonitor& monitor, quint32 seed, Deeds& deeds)
{
    QRandomGenerator random(seed);
    const int wanted = random.bounded(400);
    bool isStageOpen = false;
    for (int number = 0; number < wanted && monitor.isProcessRunning(); ++number) {
        std::wstring text = std::to_wstring(number);
        switch (random.bounded(12)) {
        case 0:
            if (isStageOpen)
                monitor.finishProtocolStage();
            else
                monitor.startProtocolStage(L"stage");
            isStageOpen = !isStageOpen;
            break;
        case 1:
        case 2:
            text += L' ' + monitor.getItemLink(number + 1, L"item");
            break;
        case 3:
            monitor.setPercentage(random.bounded(100));
            break;
        case 4:
            std::this_thread::sleep_for(std::chrono::microseconds(random.bounded(300)));
            break;
        default:
            break;
        }
        switch (random.bounded(4)) {
        case 0:
            monitor.writeError(text);
            break;
        case 1:
            monitor.writeWarning(text);
            break;
        case 2:
            monitor.write(text, L"detail");
            break;
        default:
            monitor.writeMessage(text);
            break;
        }
        deeds.lines = number + 1;
    }
    deeds.ended = true;
}

/// The lines of the protocol, stage headings and closing lines aside, are 0, 1, 2 and so on, each with the
/// item that it links and a stage that never goes back. Answers how many there are; -1 if they are not so.
int countLines(const std::vector<COVMessage>& messages)
{
    int count = 0;
    int stage = 0;
    for (const COVMessage& message : messages) {
        if (message.stage != 0 && message.stage < stage)
            return -1;
        stage = std::max(stage, message.stage);
        bool isNumber = false;
        const int number = message.text.section(QLatin1Char(' '), 0, 0).toInt(&isNumber);
        if (!isNumber)
            continue;
        const LONGID item = message.text.contains(QLatin1Char('<')) ? number + 1 : 0;
        if (number != count || message.itemIds != std::vector<LONGID>{item})
            return -1;
        ++count;
    }
    return count;
}

} // namespace

void TestThreads::initTestCase()
{
    if (qEnvironmentVariableIsSet("RELIABILITY_RUNS"))
        runs = qEnvironmentVariableIntValue("RELIABILITY_RUNS");
}

void TestThreads::linesKeepTheirOrderAndNoneIsLost()
{
    WindowFixture f;
    f.addProtocol();
    ProjectVersion version(f.project);
    std::atomic<int> mistakenLinks{0};
    QRandomGenerator random(7);
    int stopped = 0;
    for (int run = 0; run < runs; ++run) {
        Monitor monitor(&f.window);
        monitor.setProtocolType(kType);
        Deeds deeds;
        const quint32 seed = random.generate();
        monitor.start([&, seed](qor::IProcessMonitor& proxy) {
            const LinkAskers askers(proxy, version, mistakenLinks);
            work(proxy, seed, deeds);
        });

        int writtenBeforeStop = 0;
        const bool isStopped = random.bounded(2) == 0;
        if (run % 2 == 0) {
            QTest::qWait(random.bounded(3));
            version.advance();
        }
        if (isStopped) {
            QTest::qWait(random.bounded(8));
            writtenBeforeStop = deeds.lines;
            monitor.stop();
        }
        if (monitor.isRunning())
            QVERIFY(monitor.waitForFinished());
        QVERIFY(deeds.ended);
        QCOMPARE(mistakenLinks.load(), 0);

        // An interrupted run leaves its lines in memory, a finished one in the data file.
        COrvel& protocol = *monitor.getOrvel();
        if (!monitor.getInterrupted())
            QVERIFY(Access::ReadXML(protocol));
        stopped += monitor.getInterrupted() ? 1 : 0;
        const int lines = countLines(Access::messages(protocol)[kType]);
        const QByteArray numbers = "run " + QByteArray::number(run) + ": " + QByteArray::number(lines) +
                                   " lines, " + QByteArray::number(writtenBeforeStop) +
                                   " before the stop, of " + QByteArray::number(deeds.lines);
        QVERIFY2(lines >= writtenBeforeStop && lines <= deeds.lines, numbers.constData());
        if (!monitor.getInterrupted())
            QVERIFY2(lines == deeds.lines, numbers.constData());
        protocol.ClearProtocol();
    }
    qInfo("%d runs, %d of them stopped while they worked", runs, stopped);
}

QTEST_MAIN(TestThreads)
#include "tst_threads.moc"
