#include "gdiplus/codecs/jpegdecoder/DcScan.h"

#include <utility>

namespace GdiplusBackend {

namespace {

constexpr unsigned int firstRestart = 0xD0;

/// T.81, F.2.2.1: adds the difference that comes next to `dc`.
bool addDifference(BitReader& bits, const DcLookup& lookup, int& dc) {
    bits.refill();
    const HuffmanCode::Symbol size = lookup.symbolAt(bits.see(16));
    if (size.bits == 0)
        return false;
    bits.drop(size.bits);
    const int value = bits.take(size.value);
    const int half = (1 << size.value) >> 1;
    dc += value < half ? value - (1 << size.value) + 1 : value;
    return true;
}

/// T.81, F.2.2.2, without keeping anything. This is where the time goes: two looks for each refill.
bool skipFrequencies(BitReader& bits, const AcSkips& skips) {
    unsigned int place = 1;
    const auto skip = [&](AcSkips::Skip step) {
        bits.drop(step.bits);
        place += step.places;
    };
    for (;;) {
        while (place < AcSkips::blockEnd) {
            bits.refill();
            skip(skips.at(place, bits.see(AcSkips::windowBits)));
            if (place < AcSkips::severalBefore)
                skip(skips.several(bits.see(AcSkips::windowBits)));
        }
        if (place < AcSkips::longCode)
            return true;
        place -= AcSkips::longCode;
        bits.refill();
        const AcSkips::Skip step = skips.skipAt(bits.see(16));
        if (step.bits == 0)
            return false;
        skip(step);
    }
}

bool store(int value, std::int16_t& dc) {
    dc = static_cast<std::int16_t>(value);
    return dc == value;
}

} // namespace

DcScan::DcScan(DcPicture& target, std::vector<Part> components, unsigned int restartInterval)
    : mcusWide(target.mcusWide)
    , mcusHigh(target.mcusHigh)
    , interval(restartInterval) {
    for (Part& part : components)
        parts.push_back({std::move(part)});
    if (parts.size() == 1) { // T.81, A.2.2: not interleaved
        mcusWide = parts[0].part.plane->blocksWide;
        mcusHigh = parts[0].part.plane->blocksHigh;
        return;
    }
    for (McuPart& part : parts) {
        part.blocksWide = part.part.plane->samplingX;
        part.blocksHigh = part.part.plane->samplingY;
    }
}

std::optional<unsigned int> DcScan::decodeSequential(BufferedReader& bytes) {
    return decode(bytes, [](BitReader& bits, McuPart& part, std::int16_t& dc) {
        return addDifference(bits, *part.part.differences, part.lastDc) && store(part.lastDc, dc) &&
               skipFrequencies(bits, *part.part.skips);
    });
}

std::optional<unsigned int> DcScan::decodeFirst(BufferedReader& bytes, int shift) {
    return decode(bytes, [shift](BitReader& bits, McuPart& part, std::int16_t& dc) {
        return addDifference(bits, *part.part.differences, part.lastDc) &&
               store(part.lastDc * (1 << shift), dc);
    });
}

std::optional<unsigned int> DcScan::decodeRefinement(BufferedReader& bytes, int shift) {
    return decode(bytes, [shift](BitReader& bits, McuPart&, std::int16_t& dc) {
        bits.refill();
        dc = static_cast<std::int16_t>(dc | bits.take(1) << shift);
        return true;
    });
}

template <typename DecodeBlock>
std::optional<unsigned int> DcScan::decode(BufferedReader& bytes, DecodeBlock decodeBlock) {
    if (!fitsIntoMcu())
        return std::nullopt;
    EntropyReader segments(bytes);
    BitReader bits = segments.beginSegment();
    unsigned int left = interval;
    for (int y = 0; y < mcusHigh; ++y)
        for (int x = 0; x < mcusWide; ++x) {
            if (interval != 0 && left-- == 0) {
                if (!restart(segments, bits))
                    return std::nullopt;
                left = interval - 1;
            }
            if (!segments.reserve(bits) || !decodeMcu(bits, x, y, decodeBlock))
                return std::nullopt;
        }
    if (!segments.ended(bits))
        return std::nullopt;
    return segments.marker();
}

template <typename DecodeBlock>
bool DcScan::decodeMcu(BitReader& outerBits, int mcuX, int mcuY, DecodeBlock& decodeBlock) {
    BitReader bits = outerBits; // a copy that stays in registers
    for (McuPart& part : parts)
        for (int y = 0; y < part.blocksHigh; ++y) {
            std::int16_t* blocks = part.part.plane->at(mcuX * part.blocksWide, mcuY * part.blocksHigh + y);
            for (int x = 0; x < part.blocksWide; ++x)
                if (!decodeBlock(bits, part, blocks[x]))
                    return false;
        }
    outerBits = bits;
    return true;
}

bool DcScan::restart(EntropyReader& segments, BitReader& bits) {
    if (!segments.ended(bits) || segments.marker() != firstRestart + restarts++ % 8)
        return false;
    bits = segments.beginSegment();
    for (McuPart& part : parts)
        part.lastDc = 0;
    return true;
}

/// T.81, B.2.3: at most ten blocks.
bool DcScan::fitsIntoMcu() const {
    int blocks = 0;
    for (const McuPart& part : parts)
        blocks += part.blocksWide * part.blocksHigh;
    return blocks <= 10;
}

} // namespace GdiplusBackend
