#include "KestoRenderLib/callout/SvgProcess.h"

#include "KestoRenderLib/callout/PlainSvg.h"
#include "KestoRenderLib/callout/SvgExchange.h"
#include "KestoRenderLib/callout/SvgPainter.h"

#include "platform/Threading.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>

namespace KestoRenderLib {

namespace {

using Clock = std::chrono::steady_clock;

/// Documents that took too long or more than librsvg could bear. Frames of a project come by the thousand.
class HopelessSvgs {
public:
    bool has(const std::string& document) KESTO_EXCLUDES(lock) {
        const MutexLock held(lock);
        return hashes.contains(std::hash<std::string>()(document));
    }

    void add(const std::string& document) KESTO_EXCLUDES(lock) {
        const MutexLock held(lock);
        hashes.insert(std::hash<std::string>()(document));
    }

private:
    Mutex lock;
    std::unordered_set<std::size_t> hashes KESTO_GUARDED_BY(lock);
};

HopelessSvgs& hopelessSvgs() {
    static HopelessSvgs documents;
    return documents;
}

std::string programPath() {
    Dl_info module{};
    if (::dladdr(reinterpret_cast<const void*>(&paintAnySvg), &module) == 0)
        return {};
    const std::string path = module.dli_fname;
    return path.substr(0, path.rfind('/') + 1) + "kesto-svg";
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
    /// None when it can't be started.
    static std::optional<Painter> start(int exchange) {
        std::array<int, 2> ends = {-1, -1};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0)
            return std::nullopt;
        Descriptor reading(ends[0]);
        const Descriptor writing(ends[1]);
        const StandardFiles files(exchange, writing.get());
        std::string path = programPath();
        const std::array<char*, 2> arguments = {path.data(), nullptr};
        pid_t started = 0;
        if (::posix_spawn(&started, path.c_str(), files.get(), nullptr, arguments.data(), environ) != 0)
            return std::nullopt;
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

    /// Whether the document was drawn; none when it took too long or more than the program could bear.
    std::optional<bool> await(std::chrono::milliseconds limit) {
        const Clock::time_point end = Clock::now() + limit;
        pollfd answer = {answers.get(), POLLIN, 0};
        int ready = 0;
        do {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
            ready = ::poll(&answer, 1, left.count() > 0 ? static_cast<int>(left.count()) : 0);
        } while (ready < 0 && errno == EINTR);
        char drawn = 0;
        isAtWork = ready < 1;
        if (isAtWork || ::read(answers.get(), &drawn, 1) != 1)
            return std::nullopt;
        return drawn == 1;
    }

private:
    Painter(pid_t started, Descriptor reading)
        : process(started)
        , answers(std::move(reading)) {}

    pid_t process;
    Descriptor answers;
    bool isAtWork = true;
};

SvgRequest requestFor(cairo_t* context, const CalloutPaint& paint, const Area& area) {
    SvgRequest request;
    cairo_get_matrix(context, &request.matrix);
    request.area = area;
    request.progress = paint.look.progress;
    request.antialiased = paint.antialiased;
    request.width = paint.target.width;
    request.height = paint.target.height;
    request.processorSeconds = paint.svgTimeLimitInMs / 1000 + 1;
    request.documentBytes = paint.look.svg.size();
    return request;
}

void paintPicture(cairo_t* context, const SvgExchange& exchange) {
    const CairoOwned<cairo_surface_t> picture = exchange.picture();
    cairo_save(context);
    cairo_identity_matrix(context);
    cairo_set_source_surface(context, picture.get(), 0, 0);
    cairo_paint(context);
    cairo_restore(context);
}

bool paintApart(cairo_t* context, const CalloutPaint& paint, const Area& area) {
    if (hopelessSvgs().has(paint.look.svg))
        return false;
    const auto exchange = SvgExchange::create(requestFor(context, paint, area), paint.look.svg);
    auto painter = exchange ? Painter::start(exchange->descriptor()) : std::nullopt;
    if (!painter)
        return false;
    const auto drawn = painter->await(std::chrono::milliseconds(paint.svgTimeLimitInMs));
    if (!drawn)
        hopelessSvgs().add(paint.look.svg);
    if (!drawn.value_or(false))
        return false;
    paintPicture(context, *exchange);
    return true;
}

} // namespace

bool paintAnySvg(cairo_t* context, const CalloutPaint& paint, const Area& area) {
    const double pixels = static_cast<double>(paint.target.width) * paint.target.height;
    return isPlainSvg(paint.look.svg, pixels) ? paintSvg(context, paint.look, area, paint.antialiased)
                                              : paintApart(context, paint, area);
}

} // namespace KestoRenderLib
