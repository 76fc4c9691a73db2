#pragma once

#include "backends/gdiplus/codecs/CollectRows.h"

#include <algorithm>
#include <stdexcept>
#include <thread>

namespace GdiplusBackend {

/// A file opened and decoded in one go.
struct DecodedPicture {
    PictureFacts facts;
    CollectRows rows;

    std::uint32_t paletteColour(int x, int y) const {
        return facts.palette.at(static_cast<std::size_t>(rows.index(x, y)));
    }
};

/// Throws the message of a refusal.
inline DecodedPicture decodedPicture(const Bytes& bytes, int reduction = 1) {
    const auto decoder = openBytes(bytes);
    if (!decoder)
        throw std::runtime_error(decoder.error().message);
    auto rows = decodeRows(**decoder, reduction);
    if (!rows)
        throw std::runtime_error(rows.error().message);
    return {(*decoder)->facts(), std::move(*rows)};
}

/// How many of four threads, decoding one picture at once and several times, got its rows each time.
inline int threadsThatAgree(const Bytes& bytes) {
    const auto decoder = openBytes(bytes).value();
    const auto expected = decodeRows(*decoder).value();
    std::vector<char> agreed(4, 1);
    {
        std::vector<std::jthread> threads;
        threads.reserve(agreed.size());
        for (char& agrees : agreed)
            threads.emplace_back([&decoder, &expected, &agrees] {
                for (int turn = 0; turn < 10; ++turn) {
                    const auto rows = decodeRows(*decoder);
                    agrees = agrees && rows && *rows == expected ? 1 : 0;
                }
            });
    }
    return static_cast<int>(std::count(agreed.begin(), agreed.end(), 1));
}

/// A colour as 0xAARRGGBB.
constexpr std::uint32_t argbOf(int alpha, int red, int green, int blue) {
    return static_cast<std::uint32_t>(alpha) << 24 | static_cast<std::uint32_t>(red) << 16 |
           static_cast<std::uint32_t>(green) << 8 | static_cast<std::uint32_t>(blue);
}

} // namespace GdiplusBackend
