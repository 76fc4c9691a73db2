#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace GdiplusBackend {

/// Filters rows of whole-byte pixels (ISO/IEC 15948, clause 9), from the top one on, each by the filter whose
/// bytes, taken as signed, have the smallest sum (12.8).
class RowFilter {
public:
    RowFilter(std::size_t rowBytes, std::size_t pixelBytes);

    /// Where the caller puts the next row.
    std::span<std::byte> row();
    /// Fills `out`, one byte longer than the row, with the filter's number and the filtered row.
    void filterTo(std::span<std::byte> out);

private:
    static constexpr std::size_t filterCount = 5;

    void tryFilters();

    std::size_t before; // bytes of a pixel of zeros in front of each row, so that it has a left one
    std::vector<std::uint8_t> here;
    std::vector<std::uint8_t> above;
    std::array<std::vector<std::uint8_t>, filterCount> tried; // by the filter's number
};

} // namespace GdiplusBackend
