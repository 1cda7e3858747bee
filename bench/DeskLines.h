#pragma once

namespace orvel::desk {
class Document;
}

namespace orvel::bench {

/// Gives the document a protocol of so many lines of all kinds, each about one of its sections or points.
void writeDeskLines(desk::Document& document, int count);

} // namespace orvel::bench
