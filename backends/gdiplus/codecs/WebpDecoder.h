#pragma once

#include "gdiplus/codecs/PictureDecoder.h"
#include "gdiplus/codecs/webpdecoder/WebpChunks.h"

namespace GdiplusBackend {

/// WebP, lossy (RFC 6386) and lossless; of an animation the first frame on its canvas. Reductions are offered
/// where they save time: for opaque lossy stills.
class WebpDecoder : public PictureDecoder {
public:
    static bool recognises(std::span<const std::byte> head);

    static Result<std::unique_ptr<PictureDecoder>> open(std::shared_ptr<const ByteSource> source);

    Result<void> decode(int reduction, RowSink& sink) const override;

private:
    WebpDecoder(PictureFacts facts, WebpHeader webpHeader, std::shared_ptr<const ByteSource> bytes);

    Result<void> decodeFrame(RowSink& sink) const;

    WebpHeader header;
    std::shared_ptr<const ByteSource> source;
};

} // namespace GdiplusBackend
