#pragma once

#include <QStringList>

class QWidget;

namespace orvel::desk {

class Document;

/// Dialogs that let the user choose a file. Each gives an empty path if the user gave up.
namespace filedialogs {

/// Whether the desk imports the file, by what it holds; it opens others as projects.
bool isNetworkFile(const QString& path);
/// Whether the file is text that needs a template to be imported.
bool isTableFile(const QString& path);

/// Why a window does not read what is there under that name: a pipe or a device would hold it up. Empty for
/// files, folders, and where there is nothing.
QString describeNoFile(const QString& path);

/// A project or a network.
QString chooseFile(QWidget* parent);
/// Files to be imported, which may be text files, too.
QStringList chooseNetworks(QWidget* parent);
/// Text files to be imported by a template.
QStringList chooseTables(QWidget* parent);
/// Where to save the project; with its suffix.
QString chooseProjectTarget(QWidget* parent, const QString& projectName);
/// Where to export, with the suffix of the chosen format.
/// @param document  what is to be exported: only formats that have something of it are offered
QString chooseExportTarget(QWidget* parent, const Document& document);
/// Where to save a drawing: an SVG or PDF file.
/// @param name  what to call it, without a suffix
QString chooseDrawingTarget(QWidget* parent, const QString& title, const QString& name);
/// Where to save what could be printed, with a suffix that tells what the file is.
QString chooseReportTarget(QWidget* parent, const QString& name);

} // namespace filedialogs

} // namespace orvel::desk
