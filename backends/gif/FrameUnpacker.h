#pragma once

#include "gif/Bytes.h"
#include "gif/Frame.h"
#include "gif/LzwDecoder.h"

#include <span>
#include <vector>

namespace GifBackend {

/// Unpacks frames, one after the other, in memory that is used again.
class FrameUnpacker {
public:
    /// The first `wanted` palette indices of a frame, in the order of the file; fewer where its pixels are
    /// damaged or cut off. They live until the next call.
    std::span<const std::uint8_t> unpack(IBytes& source, const Frame& frame, std::size_t wanted);

private:
    void readCodes(IBytes& source, std::uint64_t place, std::size_t most);

    LzwDecoder decoder;
    std::vector<std::uint8_t> codes;
    std::vector<std::uint8_t> indices;
};

} // namespace GifBackend
