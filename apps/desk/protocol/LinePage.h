#pragma once

#include <QString>

namespace orvel::desk::linepage {

/// Makes a page that leads to a line of a protocol's page, and lies beside that. A link with the line in it
/// would do the same, but on its way to the browser the system drops what stands behind the name of a file.
///
/// @param page  path of the protocol's page
/// @param text  of the line, without mark-up
/// @return the path of what was made
/// @throws qor::CFileException
QString write(const QString& page, const QString& text);

} // namespace orvel::desk::linepage
