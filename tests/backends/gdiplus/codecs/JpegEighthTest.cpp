#include "backends/gdiplus/codecs/JpegBuilder.h"

#include "gdiplus/codecs/jpegdecoder/JpegEighth.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <random>

namespace GdiplusBackend {

namespace {

RowLayout layoutOf(const jpeg_decompress_struct& info) {
    return info.jpeg_color_space == JCS_GRAYSCALE ? RowLayout::Index8 : RowLayout::Bgr24;
}

void askForRows(jpeg_decompress_struct& info) {
    info.out_color_space = layoutOf(info) == RowLayout::Index8 ? JCS_GRAYSCALE : JCS_EXT_BGR;
}

/// The rows of the short way; none where it is not taken.
std::optional<CollectRows> eighthOf(const Bytes& file) {
    const auto source = fromMemory(file);
    JpegReader reader(*source);
    if (!reader.readHeader(JpegReader::Markers::Skip))
        return std::nullopt;
    askForRows(reader.info);
    CollectRows rows(layoutOf(reader.info));
    if (decodeEighth(reader, *source, rows) == EighthOutcome::NotHandled) {
        EXPECT_EQ(rows.height(), 0) << "rows before it was sure that the file is handled";
        return std::nullopt;
    }
    return rows;
}

/// What libjpeg makes of the file; none where it refuses.
std::optional<CollectRows> eighthByLibjpeg(const Bytes& file) {
    const auto source = fromMemory(file);
    JpegReader reader(*source);
    if (!reader.readHeader(JpegReader::Markers::Skip))
        return std::nullopt;
    jpeg_decompress_struct& info = reader.info;
    askForRows(info);
    info.scale_denom = 8;
    info.do_fancy_upsampling = FALSE;
    if (!reader.run([&] { (void)jpeg_start_decompress(&info); }))
        return std::nullopt;
    CollectRows rows(layoutOf(info));
    std::vector<JSAMPLE> row(std::size_t{info.output_width} *
                             static_cast<std::size_t>(info.output_components));
    while (info.output_scanline < info.output_height) {
        JSAMPROW target = row.data();
        if (!reader.run([&] { (void)jpeg_read_scanlines(&info, &target, 1); }))
            return std::nullopt;
        rows.putRow(std::as_bytes(std::span(row)));
    }
    if (!reader.run([&] { (void)jpeg_finish_decompress(&info); }))
        return std::nullopt;
    return rows;
}

/// The greatest difference of two samples; 256 for rows of other sizes.
int distance(const CollectRows& left, const CollectRows& right) {
    if (left.height() != right.height())
        return 256;
    int greatest = 0;
    for (int y = 0; y < left.height(); ++y) {
        if (left.bytesInRow(y) != right.bytesInRow(y))
            return 256;
        for (std::size_t x = 0; x < left.bytesInRow(y); ++x)
            greatest = std::max(greatest, std::abs(left.byteAt(y, x) - right.byteAt(y, x)));
    }
    return greatest;
}

void expectAsByLibjpeg(const Bytes& file, int tolerance) {
    const auto expected = eighthByLibjpeg(file);
    ASSERT_TRUE(expected);
    const auto rows = eighthOf(file);
    ASSERT_TRUE(rows);
    EXPECT_LE(distance(*rows, *expected), tolerance);
}

/// Noise around a level that changes from block to block, so that all kinds of symbols come.
JpegBuilder noise(int width, int height) {
    auto random = std::make_shared<std::mt19937>(static_cast<unsigned int>(width * 1000 + height));
    return JpegBuilder(width, height, [random](int x, int y) {
        std::array<int, 4> samples = {};
        for (int channel = 0; channel < 4; ++channel) {
            const int level = (x / 8 * 37 + y / 8 * 61 + channel * 90) % 256;
            const int spread = (x / 8 + y / 8) % 3 == 0 ? 2 : 120;
            samples[static_cast<std::size_t>(channel)] =
                std::clamp(level + static_cast<int>((*random)() % 256) * spread / 256, 0, 255);
        }
        return samples;
    });
}

/// Colours that change slowly from corner to corner.
JpegBuilder smooth(int width, int height) {
    return JpegBuilder(width, height, [=](int x, int y) {
        return std::array<int, 4>{40 + x * 150 / width, 40 + y * 150 / height, 200 - x * 150 / width};
    });
}

double lumaOf(const CollectRows& rows, int x, int y) {
    return 0.114 * rows.sample(x, y, 0) + 0.587 * rows.sample(x, y, 1) + 0.299 * rows.sample(x, y, 2);
}

void expectCoarseChroma(const Bytes& file) {
    const auto expected = eighthByLibjpeg(file);
    ASSERT_TRUE(expected);
    const auto rows = eighthOf(file);
    ASSERT_TRUE(rows);
    EXPECT_LE(distance(*rows, *expected), 8);
    for (int y = 0; y < rows->height(); ++y)
        for (int x = 0; x < static_cast<int>(rows->bytesInRow(y) / 3); ++x)
            ASSERT_NEAR(lumaOf(*rows, x, y), lumaOf(*expected, x, y), 1) << "at " << x << ", " << y;
}

Bytes asSeen(const CollectRows& rows) {
    Bytes bytes;
    for (int y = 0; y < rows.height(); ++y)
        for (std::size_t x = 0; x < rows.bytesInRow(y); ++x)
            bytes.push_back(static_cast<std::byte>(rows.byteAt(y, x)));
    return bytes;
}

/// Changes one byte after the other, and wants whatever the short way accepts to be what libjpeg gives.
void expectDamageSeenAlike(const Bytes& file) {
    for (std::size_t place = 2; place < file.size(); ++place)
        for (const int change : {0x01, 0x80, 0xFF}) {
            Bytes damagedFile = file;
            damagedFile[place] ^= static_cast<std::byte>(change);
            const auto rows = eighthOf(damagedFile);
            if (!rows)
                continue;
            const auto expected = eighthByLibjpeg(damagedFile);
            ASSERT_TRUE(expected) << "byte " << place << " changed by " << change;
            ASSERT_EQ(asSeen(*rows), asSeen(*expected)) << "byte " << place << " changed by " << change;
        }
}

/// The status of decoding at an eighth for each possible length of the file but the whole.
void expectEveryCutRefused(const Bytes& file) {
    ASSERT_TRUE(eighthOf(file));
    for (std::size_t length = 3; length < file.size(); ++length) {
        const Bytes cut = cutAt(file, length);
        EXPECT_FALSE(eighthOf(cut)) << "cut at " << length;
        const auto decoder = openBytes(cut);
        const auto rows = decoder ? decodeRows(**decoder, 8) : tl::unexpected(decoder.error());
        ASSERT_FALSE(rows) << "cut at " << length;
        EXPECT_EQ(rows.error().status, Gdiplus::Aborted) << "cut at " << length;
    }
}

} // namespace

TEST(JpegEighth, GreyIsAsByLibjpeg) {
    expectAsByLibjpeg(noise(300, 200).grey().build(), 0);
}

TEST(JpegEighth, ColourWithFullChromaIsAsByLibjpeg) {
    expectAsByLibjpeg(noise(300, 200).sampling(1, 1).build(), 0);
}

TEST(JpegEighth, EveryQualityIsAsByLibjpeg) {
    for (const int percent : {1, 20, 50, 75, 95})
        expectAsByLibjpeg(noise(200, 100).sampling(1, 1).quality(percent).build(), 0);
}

TEST(JpegEighth, OptimisedTablesAreFollowed) {
    expectAsByLibjpeg(noise(300, 200).sampling(1, 1).optimised().build(), 0);
}

TEST(JpegEighth, UntransformedColourIsAsByLibjpeg) {
    expectAsByLibjpeg(noise(100, 100).rgbUntransformed().build(), 0);
}

TEST(JpegEighth, RestartMarkersAreFollowed) {
    for (const unsigned int interval : {1, 3, 38, 10'000})
        expectAsByLibjpeg(noise(300, 200).sampling(1, 1).restartEvery(interval).build(), 0);
}

TEST(JpegEighth, ProgressiveScansAreAsByLibjpeg) {
    expectAsByLibjpeg(noise(300, 200).sampling(1, 1).progressive().build(), 0);
    expectAsByLibjpeg(noise(300, 200).grey().progressive().build(), 0);
    expectAsByLibjpeg(noise(300, 200).sampling(1, 1).progressive().restartEvery(5).build(), 0);
}

TEST(JpegEighth, ComponentsInScansOfTheirOwnAreAsByLibjpeg) {
    expectAsByLibjpeg(noise(300, 200).sampling(1, 1).notInterleaved().build(), 0);
}

TEST(JpegEighth, AScanLargerThanEveryBufferIsAsByLibjpeg) {
    const Bytes file = noise(1200, 800).sampling(1, 1).build();
    ASSERT_GT(file.size(), 1'000'000U);
    expectAsByLibjpeg(file, 0);
}

TEST(JpegEighth, SizesAreRoundedUp) {
    for (const auto& [width, height] : {std::pair(1, 1), {7, 9}, {17, 33}, {8, 8}, {16, 15}}) {
        expectAsByLibjpeg(noise(width, height).grey().build(), 0);
        expectAsByLibjpeg(noise(width, height).sampling(1, 1).build(), 0);
        expectAsByLibjpeg(noise(width, height).grey().sampling(2, 2).progressive().build(), 0);
        const auto coarse = eighthOf(smooth(width, height).build());
        ASSERT_TRUE(coarse);
        EXPECT_EQ(coarse->height(), reducedLength(height, 8));
        EXPECT_EQ(coarse->bytesInRow(0), static_cast<std::size_t>(reducedLength(width, 8)) * 3);
    }
}

TEST(JpegEighth, CoarserChromaIsRepeated) {
    expectCoarseChroma(smooth(640, 480).sampling(2, 2).build());
    expectCoarseChroma(smooth(640, 480).sampling(2, 1).build());
    expectCoarseChroma(smooth(640, 480).sampling(1, 2).build());
    expectCoarseChroma(smooth(333, 217).sampling(2, 2).progressive().build());
    expectCoarseChroma(smooth(333, 217).sampling(2, 2).notInterleaved().build());
}

TEST(JpegEighth, OtherCodingsAreLeftToLibjpeg) {
    EXPECT_FALSE(eighthOf(noise(40, 40).arithmetic().build()));
    EXPECT_FALSE(eighthOf(noise(40, 40).cmyk().build()));
}

TEST(JpegEighth, AProgressiveFileWithoutFrequenciesIsLeftToLibjpeg) {
    const Bytes whole = noise(100, 100).grey().progressive().build();
    const std::array<std::byte, 2> huffmanTables = {std::byte{0xFF}, std::byte{0xC4}};
    const std::array<std::byte, 2> startOfScan = {std::byte{0xFF}, std::byte{0xDA}};
    const auto scan = std::search(whole.begin(), whole.end(), startOfScan.begin(), startOfScan.end());
    const auto behind = std::search(scan, whole.end(), huffmanTables.begin(), huffmanTables.end());
    Bytes file(whole.begin(), behind);
    file.insert(file.end(), {std::byte{0xFF}, std::byte{0xD9}});
    ASSERT_TRUE(eighthByLibjpeg(file));
    EXPECT_FALSE(eighthOf(file));
}

TEST(JpegEighth, AProgressiveFileWithoutTheLastBitsIsLeftToLibjpeg) {
    const Bytes whole = noise(64, 48).sampling(1, 1).progressive().build();
    const std::array<std::byte, 10> refinement = {
        std::byte{0xFF}, std::byte{0xDA}, std::byte{0}, std::byte{12}, std::byte{3},
        std::byte{1},    std::byte{0},    std::byte{2}, std::byte{0},  std::byte{3}};
    Bytes file(whole.begin(),
               std::find_end(whole.begin(), whole.end(), refinement.begin(), refinement.end()));
    ASSERT_LT(file.size(), whole.size());
    file.insert(file.end(), {std::byte{0xFF}, std::byte{0xD9}});
    ASSERT_TRUE(eighthByLibjpeg(file));
    EXPECT_FALSE(eighthOf(file));
}

TEST(JpegEighth, MoreThanAHundredScansAreLeftToLibjpeg) {
    const Bytes once = noise(8, 8).grey().progressive().build();
    const std::array<std::byte, 2> startOfScan = {std::byte{0xFF}, std::byte{0xDA}};
    const auto last = std::find_end(once.begin(), once.end(), startOfScan.begin(), startOfScan.end());
    Bytes file(once.begin(), once.end() - 2);
    for (int i = 0; i < 100; ++i)
        file.insert(file.end(), last, once.end() - 2);
    file.insert(file.end(), once.end() - 2, once.end());
    ASSERT_TRUE(eighthOf(once));
    EXPECT_FALSE(eighthOf(file));
}

TEST(JpegEighth, EveryCutIsRefused) {
    expectEveryCutRefused(noise(20, 12).quality(60).build());
    expectEveryCutRefused(noise(20, 12).quality(60).restartEvery(1).build());
    expectEveryCutRefused(noise(20, 12).quality(60).progressive().build());
}

TEST(JpegEighth, ADamagedByteGivesWhatLibjpegGivesOfIt) {
    expectDamageSeenAlike(noise(24, 16).quality(60).grey().build());
    expectDamageSeenAlike(noise(24, 16).quality(60).sampling(1, 1).restartEvery(2).build());
}

TEST(JpegEighth, ADamagedByteOfAProgressiveFileGivesWhatLibjpegGivesOfIt) {
    expectDamageSeenAlike(noise(24, 16).quality(60).sampling(1, 1).progressive().build());
}

TEST(JpegEighth, BytesBehindTheEndAreIgnored) {
    Bytes file = noise(48, 20).grey().build();
    file.resize(file.size() + 1000, std::byte{0x5A});
    expectAsByLibjpeg(file, 0);
}

TEST(JpegEighth, TheDecoderTakesTheShortWay) {
    const Bytes file = noise(200, 120).build();
    const auto rows = eighthOf(file);
    const auto byLibjpeg = eighthByLibjpeg(file);
    ASSERT_TRUE(rows && byLibjpeg);
    ASSERT_NE(asSeen(*rows), asSeen(*byLibjpeg)) << "noise in the chroma should tell the two ways apart";
    EXPECT_EQ(asSeen(decodeRows(**openBytes(file), 8).value()), asSeen(*rows));
}

TEST(JpegEighth, OnePictureDecodesOnManyThreadsAtOnce) {
    const auto decoder = openBytes(noise(400, 300).progressive().build());
    ASSERT_TRUE(decoder);
    EXPECT_TRUE(decodesAlikeOnManyThreads(**decoder, 8));
}

} // namespace GdiplusBackend
