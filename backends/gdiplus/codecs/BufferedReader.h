#pragma once

#include "gdiplus/codecs/ByteSource.h"

namespace GdiplusBackend {

/// Reads a source from a place on in large pieces and hands out small ones.
class BufferedReader {
public:
    explicit BufferedReader(const ByteSource& source, std::uint64_t position = 0,
                            std::size_t bufferBytes = std::size_t{64} * 1024);

    /// Where the next byte comes from.
    std::uint64_t position() const { return cursor.position() - unread.size(); }
    std::uint64_t size() const { return cursor.size(); }

    /// What lies in memory of the next bytes, at least one, left unread; none at the end.
    std::span<const std::byte> peek();

    /// The next bytes, from one to `most`; none at the end. They live until the next call.
    std::span<const std::byte> take(std::size_t most);

    /// Fills `out`; false when the source ends first.
    bool read(std::span<std::byte> out);

    /// May lead behind the end, where nothing can be read.
    void skip(std::uint64_t count);

private:
    ByteCursor cursor;
    std::vector<std::byte> buffer;
    std::span<const std::byte> unread;
};

} // namespace GdiplusBackend
