#pragma once

#include "gdiplus/codecs/CodecTable.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <thread>
#include <utility>
#include <vector>

namespace GdiplusBackend {

using Bytes = std::vector<std::byte>;

/// Keeps every row that a decoder gives, and reads single pixels out of them.
class CollectRows : public RowSink {
public:
    explicit CollectRows(RowLayout rowLayout)
        : layout(rowLayout) {}

    void putRow(std::span<const std::byte> row) override { rows.emplace_back(row.begin(), row.end()); }

    int height() const { return static_cast<int>(rows.size()); }
    std::size_t bytesInRow(int y) const { return rows.at(static_cast<std::size_t>(y)).size(); }

    int byteAt(int y, std::size_t place) const {
        return std::to_integer<int>(rows.at(static_cast<std::size_t>(y)).at(place));
    }

    /// One sample of a pixel in the layout's order: B, G, R (, A) or C, M, Y, K.
    int sample(int x, int y, int channel) const {
        const int place = x * bitsPerPixel(layout) / 8 + channel;
        return byteAt(y, static_cast<std::size_t>(place));
    }

    /// A pixel of an index layout.
    int index(int x, int y) const {
        const int bits = bitsPerPixel(layout);
        const int place = x * bits;
        return byteAt(y, static_cast<std::size_t>(place / 8)) >> (8 - bits - place % 8) & ((1 << bits) - 1);
    }

    /// A pixel of a colour layout as 0xAARRGGBB; opaque where the layout has no alpha.
    std::uint32_t argb(int x, int y) const {
        const int alpha = layout == RowLayout::Bgra32 ? sample(x, y, 3) : 0xFF;
        return static_cast<std::uint32_t>(alpha) << 24 | static_cast<std::uint32_t>(sample(x, y, 2)) << 16 |
               static_cast<std::uint32_t>(sample(x, y, 1)) << 8 | static_cast<std::uint32_t>(sample(x, y, 0));
    }

    bool operator==(const CollectRows& other) const { return rows == other.rows; }

private:
    RowLayout layout;
    std::vector<Bytes> rows;
};

inline Result<std::unique_ptr<PictureDecoder>> openBytes(Bytes bytes) {
    return openPicture(fromMemory(std::move(bytes)));
}

/// All rows of a picture at a reduction; fails as `decode` does.
inline Result<CollectRows> decodeRows(const PictureDecoder& decoder, int reduction = 1) {
    CollectRows rows(decoder.facts().layout);
    if (Result<void> done = decoder.decode(reduction, rows); !done)
        return tl::unexpected(done.error());
    return rows;
}

/// What a caller who opens and decodes the picture is told in the end.
inline Gdiplus::Status statusOf(const Bytes& bytes) {
    auto decoder = openBytes(bytes);
    if (!decoder)
        return decoder.error().status;
    auto rows = decodeRows(**decoder);
    return rows ? Gdiplus::Ok : rows.error().status;
}

/// Whether threads that decode one picture at the same time all get what a single one gets.
inline bool decodesAlikeOnManyThreads(const PictureDecoder& decoder, int reduction = 1) {
    const auto alone = decodeRows(decoder, reduction);
    std::array<bool, 8> alike = {};
    std::vector<std::thread> threads;
    threads.reserve(alike.size());
    for (bool& result : alike)
        threads.emplace_back([&result, &alone, &decoder, reduction] {
            const auto rows = decodeRows(decoder, reduction);
            result = rows && alone && *rows == *alone;
        });
    for (std::thread& thread : threads)
        thread.join();
    return std::all_of(alike.begin(), alike.end(), [](bool same) { return same; });
}

/// The first `count` bytes.
inline Bytes cutAt(const Bytes& bytes, std::size_t count) {
    return Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
}

} // namespace GdiplusBackend
