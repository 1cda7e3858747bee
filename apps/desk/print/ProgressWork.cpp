#include "apps/desk/print/ProgressWork.h"

#include "apps/desk/Desk.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QProgressDialog>
#include <QScopeGuard>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <future>

namespace orvel::desk {

namespace {

// Work that is done so soon needs no dialog.
constexpr std::chrono::milliseconds kUnnoticed(100);
constexpr std::chrono::milliseconds kRefresh(50);

} // namespace

bool performWithProgress(QWidget* parent, const QString& title,
                         const std::function<void(const std::function<bool(int percent)>& progress)>& work)
{
    std::atomic<int> percentDone(0);
    std::atomic<bool> isStopped(false);
    std::atomic<bool> isOver(false);
    const auto progress = [&](int percent) {
        percentDone = percent;
        return !isStopped;
    };
    QEventLoop loop;
    std::future<void> end = std::async(std::launch::async, [&] {
        // Also when the work throws. The event waits at the loop until that is entered.
        const auto atEnd = qScopeGuard([&] {
            isOver = true;
            QCoreApplication::postEvent(&loop, new QEvent(QEvent::Quit));
        });
        work(progress);
    });
    if (end.wait_for(kUnnoticed) != std::future_status::ready) {
        QProgressDialog dialog(title, Desk::tr("Остановить"), 0, 100, parent);
        dialog.setWindowTitle(title);
        dialog.setWindowModality(Qt::ApplicationModal);
        dialog.setAutoReset(false);
        dialog.setAutoClose(false);
        QObject::connect(&dialog, &QProgressDialog::canceled, [&isStopped] { isStopped = true; });
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &dialog, [&] { dialog.setValue(percentDone); });
        timer.start(kRefresh);
        dialog.show();
        loop.exec();
        // The application may be about to quit, which ends the loop.
        if (!isOver)
            isStopped = true;
    }
    end.get();
    return !isStopped;
}

} // namespace orvel::desk
