#include "engine/FileSource.h"

#include "system/PathResolver.h"

#include <fmt/format.h>

#include <cerrno>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace EngineBackend {

Result<std::unique_ptr<FileSource>> FileSource::open(const std::string& path) {
    const std::string name = SystemBackend::resolvePath(path);
    // Without O_NONBLOCK the open of a pipe would wait for its writer.
    const int file = ::open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (file < 0)
        return failure(ErrorKind::Unreadable,
                       fmt::format("{}: {}", path, std::generic_category().message(errno)));
    struct stat status = {};
    if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(file);
        return failure(ErrorKind::Unreadable, fmt::format("{}: not a regular file", path));
    }
    return std::unique_ptr<FileSource>(new FileSource(file, status.st_size));
}

FileSource::~FileSource() {
    ::close(file);
}

std::int64_t FileSource::read(std::span<std::byte> into) {
    ssize_t got = 0;
    do {
        got = ::pread(file, into.data(), into.size(), place);
    } while (got < 0 && errno == EINTR);
    if (got > 0)
        place += got;
    return got;
}

bool FileSource::seek(std::int64_t newPlace) {
    if (newPlace < 0)
        return false;
    place = newPlace;
    return true;
}

} // namespace EngineBackend
