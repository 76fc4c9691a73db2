#include "Arguments.h"

#include "LetterCase.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <string_view>
#include <system_error>

namespace KestoHost {

namespace {

constexpr std::array<std::string_view, 5> writtenExtensions = {"png", "jpg", "jpeg", "gif", "bmp"};

template <typename Number>
std::optional<Number> parseWhole(std::string_view text) {
    Number value{};
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || rest != text.data() + text.size())
        return std::nullopt;
    return value;
}

std::optional<int> parseBound(std::string_view text) {
    const std::optional<int> length = parseWhole<int>(text);
    return length && *length >= 0 && *length <= longestBound ? length : std::nullopt;
}

bool isWritten(const std::string& extension) {
    return std::find(writtenExtensions.begin(), writtenExtensions.end(), extension) !=
           writtenExtensions.end();
}

} // namespace

std::optional<Bounds> parseBounds(const std::string& text) {
    const std::size_t cross = text.find_first_of("xX");
    if (cross == std::string::npos)
        return std::nullopt;
    const auto width = parseBound(std::string_view(text).substr(0, cross));
    const auto height = parseBound(std::string_view(text).substr(cross + 1));
    if (!width || !height)
        return std::nullopt;
    return Bounds{*width, *height};
}

std::optional<double> parseSeconds(const std::string& text) {
    const std::optional<double> seconds = parseWhole<double>(text);
    return seconds && std::isfinite(*seconds) && *seconds >= 0 ? seconds : std::nullopt;
}

std::optional<int> parseTrack(const std::string& text) {
    const std::optional<int> track = parseWhole<int>(text);
    return track && *track >= 0 ? track : std::nullopt;
}

std::optional<int> parseJobs(const std::string& text) {
    const std::optional<int> jobs = parseWhole<int>(text);
    return jobs && *jobs >= 1 && *jobs <= mostJobs ? jobs : std::nullopt;
}

std::optional<int> parseMemory(const std::string& text) {
    const std::optional<int> mebibytes = parseWhole<int>(text);
    return mebibytes && *mebibytes >= 1 && *mebibytes <= mostMebibytes ? mebibytes : std::nullopt;
}

std::string checkBounds(const std::string& text) {
    if (parseBounds(text))
        return {};
    return fmt::format("expected WIDTHxHEIGHT in pixels, each 0 (no bound) to {}, found \"{}\"", longestBound,
                       text);
}

std::string checkSeconds(const std::string& text) {
    if (parseSeconds(text))
        return {};
    return fmt::format("expected seconds of at least 0, found \"{}\"", text);
}

std::string checkTrack(const std::string& text) {
    if (parseTrack(text))
        return {};
    return fmt::format("expected a whole number of at least 0, found \"{}\"", text);
}

std::string checkJobs(const std::string& text) {
    if (parseJobs(text))
        return {};
    return fmt::format("expected a whole number from 1 to {}, found \"{}\"", mostJobs, text);
}

std::string checkMemory(const std::string& text) {
    if (parseMemory(text))
        return {};
    return fmt::format("expected a whole number of mebibytes from 1 to {}, found \"{}\"", mostMebibytes,
                       text);
}

std::string checkFormat(const std::string& text) {
    if (isWritten(text))
        return {};
    return fmt::format("expected one of {}, found \"{}\"", fmt::join(writtenExtensions, ", "), text);
}

std::string checkFolder(const std::string& path) {
    std::error_code error; // as good as no folder
    if (std::filesystem::is_directory(path, error))
        return {};
    return fmt::format("expected a folder that is there, found \"{}\"", path);
}

std::string checkOutputName(const std::string& path) {
    const std::size_t dot = path.rfind('.');
    const std::string extension = dot == std::string::npos ? "" : lowerCase(path.substr(dot + 1));
    if (isWritten(extension))
        return {};
    return fmt::format("expected a name that ends in .{}, found \"{}\"", fmt::join(writtenExtensions, ", ."),
                       path);
}

} // namespace KestoHost
