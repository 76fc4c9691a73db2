#include "system/PathResolver.h"

#include "system/CaseFolding.h"
#include "system/FileDescriptor.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <optional>
#include <vector>

namespace SystemBackend {

namespace {

/// Whether a symbolic link to nothing counts as there.
enum class DanglingLinks { AreMissing, AreThere };

bool existsIn(int folder, const std::string& name, DanglingLinks links = DanglingLinks::AreMissing) {
    struct stat ignored {};
    return ::fstatat(folder, name.c_str(), &ignored,
                     links == DanglingLinks::AreThere ? AT_SYMLINK_NOFOLLOW : 0) == 0;
}

bool exists(const std::string& path, DanglingLinks links = DanglingLinks::AreMissing) {
    return existsIn(AT_FDCWD, path, links);
}

/// For walking on from: needs no right to list the folder.
FileDescriptor openFolder(int folder, const std::string& name) {
    return FileDescriptor(::openat(folder, name.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
}

struct CloseFolder {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

/// The names in `folder` that differ from `name` in case only, sorted. None when it may not be listed.
std::vector<std::string> namesAlike(int folder, std::string_view name) {
    std::vector<std::string> names;
    FileDescriptor listed(::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!listed.isOpen())
        return names;
    const std::unique_ptr<DIR, CloseFolder> entries(::fdopendir(listed.get()));
    if (!entries)
        return names;
    (void)listed.release(); // now owned by `entries`
    // NOLINTNEXTLINE(concurrency-mt-unsafe): the stream is not shared, as readdir asks for
    while (const dirent* entry = ::readdir(entries.get())) {
        if (equalIgnoringCase(entry->d_name, name))
            names.emplace_back(entry->d_name);
    }
    std::sort(names.begin(), names.end());
    return names;
}

/// Walks down a path with slashes, each part under the name that exists.
class CaseIgnoringWalk {
public:
    std::optional<std::string> find(std::string_view path) {
        takeSeparators(path);
        if (!found.empty() && !enter("/"))
            return std::nullopt;
        while (!path.empty()) {
            const std::string part(path.substr(0, path.find('/')));
            path.remove_prefix(part.size());
            const auto name = path.empty() ? nameOfLast(part) : nameOfFolder(part);
            if (!name)
                return std::nullopt;
            found += *name;
            takeSeparators(path);
        }
        return found;
    }

private:
    void takeSeparators(std::string_view& path) {
        const std::size_t count = std::min(path.find_first_not_of('/'), path.size());
        found += path.substr(0, count);
        path.remove_prefix(count);
    }

    bool enter(const std::string& name) {
        FileDescriptor next = openFolder(at(), name);
        if (!next.isOpen())
            return false;
        folder = std::move(next);
        return true;
    }

    /// Enters the folder, too. A file of that name does not hide a folder in another case.
    std::optional<std::string> nameOfFolder(const std::string& part) {
        if (enter(part))
            return part;
        for (const std::string& name : namesAlike(at(), part)) {
            if (enter(name))
                return name;
        }
        return std::nullopt;
    }

    std::optional<std::string> nameOfLast(const std::string& part) {
        if (existsIn(at(), part))
            return part;
        for (const std::string& name : namesAlike(at(), part)) {
            if (existsIn(at(), name))
                return name;
        }
        return std::nullopt;
    }

    int at() const { return folder.isOpen() ? folder.get() : AT_FDCWD; }

    FileDescriptor folder; // none: the current folder
    std::string found;
};

std::string withSlashes(std::string_view path) {
    std::string name(path);
    std::replace(name.begin(), name.end(), '\\', '/');
    return name;
}

std::optional<std::string> findPath(std::string_view path) {
    if (path.empty() || path.size() >= PATH_MAX)
        return std::nullopt;
    std::string name(path);
    if (exists(name))
        return name;
    if (path.find('\\') != std::string_view::npos) {
        name = withSlashes(path);
        if (exists(name))
            return name;
    }
    return CaseIgnoringWalk().find(name);
}

} // namespace

std::string resolvePath(std::string_view path) {
    return findPath(path).value_or(std::string(path));
}

std::string resolvePathForWriting(std::string_view path) {
    std::string name(path);
    if (exists(name, DanglingLinks::AreThere))
        return name;
    const std::size_t separator = path.find_last_of("/\\");
    if (separator == std::string_view::npos)
        return name;
    const auto folder = findPath(std::string(path.substr(0, separator)) + '/');
    return folder ? *folder + std::string(path.substr(separator + 1)) : withSlashes(path);
}

} // namespace SystemBackend
