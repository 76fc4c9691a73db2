#pragma once

#include "gdiplus/encoders/PictureEncoder.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace GdiplusBackend {

enum class RowsInMemory { TopDown, BottomUp };

using Pixels = std::vector<Gdiplus::ARGB>;

/// A picture with memory of its own, whose padding is filled with a pattern that must never show.
class TestPicture {
public:
    TestPicture(int width, int height, Gdiplus::PixelFormat format,
                RowsInMemory order = RowsInMemory::TopDown);

    /// For 24bppRGB and 32bppARGB.
    TestPicture& paint(const std::function<Gdiplus::ARGB(int x, int y)>& colourAt);
    /// For indexed formats.
    TestPicture& paintIndices(std::vector<Gdiplus::ARGB> colours,
                              const std::function<int(int x, int y)>& indexAt);

    ConstPixelView view() const;
    /// The colours that the picture shows, row by row from the top; those of 24bppRGB are opaque.
    Pixels pixels() const;

private:
    std::byte* row(int y);
    void setIndex(int x, int y, int index);
    std::ptrdiff_t topOffset() const;

    int width;
    int height;
    Gdiplus::PixelFormat format;
    RowsInMemory order;
    std::size_t stride;
    std::vector<std::byte> memory;
    std::vector<Gdiplus::ARGB> palette;
    Pixels shown;
};

/// Every pixel different in all channels from its neighbours, and the alpha from 0 to 255.
Gdiplus::ARGB colourfulAt(int x, int y);
/// Smooth shades with a little noise, as in a photo; opaque. More than 256 colours from about 20x20 on.
Gdiplus::ARGB photoAt(int x, int y);
/// `count` opaque colours of which no two are equal, for up to 256.
std::vector<Gdiplus::ARGB> distinctColours(int count);

/// Collects everything.
class MemorySink : public ByteSink {
public:
    Result<void> write(std::span<const std::byte> part) override {
        bytes.insert(bytes.end(), part.begin(), part.end());
        return {};
    }

    std::vector<std::byte> bytes;
};

/// The file that `encode` makes; the test fails when it makes none.
std::vector<std::byte> encoded(EncodePicture encode, const ConstPixelView& picture,
                               const EncodeOptions& options = {});

} // namespace GdiplusBackend
