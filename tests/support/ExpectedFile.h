#pragma once

#include <QString>

namespace orvel::test {

/// What tells a text from the content of a file: the number of the first line that differs, and that line as
/// it is expected and as it is. Empty where nothing differs. A file that is not there is expected to be
/// empty.
///
/// With ORVEL_UPDATE_EXPECTED in the environment the file is written anew instead, and nothing differs; see
/// tools/update-expected.sh.
QString compareWithFile(const QString& text, const QString& path);

} // namespace orvel::test
