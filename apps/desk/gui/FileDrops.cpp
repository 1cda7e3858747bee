#include "apps/desk/gui/FileDrops.h"

#include <QApplication>
#include <QDockWidget>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

#include <utility>

namespace orvel::desk {

namespace {

QStringList findFiles(const QMimeData& data)
{
    QStringList files;
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile())
            files.append(url.toLocalFile());
    }
    return files;
}

} // namespace

FileDrops::FileDrops(QWidget& window, std::function<bool()> answer)
    : QObject(&window)
    , mayTake(std::move(answer))
{
    watch(window);
}

void FileDrops::watch(QWidget& window)
{
    window.setAcceptDrops(true);
    window.installEventFilter(this);
}

bool FileDrops::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ChildPolished) {
        auto* child = qobject_cast<QWidget*>(static_cast<QChildEvent*>(event)->child());
        // A dock may become a window later.
        if (child && (child->isWindow() || qobject_cast<QDockWidget*>(child)))
            watch(*child);
    }
    if (event->type() != QEvent::DragEnter && event->type() != QEvent::Drop)
        return QObject::eventFilter(watched, event);
    // Both are drops to Qt.
    auto* drop = static_cast<QDropEvent*>(event);
    const QStringList paths = findFiles(*drop->mimeData());
    if (paths.isEmpty() || QApplication::activeModalWidget() || !mayTake()) {
        drop->ignore();
        return true;
    }
    drop->acceptProposedAction();
    // The file manager waits for the end of the drag: no questions before that.
    if (event->type() == QEvent::Drop)
        QMetaObject::invokeMethod(
            this, [this, paths] { Q_EMIT dropped(paths); }, Qt::QueuedConnection);
    return true;
}

} // namespace orvel::desk
