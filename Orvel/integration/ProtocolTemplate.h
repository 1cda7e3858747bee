#pragma once

namespace orvel {

/// Copies the installed page template, with what lies beside it, into the application's temporary folder,
/// where pages and journals look for it. A failure leaves what is there.
void copyProtocolTemplate();

} // namespace orvel
