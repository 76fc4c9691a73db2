#pragma once

#include "gdiplus/codecs/CodecModules.h"

namespace GdiplusBackend {

/// The file is recognised here, without the module that decodes it.
struct HeifCodec {
    /// By the brands in its `ftyp` box (ISO/IEC 23008-12, 10; AV1 Image File Format, 6).
    static bool recognises(std::span<const std::byte> head);
    static bool isPresent() { return isCodecModulePresent(CodecModule::Heif); }
    static Result<std::unique_ptr<PictureDecoder>> open(std::shared_ptr<const ByteSource> source);
};

struct SvgCodec {
    /// By its root element, or a document type that names it (SVG 1.1, 1.3).
    static bool recognises(std::span<const std::byte> head);
    static bool isPresent() { return isCodecModulePresent(CodecModule::Svg); }
    static Result<std::unique_ptr<PictureDecoder>> open(std::shared_ptr<const ByteSource> source);
};

} // namespace GdiplusBackend
