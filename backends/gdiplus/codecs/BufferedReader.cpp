#include "gdiplus/codecs/BufferedReader.h"

#include <algorithm>

namespace GdiplusBackend {

BufferedReader::BufferedReader(const ByteSource& source, std::uint64_t position, std::size_t bufferBytes)
    : cursor(source, position)
    , buffer(bufferBytes) {}

std::span<const std::byte> BufferedReader::peek() {
    if (unread.empty())
        unread = std::span(buffer).first(cursor.read(buffer));
    return unread;
}

std::span<const std::byte> BufferedReader::take(std::size_t most) {
    const auto taken = peek().first(std::min(most, peek().size()));
    unread = unread.subspan(taken.size());
    return taken;
}

bool BufferedReader::read(std::span<std::byte> out) {
    while (!out.empty()) {
        const auto taken = take(out.size());
        if (taken.empty())
            return false;
        std::copy(taken.begin(), taken.end(), out.begin());
        out = out.subspan(taken.size());
    }
    return true;
}

void BufferedReader::skip(std::uint64_t count) {
    if (count <= unread.size()) {
        unread = unread.subspan(static_cast<std::size_t>(count));
        return;
    }
    cursor.seek(position() + count);
    unread = {};
}

} // namespace GdiplusBackend
