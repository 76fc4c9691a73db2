#include "gdiplus/color/ColorTransform.h"

#include <lcms2.h>

#include <algorithm>
#include <array>
#include <cstdlib>

namespace GdiplusBackend {

namespace {

struct CloseProfile {
    void operator()(void* profile) const { cmsCloseProfile(profile); }
};
using Profile = std::unique_ptr<void, CloseProfile>;

struct Inputs {
    cmsColorSpaceSignature signature;
    cmsUInt32Number type;
};

Inputs inputsOf(ColorTransform::Space space) {
    switch (space) {
    case ColorTransform::Space::Gray:
        return {cmsSigGrayData, TYPE_GRAY_8};
    case ColorTransform::Space::Rgb:
        return {cmsSigRgbData, TYPE_BGR_8};
    case ColorTransform::Space::Cmyk:
        return {cmsSigCmykData, TYPE_CMYK_8};
    }
    return {cmsSigRgbData, TYPE_BGR_8};
}

/// Pixels of B, G, R.
constexpr std::array<std::uint8_t, 36> probes = {0,   0,   0,   255, 255, 255, 16,  16,  16,  64, 64,  64,
                                                 128, 128, 128, 200, 200, 200, 0,   0,   255, 0,  255, 0,
                                                 255, 0,   0,   30,  200, 90,  220, 140, 60,  90, 30,  180};

constexpr int chunk = 256;
using Colors = std::array<std::byte, std::size_t{3} * chunk>;

/// Copies B, G, R from pixel to pixel.
void copyColors(const std::byte* from, int fromBytes, std::byte* to, int toBytes, int count) {
    for (int i = 0; i < count; ++i, from += fromBytes, to += toBytes)
        std::copy_n(from, 3, to);
}

/// Calls `work` with the first pixel and the number of pixels of each part of a row that `Colors` holds.
template <typename Work>
void inChunks(std::byte* pixels, int count, int pixelBytes, Work work) {
    for (int done = 0; done < count; done += chunk)
        work(pixels + std::ptrdiff_t{done} * pixelBytes, std::min(chunk, count - done));
}

} // namespace

std::shared_ptr<const ColorTransform> ColorTransform::create(std::span<const std::byte> profileBytes,
                                                             Space from) {
    const Profile profile(
        cmsOpenProfileFromMem(profileBytes.data(), static_cast<cmsUInt32Number>(profileBytes.size())));
    const Inputs inputs = inputsOf(from);
    if (!profile || cmsGetColorSpace(profile.get()) != inputs.signature)
        return nullptr;
    const Profile srgb(cmsCreate_sRGBProfile());
    if (!srgb)
        return nullptr;
    const std::shared_ptr<ColorTransform> result(new ColorTransform);
    result->space = from;
    // NOCACHE: the one-pixel cache is the only state that threads would share.
    result->transform = cmsCreateTransform(profile.get(), inputs.type, srgb.get(), TYPE_BGR_8,
                                           INTENT_PERCEPTUAL, cmsFLAGS_NOCACHE);
    if (!result->transform || result->changesNothing())
        return nullptr;
    return result;
}

/// Most profiles in pictures are sRGB under one name or another; a few colours tell.
bool ColorTransform::changesNothing() const {
    if (space == Space::Cmyk)
        return false;
    auto pixels = probes;
    constexpr std::size_t grays = 6; // come first
    const std::size_t count = space == Space::Gray ? grays : probes.size() / 3;
    applyRgb(reinterpret_cast<std::byte*>(pixels.data()), static_cast<int>(count), 3);
    return std::equal(pixels.begin(), pixels.end(), probes.begin(),
                      [](int before, int after) { return std::abs(before - after) <= 1; });
}

ColorTransform::~ColorTransform() {
    if (transform)
        cmsDeleteTransform(transform);
}

void ColorTransform::run(const void* from, void* to, int count) const {
    cmsDoTransform(transform, from, to, static_cast<cmsUInt32Number>(count));
}

void ColorTransform::applyRgb(std::byte* pixels, int count, int pixelBytes) const {
    if (space == Space::Gray)
        return applyGray(pixels, count, pixelBytes);
    if (pixelBytes == 3)
        return run(pixels, pixels, count);
    inChunks(pixels, count, pixelBytes, [this, pixelBytes](std::byte* first, int part) {
        Colors colors = {};
        copyColors(first, pixelBytes, colors.data(), 3, part);
        run(colors.data(), colors.data(), part);
        copyColors(colors.data(), 3, first, pixelBytes, part);
    });
}

void ColorTransform::applyGray(std::byte* pixels, int count, int pixelBytes) const {
    inChunks(pixels, count, pixelBytes, [this, pixelBytes](std::byte* first, int part) {
        std::array<std::byte, chunk> grays = {};
        const std::byte* pixel = first;
        for (int i = 0; i < part; ++i, pixel += pixelBytes)
            grays[static_cast<std::size_t>(i)] = *pixel;
        Colors colors = {};
        run(grays.data(), colors.data(), part);
        copyColors(colors.data(), 3, first, pixelBytes, part);
    });
}

void ColorTransform::applyCmyk(std::byte* pixels, int count) const {
    inChunks(pixels, count, 4, [this](std::byte* first, int part) {
        Colors colors = {};
        run(first, colors.data(), part);
        copyColors(colors.data(), 3, first, 4, part);
        for (int i = 0; i < part; ++i, first += 4)
            first[3] = std::byte{255};
    });
}

void ColorTransform::applyToPalette(std::span<Gdiplus::ARGB> palette) const {
    for (Gdiplus::ARGB& entry : palette) {
        const std::array<std::uint8_t, 3> color = {static_cast<std::uint8_t>(entry),
                                                   static_cast<std::uint8_t>(entry >> 8),
                                                   static_cast<std::uint8_t>(entry >> 16)};
        std::array<std::uint8_t, 3> out = {};
        run(color.data(), out.data(), 1);
        entry = (entry & 0xFF000000) | static_cast<Gdiplus::ARGB>(out[2]) << 16 |
                static_cast<Gdiplus::ARGB>(out[1]) << 8 | out[0];
    }
}

} // namespace GdiplusBackend
