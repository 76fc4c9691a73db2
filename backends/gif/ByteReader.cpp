#include "gif/ByteReader.h"

#include <algorithm>

namespace GifBackend {

namespace {

constexpr std::size_t bytesAtOnce = std::size_t{64} * 1024;

} // namespace

ByteReader::ByteReader(IBytes& source, std::uint64_t place)
    : bytes(source)
    , behindBuffer(place)
    , buffer(bytesAtOnce) {}

void ByteReader::refill() {
    const std::size_t count = bytes.read(behindBuffer, std::as_writable_bytes(std::span(buffer)));
    behindBuffer += count;
    unread = std::span(buffer).first(count);
}

std::optional<std::uint8_t> ByteReader::byte() {
    if (unread.empty())
        refill();
    if (unread.empty())
        return std::nullopt;
    const std::uint8_t value = unread.front();
    unread = unread.subspan(1);
    return value;
}

std::size_t ByteReader::read(std::span<std::uint8_t> out) {
    std::size_t done = 0;
    while (done < out.size()) {
        if (unread.empty())
            refill();
        if (unread.empty())
            break;
        const std::size_t count = std::min(unread.size(), out.size() - done);
        std::copy_n(unread.begin(), count, out.begin() + static_cast<std::ptrdiff_t>(done));
        unread = unread.subspan(count);
        done += count;
    }
    return done;
}

void ByteReader::skip(std::uint64_t count) {
    if (count <= unread.size()) {
        unread = unread.subspan(static_cast<std::size_t>(count));
        return;
    }
    behindBuffer = place() + count;
    unread = {};
}

} // namespace GifBackend
