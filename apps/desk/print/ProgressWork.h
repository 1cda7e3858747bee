#pragma once

#include <QString>

#include <functional>

class QWidget;

namespace orvel::desk {

/// Performs work in another thread. If it is not done at once, a dialog shows how much of it is, and lets the
/// user stop it; nothing else can be done meanwhile.
///
/// @param work  gets a function that it tells the percentage, and that answers false when it is to stop
/// @return whether the work was done
/// @throws whatever the work throws
bool performWithProgress(QWidget* parent, const QString& title,
                         const std::function<void(const std::function<bool(int percent)>& progress)>& work);

} // namespace orvel::desk
