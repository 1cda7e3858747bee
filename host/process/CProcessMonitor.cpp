#include "host/process/CProcessMonitor.h"

#include "host/app/Application.h"
#include "host/files/Error.h"
#include "host/files/QtFile.h"
#include "host/process/JournalPanel.h"
#include "host/process/LineKind.h"
#include "host/process/ProjectRun.h"
#include "host/process/RunSession.h"
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
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace {

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

} // namespace

CProcessMonitor::CProcessMonitor(QWidget* parent, Qt::WindowFlags flags) : QDialog(parent, flags)
{
    createWidgets();
    stateText = Text::tr("Готово к выполнению");
    showState();
    showCounts();
}

CProcessMonitor::~CProcessMonitor()
{
    shutdown();
}

QTextBrowser* CProcessMonitor::getJournal() const
{
    journal->requestAll();
    return journal->getBrowser();
}

void CProcessMonitor::start(RunFunction function)
{
    if (isRunning()) {
        qWarning("CProcessMonitor::start: a run is working already");
        return;
    }
    if (declineDuringRun())
        return;
    if (project != nullptr)
        projectRun = ProjectRun::begin(project);
    prepareRun();
    // What a hook does beside the window may have timers served.
    const QPointer<CProcessMonitor> self = this;
    try {
        onStarted();
        if (self.isNull())
            return;
        session = std::make_unique<RunSession>(*this, linkSource, silentMode);
        connect(session.get(), &RunSession::delivered, this, &CProcessMonitor::showDelivered);
        connect(session.get(), &RunSession::ended, this, &CProcessMonitor::finishRun);
        session->start(std::move(function));
        if (stopWanted)
            session->requestStop();
    } catch (...) {
        giveUpStart();
        throw;
    }
    showState();
}

bool CProcessMonitor::isRunning() const
{
    return running || ending;
}

bool CProcessMonitor::waitForFinished()
{
    if (!isRunning())
        return true;
    const QPointer<CProcessMonitor> self = this;
    QEventLoop loop;
    connect(this, &CProcessMonitor::runFinished, &loop, &QEventLoop::quit);
    connect(this, &QObject::destroyed, &loop, &QEventLoop::quit);
    loop.exec();
    return !self.isNull() && !isRunning();
}

void CProcessMonitor::stop()
{
    if (!running || stopWanted)
        return;
    stopWanted = true;
    if (session != nullptr)
        session->requestStop();
    stateText = Text::tr("Останавливается…");
    showState();
}

void CProcessMonitor::setPaused(bool paused)
{
    if (!running || session == nullptr)
        return;
    session->setPaused(paused);
    showState();
}

bool CProcessMonitor::isPaused() const
{
    return running && session != nullptr && session->isPaused();
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
    return running && !stopWanted;
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
    return errorsShown || (session != nullptr && session->wasErrors());
}

std::wstring CProcessMonitor::getItemLink(LONGID, const std::wstring& text)
{
    return text;
}

void CProcessMonitor::writeError(const QString& text, const QString& detail)
{
    errorsShown = true;
    writeLine(LineKind::Error, text, detail);
}

void CProcessMonitor::writeWarning(const QString& text, const QString& detail)
{
    writeLine(LineKind::Warning, text, detail);
}

void CProcessMonitor::writeMessage(const QString& text, const QString& detail)
{
    writeLine(LineKind::Message, text, detail);
}

void CProcessMonitor::write(const QString& text, const QString& detail)
{
    writeLine(LineKind::Service, text, detail);
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
    if (session->isFailed()) {
        stateText = Text::tr("Остановлено ошибкой");
    } else if (interrupted) {
        stateText = Text::tr("Остановлено");
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
    const QString path = Application::getTmpFileName(QStringLiteral("journal_%1.html"));
    try {
        QtFile file(path);
        file.open(QIODevice::WriteOnly);
        file.device()->write(journal->makePage());
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

void CProcessMonitor::setProject(const CProject* runProject)
{
    project = runProject;
}

void CProcessMonitor::setLinkSource(LinkSource source)
{
    linkSource = std::move(source);
}

void CProcessMonitor::shutdown()
{
    delete questionBox;
    if (session != nullptr)
        session->abandon();
    if (running)
        interrupted = true;
    running = false;
    projectRun.reset();
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
    countLabel = new QLabel(this);
    countLabel->setAccessibleName(Text::tr("Строк журнала"));
    journal = new JournalPanel(this);

    auto* stageRow = new QHBoxLayout;
    stageRow->addWidget(stageLabel, 1);
    stageRow->addWidget(timeLabel, 0, Qt::AlignTop);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(stageRow);
    layout->addWidget(progressBar);
    layout->addWidget(countLabel);
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
    connect(protocolButton, &QPushButton::clicked, this, &CProcessMonitor::pushProtocol);
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

/// Whether another run works on the project; the user has been told then.
bool CProcessMonitor::declineDuringRun()
{
    if (!ProjectRun::isWorking(project))
        return false;
    Application::warning(
        Text::tr("С этим проектом уже работает другая обработка. Повторите, когда она закончится."), this);
    return true;
}

void CProcessMonitor::pushProtocol()
{
    // A page would take away the lines that the other run has in hand.
    if (!declineDuringRun())
        onProtocolPushed();
}

void CProcessMonitor::prepareRun()
{
    session.reset();
    journal->clear();
    stages.clear();
    counts.clear();
    showCounts();
    progressBar->setValue(progressBar->minimum());
    stateText = Text::tr("Выполняется…");
    running = true;
    closeWanted = false;
    stopWanted = false;
    errorsShown = false;
    interrupted = false;
    runTime.start();
}

void CProcessMonitor::giveUpStart()
{
    session.reset();
    projectRun.reset();
    running = false;
    interrupted = true;
    stateText = Text::tr("Не начато");
    showState();
}

void CProcessMonitor::writeLine(LineKind kind, const QString& text, const QString& detail)
{
    if (silentMode)
        return;
    journal->append(kind, text, detail);
    ++counts[kind];
    if (running)
        return;
    journal->showLatest();
    showCounts();
}

void CProcessMonitor::showDelivered(bool isBusy)
{
    journal->showNews(isBusy);
    showCounts();
    showTime();
}

void CProcessMonitor::finishRun()
{
    delete questionBox;
    journal->showLatest();
    showCounts();
    // An exception is told by the last line.
    if (!session->isFailed())
        journal->showGravest(getWorstLine());
    interrupted = session->isInterrupted();
    running = false;
    stages.clear();
    const QPointer<CProcessMonitor> self = this;
    ending = true;
    onThreadFinished();
    if (self.isNull())
        return;
    ending = false;
    projectRun.reset();
    showState();

    Q_EMIT runFinished();
    if (!self.isNull() && closeWanted)
        close();
}

QString CProcessMonitor::getWorstLine() const
{
    return {};
}

void CProcessMonitor::askToStop(bool thenClose)
{
    if (!running)
        return;
    if (!stopWanted && isQuestionWanted()) {
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
    const bool canStop = running && session != nullptr && !stopWanted;
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
}

void CProcessMonitor::showCounts()
{
    const auto count = [this](LineKind kind) {
        const auto found = counts.find(kind);
        return QString::number(found == counts.end() ? 0 : found->second);
    };
    countLabel->setText(Text::tr("Ошибок: %1, предупреждений: %2, сообщений: %3")
                            .arg(count(LineKind::Error), count(LineKind::Warning), count(LineKind::Message)));
}

void CProcessMonitor::showTime()
{
    if (running)
        timeLabel->setText(getTimeText(runTime.elapsed()));
}
