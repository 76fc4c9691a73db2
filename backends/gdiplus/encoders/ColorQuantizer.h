#pragma once

#include "gdiplus/pixels/PixelView.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace GdiplusBackend {

/// Brings a picture down to at most 256 palette entries. Pixels with an alpha below 128 become the one
/// transparent entry, all others opaque. A picture of at most 256 different colours, counted so, keeps every
/// one. For a richer one the palette is fitted by splitting boxes of the colour cube where that lowers the
/// squared error most (after Wu, Graphics Gems II) and by moving the entries to the means of their colours;
/// Floyd and Steinberg's error diffusion then hides the steps.
class ColorQuantizer {
public:
    /// `picture` is 24bppRGB or 32bppARGB; its memory must outlive the quantizer.
    explicit ColorQuantizer(const ConstPixelView& picture);
    ~ColorQuantizer();
    ColorQuantizer(const ColorQuantizer&) = delete;
    ColorQuantizer& operator=(const ColorQuantizer&) = delete;

    /// From 1 to 256 entries, opaque but for the transparent one.
    std::span<const Gdiplus::ARGB> palette() const;
    std::optional<std::uint8_t> transparentIndex() const;

    /// The next row's palette indices, from the top row on, `width` of them.
    void nextRow(std::span<std::uint8_t> indices);

    class Mapping;

private:
    std::unique_ptr<Mapping> mapping;
};

} // namespace GdiplusBackend
