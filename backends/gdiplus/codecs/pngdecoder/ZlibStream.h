#pragma once

#include "gdiplus/LoadError.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <vector>

struct inflate_state;

namespace GdiplusBackend {

/// Unpacks one zlib stream (RFC 1950) from pieces of it.
class ZlibStream {
public:
    /// Gives the next piece, which lives until the next call; an empty one at the end.
    using NextPiece = std::function<Result<std::span<const std::byte>>()>;

    explicit ZlibStream(NextPiece pieces);
    ~ZlibStream();
    ZlibStream(const ZlibStream&) = delete;
    ZlibStream& operator=(const ZlibStream&) = delete;

    /// Fills `out`. `Aborted` when the stream or its pieces end first, `GenericError` for damage.
    Result<void> read(std::span<std::byte> out);

    /// Expects the stream's end and a right checksum, or more bytes, which are left alone.
    Result<void> finish();

    /// All bytes up to the end. `GenericError` for more than `most`.
    Result<std::vector<std::byte>> readAll(std::size_t most);

private:
    /// Unpacks until `out` is full or the stream has ended; the number of bytes.
    Result<std::size_t> unpack(std::span<std::byte> out);
    Result<void> readHeader();
    Result<bool> takePiece();

    NextPiece nextPiece;
    std::unique_ptr<inflate_state> state;
    bool headerRead = false;
};

} // namespace GdiplusBackend
