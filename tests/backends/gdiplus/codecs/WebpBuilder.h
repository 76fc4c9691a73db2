#pragma once

#include "backends/gdiplus/codecs/CollectRows.h"

#include <functional>
#include <string_view>

namespace GdiplusBackend {

enum class WebpKind { Lossless, Lossy };

/// A simple WebP file; `pixel` gives 0xAARRGGBB.
Bytes buildWebp(WebpKind kind, int width, int height,
                const std::function<std::uint32_t(int x, int y)>& pixel);

/// Puts the picture of a simple file into an extended one.
class ExtendedWebp {
public:
    static constexpr int animationFlag = 0x02;
    static constexpr int exifFlag = 0x08;
    static constexpr int alphaFlag = 0x10;
    static constexpr int profileFlag = 0x20;

    ExtendedWebp(int flags, int canvasWidth, int canvasHeight);

    ExtendedWebp& chunk(std::string_view kind, const Bytes& payload);
    ExtendedWebp& picture(const Bytes& simpleFile);
    /// A frame of an animation; places are even.
    ExtendedWebp& frame(int left, int top, int width, int height, const Bytes& simpleFile);

    Bytes build() const;

private:
    Bytes chunks;
};

} // namespace GdiplusBackend
