#pragma once

#include "host/process/JournalWriter.h"

#include <QElapsedTimer>
#include <QWidget>

class QLabel;
class QTextBrowser;
class QTimer;

/// The journal of a progress window: its lines, and a note when the earliest are left out.
///
/// A journal that nobody sees lays out nothing, and one that is seen lays out the end. The lines before
/// follow when somebody turns to the journal: with the mouse or the keyboard, or by requestAll().
class JournalPanel : public QWidget
{
    Q_OBJECT

public:
    /// An empty journal; @p parent owns it.
    explicit JournalPanel(QWidget* parent = nullptr);
    ~JournalPanel() override;

    /// Where the lines are shown.
    QTextBrowser* getBrowser() const { return browser; }

    /// Empties the journal.
    void clear();
    /// Appends a line, to be shown by one of the operations below.
    void append(LineKind kind, const QString& text, const QString& detail);
    /// Shows what has come, as far as somebody sees it.
    /// @param isBusy  more comes already, so that most of it will never be seen: only now and then
    void showNews(bool isBusy);
    /// Shows what has come, now: a journal of a few hundred lines completely, seen or not.
    void showLatest();
    /// Turns to a line of the gravest kind, error or warning, as soon as somebody sees the journal: to the
    /// one with that text, if it is kept, otherwise to the first. A journal that the user has scrolled stays
    /// as it is.
    void showGravest(const QString& worst = {});
    /// Fills the journal with all lines that are kept, a large one bit by bit.
    void requestAll();
    /// The journal with all lines as a page in which nothing is loaded and nothing runs, whatever they hold.
    QByteArray makePage();

protected:
    void showEvent(QShowEvent* event) override; ///< Shows the lines that came meanwhile.
    void enterEvent(QEvent* event) override;    ///< The pointer comes in.
    /// Looks at what the user does in the browser.
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fill();
    void turnToGravest();
    void showNote();

    QLabel* note;
    QTextBrowser* browser;
    JournalWriter* writer;
    QTimer* fillTimer;
    QElapsedTimer sinceShown;
    bool isAllWanted = false;
    bool isGravestWanted = false;
    QString worstText; ///< of the line that is wanted then
};
