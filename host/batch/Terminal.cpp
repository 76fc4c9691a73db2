#include "Terminal.h"

#include <cstdio>
#include <cstdlib>
#include <string_view>

#include <sys/ioctl.h>
#include <unistd.h>

namespace KestoHost {

namespace {

constexpr std::size_t usualColumns = 80;

bool isDumb() {
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing here changes the environment
    const char* kind = std::getenv("TERM");
    return !kind || std::string_view(kind) == "dumb";
}

} // namespace

bool isOutputATerminal() {
    return ::isatty(STDOUT_FILENO) != 0;
}

bool canRewriteLines() {
    return ::isatty(STDERR_FILENO) != 0 && !isDumb();
}

std::size_t lineLength() {
    winsize size{};
    const bool isKnown = ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return (isKnown ? size.ws_col : usualColumns) - 1;
}

void rewriteLine(const std::string& text) {
    constexpr const char* eraseToTheEnd = "\x1B[K"; // ECMA-48, 8.3.41: EL
    std::fputs(('\r' + text + eraseToTheEnd).c_str(), stderr);
}

} // namespace KestoHost
