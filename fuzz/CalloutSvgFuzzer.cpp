#include "KestoMediaLib/CalloutMedia.h"
#include "platform/CalloutDrawer.h"

#include <boost/make_shared.hpp>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

constexpr int width = 64;
constexpr int height = 48;

void require(bool holds) {
    if (!holds)
        std::abort();
}

/// Each colour at most as large as its alpha.
void checkPixels(const KestoRenderLib::MetaBitmap& overlay) {
    require(overlay.GetWidth() == width && overlay.GetHeight() == height);
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const unsigned char* pixel =
                overlay.GetPixels() + std::ptrdiff_t{overlay.GetStride()} * y + x * 4;
            require(pixel[0] <= pixel[3] && pixel[1] <= pixel[3] && pixel[2] <= pixel[3]);
        }
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    return ::setenv("KESTO_SVG_TIME_LIMIT_MS", "1000", 0); // NOLINT(concurrency-mt-unsafe): before any thread
}

/// Draws the input as an SVG, half way and done: in this process if it is plain, else in one of its own.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t longest = 64 * 1024;
    const KestoMediaLib::VectorDrawing::Params params = {
        {"Svg", std::string(reinterpret_cast<const char*>(data), std::min(size, longest))},
        {"DrawTime", __int64{2}}};
    const auto callout = boost::make_shared<KestoMediaLib::CalloutMedia>(
        boost::make_shared<KestoMediaLib::VectorDrawing>("TypeWinSVG", "", "plain", params));
    callout->setExtent({width * 1.0, height * 1.0});
    KestoRenderLib::CalloutDrawer drawer(callout, {}, /*editing=*/false);
    for (const int seconds : {1, 2}) {
        drawer.SetTime(seconds * KestoMediaLib::modelTimePerSecond);
        if (const auto overlay = drawer.GenerateOverlay({width, height}, {1, 1}, true, seconds == 2))
            checkPixels(*overlay);
    }
    return 0;
}
