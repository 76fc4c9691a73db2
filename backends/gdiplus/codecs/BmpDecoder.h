#pragma once

#include "gdiplus/codecs/PictureDecoder.h"
#include "gdiplus/codecs/bmpdecoder/BmpHeader.h"

namespace GdiplusBackend {

/// BMP of Windows (all header versions) and OS/2, with 1, 2, 4, 8, 16, 24 or 32 bits a pixel, plain, by masks
/// or run-length coded. Alpha is not looked at. Plain pictures are read a few rows at a time.
class BmpDecoder : public PictureDecoder {
public:
    static bool recognises(std::span<const std::byte> head);
    static Result<std::unique_ptr<PictureDecoder>> open(std::shared_ptr<const ByteSource> source);
    Result<void> decode(int reduction, RowSink& sink) const override;

private:
    BmpDecoder(PictureFacts facts, BmpHeader ofFile, std::shared_ptr<const ByteSource> bytes);

    Result<void> decodePlain(RowSink& sink) const;

    BmpHeader header;
    std::shared_ptr<const ByteSource> source;
};

} // namespace GdiplusBackend
