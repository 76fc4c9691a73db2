#pragma once

#include "platform/Export.h"
#include "platform/Gdiplus.h"

#include <string>

namespace KestoThumbnailer {

/// Bitmaps to bitmap handles and back, and to files. Without state; any thread, one at a time for one bitmap.
class KESTO_EXPORT ImageHelper {
public:
    ImageHelper() = delete;

    /// The index of the first encoder whose MIME type is `mimeType`, character for character, and its class
    /// in `*clsid`; -1 without one, and `*clsid` then stays as it is.
    static int GetEncoderClsid(const wchar_t* mimeType, GUID* clsid);

    /// Writes a file of the kind that the extension of `path` (UTF-8) names: jpg, jpeg, gif, png or bmp, in
    /// any case, with the encoder's own settings. False, and no file, for any other name; false when writing
    /// fails or `bitmap` is null. `bitmap` stays the caller's.
    static bool QuickSavePic(Gdiplus::Bitmap* bitmap, const std::string& path);

    /// As above, for the handle of a 32-bit bottom-up bitmap. False when it can't be converted. `bitmap`
    /// stays the caller's.
    static bool QuickSavePic(HBITMAP bitmap, const std::string& path);

    /// Fills `*out` and gives the number of bytes written; 0 for what is no bitmap handle.
    static int HBitmapToGDIBITMAP(HBITMAP bitmap, BITMAP* out);

    /// Copies the rows of a handle, as they lie in memory, into a new bitmap of `pixelFormat`, and turns it
    /// upside down if told to: so a bottom-up handle comes out upright with `flipVertically`. The caller owns
    /// `*out`, which is set on `Ok` alone. `GenericError` for a handle without pixels of its own,
    /// `InvalidParameter` when a row of `pixelFormat` takes other bytes than a row of the handle.
    static Gdiplus::Status HBitmapToGDIPlusBitmap(HBITMAP bitmap, Gdiplus::Bitmap** out, int pixelFormat,
                                                  bool flipVertically);

    /// As `SafeGetHBITMAP`; `InvalidParameter` for a null bitmap.
    static Gdiplus::Status GDIPlusBitmapToHBitmap(Gdiplus::Bitmap* bitmap, HBITMAP* out);

    /// A new handle with the bitmap's pixels, made by way of `24bppRGB` for a format that the older drawing
    /// interface does not know. The caller gives it back with `DeleteObject`. `bitmap` is not null and stays
    /// the caller's.
    static Gdiplus::Status SafeGetHBITMAP(Gdiplus::Bitmap* bitmap, HBITMAP* out);

    /// Replaces a bitmap of a format that the older drawing interface does not know by a copy in `24bppRGB`,
    /// without alpha; the old one is deleted, and `bitmap` is null if the copy fails. Null stays null.
    static void MakeBitmapCompatibleWithGDI(Gdiplus::Bitmap*& bitmap);
};

} // namespace KestoThumbnailer
