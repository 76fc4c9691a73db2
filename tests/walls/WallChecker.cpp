#include "walls/WallChecker.h"

#include "walls/IncludeLines.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <optional>
#include <set>

namespace Walls {

namespace {

constexpr std::string_view platformFolder = "src/platform";

/// Why an include may not stand; nothing if it may.
using Verdict = std::optional<std::string>;

std::string folderOf(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return std::string(path.substr(0, slash == std::string_view::npos ? 0 : slash));
}

std::string_view areaOf(std::string_view path) {
    return path.substr(0, path.find('/'));
}

bool isInside(std::string_view path, std::string_view folder) {
    return path == folder || (path.starts_with(folder) && path.substr(folder.size()).starts_with('/'));
}

bool isOutsider(std::string_view area) {
    return area == "host" || area == "examples";
}

bool matchesHeader(std::string_view header, std::string_view pattern) {
    return pattern.ends_with('*') ? header.starts_with(pattern.substr(0, pattern.size() - 1))
                                  : header == pattern;
}

template <typename Patterns>
bool matchesAny(std::string_view header, const Patterns& patterns) {
    return std::any_of(std::begin(patterns), std::end(patterns),
                       [=](std::string_view pattern) { return matchesHeader(header, pattern); });
}

/// The longest of `folders` that `path` lies in.
template <typename Folders>
std::optional<std::string> innermost(std::string_view path, const Folders& folders) {
    std::optional<std::string> found;
    for (const std::string_view folder : folders)
        if (isInside(path, folder) && (!found || folder.size() > found->size()))
            found = folder;
    return found;
}

/// A library's name is the end of its folder's path, with "_" between the parts.
bool isNameOf(std::string name, std::string folder) {
    const auto lower = [](unsigned char c) { return static_cast<char>(std::tolower(c)); };
    std::replace(folder.begin(), folder.end(), '/', '_');
    std::transform(folder.begin(), folder.end(), folder.begin(), lower);
    std::transform(name.begin(), name.end(), name.begin(), lower);
    return folder.ends_with('_' + name);
}

class Checker {
public:
    explicit Checker(const SourceTree& sources)
        : tree(sources) {
        for (const auto& [folder, names] : tree.walls)
            walled.push_back(folder);
    }

    Verdict judge(const std::string& file, const IncludeLine& include) const {
        if (include.form == IncludeForm::Angled)
            return judgeAngled(file, include.target);
        const std::optional<std::string> target = resolve(file, include.target);
        return target ? judgeOwn(file, *target) : "names no file of the project";
    }

private:
    std::optional<std::string> resolve(const std::string& file, const std::string& target) const {
        std::vector<std::string> roots = {folderOf(file) + '/'};
        if (isOutsider(areaOf(file)))
            roots.push_back(std::string(areaOf(file)) + '/');
        else
            roots.insert(roots.end(), {"src/", "backends/", "libs/"});
        for (const std::string& root : roots) {
            const std::string path = std::filesystem::path(root + target).lexically_normal().generic_string();
            if (tree.files.contains(path))
                return path;
        }
        return std::nullopt;
    }

    static Verdict judgeAngled(const std::string& file, const std::string& header) {
        const std::string_view area = areaOf(file);
        if (header.starts_with("KestoThumbnailer/"))
            return isOutsider(area) ? Verdict() : "the installed headers are for those outside";
        for (const ForeignLibrary& library : foreignLibraries())
            if (matchesAny(header, library.headers))
                return innermost(file, library.homes)
                           ? Verdict()
                           : "a header of " + std::string(library.name) + ", which is not known here";
        if (matchesAny(header, systemHeaders()))
            return area == "backends" || area == "libs" ? Verdict() : "a header of the operating system";
        const bool standard = header.find_first_of("./") == std::string::npos;
        return standard ? Verdict() : "a header of no library in the table";
    }

    Verdict judgeOwn(const std::string& file, const std::string& target) const {
        const std::string_view area = areaOf(file);
        if (isOutsider(area))
            return area == areaOf(target) ? Verdict() : "only the installed headers are known here";
        if (folderOf(target) == platformFolder || folderOf(target) == folderOf(file))
            return std::nullopt;
        if (area == "src")
            return judgeFloors(file, target);
        if (areaOf(target) == "src")
            return "of src only src/platform is known here";
        return judgeUnits(file, target);
    }

    Verdict judgeFloors(const std::string& file, const std::string& target) const {
        const auto floors = floorsFromTheTop();
        const auto own = innermost(file, floors);
        const auto other = innermost(target, floors);
        if (!own || !other)
            return "lies on no floor of src";
        if (*own == *other)
            return std::nullopt;
        if (std::find(floors.begin(), floors.end(), *other) < std::find(floors.begin(), floors.end(), *own))
            return "a floor above";
        return judgeUse(*own, *other, target);
    }

    Verdict judgeUnits(const std::string& file, const std::string& target) const {
        const std::string parent = folderOf(target);
        const bool sharedByParent = isInside(file, parent) && parent.find('/') != std::string::npos;
        const auto own = innermost(file, walled);
        const auto other = innermost(target, walled);
        if (sharedByParent || (own && own == other))
            return std::nullopt;
        if (!own || !other)
            return "a folder without a wall";
        return judgeUse(*own, *other, target);
    }

    Verdict judgeUse(const std::string& own, const std::string& other, const std::string& target) const {
        const auto wall = tree.walls.find(own);
        const bool named = wall != tree.walls.end() &&
                           std::any_of(wall->second.begin(), wall->second.end(),
                                       [&](const std::string& name) { return isNameOf(name, other); });
        if (!named)
            return own + " may not use " + other;
        if (folderOf(target) != other)
            return "private to " + other;
        return std::nullopt;
    }

    const SourceTree& tree;
    std::vector<std::string> walled;
};

/// A build file that lets a floor use one above it.
std::vector<Breach> findUpwardUses(const WallList& walls) {
    std::vector<Breach> breaches;
    const auto floors = floorsFromTheTop();
    for (const auto& [folder, names] : walls) {
        const auto own = std::find(floors.begin(), floors.end(), folder);
        if (own == floors.end())
            continue;
        for (const std::string& name : names)
            if (std::any_of(floors.begin(), own,
                            [&](std::string_view floor) { return isNameOf(name, std::string(floor)); }))
                breaches.push_back({folder + "/CMakeLists.txt", 0, name, "a floor above"});
    }
    return breaches;
}

} // namespace

std::vector<Breach> findBreaches(const SourceTree& tree, std::span<const Exception> allowed) {
    std::vector<Breach> breaches = findUpwardUses(tree.walls);
    const Checker checker(tree);
    std::set<const Exception*> used;
    for (const auto& source : tree.files) {
        const std::string& file = source.first;
        for (const IncludeLine& include : includesOf(source.second)) {
            const Verdict verdict = checker.judge(file, include);
            if (!verdict)
                continue;
            const auto exception = std::find_if(allowed.begin(), allowed.end(), [&](const Exception& row) {
                return row.file == file && row.include == include.target;
            });
            if (exception == allowed.end())
                breaches.push_back({file, include.line, include.target, *verdict});
            else
                used.insert(&*exception);
        }
    }
    for (const Exception& row : allowed)
        if (!used.contains(&row))
            breaches.push_back(
                {std::string(row.file), 0, std::string(row.include), "an exception not needed"});
    return breaches;
}

} // namespace Walls
