#include "engine/ffmpeg/SampleFormats.h"

#include <array>
#include <optional>
#include <span>
#include <string_view>

namespace EngineBackend {

namespace {

// ISO/IEC 14496-12, 4.2: size, type, and for size 1 a size of 64 bits.
constexpr std::int64_t headBytes = 8;
constexpr std::int64_t longHeadBytes = 16;
constexpr std::int64_t typePlace = 4;
// 8.5.2: version and flags, the count of entries, then the first entry, a box of the sample's format.
constexpr std::int64_t firstEntryPlace = 8;

struct Range {
    std::int64_t begin;
    std::int64_t end;
};

struct Box {
    std::string type;
    Range content;
};

std::uint64_t bigEndian(std::span<const std::byte> bytes) {
    std::uint64_t value = 0;
    for (const std::byte byte : bytes)
        value = value << 8U | std::to_integer<std::uint64_t>(byte);
    return value;
}

std::optional<Box> readBox(IByteTarget& movie, std::int64_t place, std::int64_t end) {
    std::array<std::byte, longHeadBytes> head{};
    if (end - place < headBytes || !movie.readAt(place, std::span(head).first<headBytes>()))
        return std::nullopt;
    auto size = static_cast<std::int64_t>(bigEndian(std::span(head).first<typePlace>()));
    std::int64_t headSize = headBytes;
    if (size == 1) {
        headSize = longHeadBytes;
        if (end - place < longHeadBytes || !movie.readAt(place, head))
            return std::nullopt;
        size = static_cast<std::int64_t>(bigEndian(std::span(head).last<headBytes>()));
    }
    if (size < headSize || size > end - place)
        return std::nullopt;
    const std::string type(reinterpret_cast<const char*>(head.data()) + typePlace, 4);
    return Box{type, {place + headSize, place + size}};
}

std::vector<Range> boxesOf(IByteTarget& movie, const std::vector<Range>& parents, std::string_view type) {
    std::vector<Range> found;
    for (const Range& parent : parents) {
        std::int64_t place = parent.begin;
        while (const auto box = readBox(movie, place, parent.end)) {
            if (box->type == type)
                found.push_back(box->content);
            place = box->content.end;
        }
    }
    return found;
}

} // namespace

bool nameSampleFormats(IByteTarget& movie, std::int64_t size, const std::vector<std::string>& formats) {
    std::vector<Range> boxes = {{0, size}};
    for (const char* type : {"moov", "trak", "mdia", "minf", "stbl", "stsd"})
        boxes = boxesOf(movie, boxes, type);
    auto format = formats.begin();
    for (const Range& descriptions : boxes) {
        const std::int64_t entry = descriptions.begin + firstEntryPlace;
        const auto box = readBox(movie, entry, descriptions.end);
        if (!box || box->type != placeholderFormat)
            continue;
        if (format == formats.end() || format->size() != 4 ||
            !movie.writeAt(entry + typePlace, std::as_bytes(std::span(*format))))
            return false;
        ++format;
    }
    return format == formats.end();
}

} // namespace EngineBackend
