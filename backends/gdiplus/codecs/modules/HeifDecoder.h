#pragma once

#include "gdiplus/codecs/PictureDecoder.h"

namespace GdiplusBackend {

/// The primary picture of a HEIF or AVIF file (ISO/IEC 23008-12), through libheif. Its transformations are
/// applied to the rows, so no orientation is told; Exif is left out for that reason.
class HeifDecoder : public PictureDecoder {
public:
    /// Reads the boxes. `UnknownImageFormat` for a coding that this system's libheif lacks.
    static Result<std::unique_ptr<PictureDecoder>> open(std::shared_ptr<const ByteSource> source);

    Result<void> decode(int reduction, RowSink& sink) const override;

private:
    HeifDecoder(PictureFacts facts, std::shared_ptr<const ByteSource> bytes);

    std::shared_ptr<const ByteSource> source;
};

} // namespace GdiplusBackend
