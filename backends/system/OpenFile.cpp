#include "system/OpenFile.h"

#include "system/PathResolver.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <limits>

namespace SystemBackend {

namespace {

FileDescriptor openForReading(const std::string& path) {
    // Non-blocking matters to pipes alone, which would wait for a writer before they could be refused.
    return FileDescriptor(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY));
}

/// A path that needs no resolving costs one system call.
FileDescriptor openResolved(const std::string& path) {
    FileDescriptor opened = openForReading(path);
    if (opened.isOpen() || (errno != ENOENT && errno != ENOTDIR))
        return opened;
    const int firstError = errno;
    const std::string found = resolvePath(path);
    if (found != path)
        return openForReading(found);
    errno = firstError;
    return opened;
}

std::optional<std::size_t> readAt(int descriptor, std::span<std::byte> into, std::int64_t place) {
    // The system refuses to look beyond the range of positions, where nothing lies.
    const auto range = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max() - place);
    ssize_t count = 0;
    do
        count = ::pread(descriptor, into.data(), std::min<std::uint64_t>(into.size(), range), place);
    while (count < 0 && errno == EINTR);
    return count < 0 ? std::nullopt : std::optional(static_cast<std::size_t>(count));
}

} // namespace

std::unique_ptr<OpenFile> OpenFile::open(const std::string& path) {
    FileDescriptor opened = openResolved(path);
    struct stat status {};
    if (!opened.isOpen() || ::fstat(opened.get(), &status) != 0)
        return nullptr;
    if (!S_ISREG(status.st_mode)) {
        errno = EACCES;
        return nullptr;
    }
    return std::unique_ptr<OpenFile>(new OpenFile(std::move(opened)));
}

std::optional<std::size_t> OpenFile::read(std::span<std::byte> into) {
    std::size_t done = takeAhead(into);
    while (done < into.size()) {
        const std::span<std::byte> rest = into.subspan(done);
        const bool direct = rest.size() >= ahead.size();
        const auto count = direct ? readAt(descriptor.get(), rest, place) : readAhead();
        if (!count)
            return std::nullopt;
        if (*count == 0)
            break;
        if (direct)
            place += static_cast<std::int64_t>(*count);
        done += direct ? *count : takeAhead(rest);
    }
    return done;
}

/// What of `into` was read ahead.
std::size_t OpenFile::takeAhead(std::span<std::byte> into) {
    if (place < aheadFrom || place - aheadFrom >= static_cast<std::int64_t>(aheadCount))
        return 0;
    const auto skipped = static_cast<std::size_t>(place - aheadFrom);
    const std::size_t count = std::min(into.size(), aheadCount - skipped);
    std::copy_n(ahead.begin() + static_cast<std::ptrdiff_t>(skipped), count, into.begin());
    place += static_cast<std::int64_t>(count);
    return count;
}

std::optional<std::size_t> OpenFile::readAhead() {
    aheadCount = 0;
    const auto count = readAt(descriptor.get(), ahead, place);
    aheadFrom = place;
    aheadCount = count.value_or(0);
    return count;
}

std::optional<std::int64_t> OpenFile::size() const {
    struct stat status {};
    if (::fstat(descriptor.get(), &status) != 0)
        return std::nullopt;
    return status.st_size;
}

} // namespace SystemBackend
