#include "PageRasterLib/poppler/PageCanvas.h"

#include <GfxState.h>
#include <splash/Splash.h>
#include <splash/SplashBitmap.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <numeric>

namespace PageRasterLib {

namespace {

constexpr int rowAlignment = 4;
constexpr double shortestDashInPixels = 1.0 / 16;
constexpr std::int64_t mostTiles = 1'000'000;
constexpr int mostSavedStates = 20'000;                 ///< of 6 kB each; annex C asks for 28
constexpr std::int64_t mostLayerPixels = 200'000'000;   ///< of 5 bytes each
constexpr std::int64_t mostImagePixels = 4'000'000'000; ///< about ten seconds

/// `colour` over white at `alpha`, rounded; exact at both ends.
std::uint8_t overWhite(std::uint8_t colour, std::uint8_t alpha) {
    const unsigned darkness = (255U - colour) * alpha + 128U;
    return static_cast<std::uint8_t>(255U - ((darkness + (darkness >> 8U)) >> 8U));
}

/// The picture is B, G, R and an unused byte, not premultiplied, with its alpha apart.
void putRowOnPaper(const std::uint8_t* picture, const std::uint8_t* alpha, std::uint8_t* out, int width) {
    constexpr std::uint32_t white = 0xFFFFFFFF;
    constexpr std::uint32_t opaque = 0xFF000000;
    for (int x = 0; x < width; ++x, picture += 4, out += 4) {
        std::uint32_t pixel = white;
        if (alpha[x] == 255) {
            std::memcpy(&pixel, picture, sizeof pixel);
            pixel |= opaque;
        } else if (alpha[x] != 0) {
            pixel = opaque | std::uint32_t{overWhite(picture[2], alpha[x])} << 16U |
                    std::uint32_t{overWhite(picture[1], alpha[x])} << 8U | overWhite(picture[0], alpha[x]);
        }
        std::memcpy(out, &pixel, sizeof pixel);
    }
}

} // namespace

PageCanvas::PageCanvas(TimeLimit& limit)
    : SplashOutputDev(splashModeXBGR8, rowAlignment, false, nullptr)
    , timeLimit(&limit) {
    setFontAntialias(true);
    setVectorAntialias(true);
}

bool PageCanvas::putOnPaper(const PageSize& size, const PageBuffer& buffer, int top) {
    const SplashBitmap& picture = *getBitmap();
    if (picture.getWidth() != size.width || picture.getHeight() != size.height)
        return false;
    for (int y = 0; y < size.height; ++y)
        putRowOnPaper(picture.getDataPtr() + std::ptrdiff_t{y} * picture.getRowSize(),
                      picture.getAlphaPtr() + std::ptrdiff_t{y} * picture.getAlphaRowSize(),
                      buffer.pixels + std::ptrdiff_t{top + y} * buffer.stride, size.width);
    return true;
}

void PageCanvas::saveState(GfxState* state) {
    if (++savedStates > mostSavedStates)
        timeLimit->pass();
    SplashOutputDev::saveState(state);
}

void PageCanvas::restoreState(GfxState* state) {
    --savedStates;
    SplashOutputDev::restoreState(state);
}

void PageCanvas::updateLineDash(GfxState* state) {
    double phase = 0;
    const std::vector<double>& dashes = state->getLineDash(&phase);
    const double total = std::accumulate(dashes.begin(), dashes.end(), 0.0);
    // Splash makes every dash of a line one by one, also where a million of them share a pixel.
    if (total != 0 && !(state->transformWidth(total) >= shortestDashInPixels))
        getSplash()->setLineDash({}, 0);
    else
        SplashOutputDev::updateLineDash(state);
}

bool PageCanvas::tilingPatternFill(GfxState* state, Gfx* gfx, Catalog* catalog, GfxTilingPattern* pattern,
                                   const double* matrix, int x0, int y0, int x1, int y1, double xStep,
                                   double yStep) {
    const std::int64_t columns = std::int64_t{x1} - x0;
    const std::int64_t rows = std::int64_t{y1} - y0;
    if (timeLimit->isPassed() || columns > mostTiles || rows > mostTiles || columns * rows > mostTiles)
        return true;
    return SplashOutputDev::tilingPatternFill(state, gfx, catalog, pattern, matrix, x0, y0, x1, y1, xStep,
                                              yStep);
}

bool PageCanvas::beginType3Char(GfxState* state, double x, double y, double dx, double dy, CharCode code,
                                const Unicode* unicode, int unicodeLength) {
    if (timeLimit->isPassed())
        return true;
    return SplashOutputDev::beginType3Char(state, x, y, dx, dy, code, unicode, unicodeLength);
}

void PageCanvas::beginTransparencyGroup(GfxState* state, const double* box, GfxColorSpace* space,
                                        bool isolated, bool knockout, bool forSoftMask) {
    if (std::int64_t{++layers} * getBitmapWidth() * getBitmapHeight() > mostLayerPixels)
        timeLimit->pass();
    SplashOutputDev::beginTransparencyGroup(state, box, space, isolated, knockout, forSoftMask);
}

void PageCanvas::endTransparencyGroup(GfxState* state) {
    --layers;
    SplashOutputDev::endTransparencyGroup(state);
}

bool PageCanvas::admitImage(int width, int height) {
    if (std::int64_t{width} * height > mostImagePixels)
        timeLimit->pass();
    return !timeLimit->isPassed();
}

void PageCanvas::drawImageMask(GfxState* state, Object* reference, Stream* data, int width, int height,
                               bool invert, bool interpolate, bool isInline) {
    if (admitImage(width, height))
        SplashOutputDev::drawImageMask(state, reference, data, width, height, invert, interpolate, isInline);
}

void PageCanvas::drawImage(GfxState* state, Object* reference, Stream* data, int width, int height,
                           GfxImageColorMap* colours, bool interpolate, const int* maskColours,
                           bool isInline) {
    if (admitImage(width, height))
        SplashOutputDev::drawImage(state, reference, data, width, height, colours, interpolate, maskColours,
                                   isInline);
}

void PageCanvas::drawMaskedImage(GfxState* state, Object* reference, Stream* data, int width, int height,
                                 GfxImageColorMap* colours, bool interpolate, Stream* mask, int maskWidth,
                                 int maskHeight, bool maskInvert, bool maskInterpolate) {
    if (admitImage(width, height) && admitImage(maskWidth, maskHeight))
        SplashOutputDev::drawMaskedImage(state, reference, data, width, height, colours, interpolate, mask,
                                         maskWidth, maskHeight, maskInvert, maskInterpolate);
}

void PageCanvas::drawSoftMaskedImage(GfxState* state, Object* reference, Stream* data, int width, int height,
                                     GfxImageColorMap* colours, bool interpolate, Stream* mask, int maskWidth,
                                     int maskHeight, GfxImageColorMap* maskColours, bool maskInterpolate) {
    if (admitImage(width, height) && admitImage(maskWidth, maskHeight))
        SplashOutputDev::drawSoftMaskedImage(state, reference, data, width, height, colours, interpolate,
                                             mask, maskWidth, maskHeight, maskColours, maskInterpolate);
}

} // namespace PageRasterLib
