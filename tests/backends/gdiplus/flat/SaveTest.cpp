#include "backends/gdiplus/codecs/PngBuilder.h"
#include "backends/gdiplus/encoders/Decoded.h"
#include "backends/gdiplus/flat/PictureFiles.h"

#include <array>
#include <filesystem>

using namespace Gdiplus;
using namespace GdiplusBackend;
using TestSupport::readFile;
using TestSupport::wideOf;

namespace {

constexpr CLSID encoderOf(DWORD first) {
    return {first, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};
}
constexpr CLSID bmp = encoderOf(0x557cf400);
constexpr CLSID jpeg = encoderOf(0x557cf401);
constexpr CLSID gif = encoderOf(0x557cf402);
constexpr CLSID tiff = encoderOf(0x557cf405);
constexpr CLSID png = encoderOf(0x557cf406);

constexpr int width = 5;
constexpr int height = 4;

ARGB colourAt(int x, int y) {
    return Color(static_cast<BYTE>(255 - 40 * y), static_cast<BYTE>(50 * x), static_cast<BYTE>(60 * y), 200)
        .GetValue();
}

/// A quality, in the layout that the flat function takes.
struct Quality {
    explicit Quality(LONG wanted)
        : value(wanted) {}

    LONG value;
    EncoderParameters parameters = {1, {{EncoderQuality, 1, EncoderParameterValueTypeLong, &value}}};
};

class Save : public PictureFiles {
protected:
    static std::unique_ptr<Bitmap> colourful(PixelFormat format) {
        auto bitmap = std::make_unique<Bitmap>(width, height, format);
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                bitmap->SetPixel(x, y, Color(colourAt(x, y)));
        return bitmap;
    }

    /// The pixels that a lossless file of `bitmap` should show.
    static Pixels shownBy(Bitmap& bitmap) {
        Pixels pixels;
        for (int y = 0; y < static_cast<int>(bitmap.GetHeight()); ++y)
            for (int x = 0; x < static_cast<int>(bitmap.GetWidth()); ++x)
                pixels.push_back(TestSupport::pixelOf(bitmap, x, y));
        return pixels;
    }

    /// The file's bytes.
    Bytes save(Bitmap& bitmap, const CLSID& encoder, const EncoderParameters* parameters = nullptr) const {
        EXPECT_EQ(bitmap.Save(target().c_str(), &encoder, parameters), Ok);
        const std::string text = readFile(folder / "saved");
        const auto bytes = std::as_bytes(std::span(text));
        return {bytes.begin(), bytes.end()};
    }

    std::wstring target() const { return wideOf(folder / "saved"); }

    std::size_t filesInFolder() const {
        const std::filesystem::directory_iterator entries(folder / "");
        return static_cast<std::size_t>(std::distance(begin(entries), end(entries)));
    }
};

} // namespace

TEST_F(Save, ListsItsEncodersInOrder) {
    UINT count = 0;
    UINT size = 0;
    ASSERT_EQ(DllExports::GdipGetImageEncodersSize(&count, &size), Ok);
    ASSERT_EQ(count, 5U);
    std::vector<std::uint64_t> block((size + 7) / 8);
    auto* encoders = reinterpret_cast<ImageCodecInfo*>(block.data());
    ASSERT_EQ(DllExports::GdipGetImageEncoders(count, size, encoders), Ok);
    const std::pair<CLSID, std::wstring> expected[] = {{bmp, L"image/bmp"},
                                                       {jpeg, L"image/jpeg"},
                                                       {gif, L"image/gif"},
                                                       {tiff, L"image/tiff"},
                                                       {png, L"image/png"}};
    for (UINT i = 0; i < count; ++i) {
        EXPECT_EQ(encoders[i].Clsid, expected[i].first) << i;
        EXPECT_EQ(encoders[i].MimeType, expected[i].second);
        EXPECT_EQ(encoders[i].Flags, 0x10007U);
    }
}

TEST_F(Save, RefusesAListOfAnotherSize) {
    UINT count = 0;
    UINT size = 0;
    ASSERT_EQ(DllExports::GdipGetImageEncodersSize(&count, &size), Ok);
    EXPECT_EQ(DllExports::GdipGetImageEncodersSize(nullptr, &size), InvalidParameter);
    EXPECT_EQ(DllExports::GdipGetImageEncoders(count, size, nullptr), GenericError);
    std::vector<std::uint64_t> block((size + 7) / 8);
    EXPECT_EQ(
        DllExports::GdipGetImageEncoders(count, size - 1, reinterpret_cast<ImageCodecInfo*>(block.data())),
        GenericError);
}

TEST_F(Save, BmpHas24BitsFor24AndElse32) {
    const auto rgb = colourful(PixelFormat24bppRGB);
    const Decoded narrow = decodeBmp(save(*rgb, bmp));
    EXPECT_EQ(narrow.bitsPerPixel, 24);
    EXPECT_EQ(narrow.pixels, shownBy(*rgb));
    for (const PixelFormat format : {PixelFormat32bppRGB, PixelFormat32bppARGB, PixelFormat32bppPARGB}) {
        const auto bitmap = colourful(format);
        const Decoded wide = decodeBmp(save(*bitmap, bmp));
        EXPECT_EQ(wide.bitsPerPixel, 32) << std::hex << format;
        EXPECT_EQ(wide.pixels, shownBy(*bitmap)) << std::hex << format;
    }
}

TEST_F(Save, PngHasAlphaUnlessThePictureHas24Bits) {
    const auto rgb = colourful(PixelFormat24bppRGB);
    const Decoded narrow = decodePng(save(*rgb, png));
    EXPECT_EQ(narrow.bitsPerPixel, 24);
    EXPECT_EQ(narrow.pixels, shownBy(*rgb));
    for (const PixelFormat format : {PixelFormat32bppRGB, PixelFormat32bppARGB, PixelFormat32bppPARGB}) {
        const auto bitmap = colourful(format);
        const Decoded wide = decodePng(save(*bitmap, png));
        EXPECT_EQ(wide.bitsPerPixel, 32) << std::hex << format;
        EXPECT_EQ(wide.pixels, shownBy(*bitmap)) << std::hex << format;
    }
}

TEST_F(Save, TiffHasAlphaUnlessThePictureHas24Bits) {
    const auto rgb = colourful(PixelFormat24bppRGB);
    Bytes file = save(*rgb, tiff);
    EXPECT_EQ(tagsOfTiff(file).samplesPerPixel, 3);
    EXPECT_EQ(decodeTiff(file).pixels, shownBy(*rgb));
    const auto argb = colourful(PixelFormat32bppARGB);
    file = save(*argb, tiff);
    EXPECT_EQ(tagsOfTiff(file).samplesPerPixel, 4);
    EXPECT_EQ(decodeTiff(file).pixels, shownBy(*argb));
}

TEST_F(Save, GifHas8BitsAndTheColoursOfASimplePicture) {
    const auto rgb = colourful(PixelFormat24bppRGB);
    const Decoded decoded = decodeGif(save(*rgb, gif));
    EXPECT_LE(decoded.palette.size(), 256U);
    EXPECT_EQ(decoded.pixels, shownBy(*rgb));
}

TEST_F(Save, PremultipliedColoursAreStraightInTheFile) {
    Bitmap bitmap(1, 1, PixelFormat32bppPARGB);
    bitmap.SetPixel(0, 0, Color(0x80FF0000U));
    EXPECT_EQ(decodePng(save(bitmap, png)).at(0, 0), 0x80FF0000U);
}

TEST_F(Save, PackedColoursOf16BitsBecome24) {
    const auto bitmap = colourful(PixelFormat16bppRGB565);
    const Decoded decoded = decodePng(save(*bitmap, png));
    EXPECT_EQ(decoded.bitsPerPixel, 24);
    EXPECT_EQ(decoded.pixels, shownBy(*bitmap));
}

TEST_F(Save, IndexedPicturesKeepTheirColours) {
    Bitmap bitmap(3, 1, PixelFormat8bppIndexed);
    struct {
        ColorPalette start;
        ARGB second;
    } palette = {{0, 2, {0xFF102030U}}, 0xFF405060U};
    ASSERT_EQ(bitmap.SetPalette(&palette.start), Ok);
    BitmapData locked;
    ASSERT_EQ(bitmap.LockBits(nullptr, ImageLockModeWrite, PixelFormat8bppIndexed, &locked), Ok);
    static_cast<BYTE*>(locked.Scan0)[1] = 1;
    bitmap.UnlockBits(&locked);
    const Pixels expected = {0xFF102030U, 0xFF405060U, 0xFF102030U};
    EXPECT_EQ(decodePng(save(bitmap, png)).pixels, expected);
    EXPECT_EQ(decodeBmp(save(bitmap, bmp)).pixels, expected);
    EXPECT_EQ(decodeGif(save(bitmap, gif)).pixels, expected);
}

TEST_F(Save, JpegHasQuality75UnlessAskedForAnother) {
    const auto bitmap = colourful(PixelFormat24bppRGB);
    const DecodedJpeg usual = decodeJpeg(save(*bitmap, jpeg));
    const Quality seventyFive(75);
    EXPECT_EQ(usual.tables, decodeJpeg(save(*bitmap, jpeg, &seventyFive.parameters)).tables);
    EXPECT_EQ(usual.tables.at(0)[0], 8) << "the standard's 16 at 75 (ITU-T T.81, K.1)";
    EXPECT_EQ(usual.lumaSampling, (std::array<int, 2>{2, 2}));
    const Quality best(100);
    EXPECT_EQ(decodeJpeg(save(*bitmap, jpeg, &best.parameters)).tables.at(0)[0], 1);
    const Quality fifty(50);
    EXPECT_EQ(decodeJpeg(save(*bitmap, jpeg, &fifty.parameters)).tables.at(0)[0], 16);
}

TEST_F(Save, JpegShowsTheColoursOfTransparentPixels) {
    Bitmap bitmap(8, 8, PixelFormat32bppARGB);
    for (int i = 0; i < 64; ++i)
        bitmap.SetPixel(i % 8, i / 8, Color(0x00C08040U));
    const Quality best(100);
    const ARGB pixel = decodeJpeg(save(bitmap, jpeg, &best.parameters)).at(4, 4);
    EXPECT_LE(largestDifference({pixel}, {0xFFC08040U}), 2);
}

TEST_F(Save, WritesBottomUpMemoryUpright) {
    std::array<BYTE, 16> memory = {};
    memory[0] = 9; // the lower left pixel's blue
    Bitmap bitmap(2, 2, -8, PixelFormat24bppRGB, memory.data() + 8);
    for (const Decoded& decoded : {decodePng(save(bitmap, png)), decodeBmp(save(bitmap, bmp))}) {
        EXPECT_EQ(decoded.at(0, 0), 0xFF000000U);
        EXPECT_EQ(decoded.at(0, 1), 0xFF000009U);
    }
}

TEST_F(Save, KeepsTheResolutionOfThePicture) {
    const auto loaded = open(PngBuilder(2, 2, {2, 8}, [](int, int) { return std::array<int, 4>{}; })
                                 .resolution(11811, 5906)
                                 .build());
    const Decoded decoded = decodeBmp(save(*loaded, bmp));
    EXPECT_NEAR(decoded.dpiX, 300, 0.1);
    EXPECT_NEAR(decoded.dpiY, 150, 0.1);
}

TEST_F(Save, OverItsOwnFileWorksForAPictureNotYetDecoded) {
    const Bytes file = PngBuilder(4, 4, {2, 8}, [](int x, int y) {
                           return std::array<int, 4>{x * 9, y * 9, 7, 0};
                       }).build();
    const std::wstring path = write("own.png", std::span(file));
    const auto expected = pixelsOf(*open(file));
    Bitmap bitmap(path.c_str());
    ASSERT_EQ(bitmap.Save(path.c_str(), &png), Ok);
    Bitmap again(path.c_str());
    EXPECT_EQ(pixelsOf(again), expected);
}

TEST_F(Save, OfALockedBitmapIsTheWrongState) {
    Bitmap bitmap(2, 2);
    BitmapData locked;
    bitmap.LockBits(nullptr, ImageLockModeRead, PixelFormat32bppARGB, &locked);
    EXPECT_EQ(bitmap.Save(target().c_str(), &png), WrongState);
    bitmap.UnlockBits(&locked);
    EXPECT_EQ(filesInFolder(), 0U);
}

TEST_F(Save, WithAnUnknownEncoderIsRefused) {
    Bitmap bitmap(2, 2);
    const CLSID unknown = encoderOf(0x557cf403);
    EXPECT_EQ(bitmap.Save(target().c_str(), &unknown), UnknownImageFormat);
    EXPECT_EQ(bitmap.Save(target().c_str(), nullptr), InvalidParameter);
    EXPECT_EQ(bitmap.Save(nullptr, &png), InvalidParameter);
    EXPECT_EQ(filesInFolder(), 0U);
}

TEST_F(Save, WithBadParametersIsRefusedAndWritesNothing) {
    Bitmap bitmap(2, 2);
    LONG value = 50;
    const EncoderParameter good = {EncoderQuality, 1, EncoderParameterValueTypeLong, &value};
    std::vector<EncoderParameter> bad(4, good);
    bad[0].Guid = ImageFormatPNG;
    bad[1].NumberOfValues = 2;
    bad[2].Type = EncoderParameterValueTypeLong + 1;
    bad[3].Value = nullptr;
    for (const EncoderParameter& parameter : bad) {
        const EncoderParameters parameters = {1, {parameter}};
        EXPECT_EQ(bitmap.Save(target().c_str(), &jpeg, &parameters), InvalidParameter);
    }
    for (const LONG outside : {-1, 101}) {
        const Quality quality(outside);
        EXPECT_EQ(bitmap.Save(target().c_str(), &jpeg, &quality.parameters), InvalidParameter);
    }
    EXPECT_EQ(filesInFolder(), 0U);
}

TEST_F(Save, IntoAFolderThatIsNotThereLeavesNothing) {
    Bitmap bitmap(2, 2);
    EXPECT_EQ(bitmap.Save(wideOf(folder / "none/saved.png").c_str(), &png), Win32Error);
    EXPECT_EQ(filesInFolder(), 0U);
}

TEST_F(Save, OntoAFolderLeavesItAlone) {
    std::filesystem::create_directory(folder / "saved");
    Bitmap bitmap(2, 2);
    EXPECT_EQ(bitmap.Save(target().c_str(), &png), Win32Error);
    EXPECT_TRUE(std::filesystem::is_directory(folder / "saved"));
    EXPECT_EQ(filesInFolder(), 1U);
}

TEST_F(Save, LeavesAnExistingFileWhenThePictureCannotBeDecoded) {
    Bytes file = PngBuilder(64, 64, {2, 8}, [](int x, int y) {
                     return std::array<int, 4>{x * y, x ^ y, y, 0};
                 }).build();
    file.resize(file.size() / 2);
    const auto bitmap = open(file);
    folder.write("saved", "what was there before");
    EXPECT_EQ(bitmap->Save(target().c_str(), &png), Aborted);
    EXPECT_EQ(readFile(folder / "saved"), "what was there before");
    EXPECT_EQ(filesInFolder(), 2U);
}
