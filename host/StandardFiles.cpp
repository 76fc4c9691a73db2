#include "StandardFiles.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace KestoHost {

namespace {

/// Of files that stand there for nothing else: the wrong way round, so that no one takes them for real ones.
constexpr int modes[] = {O_WRONLY, O_RDONLY, O_RDONLY};
static_assert(STDIN_FILENO == 0 && STDOUT_FILENO == 1 && STDERR_FILENO == 2);

} // namespace

void keepStandardNumbers() noexcept {
    for (int number = STDIN_FILENO; number <= STDERR_FILENO; ++number)
        if (::fcntl(number, F_GETFD) == -1 && errno == EBADF)
            (void)::open("/dev/null", modes[number]); // gets the lowest free number, which is this one
}

} // namespace KestoHost
