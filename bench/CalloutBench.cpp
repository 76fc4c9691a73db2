#include "KestoMediaLib/CalloutMedia.h"
#include "platform/Gdiplus.h"
#include "production/GdiplusBitmapThumbnailingHelper.h"

#include <benchmark/benchmark.h>
#include <boost/make_shared.hpp>

#include <memory>
#include <string>

namespace KestoThumbnailer {

namespace {

using Params = KestoMediaLib::VectorDrawing::Params;

class GdiplusUser {
public:
    GdiplusUser() {
        const Gdiplus::GdiplusStartupInput input;
        Gdiplus::GdiplusStartup(&token, &input, nullptr);
    }
    ~GdiplusUser() { Gdiplus::GdiplusShutdown(token); }
    GdiplusUser(const GdiplusUser&) = delete;
    GdiplusUser& operator=(const GdiplusUser&) = delete;

private:
    ULONG_PTR token = 0;
};

/// A callout of 300 by 200 to 160 by 120. Fonts are found and loaded with the first one, before the clock
/// runs.
void thumbnail(benchmark::State& state, const char* kind, const char* shape, const Params& params) {
    const GdiplusUser gdiplus;
    const auto callout = boost::make_shared<KestoMediaLib::CalloutMedia>(
        boost::make_shared<KestoMediaLib::VectorDrawing>(kind, shape, "plain", params));
    callout->setExtent({300, 200});
    const auto draw = [&] {
        return std::unique_ptr<Gdiplus::Bitmap>(
            GdiplusBitmapThumbnailingHelper::GetThumbnailForCallout(callout, 160, 120));
    };
    if (!draw())
        return state.SkipWithError("no thumbnail");
    for ([[maybe_unused]] auto turn : state)
        benchmark::DoNotOptimize(draw());
}

const Params noParams;
const Params words = {{"Text", std::string("Press this one to go on")}};
const Params everything = {{"Text", std::string("Press this one to go on")}, {"Shadow", true}};
const Params drawing = {
    {"Svg",
     std::string("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 300 200'>"
                 "<path d='M10,190 C 40 10, 60 10, 290 190' stroke='#d1242f' stroke-width='6'/></svg>")}};

} // namespace

BENCHMARK_CAPTURE(thumbnail, arrow, "remix", "arrow", noParams)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(thumbnail, text, "remix", "text", words)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(thumbnail, bubbleWithShadow, "remix", "speech-bubble", everything)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(thumbnail, svg, "TypeWinSVG", "", drawing)->Unit(benchmark::kMillisecond);

} // namespace KestoThumbnailer
