#pragma once

#include <cstddef>
#include <string>

namespace KestoHost {

/// Whether standard output is a terminal.
bool isOutputATerminal();

/// Whether standard error is a terminal on which a line can be written anew.
bool canRewriteLines();

/// How long a line there may be: one less than there are columns, since some terminals begin a new line after
/// the last one.
std::size_t lineLength();

/// Puts `text` in the place of the line that the cursor is in; an empty one clears it.
void rewriteLine(const std::string& text);

} // namespace KestoHost
