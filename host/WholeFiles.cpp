#include "WholeFiles.h"

#include <fmt/format.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <system_error>

namespace KestoHost {

namespace {

namespace fs = std::filesystem;

/// What a link names, so that the link itself stays.
fs::path followed(const fs::path& target) {
    std::error_code error; // a target that does not exist yet
    const fs::path real = fs::canonical(target, error);
    return error ? target : real;
}

fs::path unusedNameBeside(const fs::path& target) {
    std::random_device random;
    fs::path name;
    std::error_code error;
    do
        name = target.parent_path() /
               fmt::format(".{}-{:08x}{}", target.stem().string(), random(), target.extension().string());
    while (fs::exists(fs::symlink_status(name, error)));
    return name;
}

/// A pipe or a device would be lost for all who use it.
bool isReplaceable(const std::string& target) {
    std::error_code error; // what can't be asked for is not there
    const fs::file_status there = fs::status(target, error);
    return !fs::exists(there) || fs::is_regular_file(there);
}

} // namespace

WholeFiles::~WholeFiles() {
    std::error_code ignored; // nothing more can be done about a file that stays
    for (const Pending& file : pending)
        fs::remove(file.written, ignored);
}

std::string WholeFiles::pathFor(const std::string& target) {
    const fs::path real = followed(target);
    pending.push_back({unusedNameBeside(real).string(), real.string()});
    return pending.back().written;
}

bool WholeFiles::write(const std::string& target, const std::string& content) {
    std::ofstream file(pathFor(target), std::ios::binary);
    file.write(content.data(), static_cast<std::streamsize>(content.size()));
    file.close();
    return file.good();
}

std::string WholeFiles::commit() {
    for (const Pending& file : pending)
        if (!isReplaceable(file.target))
            return file.target;
    while (!pending.empty()) {
        std::error_code error;
        fs::rename(pending.front().written, pending.front().target, error);
        if (error)
            return pending.front().target;
        pending.erase(pending.begin());
    }
    return {};
}

} // namespace KestoHost
