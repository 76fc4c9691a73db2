#include "LineInputs.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>
#include <utility>

#include <poll.h>
#include <unistd.h>

namespace KestoHost {

namespace {

constexpr std::size_t longestLine = 8192; // twice as long as the longest path (PATH_MAX)
constexpr std::size_t bytesAtOnce = 16384;

} // namespace

LineInputs::LineInputs(const Interruption& interruptedBy)
    : interruption(interruptedBy) {}

std::optional<std::string> LineInputs::next() {
    while (interruption.signal() == 0) {
        if (auto taken = takeLine()) {
            if (!taken->empty())
                return taken;
        } else if (ended) {
            return std::nullopt;
        } else if (waitForBytes()) {
            readBytes();
        }
    }
    return std::nullopt;
}

std::optional<std::string> LineInputs::takeLine() {
    const std::size_t newline = bytes.find('\n');
    const std::size_t length = std::min(newline, bytes.size());
    line.append(bytes, 0, std::min(length, longestLine - line.size()));
    bytes.erase(0, newline == std::string::npos ? newline : newline + 1);
    const bool isWhole = newline != std::string::npos || (ended && !line.empty());
    if (!isWhole)
        return std::nullopt;
    if (line.ends_with('\r') && newline != std::string::npos)
        line.pop_back();
    return std::exchange(line, {});
}

/// False when nothing is to be read: look again.
bool LineInputs::waitForBytes() const {
    std::array<pollfd, 2> files = {{{STDIN_FILENO, POLLIN, 0}, {interruption.descriptor(), POLLIN, 0}}};
    return ::poll(files.data(), files.size(), /*timeout=*/-1) > 0 && files[0].revents != 0;
}

void LineInputs::readBytes() {
    std::array<char, bytesAtOnce> chunk;
    const ssize_t count = ::read(STDIN_FILENO, chunk.data(), chunk.size());
    if (count > 0) {
        bytes.append(chunk.data(), static_cast<std::size_t>(count));
    } else if (count == 0) {
        ended = true;
    } else if (errno != EINTR && errno != EAGAIN) {
        ended = true;
        error = fmt::format("standard input: {}", std::generic_category().message(errno));
    }
}

} // namespace KestoHost
