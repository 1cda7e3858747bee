#pragma once

#include <QObject>
#include <QStringList>

#include <functional>

namespace orvel::desk {

/// Takes the files that a file manager drops on a window, or on one of its dialogs and docks.
class FileDrops : public QObject
{
    Q_OBJECT

public:
    /// @param answer  whether files are taken at this moment; while a question stands they never are
    FileDrops(QWidget& window, std::function<bool()> answer);

    /// Files that are dropped on a window that stands for itself are dropped here, too.
    void watch(QWidget& window);

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void dropped(const QStringList& paths);

private:
    std::function<bool()> mayTake;
};

} // namespace orvel::desk
