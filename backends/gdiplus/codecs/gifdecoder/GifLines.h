#pragma once

#include "gdiplus/LoadError.h"
#include "gdiplus/codecs/BufferedReader.h"
#include "gdiplus/codecs/gifdecoder/GifBlocks.h"

#include <cstddef>
#include <memory>
#include <span>
#include <vector>

struct GifFileType;

namespace GdiplusBackend {

struct GifCloser {
    void operator()(GifFileType* gif) const;
};

/// The lines of a file's first frame from the top: palette indices as the file has them. An interlaced frame
/// is unpacked as a whole before its first line.
class GifLines {
public:
    GifLines(const ByteSource& source, const GifFrame& frame);

    /// Positions giflib at the first frame's pixels.
    Result<void> start();
    /// The next line, valid until the next call.
    Result<std::span<const std::byte>> next();

private:
    Result<void> unpackInterlaced();
    Result<void> readLine(std::span<std::byte> line);
    tl::unexpected<LoadError> failure(const char* what) const;

    /// What giflib reads from.
    struct Input {
        BufferedReader reader;
        bool sawEnd = false;
    };
    static int readBytes(GifFileType* gif, unsigned char* out, int count);

    Input input;
    const GifFrame& frame;
    std::unique_ptr<GifFileType, GifCloser> gif;
    std::vector<std::byte> pixels; ///< one line, or the whole frame when it is interlaced
    int linesGiven = 0;
};

} // namespace GdiplusBackend
