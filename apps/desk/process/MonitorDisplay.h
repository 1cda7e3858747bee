#pragma once

#include <QObject>
#include <QRect>

class QTimer;
class QWidget;

namespace orvel::desk {

/// Shows the progress window where and as long as it is of use: not for a moment only, beside the desk where
/// the screen has room, and after a run with nothing to look at not any more.
class MonitorDisplay : public QObject
{
    Q_OBJECT

public:
    /// Both windows outlive the object.
    MonitorDisplay(QWidget& monitorWindow, QWidget& deskWindow);

    /// A run has begun. The window comes when the run takes longer than a moment.
    void beginRun();
    /// A run is over. The window goes again if there is nothing to look at, and otherwise is shown.
    void endRun(bool hasProblems);
    /// The user wants to see the window: it stays until it is closed.
    void showWanted();

    /// Where a window of that size stands beside the desk on that screen: on the side with enough room, or
    /// else in the corner where it covers least of the desk's upper part.
    static QRect findPlace(const QSize& size, const QRect& desk, const QRect& screen);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void show();

    QWidget& monitor;
    QWidget& desk;
    QTimer* delay;
    bool isWanted = false; ///< by the user
    bool isPlaced = false;
};

} // namespace orvel::desk
