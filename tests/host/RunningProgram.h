#pragma once

#include "ProgramRun.h"

#include <string>
#include <vector>

#include <sys/types.h>

/// A file descriptor, closed with its owner.
class OpenFile {
public:
    explicit OpenFile(int opened = -1)
        : file(opened) {}
    ~OpenFile() { close(); }
    OpenFile(OpenFile&& other) noexcept;
    OpenFile& operator=(OpenFile&& other) noexcept;

    int get() const { return file; }
    void close();

private:
    int file;
};

/// The two ends of a pipe, or of a terminal: what is written to `writing` is read from `reading`.
struct Connection {
    OpenFile reading;
    OpenFile writing;
};

Connection makePipe();
/// `writing` is a terminal of that many columns; 0: of a width that it does not know.
Connection makeTerminal(unsigned short columns);

/// `kesto-thumbnail` at work, on pipes: what it does can be waited for, and it can be sent signals. A run
/// that is not ended is killed.
class RunningProgram {
public:
    struct Options {
        std::vector<std::string> before = {}; ///< words in front of the program: a wrapper that becomes it
        Connection output = makePipe();
        Connection errors = makePipe();
    };

    explicit RunningProgram(const std::vector<std::string>& arguments)
        : RunningProgram(arguments, Options()) {}
    RunningProgram(const std::vector<std::string>& arguments, Options options);
    ~RunningProgram();
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    void write(const std::string& text) const;
    void closeInput() { input.close(); }
    void sendSignal(int kind) const;

    /// Waits for a whole line, and gives it without its end.
    std::string readOutputLine() { return readLine(output, outputRead); }
    std::string readErrorLine() { return readLine(errors, errorsRead); }

    /// Waits for the end, and gives what was not read before. Not with the input open, unless the program
    /// ends by itself.
    ProgramRun end();

    /// Waits for the end without reading, and gives the exit status.
    int waitForEnd();

private:
    static std::string readLine(const OpenFile& file, std::string& read);

    OpenFile input;
    OpenFile output;
    OpenFile errors;
    std::string outputRead; ///< read, but not given
    std::string errorsRead;
    pid_t child = 0;
};
