#include "OutputNames.h"

#include "LetterCase.h"
#include "Paths.h"

#include <filesystem>
#include <utility>

namespace KestoHost {

namespace {

/// The last part of a path, without its extension. Either slash separates, as in the library.
std::string stemOf(std::string path) {
    constexpr const char* separators = "/\\";
    path.erase(path.find_last_not_of(separators) + 1);
    path.erase(0, path.find_last_of(separators) + 1);
    const std::size_t dot = path.rfind('.');
    return dot == std::string::npos || dot == 0 ? path : path.substr(0, dot);
}

} // namespace

OutputNames::OutputNames(std::string outputFolder, std::string formatExtension, InputFiles& inputFiles)
    : folder(std::move(outputFolder))
    , extension(std::move(formatExtension))
    , inputs(inputFiles) {}

OutputNames::Output OutputNames::nameFor(const std::string& input) {
    inputs.begin(input);
    const std::string stem = stemOf(input);
    const std::string ownName = stem + '.' + extension;
    if (isFree(ownName, input))
        return give(ownName, /*numbered=*/false);
    std::size_t& number = lastNumbers.try_emplace(lowerCase(stem), 1).first->second;
    std::string name;
    do
        name = stem + '-' + std::to_string(++number) + '.' + extension;
    while (!isFree(name, input));
    return give(name, /*numbered=*/true);
}

std::string OutputNames::pathOf(const std::string& name) const {
    return folder.empty() ? name : (std::filesystem::path(folder) / name).string();
}

bool OutputNames::isFree(const std::string& name, const std::string& input) const {
    if (given.contains(lowerCase(name)))
        return false;
    const std::string path = pathOf(name);
    return !inputs.mayInclude(path) && !isSameFile(input, path);
}

OutputNames::Output OutputNames::give(const std::string& name, bool numbered) {
    given.add(lowerCase(name));
    return {pathOf(name), numbered};
}

} // namespace KestoHost
