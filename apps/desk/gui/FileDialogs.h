#pragma once

#include <QString>

class QWidget;

namespace orvel::desk {

class Document;

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
/// @param document  what is to be exported: only formats that have something of it are offered
QString chooseExportTarget(QWidget* parent, const Document& document);

} // namespace filedialogs

} // namespace orvel::desk
