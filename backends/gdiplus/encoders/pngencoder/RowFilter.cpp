#include "gdiplus/encoders/pngencoder/RowFilter.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <utility>

namespace GdiplusBackend {

namespace {

int paethPredictor(int left, int up, int corner) {
    const int ofLeft = std::abs(up - corner);              // |p - left|
    const int ofUp = std::abs(left - corner);              // |p - up|
    const int ofCorner = std::abs(left + up - 2 * corner); // |p - corner|
    const int ofTwo = ofUp <= ofCorner ? up : corner;
    return ofLeft <= ofUp && ofLeft <= ofCorner ? left : ofTwo;
}

struct Neighbours {
    const std::uint8_t* current;
    const std::uint8_t* left;
    const std::uint8_t* up;
    const std::uint8_t* corner;
};

template <typename Predict>
void filterRow(Neighbours bytes, std::uint8_t* out, std::size_t count, Predict predict) {
    for (std::size_t i = 0; i < count; ++i)
        out[i] = static_cast<std::uint8_t>(bytes.current[i] -
                                           predict(bytes.left[i], bytes.up[i], bytes.corner[i]));
}

std::uint64_t signedSum(std::span<const std::uint8_t> bytes) {
    std::uint64_t total = 0;
    while (!bytes.empty()) {
        const auto part = bytes.first(std::min<std::size_t>(bytes.size(), 1U << 20));
        std::uint32_t sum = 0;
        for (const std::uint8_t byte : part)
            sum += static_cast<std::uint32_t>(std::abs(static_cast<std::int8_t>(byte)));
        total += sum;
        bytes = bytes.subspan(part.size());
    }
    return total;
}

} // namespace

RowFilter::RowFilter(std::size_t rowBytes, std::size_t pixelBytes)
    : before(pixelBytes)
    , here(pixelBytes + rowBytes)
    , above(pixelBytes + rowBytes) {
    for (auto& bytes : tried)
        bytes.resize(rowBytes);
}

std::span<std::byte> RowFilter::row() {
    return std::as_writable_bytes(std::span(here).subspan(before));
}

void RowFilter::filterTo(std::span<std::byte> out) {
    tryFilters();
    const auto best = std::ranges::min_element(tried, {}, signedSum);
    out[0] = static_cast<std::byte>(best - tried.begin());
    std::memcpy(out.data() + 1, best->data(), best->size());
    std::swap(here, above);
}

void RowFilter::tryFilters() {
    const Neighbours bytes{here.data() + before, here.data(), above.data() + before, above.data()};
    const std::size_t count = here.size() - before;
    filterRow(bytes, tried[0].data(), count, [](int, int, int) { return 0; });
    filterRow(bytes, tried[1].data(), count, [](int left, int, int) { return left; });
    filterRow(bytes, tried[2].data(), count, [](int, int up, int) { return up; });
    filterRow(bytes, tried[3].data(), count, [](int left, int up, int) { return (left + up) / 2; });
    filterRow(bytes, tried[4].data(), count, paethPredictor);
}

} // namespace GdiplusBackend
