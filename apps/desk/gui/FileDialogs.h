#pragma once

#include <QString>

class QWidget;

namespace orvel::desk {

/// Dialogs that let the user choose a file. Each gives an empty path if the user gave up.
namespace filedialogs {

/// Whether the desk imports the file, by its suffix or its content; it opens others as projects.
bool isNetworkFile(const QString& path);

/// A project or a network.
QString chooseFile(QWidget* parent);
QString chooseNetwork(QWidget* parent);
/// Where to save the project; with its suffix.
QString chooseProjectTarget(QWidget* parent, const QString& projectName);
/// Where to export, with the suffix of the chosen format.
/// @param hasResults whether there are adjusted heights; without them the first format that needs none is
///                   offered
QString chooseExportTarget(QWidget* parent, const QString& projectName, bool hasResults);

} // namespace filedialogs

} // namespace orvel::desk
