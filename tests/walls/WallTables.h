#pragma once

#include <span>
#include <string_view>
#include <vector>

namespace Walls {

/// The floors of `src/`, the highest first: a floor includes what lies below it.
std::span<const std::string_view> floorsFromTheTop();

/// A library of others: its headers, and the folders that may name them.
struct ForeignLibrary {
    std::string_view name;
    std::vector<std::string_view> headers; ///< whole names; a folder or a part of a name ends in "*"
    std::vector<std::string_view> homes;
};

std::span<const ForeignLibrary> foreignLibraries();

/// Headers of the operating system and the C library, written as in `ForeignLibrary`.
std::span<const std::string_view> systemHeaders();

/// An include that a wall forbids and that stands nevertheless.
struct Exception {
    std::string_view file;
    std::string_view include;
    std::string_view reason;
};

std::span<const Exception> exceptions();

} // namespace Walls
