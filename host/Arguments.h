#pragma once

#include <optional>
#include <string>

namespace KestoHost {

/// The box in pixels that a thumbnail must fit; 0 is no bound in that direction.
struct Bounds {
    int width = 0;
    int height = 92;
};

/// The largest bound: products of two lengths must stay within 32 bits in the library.
constexpr int longestBound = 32767;

/// Reads "WIDTHxHEIGHT", for example "160x120", "0x92". Nothing for any other text.
std::optional<Bounds> parseBounds(const std::string& text);

/// Nothing unless `text` is a decimal number of seconds of at least 0.
std::optional<double> parseSeconds(const std::string& text);

/// Nothing unless `text` is a decimal whole number of at least 0.
std::optional<int> parseTrack(const std::string& text);

/// The most pictures that one run makes at a time.
constexpr int mostJobs = 256;

/// Nothing unless `text` is a decimal whole number from 1 to `mostJobs`.
std::optional<int> parseJobs(const std::string& text);

/// A tebibyte: the largest budget of memory, in mebibytes.
constexpr int mostMebibytes = 1 << 20;

/// Nothing unless `text` is a decimal whole number from 1 to `mostMebibytes`.
std::optional<int> parseMemory(const std::string& text);

/// What is wrong with the value of an option, as CLI11 wants it: empty when nothing is.
std::string checkBounds(const std::string& text);
std::string checkSeconds(const std::string& text);
std::string checkTrack(const std::string& text);
std::string checkJobs(const std::string& text);
std::string checkMemory(const std::string& text);
/// One of the extensions that outputs may have, without its dot.
std::string checkFormat(const std::string& text);
/// A folder that is there.
std::string checkFolder(const std::string& path);
/// The extension of the output picks its format.
std::string checkOutputName(const std::string& path);

} // namespace KestoHost
