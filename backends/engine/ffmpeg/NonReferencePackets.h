#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

struct AVCodecParameters;

namespace EngineBackend {

/// Tells packets that no other picture needs, by the headers of their NAL units. What a decoder would only
/// pass over need not be sent: it would take up one of its threads.
class NonReferencePackets {
public:
    /// For streams of other codecs than H.264 and HEVC no packet is told to be one.
    explicit NonReferencePackets(const AVCodecParameters& codec);

    /// Whether the packet holds nothing but pictures that no other refers to, and what belongs to them.
    bool isOne(std::span<const std::uint8_t> packet) const;

private:
    enum class Kind { None, H264, Hevc };
    enum class Unit { Picture, Accessory, Needed };

    Unit kindOf(std::span<const std::uint8_t> unit) const;
    bool isOneByLengths(std::span<const std::uint8_t> packet) const;
    bool isOneByStartCodes(std::span<const std::uint8_t> packet) const;

    Kind kind = Kind::None;
    std::size_t lengthBytes = 0; ///< of the length before each unit; 0 where start codes lie between them
};

} // namespace EngineBackend
