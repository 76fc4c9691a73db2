#include "system/AtomicFile.h"

#include "system/FileDescriptor.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>

namespace SystemBackend {

namespace {

constexpr mode_t permissionsOfNewFiles = 0666; // less the umask
constexpr mode_t permissionBits = 0777;

/// Repeats a system call that a signal broke off.
template <class Call>
auto untilDone(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR)
        result = call();
    return result;
}

/// With its separator, so that it can be put before a name; empty for the current folder.
std::string folderPrefix(const std::string& path) {
    return path.substr(0, path.find_last_of('/') + 1);
}

std::string folderOf(const std::string& path) {
    const std::string prefix = folderPrefix(path);
    return prefix.empty() ? "." : prefix;
}

std::optional<std::string> linkText(const std::string& path) {
    std::array<char, PATH_MAX> text;
    const ssize_t length = ::readlink(path.c_str(), text.data(), text.size());
    return length < 0 ? std::nullopt
                      : std::optional(std::string(text.data(), static_cast<std::size_t>(length)));
}

/// The links in /proc stand for open files; their text is no path to rename over.
bool standsForOpenFile(const std::string& link) {
    struct statfs fileSystem {};
    return ::statfs(folderOf(link).c_str(), &fileSystem) == 0 && fileSystem.f_type == PROC_SUPER_MAGIC;
}

/// Where the symbolic links that `path` may name lead to, whether something is there or not. None when that
/// is an open file. `path` leads into no loop.
std::optional<std::string> destinationOf(std::string path) {
    while (const auto text = linkText(path)) {
        if (standsForOpenFile(path))
            return std::nullopt;
        path = text->starts_with('/') ? *text : folderPrefix(path) + *text;
    }
    return path;
}

/// An unnamed file gets its name through /proc, which a confined process may lack.
FileDescriptor openUnnamed(const std::string& folder, mode_t permissions) {
    if (::access("/proc/self/fd", F_OK) != 0)
        return FileDescriptor();
    return FileDescriptor(::open(folder.c_str(), O_RDWR | O_TMPFILE | O_CLOEXEC, permissions));
}

/// Not to be guessed, so that nobody can put a file in its way; short whatever the target's length.
std::string nameBeside(const std::string& target) {
    constexpr std::string_view digits = "0123456789abcdefghijklmnopqrstuv";
    std::array<std::uint8_t, 16> noise{};
    (void)::getrandom(noise.data(), noise.size(), 0); // cannot fail for so few bytes
    std::string name = folderPrefix(target) + ".kesto-";
    for (const std::uint8_t byte : noise)
        name += digits[byte % digits.size()];
    return name;
}

} // namespace

AtomicFile::AtomicFile(const std::string& path, Writing writing)
    : target(path) {
    struct stat old {};
    // Following links here lets the kernel refuse those that it distrusts before they are followed by hand.
    const bool exists = ::stat(path.c_str(), &old) == 0;
    if (!check(exists || (errno == ENOENT && !path.empty())))
        return;
    if (exists && S_ISDIR(old.st_mode)) {
        firstError = EISDIR;
        return;
    }
    const auto destination = destinationOf(path);
    if (!destination || (exists && !S_ISREG(old.st_mode))) {
        if (writing == Writing::InOrder)
            openDirectly();
        else
            firstError = ESPIPE;
        return;
    }
    target = *destination;
    openWorking(exists ? old.st_mode & permissionBits : permissionsOfNewFiles);
    if (good() && exists) // whatever the umask took
        check(::fchmod(file, old.st_mode & permissionBits) == 0);
}

AtomicFile::~AtomicFile() {
    if (file >= 0)
        ::close(file);
    if (!working.empty())
        ::unlink(working.c_str());
}

void AtomicFile::openDirectly() {
    file = untilDone([this] { return ::open(target.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC | O_NOCTTY); });
    check(file >= 0);
}

void AtomicFile::openWorking(mode_t permissions) {
    file = openUnnamed(folderOf(target), permissions).release();
    if (file >= 0) {
        place = Place::Unnamed;
        return;
    }
    place = Place::Beside;
    std::string name = nameBeside(target);
    file = ::open(name.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, permissions);
    if (check(file >= 0))
        working = std::move(name);
}

bool AtomicFile::write(std::span<const std::byte> bytes) {
    while (good() && !bytes.empty()) {
        const ssize_t written = untilDone([&] { return ::write(file, bytes.data(), bytes.size()); });
        if (check(written >= 0))
            bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return good();
}

bool AtomicFile::writeAt(std::int64_t offset, std::span<const std::byte> bytes) {
    if (place == Place::Target && good())
        firstError = ESPIPE;
    while (good() && !bytes.empty()) {
        const ssize_t written = untilDone([&] { return ::pwrite(file, bytes.data(), bytes.size(), offset); });
        if (!check(written >= 0))
            break;
        bytes = bytes.subspan(static_cast<std::size_t>(written));
        offset += written;
    }
    return good();
}

bool AtomicFile::readAt(std::int64_t offset, std::span<std::byte> into) {
    while (good() && !into.empty()) {
        const ssize_t got = untilDone([&] { return ::pread(file, into.data(), into.size(), offset); });
        if (!check(got >= 0) || got == 0)
            return false;
        into = into.subspan(static_cast<std::size_t>(got));
        offset += got;
    }
    return good();
}

bool AtomicFile::linkAs(const std::string& name) const {
    const std::string descriptor = "/proc/self/fd/" + std::to_string(file);
    return ::linkat(AT_FDCWD, descriptor.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) == 0;
}

/// The name of the target itself where that is free, which saves the renaming.
bool AtomicFile::giveName() {
    std::string name = target;
    if (check(linkAs(name) || (errno == EEXIST && linkAs(name = nameBeside(target)))))
        working = std::move(name);
    return good();
}

bool AtomicFile::close() {
    const int closing = std::exchange(file, -1);
    // Linux has closed it even when a signal came.
    return check(::close(closing) == 0 || errno == EINTR);
}

bool AtomicFile::commit() {
    if (!good() || file < 0)
        return false;
    if (place == Place::Unnamed && !giveName())
        return false;
    if (!close() || place == Place::Target)
        return good();
    if (working == target || check(::rename(working.c_str(), target.c_str()) == 0))
        working.clear();
    return good();
}

bool AtomicFile::check(bool succeeded) {
    if (!succeeded && firstError == 0)
        firstError = errno;
    return succeeded;
}

} // namespace SystemBackend
