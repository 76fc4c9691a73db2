#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

/// A PNG file read back, with nothing of the program under test in between.
struct PictureFile {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels; ///< 0xAARRGGBB, row by row from the top

    std::uint32_t at(int x, int y) const {
        return pixels.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                         static_cast<std::size_t>(x));
    }
};

/// Throws `std::runtime_error` for what is no whole PNG file.
PictureFile readPng(const std::filesystem::path& path);

/// The bytes of a PNG whose left half is red and whose right half is blue.
std::vector<unsigned char> redAndBluePng(int width, int height);

constexpr std::uint32_t red = 0xFFFF0000;
constexpr std::uint32_t blue = 0xFF0000FF;
