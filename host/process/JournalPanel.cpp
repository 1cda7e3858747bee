#include "host/process/JournalPanel.h"

#include "host/process/JournalBrowser.h"

#include <QCoreApplication>
#include <QEvent>
#include <QLabel>
#include <QLocale>
#include <QScrollBar>
#include <QTextDocument>
#include <QTimer>
#include <QVBoxLayout>

#include <chrono>
#include <utility>

namespace {

// How long the journal may be worked on at a time.
constexpr std::chrono::milliseconds kBudget{10};
// While lines pour in, most of them will never be seen: a few now and then are.
constexpr std::chrono::milliseconds kBusyInterval{100};
// So many lines are laid out at once when a run ends, seen or not.
constexpr int kSmallJournal = 500;
constexpr std::chrono::hours kNoLimit{1};

// Colours that can be told from both a light and a dark background carry the marks only; texts keep the
// colours of the palette.
const char* const kStyle = "p { margin: 1px 0px 1px 0px; }"
                           ".error .mark { color: #d9363e; }"
                           ".warning .mark { color: #c77700; }"
                           ".message .mark { color: #2f7fd1; }"
                           ".error { font-weight: 600; }"
                           ".detail { font-style: italic; }";

struct Text
{
    Q_DECLARE_TR_FUNCTIONS(Host)
};

} // namespace

JournalPanel::JournalPanel(QWidget* parent)
    : QWidget(parent)
    , note(new QLabel(this))
    , browser(new JournalBrowser(this))
    , writer(new JournalWriter(browser))
    , fillTimer(new QTimer(this))
{
    writer->setParent(this);
    note->setWordWrap(true);
    note->hide();
    browser->setOpenLinks(false);
    browser->setAccessibleName(Text::tr("Журнал"));
    browser->document()->setDefaultStyleSheet(QLatin1String(kStyle));
    browser->installEventFilter(this);
    connect(browser->verticalScrollBar(), &QScrollBar::actionTriggered, this, &JournalPanel::requestAll);
    setFocusProxy(browser);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(note);
    layout->addWidget(browser, 1);

    fillTimer->setSingleShot(true);
    connect(fillTimer, &QTimer::timeout, this, &JournalPanel::fill);
}

JournalPanel::~JournalPanel() = default;

void JournalPanel::clear()
{
    fillTimer->stop();
    isAllWanted = false;
    isGravestWanted = false;
    writer->clear();
    sinceShown.start();
    showNote();
}

void JournalPanel::append(LineKind kind, const QString& text, const QString& detail)
{
    writer->append(kind, text, detail);
}

void JournalPanel::showNews(bool isBusy)
{
    showNote();
    if (!isVisible() && !isAllWanted)
        return;
    const bool isFlood = isBusy || writer->getNewCount() > JournalWriter::kNewestCount;
    if (isFlood && !sinceShown.hasExpired(kBusyInterval.count()))
        return;
    const bool isShown = writer->flush(kBudget, JournalWriter::Extent::Newest);
    sinceShown.start();
    if (!isShown || (isAllWanted && !isBusy))
        fillTimer->start(0);
}

void JournalPanel::showLatest()
{
    if (writer->getLineCount() <= kSmallJournal)
        writer->flush(kNoLimit);
    else if (isVisible() || isAllWanted)
        fill();
    showNote();
}

void JournalPanel::showGravest(const QString& worst)
{
    isGravestWanted = true;
    worstText = worst;
    if (isVisible())
        turnToGravest();
}

void JournalPanel::turnToGravest()
{
    if (!std::exchange(isGravestWanted, false) || !writer->isFollowing())
        return;
    if (writer->turnToGravest(kBudget, worstText))
        fillTimer->start(0);
}

void JournalPanel::requestAll()
{
    // Somebody turns to the journal and goes where he wants.
    isGravestWanted = false;
    if (writer->isComplete())
        return;
    isAllWanted = true;
    fill();
}

QByteArray JournalPanel::makePage()
{
    writer->flush(kNoLimit);
    QString html = browser->document()->toHtml("utf-8");
    html.replace(QLatin1String("<head>"),
                 QLatin1String("<head><meta http-equiv=\"Content-Security-Policy\" "
                               "content=\"default-src 'none'; style-src 'unsafe-inline'\" />"));
    return html.toUtf8();
}

void JournalPanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    fillTimer->start(0);
}

void JournalPanel::enterEvent(QEvent* event)
{
    QWidget::enterEvent(event);
    requestAll();
}

bool JournalPanel::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == browser && event->type() == QEvent::KeyPress)
        requestAll();
    return QWidget::eventFilter(watched, event);
}

void JournalPanel::fill()
{
    const JournalWriter::Extent extent =
        isAllWanted ? JournalWriter::Extent::All : JournalWriter::Extent::Newest;
    isAllWanted = false; // until that is wanted again, maybe by a listener
    const bool isShown = writer->flush(kBudget, extent);
    isAllWanted = isAllWanted || (!isShown && extent == JournalWriter::Extent::All);
    showNote();
    if (!isShown || isAllWanted)
        fillTimer->start(0);
    else if (isVisible())
        turnToGravest();
}

void JournalPanel::showNote()
{
    const qint64 omitted = writer->getOmittedCount();
    note->setVisible(omitted > 0);
    if (omitted == 0)
        return;
    const QLocale locale;
    note->setText(Text::tr("Показаны последние строки, не более %1. Более ранние строки (%2) есть в "
                           "протоколе, если обработка не остановлена.")
                      .arg(locale.toString(JournalWriter::kLineLimit), locale.toString(omitted)));
}
