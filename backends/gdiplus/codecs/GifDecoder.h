#pragma once

#include "gdiplus/codecs/PictureDecoder.h"
#include "gdiplus/codecs/gifdecoder/GifBlocks.h"

namespace GdiplusBackend {

/// The first frame of a GIF file (GIF89a) on its logical screen. A file with one frame keeps its palette, to
/// which a transparent entry may be added for the part of the screen that the frame leaves free; where the
/// palette is full, and in a file with several frames, pixels are `32bppARGB`.
class GifDecoder : public PictureDecoder {
public:
    static bool recognises(std::span<const std::byte> head);

    /// Walks over the blocks up to a second frame or the trailer, without unpacking pixels.
    static Result<std::unique_ptr<PictureDecoder>> open(std::shared_ptr<const ByteSource> source);

    /// Later frames are walked over but never unpacked; a missing trailer is `Aborted`.
    Result<void> decode(int reduction, RowSink& sink) const override;

private:
    GifDecoder(GifHeader gifHeader, std::shared_ptr<const ByteSource> bytes);

    GifHeader header;
    std::shared_ptr<const ByteSource> source;
};

} // namespace GdiplusBackend
