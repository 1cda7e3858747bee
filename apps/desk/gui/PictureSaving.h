#pragma once

#include <QByteArray>
#include <QString>

#include <functional>

class QWidget;

namespace orvel::desk {

/// Saves pictures as files, SVG or PDF.
namespace picturesaving {

/// Writes a picture as PDF where the file's suffix says so, else as SVG.
///
/// @throws exceptions::Error
void write(const QString& path, const std::function<QByteArray()>& toSvg,
           const std::function<QByteArray()>& toPdf);

/// Asks for a file and saves there, if the user does not give up. Failures are told.
/// @param name  of the picture, for the file's
void chooseAndSave(QWidget* parent, const QString& title, const QString& name,
                   const std::function<void(const QString& path)>& save);

} // namespace picturesaving

} // namespace orvel::desk
