#include "host/app/SDIApplication.h"
#include "host/files/CFileException.h"
#include "host/files/Error.h"
#include "host/files/ErrorMessageProcessor.h"
#include "host/process/CProcessMonitor.h"

#include <QApplication>
#include <QDesktopServices>
#include <QLabel>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QSemaphore>
#include <QTextBlock>
#include <QTextBrowser>
#include <QtTest>

#include <boost/exception/info.hpp>

#include <atomic>
#include <new>
#include <pthread.h>
#include <stdexcept>
#include <system_error>
#include <thread>

Q_DECLARE_METATYPE(std::function<void()>)

namespace {

/// Notes what reaches the overrides, in one list.
class TestMonitor : public CProcessMonitor
{
public:
    using CProcessMonitor::CProcessMonitor;
    using CProcessMonitor::getInterrupted;
    using CProcessMonitor::write;
    using CProcessMonitor::writeError;
    using CProcessMonitor::writeMessage;
    using CProcessMonitor::writeWarning;
    ~TestMonitor() override { shutdown(); }

    void startProtocolStage(std::wstring name) override
    {
        calls.append(QStringLiteral("stage ") + QString::fromStdWString(name));
    }
    void finishProtocolStage() override { calls.append(QStringLiteral("stage end")); }
    std::wstring getItemLink(LONGID id, const std::wstring& text) override
    {
        linkThread = QThread::currentThread();
        return L"<a href=\"x:" + std::to_wstring(id) + L"\">" + text + L"</a>";
    }

    QStringList calls;
    QThread* linkThread = nullptr;

protected:
    void writeError(const QString& text, const QString& detail) override
    {
        CProcessMonitor::writeError(text, detail);
        calls.append(QStringLiteral("error ") + text);
    }
    void writeWarning(const QString& text, const QString& detail) override
    {
        CProcessMonitor::writeWarning(text, detail);
        calls.append(QStringLiteral("warning ") + text);
    }
    void writeMessage(const QString& text, const QString& detail) override
    {
        CProcessMonitor::writeMessage(text, detail);
        calls.append(QStringLiteral("message ") + text);
    }
    void write(const QString& text, const QString& detail) override
    {
        CProcessMonitor::write(text, detail);
        calls.append(QStringLiteral("service ") + text);
    }
    void onStarted() override { calls.append(QStringLiteral("started")); }
    void onThreadFinished() override
    {
        calls.append(QStringLiteral("finished"));
        CProcessMonitor::onThreadFinished();
    }
    void onProtocolPushed() override { calls.append(QStringLiteral("protocol")); }
};

struct BoostFailure : boost::exception
{};

QPushButton* findButton(const QWidget& window, const QString& text)
{
    const QList<QPushButton*> buttons = window.findChildren<QPushButton*>();
    for (QPushButton* button : buttons) {
        if (button->text().remove(QLatin1Char('&')) == text && button->window() == &window)
            return button;
    }
    return nullptr;
}

QString getLabelText(const QWidget& window, const QString& name)
{
    const QList<QLabel*> labels = window.findChildren<QLabel*>();
    for (const QLabel* label : labels) {
        if (label->accessibleName() == name)
            return label->text();
    }
    return {};
}

QString getStageText(const QWidget& window)
{
    return getLabelText(window, QStringLiteral("Этап"));
}

void workUntilStopped(qor::IProcessMonitor& monitor)
{
    while (monitor.isProcessRunning())
        std::this_thread::yield();
}

constexpr int kFloodLines = 40000;

// More lines than the journal keeps, faster than it can show them.
void writeFlood(qor::IProcessMonitor& monitor)
{
    for (int i = 1; i <= kFloodLines; ++i)
        monitor.writeMessage(std::to_wstring(i));
}

// Catches what is opened in the browser.
class UrlCatcher : public QObject
{
    Q_OBJECT

public:
    UrlCatcher() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "take"); }
    ~UrlCatcher() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

    Q_SLOT void take(const QUrl& url) { urls.append(url); }

    QList<QUrl> urls;
};

} // namespace

class TestCProcessMonitor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runGoesThroughItsStations();
    void linesAndStagesKeepTheirOrder();
    void overridesRunInTheGuiThread();
    void journalShowsTheLines();
    void journalSaysThatEarlierLinesAreLeftOut();
    void linesAreCountedByKind();
    void nextRunMayStartWhileTheJournalFills();
    void baseWritesTheStart();
    void exceptionBecomesAnErrorLine_data();
    void exceptionBecomesAnErrorLine();
    void errorsAreForgottenAtTheNextStart();
    void errorsCountBeforeTheyAreShown();
    void silentRunShowsNothingAndIsRecorded();
    void percentageAndStagesAreShown();
    void linesAreShownWhileTheRunWorks();
    void hundredPercentAndTheEndComeBehindTheLastLine();
    void progressOfOneThread();
    void startThatFailsLeavesAMonitorThatCanStart();
    void startWithoutAThreadLeavesAMonitorThatCanStart();
    void stopButtonInterruptsTheRun();
    void pauseButtonHoldsTheRun();
    void protocolButtonWaitsForTheEnd();
    void protocolButtonOfTheBaseOpensTheJournal();
    void openedJournalIsFull();
    void secondStartIsRefused();
    void nextRunStartsFromRunFinished();
    void closingStopsTheRunFirst();
    void closingAHiddenWindowStopsTheRunFirst();
    void escapeStopsTheRunFirst();
    void questionMayBeDeclined();
    void questionMayBeAccepted();
    void questionGoesWhenTheRunIsOver();
    void nobodyIsAskedWithoutADisplay();
    void waitingEndsWithTheWindow();
    void linksAreNotFollowed();
    void linesOutsideOfARunAreShown();
    void widgetsHaveAccessibleNames();
};

void TestCProcessMonitor::runGoesThroughItsStations()
{
    TestMonitor monitor;
    QSignalSpy finished(&monitor, &CProcessMonitor::runFinished);
    QVERIFY(!monitor.isRunning());
    QVERIFY(monitor.waitForFinished());
    monitor.start([](qor::IProcessMonitor& run) {
        run.writeMessage(L"one");
        run.write(L"two", L"detail");
        run.writeWarning(L"three");
        run.writeError(L"four");
    });
    QVERIFY(monitor.isRunning());
    QVERIFY(monitor.isProcessRunning());
    QVERIFY(monitor.waitForFinished());
    QVERIFY(!monitor.isRunning());
    QVERIFY(!monitor.isProcessRunning());
    QVERIFY(!monitor.getInterrupted());
    QCOMPARE(finished.count(), 1);
    QCOMPARE(monitor.calls, (QStringList{QStringLiteral("started"), QStringLiteral("message one"),
                                         QStringLiteral("service two"), QStringLiteral("warning three"),
                                         QStringLiteral("error four"), QStringLiteral("finished")}));
}

void TestCProcessMonitor::linesAndStagesKeepTheirOrder()
{
    constexpr int count = 10000;
    TestMonitor monitor;
    monitor.start([](qor::IProcessMonitor& run) {
        for (int i = 0; i < count; ++i) {
            run.startProtocolStage(std::to_wstring(i));
            run.writeWarning(std::to_wstring(i));
            if (i % 500 == 0)
                run.writeError(run.getItemLink(i, L"item"));
            run.finishProtocolStage();
        }
    });
    QVERIFY(monitor.waitForFinished());
    QStringList expected{QStringLiteral("started")};
    for (int i = 0; i < count; ++i) {
        expected.append(QStringLiteral("stage %1").arg(i));
        expected.append(QStringLiteral("warning %1").arg(i));
        if (i % 500 == 0)
            expected.append(QStringLiteral("error <a href=\"x:%1\">item</a>").arg(i));
        expected.append(QStringLiteral("stage end"));
    }
    expected.append(QStringLiteral("finished"));
    QCOMPARE(monitor.calls, expected);
}

void TestCProcessMonitor::overridesRunInTheGuiThread()
{
    TestMonitor monitor;
    std::thread::id runThread;
    std::wstring link;
    monitor.start([&](qor::IProcessMonitor& run) {
        runThread = std::this_thread::get_id();
        link = run.getItemLink(5, L"five");
    });
    QVERIFY(monitor.waitForFinished());
    QVERIFY(runThread != std::this_thread::get_id());
    QCOMPARE(monitor.linkThread, QThread::currentThread());
    QCOMPARE(QString::fromStdWString(link), QStringLiteral("<a href=\"x:5\">five</a>"));
}

void TestCProcessMonitor::journalShowsTheLines()
{
    TestMonitor monitor;
    monitor.start([](qor::IProcessMonitor& run) {
        run.writeError(L"<b>one</b>", L"net.gkf:3");
        run.writeWarning(L"two");
        run.writeMessage(L"three");
        run.write(L"");
        run.write(L"four");
    });
    QVERIFY(monitor.waitForFinished());
    QCOMPARE(monitor.getJournal()->toPlainText(),
             QStringLiteral("\u2716 one net.gkf:3\n\u26A0 two\n\u2022 three\n\nfour"));
    monitor.start([](qor::IProcessMonitor& run) { run.write(L"five"); });
    QVERIFY(monitor.waitForFinished());
    QCOMPARE(monitor.getJournal()->toPlainText(), QStringLiteral("five"));
}

void TestCProcessMonitor::journalSaysThatEarlierLinesAreLeftOut()
{
    CProcessMonitor monitor;
    monitor.start(writeFlood);
    QVERIFY(monitor.waitForFinished());
    const QTextDocument* document = monitor.getJournal()->document();
    // The run does not wait until so many are laid out.
    QTRY_COMPARE(document->lastBlock().text(), QStringLiteral("\u2022 40000"));
    QCOMPARE(document->blockCount(), 10000);
    QCOMPARE(document->firstBlock().text(), QStringLiteral("\u2022 30001"));
    const QLocale locale;
    const QString note =
        QStringLiteral("Показаны последние строки, не более %1. Более ранние строки (%2) есть в протоколе, "
                       "если обработка не остановлена.")
            .arg(locale.toString(10000), locale.toString(30001)); // the start line is the first
    const QList<QLabel*> labels = monitor.findChildren<QLabel*>();
    QVERIFY(std::any_of(labels.begin(), labels.end(),
                        [&](const QLabel* label) { return label->text() == note && !label->isHidden(); }));
}

void TestCProcessMonitor::linesAreCountedByKind()
{
    TestMonitor monitor;
    const auto getCounts = [&monitor] { return getLabelText(monitor, QStringLiteral("Строк журнала")); };
    QCOMPARE(getCounts(), QStringLiteral("Ошибок: 0, предупреждений: 0, сообщений: 0"));
    std::atomic<bool> mayEnd{false};
    monitor.start([&mayEnd](qor::IProcessMonitor& run) {
        run.writeError(L"one");
        run.writeWarning(L"two");
        run.writeWarning(L"three");
        run.write(L"a service line");
        while (!mayEnd && run.isProcessRunning())
            std::this_thread::yield();
        run.writeMessage(L"four");
    });
    // While it works, too.
    QTRY_COMPARE(getCounts(), QStringLiteral("Ошибок: 1, предупреждений: 2, сообщений: 0"));
    mayEnd = true;
    QVERIFY(monitor.waitForFinished());
    QCOMPARE(getCounts(), QStringLiteral("Ошибок: 1, предупреждений: 2, сообщений: 1"));
    monitor.start([](qor::IProcessMonitor&) {});
    QVERIFY(monitor.waitForFinished());
    QCOMPARE(getCounts(), QStringLiteral("Ошибок: 0, предупреждений: 0, сообщений: 0"));
}

void TestCProcessMonitor::nextRunMayStartWhileTheJournalFills()
{
    TestMonitor monitor;
    monitor.start(writeFlood);
    QVERIFY(monitor.waitForFinished());
    QVERIFY(monitor.getJournal()->document()->blockCount() < 10000);
    monitor.start([](qor::IProcessMonitor& run) { run.write(L"second"); });
    QVERIFY(monitor.waitForFinished());
    QCOMPARE(monitor.getJournal()->toPlainText(), QStringLiteral("second"));
}

void TestCProcessMonitor::baseWritesTheStart()
{
    CProcessMonitor monitor;
    monitor.start([](qor::IProcessMonitor&) {});
    QVERIFY(monitor.waitForFinished());
    QVERIFY(monitor.getJournal()->toPlainText().startsWith(QStringLiteral("Начато: ")));
    QCOMPARE(getStageText(monitor), QStringLiteral("Завершено"));
}

void TestCProcessMonitor::exceptionBecomesAnErrorLine_data()
{
    using qor::ErrorMessageProcessor;
    QTest::addColumn<std::function<void()>>("failure");
    QTest::addColumn<QString>("line");
    const auto addRow = [](const char* name, const std::function<void()>& failure, const QString& line) {
        QTest::newRow(name) << failure << line;
    };
    addRow(
        "host error", [] { throw exceptions::Error(L"Сеть <не> связна"); },
        QStringLiteral("error Сеть &lt;не&gt; связна"));
    addRow(
        "file error", [] { throw qor::CFileException(2, L"нет файла"); },
        QStringLiteral("error ") + QString::fromStdWString(qor::CFileException(2, L"нет файла").getText()));
    addRow(
        "memory", [] { throw std::bad_alloc(); },
        QStringLiteral("error ") + QString::fromStdWString(ErrorMessageProcessor::getBadAllocText()));
    addRow(
        "standard", [] { throw std::runtime_error("singular matrix"); },
        QStringLiteral("error ") +
            QString::fromStdWString(ErrorMessageProcessor::processMessage(std::string("singular matrix"))));
    addRow(
        "boost with text",
        [] { throw BoostFailure() << exceptions::err_info::MessageTag(std::wstring(L"нет опоры")); },
        QStringLiteral("error нет опоры"));
    addRow(
        "boost without text", [] { throw BoostFailure(); }, QStringLiteral("error Неизвестная ошибка."));
    addRow(
        "anything else", [] { throw 5; }, QStringLiteral("error Неизвестная ошибка."));
}

void TestCProcessMonitor::exceptionBecomesAnErrorLine()
{
    QFETCH(std::function<void()>, failure);
    QFETCH(QString, line);
    TestMonitor monitor;
    monitor.start([&failure](qor::IProcessMonitor& run) {
        run.write(L"before");
        failure();
    });
    QVERIFY(monitor.waitForFinished());
    QVERIFY(monitor.getInterrupted());
    QVERIFY(monitor.wasErrors());
    QCOMPARE(monitor.calls, (QStringList{QStringLiteral("started"), QStringLiteral("service before"), line,
                                         QStringLiteral("finished")}));
    QCOMPARE(getStageText(monitor), QStringLiteral("Остановлено ошибкой"));
}

void TestCProcessMonitor::errorsAreForgottenAtTheNextStart()
{
    TestMonitor monitor;
    monitor.start([](qor::IProcessMonitor& run) { run.writeError(L"a"); });
    QVERIFY(monitor.waitForFinished());
    QVERIFY(monitor.wasErrors());
    QCOMPARE(getStageText(monitor), QStringLiteral("Завершено с ошибками"));
    bool wasErrorsInRun = true;
    monitor.start([&](qor::IProcessMonitor& run) { wasErrorsInRun = run.wasErrors(); });
    QVERIFY(monitor.waitForFinished());
    QVERIFY(!wasErrorsInRun);
    QVERIFY(!monitor.wasErrors());
}

void TestCProcessMonitor::errorsCountBeforeTheyAreShown()
{
    TestMonitor monitor;
    bool wasErrorsBefore = true;
    bool wasErrorsAfter = false;
    monitor.start([&](qor::IProcessMonitor& run) {
        run.writeWarning(L"a");
        wasErrorsBefore = run.wasErrors();
        run.writeError(L"b");
        wasErrorsAfter = run.wasErrors();
    });
    QVERIFY(monitor.waitForFinished());
    QVERIFY(!wasErrorsBefore);
    QVERIFY(wasErrorsAfter);
}

void TestCProcessMonitor::silentRunShowsNothingAndIsRecorded()
{
    TestMonitor monitor;
    bool wasSilentInRun = false;
    monitor.setSilent(true);
    monitor.start([&](qor::IProcessMonitor& run) {
        wasSilentInRun = run.getSilent();
        run.writeError(L"hidden");
        run.setSilent(false);
        run.writeError(L"shown");
        run.setSilent(true);
        run.writeError(L"hidden again");
    });
    QVERIFY(monitor.waitForFinished());
    QVERIFY(wasSilentInRun);
    QVERIFY(monitor.getSilent());
    QCOMPARE(monitor.getJournal()->toPlainText(), QStringLiteral("\u2716 shown"));
    QCOMPARE(monitor.calls, (QStringList{QStringLiteral("started"), QStringLiteral("error hidden"),
                                         QStringLiteral("error shown"), QStringLiteral("error hidden again"),
                                         QStringLiteral("finished")}));
}

void TestCProcessMonitor::percentageAndStagesAreShown()
{
    TestMonitor monitor;
    const auto* bar = monitor.findChild<QProgressBar*>();
    monitor.start([](qor::IProcessMonitor& run) {
        run.startStage(L"Уравнивание");
        run.startStage(L"Итерация 1");
        run.setPercentage(37);
        workUntilStopped(run);
        run.finishCurrentStage();
    });
    QTRY_COMPARE(bar->value(), 37);
    QCOMPARE(getStageText(monitor), QStringLiteral("Уравнивание › Итерация 1"));
    monitor.stop();
    QCOMPARE(getStageText(monitor), QStringLiteral("Останавливается…"));
    QVERIFY(monitor.waitForFinished());
    QCOMPARE(bar->value(), 37);
    monitor.start([](qor::IProcessMonitor&) {});
    QCOMPARE(bar->value(), 0);
    QCOMPARE(getStageText(monitor), QStringLiteral("Выполняется…"));
    QVERIFY(monitor.waitForFinished());
    QCOMPARE(bar->value(), 100);
}

// The run waits in between, so that what is shown is shown before it ends, and before it writes more.
void TestCProcessMonitor::linesAreShownWhileTheRunWorks()
{
    TestMonitor monitor;
    monitor.show();
    QVERIFY(QTest::qWaitForWindowExposed(&monitor));
    const QTextBrowser* browser = monitor.findChild<QTextBrowser*>();
    QSemaphore next;
    const auto waitForNext = [&next](const qor::IProcessMonitor& run) {
        while (run.isProcessRunning() && !next.tryAcquire(1, 10))
            std::this_thread::yield();
    };
    monitor.start([&waitForNext](qor::IProcessMonitor& run) {
        run.writeMessage(L"the first");
        waitForNext(run);
        writeFlood(run);
        waitForNext(run);
    });
    QTRY_COMPARE(browser->document()->toPlainText(), QStringLiteral("• the first"));
    QCOMPARE(monitor.calls, (QStringList{QStringLiteral("started"), QStringLiteral("message the first")}));
    next.release();
    QTRY_VERIFY(browser->document()->toPlainText().endsWith(QStringLiteral("\n• 40000")));
    QVERIFY(monitor.isRunning());
    next.release();
    QVERIFY(monitor.waitForFinished());
}

void TestCProcessMonitor::hundredPercentAndTheEndComeBehindTheLastLine()
{
    struct Watch : TestMonitor
    {
        Watch()
        {
            connect(this, &CProcessMonitor::runFinished, this, [this] { note(QStringLiteral("over")); });
        }
        ~Watch() override { shutdown(); }

        using TestMonitor::writeMessage;
        void writeMessage(const QString& text, const QString& detail) override
        {
            TestMonitor::writeMessage(text, detail);
            note(text);
        }
        void note(const QString& what)
        {
            notes.append(
                QStringLiteral("%1: %2 %, %3")
                    .arg(what, QString::number(findChild<QProgressBar*>()->value()), getStageText(*this)));
        }

        QStringList notes;
    };
    Watch monitor;
    monitor.start([](qor::IProcessMonitor& run) {
        run.setPercentage(99);
        writeFlood(run);
        run.setPercentage(100);
        run.writeMessage(L"the last");
    });
    QVERIFY(monitor.waitForFinished());
    QCOMPARE(monitor.notes.size(), kFloodLines + 2);
    QCOMPARE(monitor.notes[kFloodLines - 1], QStringLiteral("40000: 99 %, Выполняется…"));
    QCOMPARE(monitor.notes[kFloodLines], QStringLiteral("the last: 100 %, Выполняется…"));
    QCOMPARE(monitor.notes[kFloodLines + 1], QStringLiteral("over: 100 %, Завершено"));
}

void TestCProcessMonitor::progressOfOneThread()
{
    CProcessMonitor monitor;
    const auto* bar = monitor.findChild<QProgressBar*>();
    qor::ProgressImplementation& progress = monitor;
    progress.setPercentage(30);
    QCOMPARE(bar->value(), 30);
    progress.setPercentage(101);
    QCOMPARE(bar->value(), 100);
    progress.startDetailedStage();
    QCOMPARE(bar->value(), 0);
    progress.finish();
    QCOMPARE(bar->value(), 100);
}

void TestCProcessMonitor::startThatFailsLeavesAMonitorThatCanStart()
{
    struct FailingMonitor : TestMonitor
    {
        void onStarted() override
        {
            if (!wasRefused) {
                wasRefused = true;
                throw std::runtime_error("no room");
            }
            TestMonitor::onStarted();
        }
        bool wasRefused = false;
    };
    FailingMonitor monitor;
    QVERIFY_EXCEPTION_THROWN(monitor.start([](qor::IProcessMonitor&) {}), std::runtime_error);
    QVERIFY(!monitor.isRunning());
    QVERIFY(monitor.getInterrupted());
    QVERIFY(monitor.waitForFinished());
    QCOMPARE(getStageText(monitor), QStringLiteral("Не начато"));
    monitor.show();
    QVERIFY(monitor.close());

    bool wasRun = false;
    monitor.start([&wasRun](qor::IProcessMonitor&) { wasRun = true; });
    QVERIFY(monitor.waitForFinished());
    QVERIFY(wasRun);
    QVERIFY(!monitor.getInterrupted());
}

void TestCProcessMonitor::startWithoutAThreadLeavesAMonitorThatCanStart()
{
    TestMonitor monitor;
    // No machine has room for such a stack.
    pthread_attr_t attributes;
    std::size_t stackSize = 0;
    pthread_getattr_default_np(&attributes);
    pthread_attr_getstacksize(&attributes, &stackSize);
    pthread_attr_setstacksize(&attributes, std::size_t{1} << 50);
    pthread_setattr_default_np(&attributes);
    bool isRefused = false;
    try {
        monitor.start([](qor::IProcessMonitor&) {});
    } catch (const std::system_error&) {
        isRefused = true;
    }
    pthread_attr_setstacksize(&attributes, stackSize);
    pthread_setattr_default_np(&attributes);
    pthread_attr_destroy(&attributes);
    QVERIFY(isRefused);
    QVERIFY(!monitor.isRunning());
    monitor.start([](qor::IProcessMonitor&) {});
    QVERIFY(monitor.waitForFinished());
    QVERIFY(!monitor.getInterrupted());
}

void TestCProcessMonitor::stopButtonInterruptsTheRun()
{
    TestMonitor monitor;
    QPushButton* stopButton = findButton(monitor, QStringLiteral("Остановить"));
    QVERIFY(!stopButton->isEnabled());
    monitor.start(workUntilStopped);
    QVERIFY(stopButton->isEnabled());
    QTest::mouseClick(stopButton, Qt::LeftButton);
    QVERIFY(!stopButton->isEnabled());
    QVERIFY(!monitor.isProcessRunning());
    QVERIFY(monitor.waitForFinished());
    QVERIFY(monitor.getInterrupted());
    QCOMPARE(getStageText(monitor), QStringLiteral("Остановлено"));
}

void TestCProcessMonitor::pauseButtonHoldsTheRun()
{
    TestMonitor monitor;
    QPushButton* pauseButton = findButton(monitor, QStringLiteral("Пауза"));
    std::atomic<int> rounds{0};
    monitor.start([&](qor::IProcessMonitor& run) {
        while (run.isProcessRunning()) {
            run.pause();
            ++rounds;
        }
    });
    QTRY_VERIFY(rounds > 0);
    QTest::mouseClick(pauseButton, Qt::LeftButton);
    QVERIFY(monitor.isPaused());
    QCOMPARE(pauseButton->text(), QStringLiteral("Пр&одолжить"));
    QCOMPARE(getStageText(monitor), QStringLiteral("Приостановлено: Выполняется…"));
    // The run may have been at work when the pause came, and then counts once more.
    const int roundsInPause = rounds + 1;
    QTest::qWait(20);
    QVERIFY(rounds <= roundsInPause);
    QTest::mouseClick(pauseButton, Qt::LeftButton);
    QVERIFY(!monitor.isPaused());
    QTRY_VERIFY(rounds > roundsInPause);
    monitor.setPaused(true);
    monitor.stop();
    QVERIFY(monitor.waitForFinished());
}

void TestCProcessMonitor::protocolButtonWaitsForTheEnd()
{
    TestMonitor monitor;
    QPushButton* protocolButton = findButton(monitor, QStringLiteral("Протокол"));
    monitor.start(workUntilStopped);
    QVERIFY(!protocolButton->isEnabled());
    monitor.stop();
    QVERIFY(monitor.waitForFinished());
    QVERIFY(protocolButton->isEnabled());
    QTest::mouseClick(protocolButton, Qt::LeftButton);
    QCOMPARE(monitor.calls.last(), QStringLiteral("protocol"));
}

void TestCProcessMonitor::protocolButtonOfTheBaseOpensTheJournal()
{
    SDIApplication application(QStringLiteral("survey"));
    UrlCatcher catcher;
    CProcessMonitor monitor;
    monitor.start([](qor::IProcessMonitor& run) { run.writeError(L"Превышен допуск"); });
    QVERIFY(monitor.waitForFinished());
    QTest::mouseClick(findButton(monitor, QStringLiteral("Протокол")), Qt::LeftButton);
    QCOMPARE(catcher.urls.size(), 1);
    QFile page(catcher.urls.first().toLocalFile());
    QVERIFY(page.open(QIODevice::ReadOnly));
    QVERIFY(QString::fromUtf8(page.readAll()).contains(QStringLiteral("Превышен допуск")));
}

void TestCProcessMonitor::openedJournalIsFull()
{
    SDIApplication application(QStringLiteral("survey"));
    UrlCatcher catcher;
    CProcessMonitor monitor;
    monitor.start(writeFlood);
    QVERIFY(monitor.waitForFinished());
    QTest::mouseClick(findButton(monitor, QStringLiteral("Протокол")), Qt::LeftButton);
    QCOMPARE(catcher.urls.size(), 1);
    QFile page(catcher.urls.first().toLocalFile());
    QVERIFY(page.open(QIODevice::ReadOnly));
    QVERIFY(page.readAll().contains(QByteArray::number(kFloodLines)));
    QCOMPARE(monitor.getJournal()->document()->blockCount(), 10000);
}

void TestCProcessMonitor::secondStartIsRefused()
{
    TestMonitor monitor;
    monitor.start(workUntilStopped);
    QTest::ignoreMessage(QtWarningMsg, "CProcessMonitor::start: a run is working already");
    monitor.start([](qor::IProcessMonitor& run) { run.write(L"second"); });
    monitor.stop();
    QVERIFY(monitor.waitForFinished());
    QCOMPARE(monitor.calls, (QStringList{QStringLiteral("started"), QStringLiteral("finished")}));
}

void TestCProcessMonitor::nextRunStartsFromRunFinished()
{
    TestMonitor monitor;
    int runs = 0;
    connect(&monitor, &CProcessMonitor::runFinished, this, [&] {
        if (++runs < 3)
            monitor.start([](qor::IProcessMonitor& run) { run.write(L"again"); });
    });
    monitor.start([](qor::IProcessMonitor& run) { run.write(L"first"); });
    QTRY_COMPARE(runs, 3);
    QCOMPARE(monitor.calls.count(QStringLiteral("service again")), 2);
}

void TestCProcessMonitor::closingStopsTheRunFirst()
{
    TestMonitor monitor;
    monitor.show();
    monitor.start(workUntilStopped);
    QVERIFY(!monitor.close());
    QVERIFY(monitor.isVisible());
    QTRY_VERIFY(!monitor.isVisible());
    QVERIFY(!monitor.isRunning());
    QVERIFY(monitor.getInterrupted());
    QCOMPARE(monitor.calls, (QStringList{QStringLiteral("started"), QStringLiteral("finished")}));
}

void TestCProcessMonitor::closingAHiddenWindowStopsTheRunFirst()
{
    TestMonitor monitor;
    monitor.start(workUntilStopped);
    QVERIFY(!monitor.close());
    QVERIFY(!monitor.isProcessRunning());
    QVERIFY(monitor.waitForFinished());
    QVERIFY(monitor.close());
}

void TestCProcessMonitor::escapeStopsTheRunFirst()
{
    TestMonitor monitor;
    monitor.show();
    QSignalSpy rejected(&monitor, &QDialog::rejected);
    monitor.start(workUntilStopped);
    QTest::keyClick(&monitor, Qt::Key_Escape);
    QCOMPARE(rejected.count(), 0);
    QTRY_COMPARE(rejected.count(), 1);
    QVERIFY(!monitor.isRunning());
}

void TestCProcessMonitor::questionMayBeDeclined()
{
    TestMonitor monitor;
    monitor.setStopQuestion(CProcessMonitor::StopQuestion::Always);
    monitor.show();
    monitor.start(workUntilStopped);
    monitor.close();
    auto* box = monitor.findChild<QMessageBox*>();
    QVERIFY(box != nullptr);
    QCOMPARE(box->text(), QStringLiteral("Выполнение ещё не закончено. Остановить его?"));
    QTest::keyClick(box, Qt::Key_Return); // the default is the harmless answer
    QVERIFY(box->isHidden());
    QVERIFY(monitor.isProcessRunning());
    QTest::mouseClick(findButton(monitor, QStringLiteral("Остановить")), Qt::LeftButton);
    QTRY_VERIFY(monitor.findChild<QMessageBox*>() != nullptr);
    QTest::keyClick(monitor.findChild<QMessageBox*>(), Qt::Key_Escape);
    QVERIFY(monitor.isProcessRunning());
    monitor.stop();
    QVERIFY(monitor.waitForFinished());
    QVERIFY(monitor.isVisible());
}

void TestCProcessMonitor::questionMayBeAccepted()
{
    TestMonitor monitor;
    monitor.setStopQuestion(CProcessMonitor::StopQuestion::Always);
    monitor.show();
    monitor.start(workUntilStopped);
    monitor.close();
    auto* box = monitor.findChild<QMessageBox*>();
    QVERIFY(box != nullptr);
    QTest::mouseClick(findButton(*box, QStringLiteral("Остановить")), Qt::LeftButton);
    QVERIFY(!monitor.isProcessRunning());
    QTRY_VERIFY(!monitor.isVisible());
    QVERIFY(!monitor.isRunning());
}

void TestCProcessMonitor::questionGoesWhenTheRunIsOver()
{
    TestMonitor monitor;
    monitor.setStopQuestion(CProcessMonitor::StopQuestion::Always);
    monitor.show();
    std::atomic<bool> mayEnd{false};
    monitor.start([&mayEnd](qor::IProcessMonitor&) {
        while (!mayEnd)
            std::this_thread::yield();
    });
    monitor.close();
    QVERIFY(monitor.findChild<QMessageBox*>() != nullptr);
    mayEnd = true;
    QVERIFY(monitor.waitForFinished());
    QVERIFY(monitor.findChild<QMessageBox*>() == nullptr);
    QVERIFY(monitor.isVisible());
    QVERIFY(!monitor.getInterrupted());
    QVERIFY(monitor.close());
}

void TestCProcessMonitor::nobodyIsAskedWithoutADisplay()
{
    TestMonitor monitor;
    monitor.show();
    monitor.start(workUntilStopped);
    QTest::mouseClick(findButton(monitor, QStringLiteral("Остановить")), Qt::LeftButton);
    QVERIFY(monitor.findChild<QMessageBox*>() == nullptr);
    QVERIFY(monitor.waitForFinished());
}

void TestCProcessMonitor::waitingEndsWithTheWindow()
{
    auto* monitor = new TestMonitor;
    monitor->start(workUntilStopped);
    monitor->deleteLater();
    QVERIFY(!monitor->waitForFinished());
}

void TestCProcessMonitor::linksAreNotFollowed()
{
    TestMonitor monitor;
    QSignalSpy clicked(monitor.getJournal(), &QTextBrowser::anchorClicked);
    monitor.start([](qor::IProcessMonitor& run) { run.write(run.getItemLink(12, L"Rp 12")); });
    QVERIFY(monitor.waitForFinished());
    monitor.show();
    monitor.getJournal()->setFocus();
    QTest::keyClick(monitor.getJournal(), Qt::Key_Tab);
    QTest::keyClick(monitor.getJournal(), Qt::Key_Return);
    QCOMPARE(clicked.count(), 1);
    QCOMPARE(clicked.first().first().toUrl(), QUrl(QStringLiteral("x:12")));
    QCOMPARE(monitor.getJournal()->toPlainText(), QStringLiteral("Rp 12"));
}

void TestCProcessMonitor::linesOutsideOfARunAreShown()
{
    TestMonitor monitor;
    qor::IProcessMonitor& writer = monitor;
    writer.writeWarning(L"beforehand");
    QCOMPARE(monitor.getJournal()->toPlainText(), QStringLiteral("\u26A0 beforehand"));
    writer.writeError(L"a");
    QVERIFY(monitor.wasErrors());
}

void TestCProcessMonitor::widgetsHaveAccessibleNames()
{
    CProcessMonitor monitor;
    QCOMPARE(monitor.getJournal()->accessibleName(), QStringLiteral("Журнал"));
    QCOMPARE(monitor.findChild<QProgressBar*>()->accessibleName(), QStringLiteral("Выполнено, в процентах"));
    for (const char* text : {"Остановить", "Пауза", "Протокол", "Закрыть"})
        QVERIFY2(findButton(monitor, QString::fromUtf8(text)) != nullptr, text);
}

QTEST_MAIN(TestCProcessMonitor)
#include "tst_cprocessmonitor.moc"
