#include "Interruption.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace KestoHost {

namespace {

constexpr std::array<int, 3> kinds = {SIGINT, SIGTERM, SIGHUP};

// All that the handler may touch: a handler has no context.
std::atomic<int> caught = 0;
std::atomic<int> writtenEnd = -1;
static_assert(std::atomic<int>::is_always_lock_free);

int readEnd = -1;
std::array<struct sigaction, kinds.size()> replaced;

extern "C" void rememberSignal(int kind) {
    const int errnoOutside = errno;
    caught = kind;
    const char anything = 0;
    (void)!::write(writtenEnd, &anything, 1); // a full pipe is readable already
    errno = errnoOutside;
}

} // namespace

Interruption::Interruption() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0)
        throw std::system_error(errno, std::generic_category(), "signals can't be waited for");
    readEnd = ends[0];
    writtenEnd = ends[1];
    caught = 0;

    struct sigaction action {};
    action.sa_handler = rememberSignal;
    action.sa_flags = SA_RESTART | static_cast<int>(SA_RESETHAND);
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        ::sigaction(kinds[i], nullptr, &replaced[i]);
        if (replaced[i].sa_handler != SIG_IGN)
            ::sigaction(kinds[i], &action, nullptr);
    }
}

Interruption::~Interruption() {
    for (std::size_t i = 0; i < kinds.size(); ++i)
        ::sigaction(kinds[i], &replaced[i], nullptr);
    ::close(writtenEnd);
    ::close(readEnd);
}

int Interruption::signal() const noexcept {
    return caught;
}

int Interruption::descriptor() const noexcept {
    return readEnd;
}

} // namespace KestoHost
