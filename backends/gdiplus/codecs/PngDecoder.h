#pragma once

#include "gdiplus/codecs/PictureDecoder.h"
#include "gdiplus/codecs/pngdecoder/PngSamples.h"

namespace GdiplusBackend {

/// PNG (ISO/IEC 15948), all kinds. One row is held at a time, but for interlaced pictures. gAMA and cHRM are
/// not looked at; eXIf is not shown.
class PngDecoder : public PictureDecoder {
public:
    static bool recognises(std::span<const std::byte> head);

    /// Reads up to the image data. `Aborted` also for a file with fewer bytes than its size in pixels can
    /// take.
    static Result<std::unique_ptr<PictureDecoder>> open(std::shared_ptr<const ByteSource> source);

    /// `GenericError` for wrong checksums of critical chunks and of the image data.
    Result<void> decode(int reduction, RowSink& sink) const override;

private:
    PngDecoder(PictureFacts facts, PngHeader ofFile, PngSamples toLayout,
               std::shared_ptr<const ByteSource> bytes);

    template <typename NextRow>
    Result<void> giveRows(NextRow nextRow, RowSink& sink) const;

    PngHeader header;
    PngSamples samples;
    std::shared_ptr<const ByteSource> source;
};

} // namespace GdiplusBackend
