#pragma once

#include "gdiplus/codecs/PictureDecoder.h"

namespace GdiplusBackend {

/// JPEG (ITU-T T.81, T.871): baseline, progressive and arithmetic, 8 bits a sample; grey, YCbCr or RGB, CMYK
/// or YCCK. Reductions come out of smaller inverse transforms.
class JpegDecoder : public PictureDecoder {
public:
    static bool recognises(std::span<const std::byte> head);

    /// Reads up to the first scan. `Aborted` also for a file with fewer bytes than its size in pixels can
    /// take.
    static Result<std::unique_ptr<PictureDecoder>> open(std::shared_ptr<const ByteSource> source);

    /// Damage that the coding can recover from is tolerated. `GenericError` for more than 100 scans.
    Result<void> decode(int reduction, RowSink& sink) const override;

private:
    JpegDecoder(PictureFacts facts, std::shared_ptr<const ByteSource> bytes);

    std::shared_ptr<const ByteSource> source;
};

} // namespace GdiplusBackend
