#pragma once

namespace KestoHost {

/// Fills the numbers of those of standard input, output and error that the caller has closed. Else the next
/// files to be opened would get them, and what is meant for a terminal would go into a picture. Reading or
/// writing them fails as it does without this. Requires: no thread has been started.
void keepStandardNumbers() noexcept;

} // namespace KestoHost
