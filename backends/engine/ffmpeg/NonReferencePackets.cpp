#include "engine/ffmpeg/NonReferencePackets.h"

extern "C" {
#include <libavcodec/codec_id.h>
#include <libavcodec/codec_par.h>
}

#include <algorithm>
#include <array>

namespace EngineBackend {

namespace {

/// The bytes of the length before a unit by a decoder configuration record (ISO/IEC 14496-15, 5.3.3.1 and
/// 8.3.3.1), whose field for it is at `place`; 0 without such a record.
std::size_t lengthBytesOf(const AVCodecParameters& codec, int place) {
    const bool isRecord = codec.extradata_size > place && codec.extradata[0] == 1;
    return isRecord ? std::size_t{1} + (codec.extradata[place] & 3U) : 0;
}

std::size_t bigEndian(std::span<const std::uint8_t> bytes) {
    std::size_t value = 0;
    for (const std::uint8_t byte : bytes)
        value = value << 8U | byte;
    return value;
}

} // namespace

NonReferencePackets::NonReferencePackets(const AVCodecParameters& codec) {
    constexpr int placeInAvcC = 4;
    constexpr int placeInHvcC = 21;
    if (codec.codec_id == AV_CODEC_ID_H264) {
        kind = Kind::H264;
        lengthBytes = lengthBytesOf(codec, placeInAvcC);
    } else if (codec.codec_id == AV_CODEC_ID_HEVC) {
        kind = Kind::Hevc;
        lengthBytes = lengthBytesOf(codec, placeInHvcC);
    }
}

bool NonReferencePackets::isOne(std::span<const std::uint8_t> packet) const {
    if (kind == Kind::None)
        return false;
    return lengthBytes > 0 ? isOneByLengths(packet) : isOneByStartCodes(packet);
}

/// ITU-T H.264, 7.4.1 and table 7-1; H.265, 7.4.2.2 and table 7-1. Parameter sets may be there for pictures
/// that follow.
NonReferencePackets::Unit NonReferencePackets::kindOf(std::span<const std::uint8_t> unit) const {
    if (kind == Kind::H264) {
        constexpr unsigned slice = 1, sei = 6, delimiter = 9, filler = 12;
        const unsigned type = unit[0] & 31U;
        if (type == sei || type == delimiter || type == filler)
            return Unit::Accessory;
        return type == slice && (unit[0] >> 5U & 3U) == 0 ? Unit::Picture : Unit::Needed;
    }
    constexpr unsigned firstIrap = 16, delimiter = 35, filler = 38, prefixSei = 39, suffixSei = 40;
    const unsigned type = unit[0] >> 1U & 63U;
    if (type == delimiter || type == filler || type == prefixSei || type == suffixSei)
        return Unit::Accessory;
    return type < firstIrap && type % 2 == 0 ? Unit::Picture : Unit::Needed;
}

bool NonReferencePackets::isOneByLengths(std::span<const std::uint8_t> packet) const {
    bool hasPicture = false;
    while (!packet.empty()) {
        if (packet.size() <= lengthBytes)
            return false;
        const std::size_t length = bigEndian(packet.first(lengthBytes));
        packet = packet.subspan(lengthBytes);
        if (length == 0 || length > packet.size())
            return false;
        const Unit unit = kindOf(packet.first(length));
        if (unit == Unit::Needed)
            return false;
        hasPicture = hasPicture || unit == Unit::Picture;
        packet = packet.subspan(length);
    }
    return hasPicture;
}

bool NonReferencePackets::isOneByStartCodes(std::span<const std::uint8_t> packet) const {
    constexpr std::array<std::uint8_t, 3> startCode = {0, 0, 1};
    bool hasPicture = false;
    for (auto at = std::search(packet.begin(), packet.end(), startCode.begin(), startCode.end());
         at != packet.end(); at = std::search(at, packet.end(), startCode.begin(), startCode.end())) {
        at += startCode.size();
        if (at == packet.end())
            return false;
        const Unit unit = kindOf({at, packet.end()});
        if (unit == Unit::Needed)
            return false;
        hasPicture = hasPicture || unit == Unit::Picture;
    }
    return hasPicture;
}

} // namespace EngineBackend
