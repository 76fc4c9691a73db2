#pragma once

#include "gdiplus/codecs/PictureDecoder.h"

namespace GdiplusBackend {

/// The first page of a TIFF or BigTIFF file (TIFF 6.0 and its supplements). Opaque pictures of every kind,
/// grey and bilevel ones too, come out as `24bppRGB`, pictures with alpha as `32bppARGB`; samples of other
/// depths are brought to 8 bits, and inks are mixed without a profile. The orientation stands in `exif`.
class TiffDecoder : public PictureDecoder {
public:
    static bool recognises(std::span<const std::byte> head);

    /// Reads the first directory. `UnknownImageFormat` for samples that are no unsigned integers, and for
    /// kinds of colour that libtiff can't turn into RGB.
    static Result<std::unique_ptr<PictureDecoder>> open(std::shared_ptr<const ByteSource> source);

    Result<void> decode(int reduction, RowSink& sink) const override;

private:
    TiffDecoder(PictureFacts facts, std::shared_ptr<const ByteSource> bytes);

    std::shared_ptr<const ByteSource> source;
};

} // namespace GdiplusBackend
