#pragma once

#include "gdiplus/encoders/PictureEncoder.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace GdiplusBackend {

/// What every encoder takes: a picture of at least one pixel, 1, 4 or 8bppIndexed, 24bppRGB or 32bppARGB,
/// else `InvalidParameter`; and no side longer than `longestSide`, else `GenericError`. `kind` names the file
/// format in the message.
Result<void> checkPicture(const ConstPixelView& picture, const char* kind, std::int64_t longestSide);

/// Rows of a picture in the order of bytes that file formats want. An index without a palette entry is black.
class PictureRows {
public:
    /// `picture` is one that `checkPicture` has let pass.
    explicit PictureRows(const ConstPixelView& picture);

    /// Entries that every index of the picture finds, as many as the pixel format can tell apart at most: the
    /// picture's palette, longer when the pixels need more. Only for indexed pictures.
    std::span<const Gdiplus::ARGB> palette() const { return {colours.data(), colourCount}; }

    /// The row as it lies in memory, without padding.
    std::span<const std::byte> raw(int y) const;
    /// One byte a pixel, `out` has `width` of them. Only for indexed pictures.
    void indices(int y, std::span<std::uint8_t> out) const;
    /// R, G, B a pixel; alpha is dropped.
    void rgb(int y, std::span<std::byte> out) const;
    /// R, G, B, A a pixel, alpha not premultiplied. Not for 24bppRGB.
    void rgba(int y, std::span<std::byte> out) const;

private:
    std::size_t countColours() const;
    std::uint8_t indexAt(const std::byte* row, int x) const;

    ConstPixelView view;
    std::array<Gdiplus::ARGB, 256> colours;
    std::size_t colourCount = 0;
};

/// `dotsPerInch`, or 96 for what is no positive number.
float knownDotsPerInch(float dotsPerInch);
/// `knownDotsPerInch` as dots per metre.
std::uint32_t dotsPerMetre(float dotsPerInch);
/// `knownDotsPerInch` as the nearest whole number from 1 to 65,535.
std::uint16_t wholeDotsPerInch(float dotsPerInch);

constexpr std::uint8_t alphaOf(Gdiplus::ARGB color) {
    return static_cast<std::uint8_t>(color >> 24);
}
constexpr std::uint8_t redOf(Gdiplus::ARGB color) {
    return static_cast<std::uint8_t>(color >> 16);
}
constexpr std::uint8_t greenOf(Gdiplus::ARGB color) {
    return static_cast<std::uint8_t>(color >> 8);
}
constexpr std::uint8_t blueOf(Gdiplus::ARGB color) {
    return static_cast<std::uint8_t>(color);
}

} // namespace GdiplusBackend
