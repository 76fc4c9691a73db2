#pragma once

#include "ExitStatus.h"

namespace KestoHost {

/// Reads the command line, runs the command that it names and reports on standard output and error.
/// Throws nothing.
ExitStatus runProgram(int argc, const char* const* argv) noexcept;

} // namespace KestoHost
