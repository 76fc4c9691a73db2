#pragma once

#include "gdiplus/codecs/PictureDecoder.h"

namespace GdiplusBackend {

/// An SVG drawing, through librsvg and Cairo, in bounded time: its own size at 96 dots per inch, else that of
/// its view box, else 150 by 150. Nothing outside the file is loaded, and librsvg's limits on depth and
/// references hold. A reduced size is drawn anew, not shrunk.
class SvgDecoder : public PictureDecoder {
public:
    /// Reads the whole file, of at most 64 MiB.
    static Result<std::unique_ptr<PictureDecoder>> open(std::shared_ptr<const ByteSource> source);

    Result<void> decode(int reduction, RowSink& sink) const override;

private:
    SvgDecoder(PictureFacts facts, std::shared_ptr<const ByteSource> bytes);

    std::shared_ptr<const ByteSource> source;
};

} // namespace GdiplusBackend
