#pragma once

#include <QString>

class QIODevice;

/// Writes a page as UTF-8 without a byte order mark, piece by piece, since a second copy of a large page is
/// memory for nothing. A failed write shows in the device's error.
void writeUtf8(const QString& html, QIODevice& device);
