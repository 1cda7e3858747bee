#include "host/process/BesideWindow.h"

#include <QApplication>
#include <QEventLoop>
#include <QWidget>

#include <algorithm>
#include <chrono>
#include <future>
#include <memory>

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

/// The cursor of a program that works, as long as this lives.
class BusyCursor
{
public:
    BusyCursor() { QApplication::setOverrideCursor(Qt::BusyCursor); }
    ~BusyCursor() { QApplication::restoreOverrideCursor(); }

    BusyCursor(const BusyCursor&) = delete;
    BusyCursor& operator=(const BusyCursor&) = delete;
};

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
        const auto quit = [](QEventLoop* each) {
            QMetaObject::invokeMethod(each, &QEventLoop::quit, Qt::QueuedConnection);
        };
        const std::unique_ptr<QEventLoop, decltype(quit)> atEnd(&loop, quit);
        work();
    });
    if (end.wait_for(kUnnoticed) != std::future_status::ready) {
        const BusyCursor cursor;
        // Ends at once, and the work is waited for below, when the application is about to quit.
        loop.exec(QEventLoop::ExcludeUserInputEvents | QEventLoop::ExcludeSocketNotifiers);
    }
    end.get();
}
