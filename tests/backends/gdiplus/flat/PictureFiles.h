#pragma once

#include "backends/gdiplus/codecs/CollectRows.h"
#include "support/GdiplusUser.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace GdiplusBackend {

/// Tests with picture files in a folder of their own.
class PictureFiles : public ::testing::Test {
protected:
    std::wstring write(std::string_view name, std::span<const std::byte> bytes) const {
        const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        return TestSupport::wideOf(folder.write(name, text));
    }
    std::wstring write(std::string_view name, std::span<const unsigned char> bytes) const {
        return write(name, std::as_bytes(bytes));
    }

    /// A bitmap from a file with these bytes.
    template <typename Byte>
    std::unique_ptr<Gdiplus::Bitmap> open(const std::vector<Byte>& bytes, BOOL managed = FALSE) const {
        const std::string name = "picture-" + std::to_string(filesOpened++);
        return std::make_unique<Gdiplus::Bitmap>(write(name, std::span(bytes)).c_str(), managed);
    }
    /// The same, decoded already.
    template <typename Byte>
    std::unique_ptr<Gdiplus::Bitmap> openDecoded(const std::vector<Byte>& bytes, BOOL managed = FALSE) const {
        auto bitmap = open(bytes, managed);
        EXPECT_EQ(bitmap->ForceValidation(), Gdiplus::Ok);
        return bitmap;
    }

    TestSupport::TempFolder folder;
    TestSupport::GdiplusUser gdiplus;

private:
    mutable int filesOpened = 0;
};

using ArgbPixels = std::vector<Gdiplus::ARGB>;

/// All pixels, row by row from the top; none when they can't be had.
inline ArgbPixels pixelsOf(Gdiplus::Bitmap& bitmap, Gdiplus::PixelFormat format = PixelFormat32bppARGB) {
    Gdiplus::BitmapData locked;
    if (bitmap.LockBits(nullptr, Gdiplus::ImageLockModeRead, format, &locked) != Gdiplus::Ok)
        return {};
    ArgbPixels pixels;
    for (UINT y = 0; y < locked.Height; ++y) {
        const auto* row = reinterpret_cast<const Gdiplus::ARGB*>(
            static_cast<const BYTE*>(locked.Scan0) + static_cast<std::ptrdiff_t>(y) * locked.Stride);
        pixels.insert(pixels.end(), row, row + locked.Width);
    }
    bitmap.UnlockBits(&locked);
    return pixels;
}

/// The whole picture drawn into one of another size, on transparent ground, premultiplied; no pixels when
/// that fails.
inline ArgbPixels drawn(Gdiplus::Bitmap& picture, int width, int height,
                        Gdiplus::InterpolationMode mode = Gdiplus::InterpolationModeHighQualityBicubic) {
    Gdiplus::Bitmap target(width, height, PixelFormat32bppPARGB);
    Gdiplus::Graphics graphics(&target);
    graphics.SetInterpolationMode(mode);
    if (graphics.DrawImage(&picture, Gdiplus::Rect(0, 0, width, height), 0, 0,
                           static_cast<INT>(picture.GetWidth()), static_cast<INT>(picture.GetHeight()),
                           Gdiplus::UnitPixel) != Gdiplus::Ok)
        return {};
    return pixelsOf(target, PixelFormat32bppPARGB);
}

/// The largest difference in a channel; 256 for pictures of different sizes and for none.
inline int largestDifference(const ArgbPixels& one, const ArgbPixels& other) {
    if (one.size() != other.size() || one.empty())
        return 256;
    int largest = 0;
    for (std::size_t i = 0; i < one.size(); ++i)
        for (const int shift : {0, 8, 16, 24})
            largest = std::max(largest, std::abs(static_cast<int>(one[i] >> shift & 255) -
                                                 static_cast<int>(other[i] >> shift & 255)));
    return largest;
}

} // namespace GdiplusBackend
