#include "gdiplus/codecs/CodecModules.h"
#include "gdiplus/codecs/modules/SvgDecoder.h"

const GdiplusBackend::CodecEntry* kestoCodec() {
    using namespace GdiplusBackend;
    static constexpr CodecEntry codec = {"SVG", nullptr, SvgDecoder::open};
    return &codec;
}
