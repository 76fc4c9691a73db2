#include "backends/gdiplus/codecs/CollectRows.h"
#include "backends/gdiplus/codecs/GifBuilder.h"

#include "gdiplus/codecs/CodecModules.h"
#include "platform/ImageCodecs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <string_view>

namespace GdiplusBackend {

namespace {

/// Whether this process has a file of that name mapped.
bool isLoaded(std::string_view file) {
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);)
        if (line.find(file) != line.npos)
            return true;
    return false;
}

Bytes bytesOf(std::string_view text) {
    const auto bytes = std::as_bytes(std::span(text));
    return {bytes.begin(), bytes.end()};
}

} // namespace

// Each case has a process of its own, so nothing was loaded before.
TEST(CodecModules, NeitherOtherPicturesNorTheListOfDecodersLoadAny) {
    EXPECT_EQ(statusOf(GifBuilder(1, 1, gifColours(2)).frame({}).build()), Gdiplus::Ok);
    EXPECT_THAT(Gdiplus::AvailableImageDecoders(), testing::IsSupersetOf({"GIF", "TIFF", "WebP"}));
    EXPECT_FALSE(isLoaded("kesto_codec_heif.so"));
    EXPECT_FALSE(isLoaded("kesto_codec_svg.so"));
}

TEST(CodecModules, AnSvgLoadsItsOwnModuleAlone) {
    EXPECT_EQ(statusOf(bytesOf("<svg xmlns='http://www.w3.org/2000/svg' width='1' height='1'/>")),
              Gdiplus::Ok);
    EXPECT_TRUE(isLoaded("kesto_codec_svg.so"));
    EXPECT_FALSE(isLoaded("kesto_codec_heif.so"));
}

TEST(CodecModules, InstalledModulesAreListed) {
    EXPECT_THAT(Gdiplus::AvailableImageDecoders(), testing::IsSupersetOf({"HEIF", "SVG"}));
}

TEST(CodecModules, LoadingAgainGivesTheSameCodec) {
    const auto first = loadCodecModule(CodecModule::Heif);
    const auto second = loadCodecModule(CodecModule::Heif);
    ASSERT_TRUE(first) << first.error().message;
    EXPECT_EQ(*first, *second);
    EXPECT_STREQ((*first)->name, "HEIF");
}

} // namespace GdiplusBackend
