#include "backends/gdiplus/properties/ExifBuilder.h"

#include <array>
#include <span>

namespace GdiplusBackend {

namespace {

constexpr std::uint16_t asciiType = 2;
constexpr std::uint16_t shortType = 3;
constexpr std::uint16_t longType = 4;
constexpr std::uint16_t rationalType = 5;

/// Where a directory is named: the parent, and the tag there.
struct Pointer {
    std::size_t parent;
    std::uint16_t tag;
};
constexpr std::array<Pointer, 4> pointers = {{{0, 0}, {0, 0x8769}, {0, 0x8825}, {1, 0xA005}}};

std::size_t bytesOfDirectory(std::size_t entries) {
    return 2 + 12 * entries + 4;
}

} // namespace

std::string ExifBuilder::word(std::uint32_t value, std::size_t bytes) const {
    std::string text(bytes, '\0');
    for (std::size_t i = 0; i < bytes; ++i)
        text[order == FileOrder::Intel ? i : bytes - 1 - i] = static_cast<char>(value >> (8 * i) & 0xFFU);
    return text;
}

ExifBuilder& ExifBuilder::raw(std::uint16_t tag, std::uint16_t type, std::uint32_t count, std::string bytes) {
    directories[current].push_back({tag, type, count, std::move(bytes)});
    return *this;
}

ExifBuilder& ExifBuilder::ascii(std::uint16_t tag, std::string_view text) {
    return raw(tag, asciiType, static_cast<std::uint32_t>(text.size()), std::string(text));
}

ExifBuilder& ExifBuilder::shorts(std::uint16_t tag, const std::vector<std::uint32_t>& values) {
    std::string bytes;
    for (const std::uint32_t value : values)
        bytes += word(value, 2);
    return raw(tag, shortType, static_cast<std::uint32_t>(values.size()), bytes);
}

ExifBuilder& ExifBuilder::longs(std::uint16_t tag, const std::vector<std::uint32_t>& values) {
    std::string bytes;
    for (const std::uint32_t value : values)
        bytes += word(value, 4);
    return raw(tag, longType, static_cast<std::uint32_t>(values.size()), bytes);
}

ExifBuilder& ExifBuilder::rational(std::uint16_t tag, std::uint32_t numerator, std::uint32_t denominator) {
    return raw(tag, rationalType, 1, word(numerator, 4) + word(denominator, 4));
}

void ExifBuilder::putDirectory(std::string& block, const std::vector<Entry>& entries) const {
    std::size_t valuesAt = block.size() + bytesOfDirectory(entries.size());
    std::string values;
    block += word(static_cast<std::uint32_t>(entries.size()), 2);
    for (const Entry& entry : entries) {
        block += word(entry.tag, 2) + word(entry.type, 2) + word(entry.count, 4);
        if (entry.bytes.size() <= 4) {
            block += entry.bytes + std::string(4 - entry.bytes.size(), '\0');
            continue;
        }
        block += word(static_cast<std::uint32_t>(valuesAt + values.size()), 4);
        values += entry.bytes;
    }
    block += word(0, 4) + values;
}

std::vector<std::byte> ExifBuilder::build() const {
    // Pointers need the places of the directories behind them, so all sizes are counted first.
    auto all = directories;
    const auto exists = [&](std::size_t i) { return i == 0 || !directories[i].empty(); };
    for (std::size_t i = all.size() - 1; i > 0; --i)
        if (exists(i))
            all[pointers[i].parent].push_back({pointers[i].tag, longType, 1, std::string(4, '\0')});
    std::array<std::size_t, 4> places = {};
    std::size_t end = 8;
    for (std::size_t i = 0; i < all.size(); ++i) {
        places[i] = end;
        end += bytesOfDirectory(all[i].size());
        for (const Entry& entry : all[i])
            end += entry.bytes.size() > 4 ? entry.bytes.size() : 0;
    }
    for (std::size_t i = 1; i < all.size(); ++i)
        for (Entry& entry : all[pointers[i].parent])
            if (exists(i) && entry.tag == pointers[i].tag)
                entry.bytes = word(static_cast<std::uint32_t>(places[i]), 4);

    std::string block = (order == FileOrder::Intel ? "II" : "MM") + word(42, 2) + word(8, 4);
    for (const auto& entries : all)
        putDirectory(block, entries);
    const auto bytes = std::as_bytes(std::span(block));
    return {bytes.begin(), bytes.end()};
}

} // namespace GdiplusBackend
