#pragma once

#include "gdiplus/encoders/PictureEncoder.h"
#include "platform/GdiplusTypes.h"

#include <span>

namespace GdiplusBackend {

struct EncoderEntry {
    CLSID clsid;
    GUID format;
    const WCHAR* codecName;
    const WCHAR* formatDescription;
    const WCHAR* filenameExtension; ///< patterns such as `*.TIF;*.TIFF`
    const WCHAR* mimeType;
    /// What files of the kind start with: `signatureCount` patterns of the same length, one behind the other;
    /// every bit of them counts.
    std::span<const BYTE> signatures;
    DWORD signatureCount;
    EncodePicture encode;
};

/// BMP, JPEG, GIF, TIFF, PNG.
std::span<const EncoderEntry> encodersInOrder();

/// Null when there is no such encoder.
const EncoderEntry* findEncoder(const CLSID& clsid);

/// What `GdipGetImageEncodersSize` tells: the number of encoders, and the bytes of their list with all that
/// its pointers point to.
Gdiplus::Status encodersSize(UINT& count, UINT& bytes);

/// Fills `out`, a block of `bytes` bytes: first the array, behind it the strings and signatures that it
/// points to, so that freeing the block frees all. `GenericError` when `out` is null or `count` or `bytes`
/// are not those of `encodersSize`; nothing is written then.
Gdiplus::Status fillEncoders(UINT count, UINT bytes, Gdiplus::ImageCodecInfo* out);

} // namespace GdiplusBackend
