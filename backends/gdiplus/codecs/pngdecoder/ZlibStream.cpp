#include "gdiplus/codecs/pngdecoder/ZlibStream.h"

#include <isa-l/igzip_lib.h>

#include <algorithm>
#include <array>
#include <cstdint>

namespace GdiplusBackend {

namespace {

tl::unexpected<LoadError> endsEarly() {
    return truncated("PNG: the compressed data ends early");
}

} // namespace

ZlibStream::ZlibStream(NextPiece pieces)
    : nextPiece(std::move(pieces))
    , state(std::make_unique_for_overwrite<inflate_state>()) {
    isal_inflate_init(state.get());
    // The header is read here: its window size is a promise that some writers break.
    state->crc_flag = ISAL_ZLIB_NO_HDR_VER;
}

ZlibStream::~ZlibStream() = default;

Result<void> ZlibStream::read(std::span<std::byte> out) {
    const Result<std::size_t> count = unpack(out);
    if (!count)
        return tl::unexpected(count.error());
    if (*count < out.size())
        return endsEarly();
    return {};
}

Result<void> ZlibStream::finish() {
    std::array<std::byte, 64> surplus;
    const Result<std::size_t> count = unpack(surplus);
    if (!count)
        return tl::unexpected(count.error());
    return {};
}

Result<std::vector<std::byte>> ZlibStream::readAll(std::size_t most) {
    constexpr std::size_t step = std::size_t{16} * 1024;
    std::vector<std::byte> bytes;
    for (;;) {
        const std::size_t before = bytes.size();
        bytes.resize(before + step);
        const Result<std::size_t> count = unpack(std::span(bytes).subspan(before));
        if (!count)
            return tl::unexpected(count.error());
        bytes.resize(before + *count);
        if (*count < step)
            return bytes;
        if (bytes.size() > most)
            return damaged("PNG: compressed data that grows too large");
    }
}

Result<std::size_t> ZlibStream::unpack(std::span<std::byte> out) {
    if (!headerRead)
        if (Result<void> header = readHeader(); !header)
            return tl::unexpected(header.error());
    state->next_out = reinterpret_cast<std::uint8_t*>(out.data());
    state->avail_out = static_cast<std::uint32_t>(out.size());
    while (state->avail_out > 0 && state->block_state != ISAL_BLOCK_FINISH) {
        // Without input it may still have something in its own buffer.
        if (const int status = isal_inflate(state.get()); status < ISAL_DECOMP_OK)
            return damaged("PNG: the compressed data is damaged");
        if (state->avail_out == 0 || state->block_state == ISAL_BLOCK_FINISH)
            break;
        if (state->avail_in > 0)
            return damaged("PNG: the compressed data leads nowhere");
        const Result<bool> taken = takePiece();
        if (!taken)
            return tl::unexpected(taken.error());
        if (!*taken)
            return endsEarly();
    }
    return out.size() - state->avail_out;
}

Result<void> ZlibStream::readHeader() {
    std::array<unsigned int, 2> header = {};
    for (unsigned int& byte : header) {
        if (state->avail_in == 0) {
            const Result<bool> taken = takePiece();
            if (!taken)
                return tl::unexpected(taken.error());
            if (!*taken)
                return endsEarly();
        }
        byte = *state->next_in++;
        --state->avail_in;
    }
    constexpr unsigned int deflate = 8;
    constexpr unsigned int dictionaryFollows = 0x20;
    if ((header[0] & 0x0F) != deflate || (header[1] & dictionaryFollows) != 0 ||
        (header[0] * 256 + header[1]) % 31 != 0)
        return damaged("PNG: the compressed data has a wrong header");
    headerRead = true;
    return {};
}

Result<bool> ZlibStream::takePiece() {
    const auto piece = nextPiece();
    if (!piece)
        return tl::unexpected(piece.error());
    // The library takes its input by a pointer to what could be changed, but only reads.
    state->next_in = reinterpret_cast<std::uint8_t*>(const_cast<std::byte*>(piece->data()));
    state->avail_in = static_cast<std::uint32_t>(piece->size());
    return !piece->empty();
}

} // namespace GdiplusBackend
