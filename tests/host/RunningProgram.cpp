#include "RunningProgram.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <fcntl.h>
#include <pty.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

void check(bool succeeded, const char* what) {
    if (!succeeded)
        throw std::system_error(errno, std::generic_category(), what);
}

/// False at the end; a terminal whose other side is closed ends with an error.
bool readSome(const OpenFile& file, std::string& read) {
    std::array<char, 4096> chunk;
    const ssize_t count = ::read(file.get(), chunk.data(), chunk.size());
    check(count >= 0 || errno == EIO, "read");
    if (count > 0)
        read.append(chunk.data(), static_cast<std::size_t>(count));
    return count > 0;
}

std::string readAll(const OpenFile& file, std::string read) {
    while (file.get() >= 0 && readSome(file, read)) {
    }
    return read;
}

/// Signals as in a program that a person starts, whatever this one was started with.
class UsualSignals {
public:
    UsualSignals() {
        ::posix_spawnattr_init(&attributes);
        sigset_t kinds;
        ::sigemptyset(&kinds);
        for (const int kind : {SIGINT, SIGTERM, SIGHUP, SIGPIPE})
            ::sigaddset(&kinds, kind);
        ::posix_spawnattr_setsigdefault(&attributes, &kinds);
        ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    }
    ~UsualSignals() { ::posix_spawnattr_destroy(&attributes); }
    UsualSignals(const UsualSignals&) = delete;
    UsualSignals& operator=(const UsualSignals&) = delete;

    const posix_spawnattr_t* get() const { return &attributes; }

private:
    posix_spawnattr_t attributes;
};

pid_t start(std::vector<std::string> words, const std::array<int, 3>& files) {
    std::vector<char*> pointers;
    for (std::string& word : words)
        pointers.push_back(word.data());
    pointers.push_back(nullptr);
    const UsualSignals signals;
    posix_spawn_file_actions_t actions;
    ::posix_spawn_file_actions_init(&actions);
    for (int i = 0; i < 3; ++i)
        ::posix_spawn_file_actions_adddup2(&actions, files[static_cast<std::size_t>(i)], i);
    pid_t child = 0;
    errno = ::posix_spawnp(&child, words[0].c_str(), &actions, signals.get(), pointers.data(), environ);
    ::posix_spawn_file_actions_destroy(&actions);
    check(errno == 0, "posix_spawnp");
    return child;
}

} // namespace

OpenFile::OpenFile(OpenFile&& other) noexcept
    : file(std::exchange(other.file, -1)) {}

OpenFile& OpenFile::operator=(OpenFile&& other) noexcept {
    std::swap(file, other.file);
    return *this;
}

void OpenFile::close() {
    if (file >= 0)
        ::close(std::exchange(file, -1));
}

Connection makePipe() {
    std::array<int, 2> ends{};
    check(::pipe2(ends.data(), O_CLOEXEC) == 0, "pipe");
    return {OpenFile(ends[0]), OpenFile(ends[1])};
}

Connection makeTerminal(unsigned short columns) {
    int ours = -1;
    int theirs = -1;
    const winsize size = {.ws_row = 24, .ws_col = columns, .ws_xpixel = 0, .ws_ypixel = 0};
    check(::openpty(&ours, &theirs, nullptr, nullptr, &size) == 0, "openpty");
    Connection connection = {OpenFile(ours), OpenFile(theirs)};
    for (const int side : {ours, theirs})
        check(::fcntl(side, F_SETFD, FD_CLOEXEC) == 0, "fcntl");
    return connection;
}

RunningProgram::RunningProgram(const std::vector<std::string>& arguments, Options options)
    : output(std::move(options.output.reading))
    , errors(std::move(options.errors.reading)) {
    Connection pipe = makePipe();
    std::vector<std::string> words = std::move(options.before);
    words.emplace_back(KESTO_PROGRAM);
    words.insert(words.end(), arguments.begin(), arguments.end());
    child = start(std::move(words),
                  {pipe.reading.get(), options.output.writing.get(), options.errors.writing.get()});
    input = std::move(pipe.writing);
}

RunningProgram::~RunningProgram() {
    if (child == 0)
        return;
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
}

void RunningProgram::write(const std::string& text) const {
    check(::write(input.get(), text.data(), text.size()) == static_cast<ssize_t>(text.size()), "write");
}

void RunningProgram::sendSignal(int kind) const {
    check(::kill(child, kind) == 0, "kill");
}

ProgramRun RunningProgram::end() {
    ProgramRun run;
    run.output = readAll(output, std::move(outputRead));
    run.errors = readAll(errors, std::move(errorsRead));
    run.exitStatus = waitForEnd();
    return run;
}

int RunningProgram::waitForEnd() {
    int status = 0;
    check(::waitpid(std::exchange(child, 0), &status, 0) >= 0, "waitpid");
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

std::string RunningProgram::readLine(const OpenFile& file, std::string& read) {
    std::size_t length = 0;
    while ((length = read.find('\n')) == std::string::npos)
        if (!readSome(file, read))
            throw std::runtime_error("the program ended before its line: " + read);
    const std::string line = read.substr(0, length);
    read.erase(0, length + 1);
    return line;
}
