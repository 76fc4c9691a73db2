#include "gdiplus/codecs/gifdecoder/GifLines.h"

#include "gif/Frame.h"

#include <gif_lib.h>

#include <new>
#include <string>

namespace GdiplusBackend {

namespace {

bool skipExtension(GifFileType* gif) {
    int label = 0;
    GifByteType* block = nullptr;
    if (DGifGetExtension(gif, &label, &block) != GIF_OK)
        return false;
    while (block)
        if (DGifGetExtensionNext(gif, &block) != GIF_OK)
            return false;
    return true;
}

bool seekFirstFrame(GifFileType* gif) {
    GifRecordType record = UNDEFINED_RECORD_TYPE;
    for (;;) {
        if (DGifGetRecordType(gif, &record) != GIF_OK || record == TERMINATE_RECORD_TYPE)
            return false;
        if (record == IMAGE_DESC_RECORD_TYPE)
            return DGifGetImageDesc(gif) == GIF_OK;
        if (record == EXTENSION_RECORD_TYPE && !skipExtension(gif))
            return false;
    }
}

} // namespace

void GifCloser::operator()(GifFileType* gif) const {
    int error = 0;
    (void)DGifCloseFile(gif, &error); // it was only read
}

GifLines::GifLines(const ByteSource& source, const GifFrame& firstFrame)
    : input{.reader = BufferedReader(source)}
    , frame(firstFrame) {}

int GifLines::readBytes(GifFileType* gif, unsigned char* out, int count) {
    auto* from = static_cast<Input*>(gif->UserData);
    const std::span bytes(out, static_cast<std::size_t>(count));
    if (from->reader.read(std::as_writable_bytes(bytes)))
        return count;
    from->sawEnd = true;
    return 0;
}

tl::unexpected<LoadError> GifLines::failure(const char* what) const {
    if (gif && gif->Error == D_GIF_ERR_NOT_ENOUGH_MEM)
        throw std::bad_alloc();
    return input.sawEnd ? truncated(what) : damaged(what);
}

Result<void> GifLines::start() {
    int error = 0;
    gif.reset(DGifOpen(&input, readBytes, &error));
    if (!gif && error == D_GIF_ERR_NOT_ENOUGH_MEM)
        throw std::bad_alloc();
    if (!gif || !seekFirstFrame(gif.get()))
        return failure("the first frame of a GIF file can't be reached");
    const auto lines = static_cast<std::size_t>(frame.interlaced ? frame.height : 1);
    pixels.resize(static_cast<std::size_t>(frame.width) * lines);
    return frame.interlaced ? unpackInterlaced() : Result<void>{};
}

Result<void> GifLines::readLine(std::span<std::byte> line) {
    if (DGifGetLine(gif.get(), reinterpret_cast<GifPixelType*>(line.data()), static_cast<int>(line.size())) !=
        GIF_OK)
        return failure("a GIF frame has too few pixels");
    return {};
}

Result<void> GifLines::unpackInterlaced() {
    const auto width = static_cast<std::size_t>(frame.width);
    for (const GifBackend::InterlacePass& pass : GifBackend::interlacePasses)
        for (int y = pass.first; y < frame.height; y += pass.step)
            if (auto read = readLine(std::span(pixels).subspan(width * static_cast<std::size_t>(y), width));
                !read)
                return read;
    return {};
}

Result<std::span<const std::byte>> GifLines::next() {
    const auto width = static_cast<std::size_t>(frame.width);
    const auto line = static_cast<std::size_t>(linesGiven++);
    if (frame.interlaced)
        return std::span(pixels).subspan(width * line, width);
    if (const auto read = readLine(pixels); !read)
        return tl::unexpected(read.error());
    return pixels;
}

} // namespace GdiplusBackend
