#include "backends/gdiplus/codecs/JpegBuilder.h"
#include "backends/gdiplus/flat/PictureFiles.h"
#include "support/PngFile.h"

#include <array>
#include <filesystem>
#include <fstream>

#include <sys/stat.h>

using namespace Gdiplus;
using namespace GdiplusBackend;
using TestSupport::PngFile;
using TestSupport::wideOf;

namespace {

class LoadStatus : public PictureFiles {
protected:
    Status statusOf(const std::wstring& path) const {
        const Status unmanaged = Bitmap(path.c_str()).GetLastStatus();
        EXPECT_EQ(Bitmap(path.c_str(), TRUE).GetLastStatus(), unmanaged);
        return unmanaged;
    }
};

using FileBytes = std::vector<unsigned char>;

/// Hard to compress, so that a cut always hits the pixels.
std::uint32_t noise(int x, int y) {
    return (static_cast<std::uint32_t>(x) * 2654435761U ^ static_cast<std::uint32_t>(y) * 2246822519U) *
           3266489917U;
}

FileBytes noisyPng() {
    return PngFile{.width = 64, .height = 48, .pixelAt = noise}.bytes();
}

Bytes noisyJpeg() {
    return JpegBuilder(64, 48,
                       [](int x, int y) {
                           const auto value = noise(x, y);
                           return std::array<int, 4>{static_cast<int>(value & 255),
                                                     static_cast<int>(value >> 8 & 255),
                                                     static_cast<int>(value >> 16 & 255), 0};
                       })
        .build();
}

void putBigEndian(FileBytes& bytes, std::size_t place, std::uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes[place++] = static_cast<unsigned char>(value >> shift);
}

/// A sound header with another size than the pixels behind it.
FileBytes pngThatClaims(std::uint32_t width, std::uint32_t height) {
    FileBytes bytes = noisyPng();
    putBigEndian(bytes, 16, width);
    putBigEndian(bytes, 20, height);
    putBigEndian(bytes, 29, TestSupport::pngChecksum(std::span(bytes).subspan(12, 17)));
    return bytes;
}

template <typename Byte>
std::vector<Byte> firstHalf(std::vector<Byte> bytes) {
    bytes.resize(bytes.size() / 2);
    return bytes;
}

} // namespace

TEST_F(LoadStatus, OfAMissingFileAndAnEmptyNameIsInvalidParameter) {
    EXPECT_EQ(statusOf(wideOf(folder / "missing.png")), InvalidParameter);
    EXPECT_EQ(statusOf(wideOf(folder / "no/such/folder/missing.png")), InvalidParameter);
    EXPECT_EQ(statusOf(L""), InvalidParameter);
    EXPECT_EQ(statusOf(wideOf(folder / std::string(5000, 'x'))), InvalidParameter);
}

TEST_F(LoadStatus, OfAnEmptyFileAndOfTextIsUnknownImageFormat) {
    EXPECT_EQ(statusOf(wideOf(folder.write("empty.png", ""))), UnknownImageFormat);
    EXPECT_EQ(statusOf(wideOf(folder.write("text.jpg", "This is no picture.\n"))), UnknownImageFormat);
}

TEST_F(LoadStatus, OfAFolderAndAPipeIsAccessDeniedAndNothingIsWaitedFor) {
    std::filesystem::create_directory(folder / "folder.png");
    EXPECT_EQ(statusOf(wideOf(folder / "folder.png")), AccessDenied);
    ASSERT_EQ(::mkfifo((folder / "pipe.png").c_str(), 0600), 0);
    EXPECT_EQ(statusOf(wideOf(folder / "pipe.png")), AccessDenied);
}

TEST_F(LoadStatus, OfAHeaderOverThePixelBudgetIsOutOfMemory) {
    EXPECT_EQ(statusOf(write("huge.png", pngThatClaims(100'000, 100'000))), OutOfMemory);
}

TEST_F(LoadStatus, OfAHeaderOfMoreThanTheFileHoldsComesAtTheLatestWithThePixels) {
    const auto bitmap = open(pngThatClaims(64, 49));
    ASSERT_EQ(bitmap->GetLastStatus(), Ok);
    EXPECT_EQ(bitmap->ForceValidation(), Aborted);
}

TEST_F(LoadStatus, OfATruncatedFileIsAbortedWheneverItIsAskedFor) {
    const std::wstring paths[] = {write("half.png", firstHalf(noisyPng())),
                                  write("half.jpg", firstHalf(noisyJpeg()))};
    for (const std::wstring& path : paths) {
        Bitmap bitmap(path.c_str());
        ASSERT_EQ(bitmap.GetLastStatus(), Ok);
        EXPECT_EQ(bitmap.GetWidth(), 64U);
        EXPECT_EQ(bitmap.GetHeight(), 48U);
        EXPECT_EQ(bitmap.ForceValidation(), Aborted);
        EXPECT_EQ(bitmap.ForceValidation(), Aborted);
        BitmapData locked;
        EXPECT_EQ(bitmap.LockBits(nullptr, ImageLockModeRead, PixelFormat32bppARGB, &locked), Aborted);
        Color color;
        EXPECT_EQ(bitmap.GetPixel(0, 0, &color), Aborted);
        EXPECT_FALSE(bitmap.Clone(1, 1, 4, 4, PixelFormat32bppARGB));
        EXPECT_EQ(bitmap.GetLastStatus(), Aborted);
    }
}

TEST_F(LoadStatus, OfATruncatedFileIsAbortedForDrawingFirstAndForEverAfter) {
    for (const auto& bitmap : {open(firstHalf(noisyPng())), open(firstHalf(noisyJpeg()))}) {
        ASSERT_EQ(bitmap->GetLastStatus(), Ok);
        Bitmap target(8, 6);
        Graphics graphics(&target);
        for (int time = 0; time < 2; ++time)
            EXPECT_EQ(graphics.DrawImage(bitmap.get(), Rect(0, 0, 8, 6), 0, 0, 64, 48, UnitPixel), Aborted);
        EXPECT_EQ(pixelsOf(target), ArgbPixels(48, 0)) << "nothing of a broken picture is shown";
        EXPECT_EQ(bitmap->ForceValidation(), Aborted);
    }
}

TEST_F(LoadStatus, OfATruncatedFileIsThatOfItsClonesToo) {
    const auto bitmap = open(firstHalf(noisyPng()));
    const std::unique_ptr<Bitmap> clone(bitmap->Clone(0, 0, 64, 48, PixelFormat32bppARGB));
    ASSERT_TRUE(clone);
    EXPECT_EQ(clone->ForceValidation(), Aborted);
}

TEST_F(LoadStatus, OfDamagedPixelsIsGenericError) {
    FileBytes bytes = noisyPng();
    bytes[bytes.size() / 2] ^= 0x55;
    const auto bitmap = open(bytes);
    ASSERT_EQ(bitmap->GetLastStatus(), Ok);
    EXPECT_EQ(bitmap->ForceValidation(), GenericError);
}

TEST_F(LoadStatus, LeavesNoBitmapBehindWhenItIsAFailure) {
    GpBitmap* bitmap = nullptr;
    EXPECT_EQ(DllExports::GdipCreateBitmapFromFile(L"/", &bitmap), AccessDenied);
    EXPECT_EQ(bitmap, nullptr);
    EXPECT_EQ(DllExports::GdipCreateBitmapFromFileICM(nullptr, &bitmap), InvalidParameter);
}
