#include "gdiplus/encoders/EncoderTable.h"

#include "gdiplus/encoders/BmpEncoder.h"
#include "gdiplus/encoders/GifEncoder.h"
#include "gdiplus/encoders/JpegEncoder.h"
#include "gdiplus/encoders/PngEncoder.h"
#include "gdiplus/encoders/TiffEncoder.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>

namespace GdiplusBackend {

namespace {

// Encoder, decoder, support for bitmaps, built in: the published ImageCodecFlags.
constexpr DWORD codecFlags = 0x00000001 | 0x00000002 | 0x00000004 | 0x00010000;
constexpr DWORD codecVersion = 1;

constexpr CLSID encoderClsid(DWORD first) {
    return {first, 0x1a04, 0x11d3, {0x9a, 0x73, 0x00, 0x00, 0xf8, 0x1e, 0xf3, 0x2e}};
}

constexpr std::array<BYTE, 2> bmpSignature = {'B', 'M'};
constexpr std::array<BYTE, 2> jpegSignature = {0xFF, 0xD8};
constexpr std::array<BYTE, 12> gifSignatures = {'G', 'I', 'F', '8', '9', 'a', 'G', 'I', 'F', '8', '7', 'a'};
constexpr std::array<BYTE, 4> tiffSignatures = {'I', 'I', 'M', 'M'};
constexpr std::array<BYTE, 8> pngSignature = {0x89, 'P', 'N', 'G', 0x0D, 0x0A, 0x1A, 0x0A};

constexpr std::array<EncoderEntry, 5> encoders = {{
    {encoderClsid(0x557cf400), Gdiplus::ImageFormatBMP, L"Built-in BMP Codec", L"BMP", L"*.BMP;*.DIB;*.RLE",
     L"image/bmp", bmpSignature, 1, encodeBmp},
    {encoderClsid(0x557cf401), Gdiplus::ImageFormatJPEG, L"Built-in JPEG Codec", L"JPEG",
     L"*.JPG;*.JPEG;*.JPE;*.JFIF", L"image/jpeg", jpegSignature, 1, encodeJpeg},
    {encoderClsid(0x557cf402), Gdiplus::ImageFormatGIF, L"Built-in GIF Codec", L"GIF", L"*.GIF", L"image/gif",
     gifSignatures, 2, encodeGif},
    {encoderClsid(0x557cf405), Gdiplus::ImageFormatTIFF, L"Built-in TIFF Codec", L"TIFF", L"*.TIF;*.TIFF",
     L"image/tiff", tiffSignatures, 2, encodeTiff},
    {encoderClsid(0x557cf406), Gdiplus::ImageFormatPNG, L"Built-in PNG Codec", L"PNG", L"*.PNG", L"image/png",
     pngSignature, 1, encodePng},
}};

std::size_t stringBytes(std::wstring_view text) {
    return (text.size() + 1) * sizeof(WCHAR);
}

std::size_t bytesOf(const EncoderEntry& entry) {
    return sizeof(Gdiplus::ImageCodecInfo) + stringBytes(entry.codecName) +
           stringBytes(entry.formatDescription) + stringBytes(entry.filenameExtension) +
           stringBytes(entry.mimeType) + 2 * entry.signatures.size();
}

/// Hands out the memory behind the array: all strings first, so that they are aligned.
class TailWriter {
public:
    explicit TailWriter(std::byte* start)
        : next(start) {}

    const WCHAR* put(std::wstring_view text) {
        auto* copy = reinterpret_cast<WCHAR*>(next);
        *std::ranges::copy(text, copy).out = L'\0';
        next += stringBytes(text);
        return copy;
    }

    const BYTE* put(std::span<const BYTE> bytes) {
        auto* copy = reinterpret_cast<BYTE*>(next);
        std::ranges::copy(bytes, copy);
        next += bytes.size();
        return copy;
    }

    const BYTE* putMask(std::size_t count) {
        auto* mask = reinterpret_cast<BYTE*>(next);
        std::fill_n(mask, count, BYTE{0xFF});
        next += count;
        return mask;
    }

private:
    std::byte* next;
};

Gdiplus::ImageCodecInfo describe(const EncoderEntry& entry, TailWriter& tail) {
    return {.Clsid = entry.clsid,
            .FormatID = entry.format,
            .CodecName = tail.put(entry.codecName),
            .DllName = nullptr,
            .FormatDescription = tail.put(entry.formatDescription),
            .FilenameExtension = tail.put(entry.filenameExtension),
            .MimeType = tail.put(entry.mimeType),
            .Flags = codecFlags,
            .Version = codecVersion,
            .SigCount = entry.signatureCount,
            .SigSize = static_cast<DWORD>(entry.signatures.size()) / entry.signatureCount,
            .SigPattern = nullptr,
            .SigMask = nullptr};
}

} // namespace

std::span<const EncoderEntry> encodersInOrder() {
    return encoders;
}

const EncoderEntry* findEncoder(const CLSID& clsid) {
    const auto* found = std::ranges::find(encoders, clsid, &EncoderEntry::clsid);
    return found == encoders.end() ? nullptr : found;
}

Gdiplus::Status encodersSize(UINT& count, UINT& bytes) {
    std::size_t total = 0;
    for (const EncoderEntry& entry : encoders)
        total += bytesOf(entry);
    count = static_cast<UINT>(encoders.size());
    bytes = static_cast<UINT>(total);
    return Gdiplus::Ok;
}

Gdiplus::Status fillEncoders(UINT count, UINT bytes, Gdiplus::ImageCodecInfo* out) {
    UINT rightCount = 0;
    UINT rightBytes = 0;
    encodersSize(rightCount, rightBytes);
    if (!out || count != rightCount || bytes != rightBytes)
        return Gdiplus::GenericError;
    TailWriter tail(reinterpret_cast<std::byte*>(out + count));
    for (std::size_t i = 0; i < encoders.size(); ++i)
        out[i] = describe(encoders[i], tail);
    for (std::size_t i = 0; i < encoders.size(); ++i) {
        out[i].SigPattern = tail.put(encoders[i].signatures);
        out[i].SigMask = tail.putMask(encoders[i].signatures.size());
    }
    return Gdiplus::Ok;
}

} // namespace GdiplusBackend
