#include "gdiplus/codecs/CodecModules.h"
#include "gdiplus/codecs/modules/HeifDecoder.h"

const GdiplusBackend::CodecEntry* kestoCodec() {
    using namespace GdiplusBackend;
    static constexpr CodecEntry codec = {"HEIF", nullptr, HeifDecoder::open};
    return &codec;
}
