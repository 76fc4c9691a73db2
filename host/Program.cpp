#include "Program.h"

#include "BatchCommand.h"
#include "CalloutCommand.h"
#include "LsCommand.h"
#include "PackCommand.h"
#include "SheetCommand.h"
#include "StandardFiles.h"
#include "ThumbCommand.h"
#include "Version.h"

#include <CLI/App.hpp>
#include <CLI/Config.hpp>
#include <CLI/Formatter.hpp>

#include <cstdio>
#include <exception>

namespace KestoHost {

namespace {

using AddCommand = void (*)(CLI::App& program, ExitStatus& status);
constexpr AddCommand commands[] = {addThumbCommand,   addBatchCommand, addSheetCommand,
                                   addCalloutCommand, addLsCommand,    addPackCommand};

constexpr const char* footer = "Exit status: 0 done, 1 a picture was not written (the reason is on standard "
                               "error), 2 wrong usage.\nA name that begins with a dash goes after --.";

ExitStatus refuseUsage(const CLI::App& program, const CLI::ParseError& error) {
    const auto used = program.get_subcommands();
    const std::string name =
        used.empty() ? program.get_name() : program.get_name() + " " + used[0]->get_name();
    std::fprintf(stderr, "%s: %s\nSee %s --help\n", name.c_str(), error.what(), name.c_str());
    return ExitStatus::WrongUsage;
}

/// Wrong usage whose cause is not in the options: a word where a command is expected.
ExitStatus refuseWord(const char* word) {
    std::fprintf(stderr, "kesto-thumbnail: there is no command \"%s\"\nSee kesto-thumbnail --help\n", word);
    return ExitStatus::WrongUsage;
}

bool isCommand(const CLI::App& program, const std::string& word) {
    return !program.get_subcommands([&word](const CLI::App* command) { return command->get_name() == word; })
                .empty();
}

ExitStatus parseAndRun(int argc, const char* const* argv) {
    ExitStatus status = ExitStatus::Done;
    CLI::App program("Makes thumbnails of images, documents, videos and projects.", "kesto-thumbnail");
    program.footer(footer);
    program.set_version_flag("--version", versionText,
                             "Show versions and the kinds of pictures that can be read");
    // At most one, so that an input named like a command is an input.
    program.require_subcommand(1);
    for (const AddCommand add : commands)
        add(program, status);
    if (argc > 1 && argv[1][0] != '-' && !isCommand(program, argv[1]))
        return refuseWord(argv[1]);
    try {
        program.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() != static_cast<int>(CLI::ExitCodes::Success))
            return refuseUsage(program, error);
        program.exit(error);
    }
    return status;
}

} // namespace

ExitStatus runProgram(int argc, const char* const* argv) noexcept {
    keepStandardNumbers();
    try {
        const ExitStatus status = parseAndRun(argc, argv);
        if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
            return status;
        std::perror("kesto-thumbnail: standard output");
    } catch (const std::exception& error) {
        std::fprintf(stderr, "kesto-thumbnail: %s\n", error.what());
    }
    return ExitStatus::NoThumbnail;
}

} // namespace KestoHost
