#pragma once

#include "platform/GdiplusTypes.h"

#include <cstddef>
#include <memory>
#include <span>

namespace GdiplusBackend {

/// From the colours of an ICC profile (ICC.1) to sRGB (IEC 61966-2-1), perceptual intent. Immutable; any
/// number of threads may use one at once.
class ColorTransform {
public:
    /// The kinds of colours that a profile can tell the meaning of.
    enum class Space { Gray, Rgb, Cmyk };

    /// Empty for a broken profile, one of another kind of colours, and one that changes no colour by more
    /// than one level.
    static std::shared_ptr<const ColorTransform> create(std::span<const std::byte> profile, Space space);
    ~ColorTransform();
    ColorTransform(const ColorTransform&) = delete;
    ColorTransform& operator=(const ColorTransform&) = delete;

    /// `count` pixels of B, G, R in place; `pixelBytes` is 3, or 4 with a last byte that stays. For `Gray`
    /// the three are equal.
    void applyRgb(std::byte* pixels, int count, int pixelBytes) const;
    /// C, M, Y, K (0 is no ink) to B, G, R, 255 in place.
    void applyCmyk(std::byte* pixels, int count) const;
    /// Changes the colours of a palette; alpha stays. For `Gray` the colours are gray.
    void applyToPalette(std::span<Gdiplus::ARGB> palette) const;

private:
    ColorTransform() = default;
    bool changesNothing() const;
    void run(const void* from, void* to, int count) const;
    void applyGray(std::byte* pixels, int count, int pixelBytes) const;

    Space space = Space::Rgb;
    void* transform = nullptr; ///< to B, G, R; from Gray, B G R, or C M Y K in 8 bits a sample
};

} // namespace GdiplusBackend
