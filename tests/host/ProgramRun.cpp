#include "ProgramRun.h"

#include "support/TempFolder.h"

#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

std::vector<char*> pointersTo(std::vector<std::string>& words) {
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> environmentWith(const std::vector<std::string>& more) {
    std::vector<std::string> all = more;
    for (char** entry = environ; *entry; ++entry)
        all.emplace_back(*entry);
    return all;
}

class StandardFiles {
public:
    StandardFiles(const std::string& input, const std::string& output, const std::string& errors) {
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, input.c_str(), O_RDONLY, 0);
        ::posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, output.c_str(), O_WRONLY | O_CREAT, 0600);
        ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, errors.c_str(), O_WRONLY | O_CREAT, 0600);
    }
    ~StandardFiles() { ::posix_spawn_file_actions_destroy(&actions); }
    StandardFiles(const StandardFiles&) = delete;
    StandardFiles& operator=(const StandardFiles&) = delete;

    const posix_spawn_file_actions_t* get() const { return &actions; }

private:
    posix_spawn_file_actions_t actions;
};

int waitFor(pid_t child) {
    int status = 0;
    if (::waitpid(child, &status, 0) != child)
        throw std::runtime_error("the program was lost");
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

} // namespace

ProgramRun runProgram(const std::vector<std::string>& arguments, const RunOptions& options) {
    const TestSupport::TempFolder folder;
    const std::string output = options.outputFile.empty() ? (folder / "output").string() : options.outputFile;
    const std::string errors = (folder / "errors").string();

    std::vector<std::string> words = options.before;
    words.emplace_back(KESTO_PROGRAM);
    words.insert(words.end(), arguments.begin(), arguments.end());
    std::vector<std::string> environment = environmentWith(options.environment);

    const StandardFiles files(folder.write("input", options.input), output, errors);
    pid_t child = 0;
    const int failure = ::posix_spawnp(&child, words[0].c_str(), files.get(), nullptr,
                                       pointersTo(words).data(), pointersTo(environment).data());
    if (failure != 0)
        throw std::system_error(failure, std::generic_category(), words[0]);

    ProgramRun run;
    run.exitStatus = waitFor(child);
    if (options.outputFile.empty())
        run.output = TestSupport::readFile(output);
    run.errors = TestSupport::readFile(errors);
    return run;
}
