#include "gdiplus/codecs/TiffDecoder.h"

#include "gdiplus/codecs/CodecTable.h"
#include "gdiplus/codecs/tiffdecoder/TiffHandle.h"
#include "gdiplus/codecs/tiffdecoder/TiffRows.h"
#include "gdiplus/codecs/tiffdecoder/TiffShape.h"

#include <tiffio.h>

#include <algorithm>
#include <array>

namespace GdiplusBackend {

TiffDecoder::TiffDecoder(PictureFacts facts, std::shared_ptr<const ByteSource> bytes)
    : PictureDecoder(std::move(facts))
    , source(std::move(bytes)) {}

bool TiffDecoder::recognises(std::span<const std::byte> head) {
    using namespace std::string_view_literals;
    constexpr std::array signatures = {"II\x2A\0"sv, "MM\0\x2A"sv, "II\x2B\0"sv, "MM\0\x2B"sv};
    return std::any_of(signatures.begin(), signatures.end(),
                       [head](std::string_view signature) { return startsWith(head, signature); });
}

Result<std::unique_ptr<PictureDecoder>> TiffDecoder::open(std::shared_ptr<const ByteSource> source) {
    const auto handle = TiffHandle::open(source);
    if (!handle)
        return tl::unexpected(handle.error());
    const auto shape = readTiffShape(**handle);
    if (!shape)
        return tl::unexpected(shape.error());
    PictureFacts facts = readTiffFacts(**handle, *shape);
    if (const auto complete = (*handle)->checkComplete(); !complete)
        return tl::unexpected(complete.error());
    return std::unique_ptr<PictureDecoder>(new TiffDecoder(std::move(facts), std::move(source)));
}

Result<void> TiffDecoder::decode(int /*reduction*/, RowSink& sink) const {
    const auto handle = TiffHandle::open(source);
    if (!handle)
        return tl::unexpected(handle.error());
    const auto shape = readTiffShape(**handle);
    if (!shape)
        return tl::unexpected(shape.error());
    if (shape->width != facts().width || shape->height != facts().height ||
        shape->channels() * 8 != bitsPerPixel(facts().layout))
        return damaged("the TIFF file changed while it was open");
    if (shape->colours == TiffColours::ByLibrary)
        return decodeByLibrary(**handle, *shape, sink);
    if (shape->separatePlanes || TIFFIsTiled((*handle)->get()))
        return decodeBlocks(**handle, *shape, sink);
    return decodeStrips(**handle, *shape, sink);
}

} // namespace GdiplusBackend
