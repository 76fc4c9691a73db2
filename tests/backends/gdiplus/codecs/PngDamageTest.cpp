#include "backends/gdiplus/codecs/PngBuilder.h"
#include "gdiplus/codecs/pngdecoder/PngFilters.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace GdiplusBackend {

namespace {

std::byte at(int value) {
    return static_cast<std::byte>(value);
}

PngBuilder ramp(int width, int height) {
    return PngBuilder(width, height, {2, 8}, [](int x, int y) { return std::array<int, 4>{x, y, x + y}; });
}

/// A file of one header chunk of this size, and an end.
Bytes headerOnly(std::uint32_t width, std::uint32_t height, std::array<int, 5> rest = {8, 2, 0, 0, 0}) {
    Bytes content;
    for (const std::uint32_t side : {width, height})
        for (const int shift : {24, 16, 8, 0})
            content.push_back(static_cast<std::byte>(side >> shift));
    for (const int value : rest)
        content.push_back(at(value));
    Bytes file = cutAt(ramp(1, 1).build(), 8);
    for (const Bytes& chunk : {pngChunk("IHDR", content), pngChunk("IDAT", {}), pngChunk("IEND", {})})
        file.insert(file.end(), chunk.begin(), chunk.end());
    return file;
}

Bytes without(Bytes file, std::string_view chunk, std::size_t contentBytes) {
    const auto start = file.begin() + static_cast<std::ptrdiff_t>(placeOfChunk(file, chunk));
    file.erase(start, start + static_cast<std::ptrdiff_t>(contentBytes + 12));
    return file;
}

} // namespace

TEST(PngDamage, ASizeOverTheBudgetIsRefusedFromTheHeaderAlone) {
    EXPECT_EQ(openBytes(headerOnly(100'000, 100'000)).error().status, Gdiplus::OutOfMemory);
}

TEST(PngDamage, ASizeThatTheBytesCannotHoldIsRefusedBeforeDecoding) {
    EXPECT_EQ(openBytes(headerOnly(15'000, 15'000)).error().status, Gdiplus::Aborted);
}

TEST(PngDamage, AnEmptySizeIsDamage) {
    EXPECT_EQ(statusOf(headerOnly(0, 5)), Gdiplus::GenericError);
    EXPECT_EQ(statusOf(headerOnly(5, 0)), Gdiplus::GenericError);
}

TEST(PngDamage, KindsThatTheStandardDoesNotKnowAreRefused) {
    for (const std::array<int, 5> fields : {std::array<int, 5>{3, 0, 0, 0, 0},
                                            {4, 2, 0, 0, 0},
                                            {16, 3, 0, 0, 0},
                                            {8, 1, 0, 0, 0},
                                            {8, 5, 0, 0, 0},
                                            {8, 2, 1, 0, 0},
                                            {8, 2, 0, 1, 0},
                                            {8, 2, 0, 0, 2}})
        EXPECT_EQ(statusOf(headerOnly(4, 4, fields)), Gdiplus::GenericError);
}

TEST(PngDamage, AMissingPaletteIsDamage) {
    EXPECT_EQ(statusOf(headerOnly(4, 4, {8, 3, 0, 0, 0})), Gdiplus::GenericError);
}

TEST(PngDamage, AWrongChecksumOfACriticalChunkIsDamage) {
    const Bytes good = ramp(20, 20).build();
    for (const std::string_view type : {"IHDR", "IDAT", "IEND"}) {
        Bytes file = good;
        const std::size_t place = placeOfChunk(file, type);
        const std::size_t contentBytes = std::to_integer<std::size_t>(file[place + 3]) |
                                         std::to_integer<std::size_t>(file[place + 2]) << 8;
        file[place + 8 + contentBytes] ^= at(1);
        EXPECT_EQ(statusOf(file), Gdiplus::GenericError) << type;
    }
}

TEST(PngDamage, AWrongChecksumOfAnAncillaryChunkDropsThatChunk) {
    Bytes file = ramp(20, 20).resolution(11811, 11811).build();
    file[placeOfChunk(file, "pHYs") + 8] ^= at(1);
    const auto decoder = openBytes(file);
    ASSERT_TRUE(decoder);
    EXPECT_FALSE((*decoder)->facts().flags & Gdiplus::ImageFlagsHasRealDPI);
    EXPECT_EQ(statusOf(file), Gdiplus::Ok);
}

TEST(PngDamage, DamagedCompressionIsDamage) {
    Bytes file = ramp(20, 20).build();
    const Bytes nonsense = pngChunk("IDAT", {at(0x78), at(0x9C), at(0xFF), at(0xFF), at(0xFF), at(0xFF)});
    EXPECT_EQ(statusOf(withBytesBefore(file, "IDAT", nonsense)), Gdiplus::GenericError);
    const Bytes wrongHeader = pngChunk("IDAT", {at(0x79), at(0x9C)});
    EXPECT_EQ(statusOf(withBytesBefore(file, "IDAT", wrongHeader)), Gdiplus::GenericError);
}

TEST(PngDamage, AWrongSumOfTheImageDataIsDamage) {
    const Bytes file = ramp(20, 20).build();
    const std::size_t place = placeOfChunk(file, "IDAT");
    const std::size_t end = placeOfChunk(file, "IEND");
    Bytes content(file.begin() + static_cast<std::ptrdiff_t>(place) + 8,
                  file.begin() + static_cast<std::ptrdiff_t>(end) - 4);
    content.back() ^= at(1);
    const Bytes changed = withBytesBefore(cutAt(file, place), "none", pngChunk("IDAT", content));
    EXPECT_EQ(statusOf(withBytesBefore(changed, "none", pngChunk("IEND", {}))), Gdiplus::GenericError);
}

TEST(PngDamage, ImageDataThatEndsBeforeThePictureIsTruncation) {
    Bytes file = ramp(20, 20).chunksOf(12).build();
    const std::size_t first = placeOfChunk(file, "IDAT");
    const Bytes tail = pngChunk("IEND", {});
    file.resize(first + 12 + 12);
    file.insert(file.end(), tail.begin(), tail.end());
    EXPECT_EQ(statusOf(file), Gdiplus::Aborted);
}

TEST(PngDamage, AnUnknownCriticalChunkIsRefusedAndAnUnknownOtherIsSkipped) {
    const Bytes file = ramp(4, 4).build();
    EXPECT_EQ(statusOf(withBytesBefore(file, "IDAT", pngChunk("ABCD", Bytes(9)))), Gdiplus::GenericError);
    EXPECT_EQ(statusOf(withBytesBefore(file, "IDAT", pngChunk("abCD", Bytes(9)))), Gdiplus::Ok);
}

TEST(PngDamage, AFileWithoutImageDataIsTruncated) {
    const Bytes file = cutAt(ramp(4, 4).build(), 33);
    EXPECT_EQ(statusOf(file), Gdiplus::Aborted);
}

TEST(PngDamage, AFileWithoutItsHeaderIsDamage) {
    EXPECT_EQ(statusOf(without(ramp(4, 4).build(), "IHDR", 13)), Gdiplus::GenericError);
}

TEST(PngDamage, ZerosBehindTheSignatureAreDamage) {
    Bytes file = cutAt(ramp(4, 4).build(), 8);
    file.resize(300);
    EXPECT_EQ(statusOf(file), Gdiplus::GenericError);
}

TEST(PngDamage, BytesBehindTheEndAreIgnored) {
    Bytes file = ramp(4, 4).build();
    file.resize(file.size() + 500, at(0x77));
    EXPECT_EQ(statusOf(file), Gdiplus::Ok);
}

TEST(PngDamage, AProfileThatIsDamagedIsLeftOut) {
    const Bytes file = ramp(4, 4).build();
    const auto decoder = openBytes(withBytesBefore(file, "IDAT", pngChunk("iCCP", Bytes(40, at(5)))));
    ASSERT_TRUE(decoder);
    EXPECT_TRUE((*decoder)->facts().iccProfile.empty());
}

TEST(PngFilters, FastPathsAgreeWithThePlainOne) {
    constexpr std::size_t pixels = 301;
    for (const int pixelBytes : {1, 2, 3, 4, 6, 8})
        for (int filter = 0; filter < 5; ++filter) {
            const std::size_t length = pixels * static_cast<std::size_t>(pixelBytes);
            Bytes filtered(length + pngRowPadding);
            Bytes above(length + pngRowPadding);
            std::uint32_t state = 1;
            for (Bytes* row : {&filtered, &above})
                for (std::byte& byte : *row)
                    byte = static_cast<std::byte>((state = state * 1664525 + 1013904223) >> 24);
            Bytes fast(length + pngRowPadding);
            Bytes simple(length + pngRowPadding);
            const auto undo = [&](auto function, Bytes& row) {
                function(static_cast<PngFilter>(filter), std::span(filtered).first(length),
                         std::span(above).first(length), std::span(row).first(length), pixelBytes);
                row.resize(length);
            };
            undo(undoFilter, fast);
            undo(undoFilterPlainly, simple);
            EXPECT_EQ(fast, simple) << "filter " << filter << ", " << pixelBytes << " bytes a pixel";
        }
}

} // namespace GdiplusBackend
