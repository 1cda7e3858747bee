#pragma once

namespace orvel::apps {

/// Gives the standard streams that are closed a place. The first file to be opened would take it else, and
/// what is printed would go there. Printing to such a stream fails.
void occupyStandardStreams();

} // namespace orvel::apps
