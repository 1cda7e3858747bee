#include "apps/desk/process/MonitorDisplay.h"

#include <QEvent>
#include <QScreen>
#include <QTimer>
#include <QWidget>

#include <array>

namespace orvel::desk {

namespace {

// A window that is gone sooner only startles.
constexpr int kMomentMs = 400;

} // namespace

MonitorDisplay::MonitorDisplay(QWidget& monitorWindow, QWidget& deskWindow)
    : monitor(monitorWindow)
    , desk(deskWindow)
    , delay(new QTimer(this))
{
    delay->setSingleShot(true);
    delay->setInterval(kMomentMs);
    connect(delay, &QTimer::timeout, this, &MonitorDisplay::show);
    monitor.installEventFilter(this);
}

void MonitorDisplay::beginRun()
{
    if (!monitor.isVisible())
        delay->start();
}

void MonitorDisplay::endRun(bool hasProblems)
{
    delay->stop();
    if (hasProblems)
        show();
    else if (!isWanted)
        monitor.hide();
}

void MonitorDisplay::showWanted()
{
    isWanted = true;
    show();
    monitor.raise();
    monitor.activateWindow();
}

QRect MonitorDisplay::findPlace(const QSize& size, const QRect& desk, const QRect& screen)
{
    const std::array<QPoint, 4> beside = {
        QPoint(desk.right() + 1, desk.top()), QPoint(desk.left() - size.width(), desk.top()),
        QPoint(desk.left(), desk.bottom() + 1), QPoint(desk.left(), desk.top() - size.height())};
    for (const QPoint& place : beside) {
        const QRect rectangle(place, size);
        if (screen.contains(rectangle))
            return rectangle;
    }
    const QPoint corner(screen.right() - size.width() + 1, screen.bottom() - size.height() + 1);
    return {corner, size};
}

bool MonitorDisplay::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Close)
        isWanted = false;
    return QObject::eventFilter(watched, event);
}

/// Shows the window, at first beside the desk; afterwards where the user has put it.
void MonitorDisplay::show()
{
    if (!isPlaced) {
        const QRect frame = desk.frameGeometry();
        monitor.move(findPlace(monitor.size(), frame, desk.screen()->availableGeometry()).topLeft());
        isPlaced = true;
    }
    // The next key is meant for the desk, unless somebody has asked for this window.
    monitor.setAttribute(Qt::WA_ShowWithoutActivating, !isWanted);
    monitor.show();
}

} // namespace orvel::desk
