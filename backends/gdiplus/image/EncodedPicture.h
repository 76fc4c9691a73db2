#pragma once

#include "gdiplus/codecs/PictureDecoder.h"
#include "gdiplus/color/ColorTransform.h"
#include "gdiplus/image/DrawPlan.h"
#include "gdiplus/pixels/PixelBuffer.h"

#include <memory>
#include <vector>

namespace GdiplusBackend {

enum class ColorManagement { Ignored, ToSrgb };

/// A picture that is opened but not decoded. Immutable: bitmaps share it, and any number of threads may
/// decode at once.
class EncodedPicture {
public:
    /// Reads the header. The file stays open for as long as the picture lives, so that it can be decoded even
    /// if another one takes its name. Statuses as documented at `Gdiplus::Status`.
    static Result<std::shared_ptr<const EncodedPicture>> open(const wchar_t* filename,
                                                              ColorManagement management);
    /// The same for bytes of whatever origin.
    static Result<std::shared_ptr<const EncodedPicture>> open(std::shared_ptr<const ByteSource> bytes,
                                                              ColorManagement management);
    /// A profile that is broken, or one of another kind of colours than the picture's, is ignored.
    EncodedPicture(std::unique_ptr<PictureDecoder> opened, ColorManagement management);

    const PictureFacts& facts() const { return decoder->facts(); }
    /// That of the file, but `24bppRGB` where inks are managed: they are inks no more then.
    Gdiplus::PixelFormat pixelFormat() const;
    bool isOpaque() const;
    /// In sRGB where colours are managed; of no entries unless the picture is indexed.
    const std::vector<Gdiplus::ARGB>& palette() const { return managedPalette; }

    /// The whole picture as stored, in `pixelFormat()` or one that `canConvert` reaches from it.
    Result<PixelBuffer> decode(Gdiplus::PixelFormat format) const;

    /// The picture drawn by `plan`, turned: `32bppPARGB`, or `32bppRGB` when nothing of it is transparent.
    Result<PixelBuffer> draw(const DrawPlan& plan, Kernel kernel) const;

private:
    std::unique_ptr<PictureDecoder> decoder;
    std::shared_ptr<const ColorTransform> colors; ///< null: colours stay as they are
    std::vector<Gdiplus::ARGB> managedPalette;
};

} // namespace GdiplusBackend
