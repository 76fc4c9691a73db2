#include "scheduling/imagefile/ImageHelper.h"

#include "scheduling/imagefile/TextConversion.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <cwchar>
#include <memory>
#include <string_view>

namespace KestoThumbnailer {

namespace {

struct FileKind {
    std::wstring_view extension; // in upper case
    const wchar_t* mimeType;
};

constexpr std::array<FileKind, 5> writableKinds = {{
    {L"JPG", L"image/jpeg"},
    {L"JPEG", L"image/jpeg"},
    {L"GIF", L"image/gif"},
    {L"PNG", L"image/png"},
    {L"BMP", L"image/bmp"},
}};

/// Null for a name of any other kind, and for one without a ".".
const wchar_t* MimeTypeForPath(const std::wstring& path) {
    const std::size_t dot = path.rfind(L'.');
    if (dot == std::wstring::npos)
        return nullptr;
    const std::wstring extension = UpperAscii(path.substr(dot + 1));
    for (const FileKind& kind : writableKinds)
        if (kind.extension == extension)
            return kind.mimeType;
    return nullptr;
}

bool IsCompatibleWithGDI(const Gdiplus::Bitmap& bitmap) {
    // The alpha channel goes lost with the rest by design: the flag decides, not the presence of alpha.
    return (bitmap.GetPixelFormat() & PixelFormatGDI) != 0;
}

Gdiplus::Bitmap* CloneAs24bppRGB(Gdiplus::Bitmap& bitmap) {
    return bitmap.Clone(0, 0, static_cast<INT>(bitmap.GetWidth()), static_cast<INT>(bitmap.GetHeight()),
                        PixelFormat24bppRGB);
}

struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};

} // namespace

int ImageHelper::GetEncoderClsid(const wchar_t* mimeType, GUID* clsid) {
    UINT count = 0;
    UINT size = 0;
    Gdiplus::DllExports::GdipGetImageEncodersSize(&count, &size);
    if (size == 0)
        return -1;
    const std::unique_ptr<Gdiplus::ImageCodecInfo, FreeMemory> encoders(
        static_cast<Gdiplus::ImageCodecInfo*>(std::malloc(size)));
    if (!encoders || Gdiplus::DllExports::GdipGetImageEncoders(count, size, encoders.get()) != Gdiplus::Ok)
        return -1;
    for (UINT index = 0; index < count; ++index) {
        const Gdiplus::ImageCodecInfo& encoder = encoders.get()[index];
        if (std::wcscmp(encoder.MimeType, mimeType) == 0) {
            *clsid = encoder.Clsid;
            return static_cast<int>(index);
        }
    }
    return -1;
}

bool ImageHelper::QuickSavePic(Gdiplus::Bitmap* bitmap, const std::string& path) {
    const std::wstring widePath = WideFromUtf8(path);
    const wchar_t* mimeType = MimeTypeForPath(widePath);
    GUID encoder = {};
    if (!bitmap || !mimeType || GetEncoderClsid(mimeType, &encoder) < 0)
        return false;
    return bitmap->Save(widePath.c_str(), &encoder, nullptr) == Gdiplus::Ok;
}

bool ImageHelper::QuickSavePic(HBITMAP bitmap, const std::string& path) {
    Gdiplus::Bitmap* converted = nullptr;
    HBitmapToGDIPlusBitmap(bitmap, &converted, PixelFormat32bppARGB, /*flipVertically=*/true);
    const std::unique_ptr<Gdiplus::Bitmap> owned(converted);
    return QuickSavePic(owned.get(), path);
}

int ImageHelper::HBitmapToGDIBITMAP(HBITMAP bitmap, BITMAP* out) {
    return GetObjectW(bitmap, sizeof(BITMAP), out);
}

Gdiplus::Status ImageHelper::HBitmapToGDIPlusBitmap(HBITMAP bitmap, Gdiplus::Bitmap** out, int pixelFormat,
                                                    bool flipVertically) {
    BITMAP info = {};
    if (HBitmapToGDIBITMAP(bitmap, &info) == 0 || !info.bmBits)
        return Gdiplus::GenericError;

    std::unique_ptr<Gdiplus::Bitmap> copy(new Gdiplus::Bitmap(info.bmWidth, info.bmHeight, pixelFormat));
    if (!copy)
        return Gdiplus::OutOfMemory;
    Gdiplus::Status status = copy->GetLastStatus();
    if (status != Gdiplus::Ok)
        return status;

    const Gdiplus::Rect all(0, 0, info.bmWidth, info.bmHeight);
    Gdiplus::BitmapData locked;
    status = copy->LockBits(&all, Gdiplus::ImageLockModeWrite, pixelFormat, &locked);
    if (status != Gdiplus::Ok)
        return status;
    const bool sameStride = locked.Stride == info.bmWidthBytes;
    if (sameStride)
        std::memcpy(locked.Scan0, info.bmBits,
                    static_cast<std::size_t>(info.bmWidthBytes) * static_cast<std::size_t>(info.bmHeight));
    status = copy->UnlockBits(&locked);
    if (!sameStride)
        return Gdiplus::InvalidParameter; // Deliberate: rows of another length are not converted.
    if (status != Gdiplus::Ok)
        return status;

    if (flipVertically)
        (void)copy->RotateFlip(Gdiplus::RotateNoneFlipY); // a failure stays in the bitmap's last status
    *out = copy.release();
    return Gdiplus::Ok;
}

Gdiplus::Status ImageHelper::GDIPlusBitmapToHBitmap(Gdiplus::Bitmap* bitmap, HBITMAP* out) {
    return bitmap ? SafeGetHBITMAP(bitmap, out) : Gdiplus::InvalidParameter;
}

Gdiplus::Status ImageHelper::SafeGetHBITMAP(Gdiplus::Bitmap* bitmap, HBITMAP* out) {
    const Gdiplus::Color noBackground(Gdiplus::ARGB{0});
    if (IsCompatibleWithGDI(*bitmap))
        return bitmap->GetHBITMAP(noBackground, out);
    const std::unique_ptr<Gdiplus::Bitmap> clone(CloneAs24bppRGB(*bitmap));
    if (clone)
        return clone->GetHBITMAP(noBackground, out);
    const Gdiplus::Status reason = bitmap->GetLastStatus();
    return reason == Gdiplus::Ok ? Gdiplus::OutOfMemory : reason;
}

void ImageHelper::MakeBitmapCompatibleWithGDI(Gdiplus::Bitmap*& bitmap) {
    if (!bitmap || IsCompatibleWithGDI(*bitmap))
        return;
    const std::unique_ptr<Gdiplus::Bitmap> old(bitmap);
    bitmap = CloneAs24bppRGB(*old);
}

} // namespace KestoThumbnailer
