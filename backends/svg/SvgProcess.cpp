#include "svg/SvgProcess.h"

#include "platform/Threading.h"
#include "system/Environment.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace SvgBackend {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::string_view programName = "kesto-svg";

/// Read anew each time: what it takes is nothing beside a drawing.
std::chrono::milliseconds timeLimit() {
    constexpr std::int64_t usual = 10'000;
    constexpr std::int64_t longest = 1'000'000'000;
    return std::chrono::milliseconds(
        std::min(SystemBackend::positiveFromEnvironment("KESTO_SVG_TIME_LIMIT_MS", usual), longest));
}

/// Documents that took too long or more than librsvg could bear, and what is to be said of them. Frames of a
/// project come by the thousand.
class HopelessSvgs {
public:
    std::optional<std::string> find(std::string_view document) KESTO_EXCLUDES(lock) {
        const std::size_t hash = std::hash<std::string_view>()(document);
        const MutexLock held(lock);
        const auto found = messages.find(hash);
        return found == messages.end() ? std::nullopt : std::optional(found->second);
    }

    void add(std::string_view document, const std::string& message) KESTO_EXCLUDES(lock) {
        const std::size_t hash = std::hash<std::string_view>()(document);
        const MutexLock held(lock);
        messages.emplace(hash, message);
    }

private:
    Mutex lock;
    std::unordered_map<std::size_t, std::string> messages KESTO_GUARDED_BY(lock);
};

HopelessSvgs& hopelessSvgs() {
    static HopelessSvgs documents;
    return documents;
}

tl::unexpected<SvgError> noMemory() {
    return tl::unexpected(SvgError{SvgError::Kind::NoMemory, "SVG: there is not enough memory for it"});
}

tl::unexpected<SvgError> tooMuch(std::string message) {
    return tl::unexpected(SvgError{SvgError::Kind::TooMuch, std::move(message)});
}

std::string programPath() {
    Dl_info module{};
    if (::dladdr(reinterpret_cast<const void*>(&measureApart), &module) == 0)
        return {};
    const std::string path = module.dli_fname;
    return path.substr(0, path.rfind('/') + 1).append(programName);
}

/// The standard files of the program.
class StandardFiles {
public:
    StandardFiles(int input, int output) {
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
        ::posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
        // What librsvg says before it gives up is nothing for this program's own messages.
        ::posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    }
    ~StandardFiles() { ::posix_spawn_file_actions_destroy(&actions); }
    StandardFiles(const StandardFiles&) = delete;
    StandardFiles& operator=(const StandardFiles&) = delete;

    const posix_spawn_file_actions_t* get() const { return &actions; }

private:
    posix_spawn_file_actions_t actions{};
};

/// The program at work. One that has not answered is ended.
class Painter {
public:
    static Result<Painter> start(int exchange) {
        std::array<int, 2> ends = {-1, -1};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0)
            return noMemory();
        Descriptor reading(ends[0]);
        const Descriptor writing(ends[1]);
        const StandardFiles files(exchange, writing.get());
        std::string path = programPath();
        const std::array<char*, 2> arguments = {path.data(), nullptr};
        pid_t started = 0;
        const int status =
            ::posix_spawn(&started, path.c_str(), files.get(), nullptr, arguments.data(), environ);
        if (status == ENOENT || status == EACCES)
            return tl::unexpected(SvgError{SvgError::Kind::NotInstalled,
                                           std::string(programName) + ": this program is not installed"});
        if (status != 0)
            return noMemory();
        return Painter(started, std::move(reading));
    }

    Painter(Painter&& other) noexcept
        : process(std::exchange(other.process, 0))
        , answers(std::move(other.answers))
        , isAtWork(other.isAtWork) {}
    Painter& operator=(Painter&&) = delete;
    ~Painter() {
        if (process == 0)
            return;
        if (isAtWork)
            ::kill(process, SIGKILL);
        while (::waitpid(process, nullptr, 0) < 0 && errno == EINTR)
            ;
    }

    enum class Answer : char { Failed = 0, Done = 1, Died, TooLate };

    Answer await(std::chrono::milliseconds limit) {
        const Clock::time_point end = Clock::now() + limit;
        pollfd answer = {answers.get(), POLLIN, 0};
        int ready = 0;
        do {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
            ready = ::poll(&answer, 1, left.count() > 0 ? static_cast<int>(left.count()) : 0);
        } while (ready < 0 && errno == EINTR);
        char told = 0;
        isAtWork = ready < 1;
        if (isAtWork)
            return Answer::TooLate;
        if (::read(answers.get(), &told, 1) != 1)
            return Answer::Died;
        return told == 1 ? Answer::Done : Answer::Failed;
    }

private:
    Painter(pid_t started, Descriptor reading)
        : process(started)
        , answers(std::move(reading)) {}

    pid_t process;
    Descriptor answers;
    bool isAtWork = true;
};

Result<void> askProgram(const SvgExchange& exchange, std::string_view document) {
    auto painter = Painter::start(exchange.descriptor());
    if (!painter)
        return tl::unexpected(painter.error());
    std::string message;
    switch (painter->await(timeLimit())) {
    case Painter::Answer::Done:
        return {};
    case Painter::Answer::Failed:
        message = exchange.message();
        return message.empty() ? noMemory() : damaged(std::move(message));
    case Painter::Answer::Died:
        message = "SVG: it takes more than librsvg can bear";
        break;
    case Painter::Answer::TooLate:
        message = "SVG: it takes longer than the time limit (KESTO_SVG_TIME_LIMIT_MS) allows";
        break;
    }
    hopelessSvgs().add(document, message);
    return tooMuch(std::move(message));
}

Result<SvgExchange> exchangeFor(SvgRequest request, const SvgDocument& document) {
    const std::string_view original = document.original();
    if (const auto message = hopelessSvgs().find(original))
        return tooMuch(*message);
    request.processorSeconds = static_cast<std::int32_t>(timeLimit() / std::chrono::seconds(1)) + 1;
    auto exchange = SvgExchange::create(request, document);
    if (!exchange)
        return noMemory();
    if (const auto answered = askProgram(*exchange, original); !answered)
        return tl::unexpected(answered.error());
    return std::move(*exchange);
}

} // namespace

Result<SvgSize> measureApart(std::string_view text) {
    return exchangeFor({}, {text}).map([](const SvgExchange& exchange) { return exchange.size(); });
}

Result<SvgExchange> drawApart(const SvgDocument& document, const SvgPlace& place,
                              const cairo_matrix_t& matrix, int width, int height) {
    SvgRequest request;
    request.matrix = matrix;
    request.place = place;
    request.width = width;
    request.height = height;
    return exchangeFor(request, document);
}

} // namespace SvgBackend
