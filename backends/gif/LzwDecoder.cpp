#include "gif/LzwDecoder.h"

#include <algorithm>
#include <cstring>

namespace GifBackend {

namespace {

/// Codes come with their lowest bit first.
class CodeReader {
public:
    explicit CodeReader(std::span<const std::uint8_t> codes)
        : unread(codes) {}

    /// False when there are not as many bits left.
    bool next(unsigned bits, unsigned& code) {
        if (held < bits && !refill(bits))
            return false;
        code = static_cast<unsigned>(store & ((std::uint64_t{1} << bits) - 1));
        store >>= bits;
        held -= bits;
        return true;
    }

private:
    bool refill(unsigned bits) {
        while (held <= 56 && !unread.empty()) {
            store |= std::uint64_t{unread.front()} << held;
            held += 8;
            unread = unread.subspan(1);
        }
        return held >= bits;
    }

    std::span<const std::uint8_t> unread;
    std::uint64_t store = 0;
    unsigned held = 0; // bits
};

/// Copies `length` bytes to the end of what they are part of, and may write `roomBehind` bytes in any case.
void append(std::uint8_t* to, std::size_t distance, std::size_t length) {
    const std::uint8_t* from = to - distance;
    if (length <= LzwDecoder::roomBehind && length <= distance) {
        std::array<std::uint8_t, LzwDecoder::roomBehind>
            bytes; // a copy, as the two may overlap behind `length`
        std::memcpy(bytes.data(), from, bytes.size());
        std::memcpy(to, bytes.data(), bytes.size());
    } else if (length <= distance) {
        std::memcpy(to, from, length);
    } else {
        for (std::size_t i = 0; i < length; ++i)
            to[i] = from[i];
    }
}

} // namespace

std::size_t LzwDecoder::unpack(std::span<const std::uint8_t> codes, int smallestCodeSize, std::uint8_t* out,
                               std::size_t wanted) {
    const unsigned clearCode = 1U << smallestCodeSize;
    const unsigned endCode = clearCode + 1;
    const unsigned firstBits = static_cast<unsigned>(smallestCodeSize) + 1;
    unsigned bits = firstBits;
    unsigned next = endCode + 1;
    String previous; // of no length after a clear code
    CodeReader reader(codes);
    std::size_t done = 0;
    for (unsigned code = 0; done < wanted && reader.next(bits, code);) {
        if (code == clearCode) {
            bits = firstBits;
            next = endCode + 1;
            previous = {};
            continue;
        }
        // The string before and the first index after it, which follows it in the output.
        const bool grows = previous.length > 0 && next < table.size();
        if (grows)
            table[next++] = {previous.start, previous.length + 1};
        if (code == endCode || code >= next)
            break;
        previous.start = static_cast<std::uint32_t>(done);
        if (code < clearCode) {
            out[done] = static_cast<std::uint8_t>(code);
            previous.length = 1;
        } else {
            const String& string = table[code];
            const std::size_t length = std::min<std::size_t>(string.length, wanted - done);
            append(out + done, done - string.start, length);
            previous.length = static_cast<std::uint32_t>(length);
        }
        done += previous.length;
        if (next == 1U << bits && bits < longestCode)
            ++bits;
    }
    return done;
}

} // namespace GifBackend
