#include "tests/host/process/RecordingMonitor.h"
#include "tests/host/process/ThreadedRun.h"

#include <QtTest>

#include <stdexcept>
#include <vector>

namespace {

constexpr int kThreadCount = 4;

/// Makes links in its own way, and counts how often it is asked.
class LinkingMonitor : public RecordingMonitor
{
public:
    std::wstring getItemLink(LONGID id, const std::wstring& text) override
    {
        ++questionCount;
        return makeLink(revision, id, text);
    }

    static std::wstring makeLink(int revision, LONGID id, const std::wstring& text)
    {
        return std::to_wstring(revision) + L':' + std::to_wstring(id) + L':' + text;
    }

    int revision = 1;
    int questionCount = 0;
};

class FailingMonitor : public RecordingMonitor
{
public:
    std::wstring getItemLink(LONGID, const std::wstring&) override
    {
        throw std::runtime_error("no such item");
    }
};

struct Links : public qor::IItemLinks
{
    Links(int linkRevision, const std::atomic<int>& revisionNow)
        : revision(linkRevision)
        , currentRevision(revisionNow)
    {}

    bool isCurrent() const override { return revision == currentRevision; }
    std::wstring makeLink(LONGID id, const std::wstring& text) const override
    {
        return LinkingMonitor::makeLink(revision, id, text);
    }

    int revision;
    const std::atomic<int>& currentRevision;
};

std::wstring getText(int number)
{
    return L"point " + std::to_wstring(number);
}

} // namespace

class TestLinkQuestions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachLinkIsAskedForWithoutASource();
    void linksAreMadeByTheRunOnceTheyAreKnown();
    void linksAreAskedForAnewAfterAChange();
    void linksThatDifferAreNotUsed();
    void everyThreadGetsItsOwnLinks();
    void failureToMakeALinkReachesTheRun();
    void abandonReleasesARunThatAsks();
};

void TestLinkQuestions::eachLinkIsAskedForWithoutASource()
{
    LinkingMonitor target;
    std::wstring links;
    {
        ThreadedRun run([&](OrderedMonitorProxy& monitor) {
            links = monitor.getItemLink(1, L"a") + L' ' + monitor.getItemLink(2, L"b");
        });
        run.serveAll(target);
    }
    QCOMPARE(QString::fromStdWString(links), QStringLiteral("1:1:a 1:2:b"));
    QCOMPARE(target.questionCount, 2);
}

void TestLinkQuestions::linksAreMadeByTheRunOnceTheyAreKnown()
{
    LinkingMonitor target;
    std::atomic<int> revision{1};
    int mistakes = 0;
    {
        ThreadedRun run(
            [&](OrderedMonitorProxy& monitor) {
                for (int i = 0; i < 1000; ++i) {
                    if (monitor.getItemLink(i, getText(i)) != LinkingMonitor::makeLink(1, i, getText(i)))
                        ++mistakes;
                }
            },
            [&] { return std::make_shared<Links>(1, revision); });
        run.serveAll(target);
    }
    QCOMPARE(mistakes, 0);
    QCOMPARE(target.questionCount, 1);
}

void TestLinkQuestions::linksAreAskedForAnewAfterAChange()
{
    LinkingMonitor target;
    std::atomic<int> revision{1};
    std::atomic<int> step{0};
    std::wstring links;
    ThreadedRun run(
        [&](OrderedMonitorProxy& monitor) {
            links = monitor.getItemLink(1, L"a");
            step = 1;
            while (step == 1)
                QTest::qSleep(1);
            links += L' ' + monitor.getItemLink(1, L"a") + L' ' + monitor.getItemLink(2, L"b");
        },
        [&] { return std::make_shared<Links>(target.revision, revision); });
    while (step == 0) {
        run.parts.questions.answer(target, std::chrono::milliseconds(1));
        QTest::qSleep(1);
    }
    target.revision = 2;
    revision = 2;
    step = 2;
    run.serveAll(target);
    QCOMPARE(QString::fromStdWString(links), QStringLiteral("1:1:a 2:1:a 2:2:b"));
    QCOMPARE(target.questionCount, 2);
}

void TestLinkQuestions::linksThatDifferAreNotUsed()
{
    LinkingMonitor target;
    std::atomic<int> revision{7};
    std::wstring links;
    {
        ThreadedRun run(
            [&](OrderedMonitorProxy& monitor) {
                links = monitor.getItemLink(1, L"a") + L' ' + monitor.getItemLink(2, L"b");
            },
            [&] { return std::make_shared<Links>(7, revision); });
        run.serveAll(target);
    }
    QCOMPARE(QString::fromStdWString(links), QStringLiteral("1:1:a 1:2:b"));
    QCOMPARE(target.questionCount, 2);
}

void TestLinkQuestions::everyThreadGetsItsOwnLinks()
{
    LinkingMonitor target;
    std::vector<int> mistakes(kThreadCount);
    {
        ThreadedRun run([&](OrderedMonitorProxy& monitor) {
            std::vector<std::thread> threads;
            threads.reserve(kThreadCount);
            for (int thread = 0; thread < kThreadCount; ++thread) {
                threads.emplace_back([&mistakes, &monitor, thread] {
                    for (int i = 0; i < 100; ++i) {
                        const int id = i * kThreadCount + thread;
                        if (monitor.getItemLink(id, getText(id)) !=
                            LinkingMonitor::makeLink(1, id, getText(id)))
                            ++mistakes[static_cast<std::size_t>(thread)];
                    }
                });
            }
            for (std::thread& thread : threads)
                thread.join();
        });
        run.serveAll(target);
    }
    QCOMPARE(mistakes, std::vector<int>(kThreadCount));
    QCOMPARE(target.questionCount, 100 * kThreadCount);
}

void TestLinkQuestions::failureToMakeALinkReachesTheRun()
{
    std::string failure;
    FailingMonitor target;
    {
        ThreadedRun run([&failure](OrderedMonitorProxy& monitor) {
            try {
                monitor.getItemLink(7, L"Rp 7");
            } catch (const std::runtime_error& error) {
                failure = error.what();
            }
        });
        run.serveAll(target);
    }
    QCOMPARE(failure, std::string("no such item"));
}

void TestLinkQuestions::abandonReleasesARunThatAsks()
{
    std::wstring link;
    {
        ThreadedRun run([&link](OrderedMonitorProxy& monitor) {
            link = monitor.getItemLink(7, L"first");
            link += monitor.getItemLink(8, L"second");
        });
        run.waitForWake();
        run.parts.questions.abandon();
    }
    QCOMPARE(QString::fromStdWString(link), QStringLiteral("firstsecond"));
}

QTEST_APPLESS_MAIN(TestLinkQuestions)
#include "tst_linkquestions.moc"
