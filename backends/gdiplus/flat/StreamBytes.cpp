#include "gdiplus/flat/StreamBytes.h"

#include "platform/Stream.h"

#include <algorithm>

namespace GdiplusBackend {

namespace {

constexpr std::size_t firstPiece = 64U << 10U;
constexpr std::size_t largestPiece = 16U << 20U;

} // namespace

Result<std::vector<std::byte>> bytesOf(IStream& stream) {
    if (FAILED(stream.Seek({0}, STREAM_SEEK_SET, nullptr)))
        return damaged("the stream cannot be read from its start");
    std::vector<std::byte> bytes;
    // The size that a stream tells of itself is not believed: memory grows with what is really there.
    for (std::size_t piece = firstPiece;; piece = std::min(2 * piece, largestPiece)) {
        const std::size_t have = bytes.size();
        bytes.resize(have + piece);
        ULONG got = 0;
        if (FAILED(stream.Read(bytes.data() + have, static_cast<ULONG>(piece), &got)) || got > piece)
            return damaged("the stream cannot be read");
        bytes.resize(have + got);
        if (got < piece)
            return bytes;
    }
}

} // namespace GdiplusBackend
