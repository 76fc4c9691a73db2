#pragma once

#include <cstddef>
#include <span>

namespace GdiplusBackend {

/// ISO/IEC 15948, 9.2.
enum class PngFilter { None = 0, Sub = 1, Up = 2, Average = 3, Paeth = 4 };

/// What the spans below need behind the row: the fast paths read and write past its end.
constexpr std::size_t pngRowPadding = 8;

/// Undoes the filter of one row: `filtered` becomes `row`, with `above` the finished row above it, or zeros.
/// All three have the same length and `pngRowPadding` bytes of memory behind them, and do not overlap.
/// `bytesPerPixel` is 1 for pixels smaller than a byte.
void undoFilter(PngFilter filter, std::span<const std::byte> filtered, std::span<const std::byte> above,
                std::span<std::byte> row, int bytesPerPixel);

/// The same in plain code, which the fast paths have to agree with.
void undoFilterPlainly(PngFilter filter, std::span<const std::byte> filtered,
                       std::span<const std::byte> above, std::span<std::byte> row, int bytesPerPixel);

} // namespace GdiplusBackend
