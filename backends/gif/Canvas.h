#pragma once

#include "gif/Frame.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace GifBackend {

/// Rows from the top without gaps, premultiplied; the bytes of a pixel are B, G, R, A in memory.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels = {};
};

/// By its edges, in pixels of the screen; right and bottom lie outside.
struct Box {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    bool isEmpty() const { return left >= right || top >= bottom; }
    bool contains(const Box& other) const {
        return left <= other.left && top <= other.top && right >= other.right && bottom >= other.bottom;
    }
    friend bool operator==(const Box&, const Box&) = default;
};

/// What of a frame lies on a screen of that size.
Box visibleBox(const Frame& frame, int screenWidth, int screenHeight);

/// How many indices of a frame, in the order of the file, lead to its last visible pixel.
std::size_t indicesNeeded(const Frame& frame, const Box& visible);

/// What each index draws: 0 for none.
using Colours = std::array<std::uint32_t, 256>;

/// An index without a colour draws the first colour, as in a still picture. Without any, nothing is drawn.
Colours coloursOf(const Palette& palette, std::optional<std::uint8_t> transparentIndex);

/// Draws as many of the frame's indices as there are.
void drawFrame(Picture& picture, const Frame& frame, std::span<const std::uint8_t> indices,
               const Colours& colours);

/// Makes a part transparent.
void clearBox(Picture& picture, const Box& box);

} // namespace GifBackend
