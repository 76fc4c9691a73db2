#include "gdiplus/encoders/EncoderTable.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace GdiplusBackend {

namespace {

GUID clsidStartingWith(DWORD first) {
    return {first, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};
}

struct FilledList {
    FilledList() {
        EXPECT_EQ(encodersSize(count, bytes), Gdiplus::Ok);
        block.resize(bytes / sizeof(std::max_align_t) + 1);
        EXPECT_EQ(fillEncoders(count, bytes, list()), Gdiplus::Ok);
    }

    Gdiplus::ImageCodecInfo* list() { return reinterpret_cast<Gdiplus::ImageCodecInfo*>(block.data()); }
    Gdiplus::ImageCodecInfo& at(UINT i) { return list()[i]; }

    bool holds(const void* address, std::size_t size) {
        const auto* place = static_cast<const std::byte*>(address);
        const auto* start = reinterpret_cast<const std::byte*>(list() + count);
        const auto* end = reinterpret_cast<const std::byte*>(list()) + bytes;
        return place >= start && place + size <= end;
    }

    UINT count = 0;
    UINT bytes = 0;
    std::vector<std::max_align_t> block;
};

struct Expected {
    DWORD clsid;
    GUID format;
    std::wstring description;
    std::wstring mimeType;
    std::wstring extensions;
    std::string signatures;
    DWORD signatureCount;
};

const Expected expectedInOrder[] = {
    {0x557cf400, Gdiplus::ImageFormatBMP, L"BMP", L"image/bmp", L"*.BMP;*.DIB;*.RLE", "BM", 1},
    {0x557cf401, Gdiplus::ImageFormatJPEG, L"JPEG", L"image/jpeg", L"*.JPG;*.JPEG;*.JPE;*.JFIF", "\xFF\xD8",
     1},
    {0x557cf402, Gdiplus::ImageFormatGIF, L"GIF", L"image/gif", L"*.GIF", "GIF89aGIF87a", 2},
    {0x557cf405, Gdiplus::ImageFormatTIFF, L"TIFF", L"image/tiff", L"*.TIF;*.TIFF", "IIMM", 2},
    {0x557cf406, Gdiplus::ImageFormatPNG, L"PNG", L"image/png", L"*.PNG", "\x89PNG\r\n\x1A\n", 1},
};

} // namespace

TEST(EncoderTable, ListsBmpJpegGifTiffPngInThisOrder) {
    FilledList filled;
    ASSERT_EQ(filled.count, 5U);
    for (UINT i = 0; i < filled.count; ++i) {
        const Expected& expected = expectedInOrder[i];
        EXPECT_EQ(filled.at(i).Clsid, clsidStartingWith(expected.clsid));
        EXPECT_EQ(filled.at(i).FormatID, expected.format);
        EXPECT_EQ(filled.at(i).FormatDescription, expected.description);
        EXPECT_EQ(filled.at(i).MimeType, expected.mimeType);
        EXPECT_EQ(filled.at(i).FilenameExtension, expected.extensions);
        EXPECT_EQ(filled.at(i).CodecName, L"Built-in " + expected.description + L" Codec");
        EXPECT_EQ(filled.at(i).DllName, nullptr);
    }
}

TEST(EncoderTable, FlagsAndVersionAreThePublishedOnes) {
    FilledList filled;
    for (UINT i = 0; i < filled.count; ++i) {
        EXPECT_EQ(filled.at(i).Flags, 0x10007U);
        EXPECT_EQ(filled.at(i).Version, 1U);
    }
}

TEST(EncoderTable, SignaturesStandOneBehindTheOtherUnderAFullMask) {
    FilledList filled;
    for (UINT i = 0; i < filled.count; ++i) {
        const Gdiplus::ImageCodecInfo& codec = filled.at(i);
        const std::size_t bytes = std::size_t{codec.SigCount} * codec.SigSize;
        EXPECT_EQ(codec.SigCount, expectedInOrder[i].signatureCount);
        EXPECT_EQ(std::string(codec.SigPattern, codec.SigPattern + bytes), expectedInOrder[i].signatures);
        EXPECT_EQ(std::string(codec.SigMask, codec.SigMask + bytes), std::string(bytes, '\xFF'));
    }
}

TEST(EncoderTable, AllThatTheListPointsToLiesBehindItInTheBlock) {
    FilledList filled;
    for (UINT i = 0; i < filled.count; ++i) {
        const Gdiplus::ImageCodecInfo& codec = filled.at(i);
        for (const WCHAR* text :
             {codec.CodecName, codec.FormatDescription, codec.FilenameExtension, codec.MimeType})
            EXPECT_TRUE(filled.holds(text, (std::wstring(text).size() + 1) * sizeof(WCHAR)));
        const std::size_t bytes = std::size_t{codec.SigCount} * codec.SigSize;
        EXPECT_TRUE(filled.holds(codec.SigPattern, bytes));
        EXPECT_TRUE(filled.holds(codec.SigMask, bytes));
    }
}

TEST(EncoderTable, NothingBehindTheBlockIsTouched) {
    UINT count = 0;
    UINT bytes = 0;
    encodersSize(count, bytes);
    std::vector<std::max_align_t> block(bytes / sizeof(std::max_align_t) + 2);
    auto* start = reinterpret_cast<unsigned char*>(block.data());
    std::fill_n(start, block.size() * sizeof(std::max_align_t), 0xA5);
    fillEncoders(count, bytes, reinterpret_cast<Gdiplus::ImageCodecInfo*>(start));
    EXPECT_EQ(start[bytes], 0xA5);
    EXPECT_NE(start[bytes - 1], 0xA5);
}

TEST(EncoderTable, OtherCountsAndSizesAreRefusedAndLeaveTheBlockAlone) {
    FilledList filled;
    filled.at(0).Flags = 77;
    EXPECT_EQ(fillEncoders(filled.count - 1, filled.bytes, filled.list()), Gdiplus::GenericError);
    EXPECT_EQ(fillEncoders(filled.count + 1, filled.bytes, filled.list()), Gdiplus::GenericError);
    EXPECT_EQ(fillEncoders(filled.count, filled.bytes - 1, filled.list()), Gdiplus::GenericError);
    EXPECT_EQ(fillEncoders(filled.count, filled.bytes + 1, filled.list()), Gdiplus::GenericError);
    EXPECT_EQ(fillEncoders(filled.count, filled.bytes, nullptr), Gdiplus::GenericError);
    EXPECT_EQ(filled.at(0).Flags, 77U);
}

TEST(EncoderTable, EncodersAreFoundByTheirClsid) {
    for (const EncoderEntry& entry : encodersInOrder())
        EXPECT_EQ(findEncoder(entry.clsid), &entry);
    EXPECT_EQ(findEncoder(clsidStartingWith(0x557cf403)), nullptr);
}

TEST(EncoderTable, EachEntryWritesFilesOfItsSignature) {
    const std::vector<std::byte> pixel(4);
    class : public ByteSink {
    public:
        Result<void> write(std::span<const std::byte> bytes) override {
            for (const std::byte byte : bytes)
                text.push_back(static_cast<char>(byte));
            return {};
        }
        std::string text;
    } sink;
    for (const EncoderEntry& entry : encodersInOrder()) {
        sink.text.clear();
        ASSERT_TRUE(entry.encode({pixel.data(), 4, 1, 1, PixelFormat32bppARGB, {}}, {}, sink).has_value());
        const std::size_t size = entry.signatures.size() / entry.signatureCount;
        const std::string first(entry.signatures.begin(), entry.signatures.begin() + static_cast<int>(size));
        EXPECT_EQ(sink.text.substr(0, size), first);
    }
}

} // namespace GdiplusBackend
