#include "gif/FrameUnpacker.h"

#include "gif/ByteReader.h"

#include <algorithm>

namespace GifBackend {

namespace {

/// A clear code before each index, both as long as codes get, is what the most wasteful file could have.
std::size_t mostCodeBytes(std::size_t indices) {
    return indices * 3 + 256;
}

/// The length of a string grows by one with each code, up to the size of the code table.
std::size_t mostIndices(std::size_t codeBytes, int smallestCodeSize) {
    constexpr std::size_t longestString = 4096;
    const std::size_t codes = codeBytes * 8 / (static_cast<std::size_t>(smallestCodeSize) + 1);
    return codes * std::min(codes, longestString);
}

} // namespace

/// Joins the sub-blocks at `place`; what lies behind the most that count is left.
void FrameUnpacker::readCodes(IBytes& source, std::uint64_t place, std::size_t most) {
    codes.clear();
    ByteReader reader(source, place);
    while (codes.size() < most) {
        const auto length = reader.byte();
        if (!length || *length == 0)
            return;
        const std::size_t before = codes.size();
        codes.resize(before + *length);
        const std::size_t got = reader.read(std::span(codes).subspan(before));
        codes.resize(before + got);
        if (got < *length)
            return;
    }
}

std::span<const std::uint8_t> FrameUnpacker::unpack(IBytes& source, const Frame& frame, std::size_t wanted) {
    constexpr int largestCodeSize = 8;
    std::byte codeSize{};
    if (source.read(frame.pixelsPlace, {&codeSize, 1}) < 1)
        return {};
    const int smallestCodeSize = std::to_integer<int>(codeSize);
    if (smallestCodeSize < 1 || smallestCodeSize > largestCodeSize)
        return {};
    readCodes(source, frame.pixelsPlace + 1, mostCodeBytes(wanted));
    const std::size_t possible = std::min(wanted, mostIndices(codes.size(), smallestCodeSize));
    if (indices.size() < possible + LzwDecoder::roomBehind)
        indices.resize(possible + LzwDecoder::roomBehind);
    const std::size_t count = decoder.unpack(codes, smallestCodeSize, indices.data(), possible);
    return std::span(indices).first(count);
}

} // namespace GifBackend
