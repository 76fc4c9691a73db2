#pragma once

#include "ls/ContainerContents.h"

namespace KestoHost {

/// A table for people with a line for each part, in aligned columns. Control characters of names, and
/// bytes that are not UTF-8, become U+FFFD, so that none reaches the terminal.
std::string tableText(const ContainerContents& contents);

/// The one object of `--json`. Bytes that are not UTF-8 become U+FFFD.
std::string jsonText(const ContainerContents& contents);

} // namespace KestoHost
