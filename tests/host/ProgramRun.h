#pragma once

#include <string>
#include <vector>

/// What a run of a program came to.
struct ProgramRun {
    int exitStatus = -1; ///< 128 and the signal's number for one that a signal ended
    std::string output;  ///< what it wrote to standard output
    std::string errors;  ///< what it wrote to standard error
};

struct RunOptions {
    std::vector<std::string> before = {};      ///< words in front of the program: a wrapper that runs it
    std::vector<std::string> environment = {}; ///< "NAME=value", besides this process's own
    std::string input = {};                    ///< what stands on standard input
    std::string outputFile = {}; ///< where standard output goes, instead of `ProgramRun::output`
};

/// Runs `kesto-thumbnail` with these arguments to its end.
ProgramRun runProgram(const std::vector<std::string>& arguments, const RunOptions& options = {});
