#pragma once

#include <cstddef>
#include <cstdint>

namespace GdiplusBackend::Scaling {

/// The places of one row's samples: B, G, R and, for transparent pixels, alpha; else that is null. Samples
/// have 16 bits with room below 0 and above 255: the overshoot of a cubic kernel passes through unharmed from
/// one direction to the other and is cut only when pixels are joined.
struct PlaneRow {
    std::uint16_t* blue;
    std::uint16_t* green;
    std::uint16_t* red;
    std::uint16_t* alpha;
};

constexpr PlaneRow operator+(const PlaneRow& row, std::ptrdiff_t pixels) {
    return {row.blue + pixels, row.green + pixels, row.red + pixels,
            row.alpha ? row.alpha + pixels : nullptr};
}

/// The 16-bit level of a sample of 0, and the bits below a sample's own.
constexpr int zeroLevel = 1 << 14;
constexpr int fractionBits = 7;

/// Splits `count` packed pixels into planes.
void splitPixels(const std::byte* pixels, int count, const PlaneRow& planes);
/// Sets `count` pixels of the planes to one packed pixel.
void fillPixels(const std::byte* pixel, int count, const PlaneRow& planes);
/// Joins planes to packed pixels, rounding to nearest. Without an alpha plane they are opaque; with one no
/// colour exceeds it.
void joinPixels(const PlaneRow& planes, int count, std::byte* pixels);

/// What `splitPixels` and `joinPixels` do, in plain C++.
void splitPixelsPlain(const std::byte* pixels, int count, const PlaneRow& planes);
void joinPixelsPlain(const PlaneRow& planes, int count, std::byte* pixels);

} // namespace GdiplusBackend::Scaling
