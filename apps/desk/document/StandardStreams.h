#pragma once

#include <QByteArray>
#include <QString>

namespace orvel::desk {

/// Files that the command line names: "-" stands for the standard input or output.
namespace standardstreams {

bool isStream(const QString& path);
/// Whether what is written there goes to the standard output, by whichever of its names.
bool isOutput(const QString& path);

/// The path, or what to call the standard input; as plain text.
QString describeInput(const QString& path);
QString describeOutput(const QString& path);

/// Writes a file, or to the standard output.
///
/// @throws qor::CFileException
void write(const QString& path, const QByteArray& bytes);

} // namespace standardstreams

} // namespace orvel::desk
