#include "host/process/CProcessMonitor.h"

#include "host/app/Application.h"
#include "host/files/Error.h"
#include "host/files/ExceptionText.h"
#include "host/files/QtFile.h"
#include "host/process/JournalBrowser.h"
#include "host/process/JournalWriter.h"
#include "host/process/OrderedMonitorProxy.h"
#include "host/window/Display.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QDateTime>
#include <QDesktopServices>
#include <QEventLoop>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QMessageBox>
#include <QPointer>
#include <QProgressBar>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QTextBrowser>
#include <QTextDocument>
#include <QTimer>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <utility>

namespace {

// How often the window takes what the run has written, and how long it may work on it at a time.
constexpr std::chrono::milliseconds kBatchInterval{30};
constexpr std::chrono::milliseconds kDeliveryBudget{12};
constexpr std::chrono::milliseconds kJournalBudget{10};
// While lines pour in faster than they can be taken, most of them will never be shown: a few now and then do.
constexpr std::chrono::milliseconds kBusyJournalBudget{3};
constexpr std::chrono::milliseconds kBusyJournalInterval{100};
// A run that is over waits until the journal has shown its last lines, unless more than so many are left.
constexpr std::size_t kAwaitedLines = 500;

// Colours that can be told from both a light and a dark background carry the marks only; texts keep the
// colours of the palette.
const char* const kJournalStyle = "p { margin: 1px 0px 1px 0px; }"
                                  ".error .mark { color: #d9363e; }"
                                  ".warning .mark { color: #c77700; }"
                                  ".message .mark { color: #2f7fd1; }"
                                  ".error { font-weight: 600; }"
                                  ".detail { font-style: italic; }";

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Host)
};

QString getTimeText(qint64 milliseconds)
{
    const qint64 seconds = milliseconds / 1000;
    const auto twoDigits = [](qint64 number) {
        return QStringLiteral("%1").arg(number, 2, 10, QLatin1Char('0'));
    };
    const QString tail = twoDigits(seconds / 60 % 60) + QLatin1Char(':') + twoDigits(seconds % 60);
    return seconds < 3600 ? tail : QString::number(seconds / 3600) + QLatin1Char(':') + tail;
}

/// The journal as a page in which nothing is loaded and nothing runs, whatever its lines hold.
QByteArray makePage(const QTextDocument& journal)
{
    QString html = journal.toHtml("utf-8");
    html.replace(QLatin1String("<head>"),
                 QLatin1String("<head><meta http-equiv=\"Content-Security-Policy\" "
                               "content=\"default-src 'none'; style-src 'unsafe-inline'\" />"));
    return html.toUtf8();
}

void runInThread(const CProcessMonitor::RunFunction& function, OrderedMonitorProxy& monitor)
{
    bool isFailed = false;
    try {
        function(monitor);
    } catch (...) {
        isFailed = true;
        // An exception's text is plain, a line is HTML.
        const std::wstring text = exceptions::getExceptionText(std::current_exception());
        monitor.writeError(QString::fromStdWString(text).toHtmlEscaped().toStdWString());
    }
    monitor.setFinished(isFailed);
}

} // namespace

CProcessMonitor::CProcessMonitor(QWidget* parent, Qt::WindowFlags flags) : QDialog(parent, flags)
{
    createWidgets();
    journalWriter = std::make_unique<JournalWriter>(journal);
    batchTimer = new QTimer(this);
    batchTimer->setSingleShot(true);
    connect(batchTimer, &QTimer::timeout, this, &CProcessMonitor::deliverBatch);
    connect(this, &CProcessMonitor::runWaits, this, &CProcessMonitor::serveRun, Qt::QueuedConnection);
    stateText = Text::tr("Готово к выполнению");
    showState();
}

CProcessMonitor::~CProcessMonitor()
{
    shutdown();
}

QTextBrowser* CProcessMonitor::getJournal() const
{
    return journal;
}

void CProcessMonitor::start(RunFunction function)
{
    if (running) {
        qWarning("CProcessMonitor::start: a run is working already");
        return;
    }
    prepareRun();
    onStarted();
    proxy = std::make_unique<OrderedMonitorProxy>(silentMode, [this] { Q_EMIT runWaits(QPrivateSignal()); });
    worker = std::thread(runInThread, std::move(function), std::ref(*proxy));
    showState();
    batchTimer->start(kBatchInterval);
}

bool CProcessMonitor::isRunning() const
{
    return running;
}

bool CProcessMonitor::waitForFinished()
{
    if (!running)
        return true;
    const QPointer<CProcessMonitor> self = this;
    QEventLoop loop;
    connect(this, &CProcessMonitor::runFinished, &loop, &QEventLoop::quit);
    connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
    loop.exec();
    return !self.isNull() && !running;
}

void CProcessMonitor::stop()
{
    if (!running || proxy == nullptr || proxy->isStopRequested())
        return;
    proxy->requestStop();
    stateText = Text::tr("Останавливается…");
    showState();
}

void CProcessMonitor::setPaused(bool paused)
{
    if (!running || proxy == nullptr)
        return;
    proxy->setPaused(paused);
    showState();
}

bool CProcessMonitor::isPaused() const
{
    return running && proxy != nullptr && proxy->isPaused();
}

void CProcessMonitor::setStopQuestion(StopQuestion question)
{
    stopQuestion = question;
}

void CProcessMonitor::setPercentage(int percentage)
{
    progressBar->setValue(std::clamp(percentage, progressBar->minimum(), progressBar->maximum()));
}

void CProcessMonitor::finish()
{
    progressBar->setValue(progressBar->maximum());
}

void CProcessMonitor::startDetailedStage()
{
    progressBar->setValue(progressBar->minimum());
}

void CProcessMonitor::startStage(std::wstring name)
{
    stages.append(QString::fromStdWString(name));
    showState();
}

void CProcessMonitor::finishCurrentStage()
{
    if (!stages.isEmpty())
        stages.removeLast();
    showState();
}

void CProcessMonitor::startProtocolStage(std::wstring name)
{
    startStage(std::move(name));
}

void CProcessMonitor::finishProtocolStage()
{
    finishCurrentStage();
}

bool CProcessMonitor::isProcessRunning() const
{
    return running && (proxy == nullptr || proxy->isProcessRunning());
}

void CProcessMonitor::setSilent(bool silent)
{
    silentMode = silent;
}

bool CProcessMonitor::getSilent() const
{
    return silentMode;
}

void CProcessMonitor::pause()
{}

void CProcessMonitor::writeError(std::wstring text)
{
    writeError(QString::fromStdWString(text), QString());
}

void CProcessMonitor::writeError(std::wstring text, std::wstring detail)
{
    writeError(QString::fromStdWString(text), QString::fromStdWString(detail));
}

void CProcessMonitor::writeWarning(std::wstring text)
{
    writeWarning(QString::fromStdWString(text), QString());
}

void CProcessMonitor::writeWarning(std::wstring text, std::wstring detail)
{
    writeWarning(QString::fromStdWString(text), QString::fromStdWString(detail));
}

void CProcessMonitor::writeMessage(std::wstring text)
{
    writeMessage(QString::fromStdWString(text), QString());
}

void CProcessMonitor::writeMessage(std::wstring text, std::wstring detail)
{
    writeMessage(QString::fromStdWString(text), QString::fromStdWString(detail));
}

void CProcessMonitor::write(std::wstring text)
{
    write(QString::fromStdWString(text), QString());
}

void CProcessMonitor::write(std::wstring text, std::wstring detail)
{
    write(QString::fromStdWString(text), QString::fromStdWString(detail));
}

bool CProcessMonitor::wasErrors() const
{
    return errorsShown || (proxy != nullptr && proxy->wasErrors());
}

std::wstring CProcessMonitor::getItemLink(LONGID, const std::wstring& text)
{
    return text;
}

void CProcessMonitor::writeError(const QString& text, const QString& detail)
{
    errorsShown = true;
    writeLine(JournalWriter::Kind::Error, text, detail);
}

void CProcessMonitor::writeWarning(const QString& text, const QString& detail)
{
    writeLine(JournalWriter::Kind::Warning, text, detail);
}

void CProcessMonitor::writeMessage(const QString& text, const QString& detail)
{
    writeLine(JournalWriter::Kind::Message, text, detail);
}

void CProcessMonitor::write(const QString& text, const QString& detail)
{
    writeLine(JournalWriter::Kind::Service, text, detail);
}

bool CProcessMonitor::getInterrupted() const
{
    return interrupted;
}

void CProcessMonitor::onStarted()
{
    const QString time = QLocale().toString(QDateTime::currentDateTime(), QLocale::ShortFormat);
    write(Text::tr("Начато: %1").arg(time), QString());
}

void CProcessMonitor::onThreadFinished()
{
    if (interrupted) {
        stateText = Text::tr("Прервано");
    } else {
        stateText = wasErrors() ? Text::tr("Завершено с ошибками") : Text::tr("Завершено");
        finish();
    }
}

void CProcessMonitor::onProtocolPushed()
{
    Application* application = Application::instance();
    if (application == nullptr)
        return;
    journalWriter->flush(std::chrono::hours(1)); // all that waits
    const QString path = Application::getTmpFileName(QStringLiteral("journal_%1.html"));
    try {
        QtFile file(path);
        file.open(QIODevice::WriteOnly);
        file.device()->write(makePage(*journal->document()));
        file.close();
    } catch (const exceptions::Error& error) {
        Application::warning(QString::fromStdWString(error.getText()), this);
        return;
    }
    application->registerTmpFile(path);
    QDesktopServices::openUrl(QUrl::fromLocalFile(path));
}

void CProcessMonitor::reject()
{
    if (running)
        askToStop(true);
    else
        QDialog::reject();
}

void CProcessMonitor::closeEvent(QCloseEvent* event)
{
    if (running) {
        event->ignore();
        askToStop(true);
        return;
    }
    QDialog::closeEvent(event);
}

void CProcessMonitor::shutdown()
{
    batchTimer->stop();
    delete questionBox;
    if (proxy != nullptr)
        proxy->abandon();
    if (worker.joinable())
        worker.join();
    if (running)
        interrupted = true;
    running = false;
}

void CProcessMonitor::createWidgets()
{
    setWindowTitle(Text::tr("Выполнение"));
    setSizeGripEnabled(true);

    stageLabel = new QLabel(this);
    stageLabel->setTextFormat(Qt::PlainText);
    stageLabel->setWordWrap(true);
    stageLabel->setAccessibleName(Text::tr("Этап"));
    timeLabel = new QLabel(this);
    timeLabel->setToolTip(Text::tr("Время с начала выполнения"));
    timeLabel->setAccessibleName(Text::tr("Время с начала выполнения"));
    progressBar = new QProgressBar(this);
    progressBar->setRange(0, 100);
    progressBar->setValue(0);
    progressBar->setAccessibleName(Text::tr("Выполнено, в процентах"));
    journalNote = new QLabel(this);
    journalNote->setWordWrap(true);
    journalNote->hide();
    journal = new JournalBrowser(this);
    journal->setOpenLinks(false);
    journal->setAccessibleName(Text::tr("Журнал"));
    journal->document()->setDefaultStyleSheet(QLatin1String(kJournalStyle));

    auto* stageRow = new QHBoxLayout;
    stageRow->addWidget(stageLabel, 1);
    stageRow->addWidget(timeLabel, 0, Qt::AlignTop);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(stageRow);
    layout->addWidget(progressBar);
    layout->addWidget(journalNote);
    layout->addWidget(journal, 1);
    layout->addLayout(createButtonRow());
    resize(760, 520);
}

QLayout* CProcessMonitor::createButtonRow()
{
    stopButton = createButton(Text::tr("&Остановить"));
    pauseButton = createButton(Text::tr("П&ауза"));
    protocolButton = createButton(Text::tr("&Протокол"));
    closeButton = createButton(Text::tr("&Закрыть"));
    protocolButton->setToolTip(Text::tr("Показать протокол выполнения"));
    connect(stopButton, &QPushButton::clicked, this, [this] { askToStop(false); });
    connect(pauseButton, &QPushButton::clicked, this, [this] { setPaused(!isPaused()); });
    connect(protocolButton, &QPushButton::clicked, this, &CProcessMonitor::onProtocolPushed);
    connect(closeButton, &QPushButton::clicked, this, &QWidget::close);

    auto* row = new QHBoxLayout;
    row->addWidget(stopButton);
    row->addWidget(pauseButton);
    row->addStretch(1);
    row->addWidget(protocolButton);
    row->addWidget(closeButton);
    return row;
}

QPushButton* CProcessMonitor::createButton(const QString& text)
{
    auto* button = new QPushButton(text, this);
    button->setAutoDefault(false); // Enter in the journal must not stop a run
    return button;
}

void CProcessMonitor::prepareRun()
{
    batchTimer->stop(); // the journal of the run before may still have been filling
    proxy.reset();
    journalWriter->clear();
    stages.clear();
    progressBar->setValue(progressBar->minimum());
    stateText = Text::tr("Выполняется…");
    running = true;
    closeWanted = false;
    errorsShown = false;
    interrupted = false;
    runTime.start();
    journalPause.start();
}

void CProcessMonitor::writeLine(JournalWriter::Kind kind, const QString& text, const QString& detail)
{
    if (silentMode)
        return;
    journalWriter->append(kind, text, detail);
    if (!running && !journalWriter->flush(kJournalBudget))
        batchTimer->start(0);
}

void CProcessMonitor::serveRun()
{
    if (!running || proxy == nullptr)
        return;
    proxy->answerQuestions(*this);
    if (proxy->isDeliveryUrgent())
        deliverBatch();
}

void CProcessMonitor::deliverBatch()
{
    if (delivering)
        return; // an override that runs an event loop of its own
    if (isRunOver()) {
        finishRun();
        return;
    }
    bool isDelivered = true;
    bool isShown = true;
    {
        const QScopedValueRollback<bool> guard(delivering, true);
        if (running)
            isDelivered = proxy->deliver(*this, kDeliveryBudget);
        isShown = showLines(isDelivered);
    }
    showJournalNote();
    showTime();
    // What ends the run may take its time, so it comes after the events that came meanwhile.
    if (!isDelivered || !isShown || isRunOver())
        batchTimer->start(0);
    else if (running)
        batchTimer->start(kBatchInterval);
}

bool CProcessMonitor::isRunOver() const
{
    const std::size_t waitingLines = journalWriter->getWaitingCount();
    return running && proxy->isDrained() && (waitingLines == 0 || waitingLines > kAwaitedLines);
}

bool CProcessMonitor::showLines(bool isDelivered)
{
    if (!isDelivered && !journalPause.hasExpired(kBusyJournalInterval.count()))
        return false;
    const bool isShown = journalWriter->flush(isDelivered ? kJournalBudget : kBusyJournalBudget);
    journalPause.start();
    return isShown;
}

void CProcessMonitor::finishRun()
{
    if (journalWriter->getWaitingCount() > 0)
        batchTimer->start(0);
    delete questionBox;
    worker.join();
    interrupted = proxy->isStopRequested() || proxy->isFailed();
    running = false;
    stages.clear();
    onThreadFinished();
    showState();

    const QPointer<CProcessMonitor> self = this;
    Q_EMIT runFinished();
    if (!self.isNull() && closeWanted)
        close();
}

void CProcessMonitor::askToStop(bool thenClose)
{
    if (!running)
        return;
    const bool isStopping = proxy != nullptr && proxy->isStopRequested();
    if (!isStopping && isQuestionWanted()) {
        showStopQuestion(thenClose);
        return;
    }
    closeWanted = closeWanted || thenClose;
    stop();
}

// The question is no event loop of its own: the run goes on, and may finish, while it stands.
void CProcessMonitor::showStopQuestion(bool thenClose)
{
    delete questionBox;
    auto* box = new QMessageBox(QMessageBox::Question, windowTitle(),
                                Text::tr("Выполнение ещё не закончено. Остановить его?"),
                                QMessageBox::NoButton, this);
    QPushButton* stopChoice = box->addButton(Text::tr("&Остановить"), QMessageBox::DestructiveRole);
    QPushButton* goOnChoice = box->addButton(Text::tr("&Продолжить"), QMessageBox::RejectRole);
    box->setDefaultButton(goOnChoice);
    box->setEscapeButton(goOnChoice);
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(stopChoice, &QPushButton::clicked, this, [this, thenClose] {
        closeWanted = closeWanted || thenClose;
        stop();
    });
    questionBox = box;
    box->open();
}

bool CProcessMonitor::isQuestionWanted() const
{
    switch (stopQuestion) {
    case StopQuestion::OnDisplay:
        return isVisible() && hasDisplay();
    case StopQuestion::Always:
        return true;
    case StopQuestion::Never:
        break;
    }
    return false;
}

void CProcessMonitor::showState()
{
    const bool canStop = running && proxy != nullptr && !proxy->isStopRequested();
    stopButton->setEnabled(canStop);
    pauseButton->setEnabled(canStop);
    pauseButton->setText(isPaused() ? Text::tr("Пр&одолжить") : Text::tr("П&ауза"));
    // The protocol of a run is complete only when the run is over.
    protocolButton->setEnabled(!running);
    closeButton->setDefault(!running);

    const QString stageText = stages.isEmpty() ? stateText : stages.join(QStringLiteral(" › "));
    const QString pausedText = Text::tr("Приостановлено: %1").arg(stageText);
    if (running && !canStop)
        stageLabel->setText(stateText);
    else
        stageLabel->setText(isPaused() ? pausedText : stageText);
    showTime();
    showJournalNote();
}

void CProcessMonitor::showTime()
{
    if (running)
        timeLabel->setText(getTimeText(runTime.elapsed()));
}

void CProcessMonitor::showJournalNote()
{
    const qint64 omitted = journalWriter->getOmittedCount();
    journalNote->setVisible(omitted > 0);
    if (omitted > 0) {
        const QLocale locale;
        journalNote->setText(
            Text::tr("Показаны последние строки, не более %1. Более ранние строки (%2) есть в протоколе.")
                .arg(locale.toString(JournalWriter::kLineLimit), locale.toString(omitted)));
    }
}
