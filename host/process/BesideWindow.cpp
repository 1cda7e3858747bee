#include "host/process/BesideWindow.h"

#include <QApplication>
#include <QEventLoop>
#include <QScopeGuard>
#include <QWidget>

#include <algorithm>
#include <chrono>
#include <future>

namespace {

// Nobody notices a window that stands still for so long. Most work is done by then, and never meets a timer.
constexpr std::chrono::milliseconds kUnnoticed(15);

bool isWindowShown()
{
    if (qobject_cast<QApplication*>(QCoreApplication::instance()) == nullptr)
        return false;
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(),
                       [](const QWidget* window) { return window->isVisible(); });
}

} // namespace

void performBesideWindow(const std::function<void()>& work)
{
    if (!isWindowShown()) {
        work();
        return;
    }
    QEventLoop loop;
    std::future<void> end = std::async(std::launch::async, [&work, &loop] {
        // Also when the work throws. The event waits at the loop until that is entered.
        const auto atEnd =
            qScopeGuard([&loop] { QCoreApplication::postEvent(&loop, new QEvent(QEvent::Quit)); });
        work();
    });
    if (end.wait_for(kUnnoticed) != std::future_status::ready) {
        QApplication::setOverrideCursor(Qt::BusyCursor);
        const auto atEnd = qScopeGuard(&QApplication::restoreOverrideCursor);
        // Ends at once, and the work is waited for below, when the application is about to quit.
        loop.exec(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers);
    }
    end.get();
}
