#pragma once

#include <QString>

namespace orvel::desk::linepage {

/// Makes a page that leads to a protocol's page with something to be told in the address, and lies beside
/// that. A link with the same in it would do, but on its way to the browser the system drops what stands
/// behind the name of a file.
///
/// @param page  path of the protocol's page
/// @param text  of the line to be shown, without mark-up; empty for none
/// @param isOutdated  what the run computed with has changed since, as the page is to say
/// @return the path of what was made
/// @throws qor::CFileException
QString write(const QString& page, const QString& text, bool isOutdated = false);

} // namespace orvel::desk::linepage
