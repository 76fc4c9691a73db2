#include "backends/gdiplus/encoders/Decoded.h"
#include "backends/gdiplus/encoders/TestPicture.h"
#include "gdiplus/encoders/BmpEncoder.h"
#include "gdiplus/encoders/GifEncoder.h"
#include "gdiplus/encoders/JpegEncoder.h"
#include "gdiplus/encoders/PngEncoder.h"
#include "gdiplus/encoders/TiffEncoder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <new>
#include <string>

namespace GdiplusBackend {

namespace {

struct Encoder {
    const char* name;
    EncodePicture encode;
    Decode decode;
    double tolerance; ///< mean difference of opaque colours
};

Decoded decodeAsJpeg(std::span<const std::byte> file) {
    return decodeJpeg(file);
}

void PrintTo(const Encoder& encoder, std::ostream* out) {
    *out << encoder.name;
}

class AnyEncoder : public testing::TestWithParam<Encoder> {
protected:
    static std::vector<std::byte> file(const TestPicture& picture, const EncodeOptions& options = {}) {
        return encoded(GetParam().encode, picture.view(), options);
    }
};

/// Takes `room` bytes, then fails; being called again after that makes the test fail.
class FailingSink : public ByteSink {
public:
    explicit FailingSink(std::size_t bytes)
        : room(bytes) {}

    Result<void> write(std::span<const std::byte> bytes) override {
        EXPECT_FALSE(hasFailed) << "written to after the failure";
        if (bytes.size() > room) {
            hasFailed = true;
            return tl::unexpected(LoadError{Gdiplus::AccessDenied, "the disk is full"});
        }
        room -= bytes.size();
        return {};
    }

private:
    std::size_t room;
    bool hasFailed = false;
};

class ThrowingSink : public ByteSink {
public:
    Result<void> write(std::span<const std::byte>) override { throw std::bad_alloc(); }
};

Gdiplus::ARGB noiseAt(int x, int y) {
    auto number = static_cast<std::uint32_t>(x) * 73856093U ^ static_cast<std::uint32_t>(y) * 19349663U;
    number = (number ^ number >> 13) * 0x5BD1E995U;
    return (number ^ number >> 15) | 0xFF000000;
}

void expectSinkError(const Encoder& encoder, const ConstPixelView& picture, std::size_t room) {
    FailingSink sink(room);
    const Result<void> written = encoder.encode(picture, {}, sink);
    ASSERT_FALSE(written.has_value()) << "room for " << room;
    EXPECT_EQ(written.error().status, Gdiplus::AccessDenied);
    EXPECT_EQ(written.error().message, "the disk is full");
}

Result<void> encodeToNowhere(const Encoder& encoder, const ConstPixelView& picture) {
    MemorySink sink;
    Result<void> written = encoder.encode(picture, {}, sink);
    EXPECT_TRUE(written.has_value() || sink.bytes.empty()) << "refused, but written to";
    return written;
}

/// Of any size, every row the same: for sizes whose pixels nobody could hold.
ConstPixelView repeatedRow(int width, int height, Gdiplus::PixelFormat format,
                           std::vector<std::byte>& memory) {
    memory.assign(alignedStride(width, format), std::byte{0});
    return {memory.data(), 0, width, height, format, {}};
}

} // namespace

TEST_P(AnyEncoder, BottomUpRowsGiveTheSameFile) {
    for (const auto format : {PixelFormat24bppRGB, PixelFormat32bppARGB}) {
        TestPicture topDown(13, 7, format, RowsInMemory::TopDown);
        TestPicture bottomUp(13, 7, format, RowsInMemory::BottomUp);
        EXPECT_EQ(file(topDown.paint(photoAt)), file(bottomUp.paint(photoAt)));
    }
}

TEST_P(AnyEncoder, BottomUpIndicesGiveTheSameFile) {
    const auto indexAt = [](int x, int y) { return (x + 3 * y) % 16; };
    TestPicture topDown(13, 7, PixelFormat4bppIndexed, RowsInMemory::TopDown);
    TestPicture bottomUp(13, 7, PixelFormat4bppIndexed, RowsInMemory::BottomUp);
    EXPECT_EQ(file(topDown.paintIndices(distinctColours(16), indexAt)),
              file(bottomUp.paintIndices(distinctColours(16), indexAt)));
}

TEST_P(AnyEncoder, AnyWidthKeepsItsColours) {
    for (int width = 1; width <= 17; ++width) {
        TestPicture picture(width, 5, PixelFormat24bppRGB);
        picture.paint([](int x, int y) { return photoAt(5 * x, 5 * y); });
        const Decoded decoded = GetParam().decode(file(picture));
        EXPECT_EQ(decoded.width, width);
        EXPECT_EQ(decoded.height, 5);
        EXPECT_LE(meanDifference(decoded.pixels, picture.pixels()), GetParam().tolerance) << width;
    }
}

TEST_P(AnyEncoder, OnePixelIsAPicture) {
    for (const auto format : {PixelFormat24bppRGB, PixelFormat32bppARGB}) {
        TestPicture picture(1, 1, format);
        picture.paint([](int, int) { return 0xFF4080C0; });
        const Decoded decoded = GetParam().decode(file(picture));
        ASSERT_EQ(decoded.pixels.size(), 1U);
        EXPECT_LE(meanDifference(decoded.pixels, picture.pixels()), GetParam().tolerance);
    }
}

TEST_P(AnyEncoder, OneIndexIsAPicture) {
    for (const auto format : {PixelFormat1bppIndexed, PixelFormat4bppIndexed, PixelFormat8bppIndexed}) {
        TestPicture picture(1, 1, format);
        picture.paintIndices({0xFF000000, 0xFF4080C0}, [](int, int) { return 1; });
        EXPECT_LE(meanDifference(GetParam().decode(file(picture)).pixels, picture.pixels()),
                  GetParam().tolerance);
    }
}

TEST_P(AnyEncoder, PalettesOfAllDepthsKeepTheirColours) {
    for (const auto format : {PixelFormat1bppIndexed, PixelFormat4bppIndexed, PixelFormat8bppIndexed}) {
        const int count = 1 << GetPixelFormatSize(format);
        TestPicture picture(37, 19, format);
        picture.paintIndices(distinctColours(count),
                             [count](int x, int y) { return (x / 8 + y / 8) % count; });
        const Decoded decoded = GetParam().decode(file(picture));
        EXPECT_LE(meanDifference(decoded.pixels, picture.pixels()), GetParam().tolerance) << count;
    }
}

TEST_P(AnyEncoder, IndicesBehindAShortPaletteAreBlack) {
    TestPicture picture(24, 8, PixelFormat8bppIndexed);
    picture.paintIndices({0xFFFFFFFF, 0xFFC08040}, [](int x, int) { return x < 8 ? 0 : x < 16 ? 1 : 77; });
    const Decoded decoded = GetParam().decode(file(picture));
    EXPECT_LE(meanDifference(decoded.pixels, picture.pixels()), GetParam().tolerance);
}

TEST_P(AnyEncoder, FullDiskAtEachByteIsToldUnchanged) {
    for (const auto format : {PixelFormat24bppRGB, PixelFormat32bppARGB}) {
        TestPicture picture(9, 6, format);
        picture.paint(colourfulAt);
        const std::size_t length = file(picture).size();
        for (std::size_t room = 0; room < length; ++room)
            expectSinkError(GetParam(), picture.view(), room);
    }
}

TEST_P(AnyEncoder, FullDiskInTheMiddleOfALargeFileIsToldUnchanged) {
    TestPicture picture(520, 519, PixelFormat24bppRGB);
    picture.paint(noiseAt);
    const std::size_t length = file(picture).size();
    ASSERT_GT(length, 100'000U);
    for (std::size_t room = 0; room < length; room += 100'000)
        expectSinkError(GetParam(), picture.view(), room);
    expectSinkError(GetParam(), picture.view(), length - 1);
}

TEST_P(AnyEncoder, MemoryThatRunsOutInTheSinkIsThrownOn) {
    TestPicture picture(420, 401, PixelFormat24bppRGB);
    picture.paint(noiseAt);
    ThrowingSink sink;
    EXPECT_THROW((void)GetParam().encode(picture.view(), {}, sink), std::bad_alloc);
}

TEST_P(AnyEncoder, LargePictureKeepsItsColours) {
    TestPicture picture(420, 401, PixelFormat24bppRGB);
    picture.paint(
        [](int x, int y) { return distinctColours(251)[static_cast<std::size_t>((x / 3 + y) % 251)]; });
    const Decoded decoded = GetParam().decode(file(picture));
    EXPECT_LE(meanDifference(decoded.pixels, picture.pixels()), GetParam().tolerance);
}

TEST_P(AnyEncoder, EmptyPictureIsAnInvalidParameter) {
    std::vector<std::byte> memory;
    for (const auto& [width, height] :
         {std::pair(0, 4), std::pair(4, 0), std::pair(-1, 4), std::pair(4, -1)}) {
        const Result<void> written =
            encodeToNowhere(GetParam(), {memory.data(), 4, width, height, PixelFormat24bppRGB, {}});
        ASSERT_FALSE(written.has_value());
        EXPECT_EQ(written.error().status, Gdiplus::InvalidParameter);
    }
}

TEST_P(AnyEncoder, OtherPixelFormatsAreAnInvalidParameter) {
    for (const auto format : {PixelFormat32bppRGB, PixelFormat32bppPARGB, PixelFormat16bppRGB565,
                              PixelFormat32bppCMYK, PixelFormatUndefined}) {
        std::vector<std::byte> memory(16);
        const Result<void> written = encodeToNowhere(GetParam(), {memory.data(), 4, 1, 1, format, {}});
        ASSERT_FALSE(written.has_value()) << std::hex << format;
        EXPECT_EQ(written.error().status, Gdiplus::InvalidParameter);
    }
}

const Encoder encoderCases[] = {{"Bmp", encodeBmp, decodeBmp, 0},
                                {"Jpeg", encodeJpeg, decodeAsJpeg, 14},
                                {"Gif", encodeGif, decodeGif, 0},
                                {"Tiff", encodeTiff, decodeTiff, 0},
                                {"Png", encodePng, decodePng, 0}};

INSTANTIATE_TEST_SUITE_P(Encoders, AnyEncoder, testing::ValuesIn(encoderCases),
                         [](const auto& encoder) { return std::string(encoder.param.name); });

struct FormatLimit {
    const char* name;
    EncodePicture encode;
    int width;
    int height;
    Gdiplus::PixelFormat format;
    const char* message;
};

void PrintTo(const FormatLimit& limit, std::ostream* out) {
    *out << limit.name;
}

class PictureOverTheFormatsLimit : public testing::TestWithParam<FormatLimit> {};

TEST_P(PictureOverTheFormatsLimit, IsRefusedBeforeAnythingIsWritten) {
    const FormatLimit& limit = GetParam();
    std::vector<std::byte> memory;
    MemorySink sink;
    const ConstPixelView picture = repeatedRow(limit.width, limit.height, limit.format, memory);
    const Result<void> written = limit.encode(picture, {}, sink);
    ASSERT_FALSE(written.has_value());
    EXPECT_EQ(written.error().status, Gdiplus::GenericError);
    EXPECT_THAT(written.error().message, testing::HasSubstr(limit.message));
    EXPECT_TRUE(sink.bytes.empty());
}

const FormatLimit limitCases[] = {
    {"JpegWidth", encodeJpeg, 65501, 1, PixelFormat24bppRGB, "65500 pixels a side, not 65501x1"},
    {"JpegHeight", encodeJpeg, 1, 65501, PixelFormat24bppRGB, "65500 pixels a side, not 1x65501"},
    {"GifWidth", encodeGif, 65536, 1, PixelFormat8bppIndexed, "65535 pixels a side, not 65536x1"},
    {"GifHeight", encodeGif, 1, 65536, PixelFormat32bppARGB, "65535 pixels a side, not 1x65536"},
    {"BmpBytes", encodeBmp, 32768, 32768, PixelFormat32bppARGB, "4 GiB"},
    {"BmpBytesFarOver", encodeBmp, 1 << 20, std::numeric_limits<int>::max(), PixelFormat32bppARGB, "4 GiB"},
    {"TiffBytes", encodeTiff, 32768, 32769, PixelFormat32bppARGB, "4 GiB"},
};

INSTANTIATE_TEST_SUITE_P(Formats, PictureOverTheFormatsLimit, testing::ValuesIn(limitCases),
                         [](const auto& limit) { return std::string(limit.param.name); });

TEST(PictureAtTheFormatsLimit, IsWritten) {
    std::vector<std::byte> memory;
    const auto jpeg = decodeJpeg(encoded(encodeJpeg, repeatedRow(65500, 1, PixelFormat24bppRGB, memory)));
    EXPECT_EQ(jpeg.width, 65500);
    const auto gif = decodeGif(encoded(encodeGif, repeatedRow(2, 65535, PixelFormat24bppRGB, memory)));
    EXPECT_EQ(gif.height, 65535);
    EXPECT_EQ(gif.pixels, Pixels(std::size_t{2} * 65535, 0xFF000000));
}

} // namespace GdiplusBackend
