#include "InputFiles.h"

#include "Paths.h"

#include <filesystem>
#include <system_error>

namespace KestoHost {

namespace {

std::string folderOf(const std::string& path) {
    return std::filesystem::path(forgivenName(path)).parent_path().string();
}

bool isSomethingAt(const std::string& path) {
    std::error_code ignored; // nothing to be seen there is nothing to be lost
    return std::filesystem::exists(std::filesystem::symlink_status(path, ignored));
}

} // namespace

ListedInputFiles::ListedInputFiles(std::span<const std::string> inputs) {
    for (const std::string& input : inputs)
        names.add(forgivenName(input));
}

bool ListedInputFiles::mayInclude(const std::string& path) const {
    return names.contains(forgivenName(path));
}

StreamedInputFiles::StreamedInputFiles(const std::string& outputFolder)
    : folder(folderOf((std::filesystem::path(outputFolder) / "any").string())) {}

void StreamedInputFiles::begin(const std::string& input) {
    inputsLieThere = inputsLieThere || folderOf(input) == folder;
}

bool StreamedInputFiles::mayInclude(const std::string& path) const {
    // A link may lead to an input wherever that lies.
    return isSomethingAt(path) && (inputsLieThere || folderOf(path) != folder);
}

} // namespace KestoHost
