#include "gdiplus/codecs/pngdecoder/PngFilters.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace GdiplusBackend {

namespace {

int value(std::byte byte) {
    return std::to_integer<int>(byte);
}

std::byte sum(std::byte byte, int prediction) {
    return static_cast<std::byte>(value(byte) + prediction);
}

/// ISO/IEC 15948, 9.4: the neighbour nearest to left + above - corner; ties go in the order of the arguments.
int paeth(int left, int above, int corner) {
    const int toLeft = std::abs(above - corner);
    const int toAbove = std::abs(left - corner);
    const int toCorner = std::abs(left + above - 2 * corner);
    if (toLeft <= toAbove && toLeft <= toCorner)
        return left;
    return toAbove <= toCorner ? above : corner;
}

void addAbove(std::span<const std::byte> filtered, std::span<const std::byte> above,
              std::span<std::byte> row) {
    for (std::size_t i = 0; i < row.size(); ++i)
        row[i] = sum(filtered[i], value(above[i]));
}

#if defined(__SSE2__)

/// Pixels of 3 or 4 bytes, one at a time in a register: each needs the one to its left.
template <std::size_t PixelBytes>
class WidePixels {
public:
    static void undo(PngFilter filter, std::span<const std::byte> filtered, std::span<const std::byte> above,
                     std::span<std::byte> row) {
        switch (filter) {
        case PngFilter::None:
            std::copy(filtered.begin(), filtered.end(), row.begin());
            return;
        case PngFilter::Sub:
            return undoSub(filtered, row);
        case PngFilter::Up:
            return addAbove(filtered, above, row);
        case PngFilter::Average:
            return undoAverage(filtered, above, row);
        case PngFilter::Paeth:
            return undoPaeth(filtered, above, row);
        }
    }

private:
    static __m128i load(const std::byte* place) {
        std::int32_t bytes = 0;
        std::memcpy(&bytes, place, sizeof bytes);
        return _mm_cvtsi32_si128(bytes);
    }

    /// Of a 3-byte pixel the fourth byte is the next pixel's place, which is written after it.
    static void store(std::byte* place, __m128i pixel) {
        const std::int32_t bytes = _mm_cvtsi128_si32(pixel);
        std::memcpy(place, &bytes, sizeof bytes);
    }

    static __m128i widened(__m128i pixel) { return _mm_unpacklo_epi8(pixel, _mm_setzero_si128()); }

    static __m128i distance(__m128i one, __m128i other) {
        return _mm_max_epi16(_mm_sub_epi16(one, other), _mm_sub_epi16(other, one));
    }

    static __m128i chosen(__m128i mask, __m128i yes, __m128i no) {
        return _mm_or_si128(_mm_and_si128(mask, yes), _mm_andnot_si128(mask, no));
    }

    static void undoSub(std::span<const std::byte> filtered, std::span<std::byte> row) {
        __m128i left = _mm_setzero_si128();
        for (std::size_t i = 0; i < row.size(); i += PixelBytes) {
            left = _mm_add_epi8(load(&filtered[i]), left);
            store(&row[i], left);
        }
    }

    static void undoAverage(std::span<const std::byte> filtered, std::span<const std::byte> above,
                            std::span<std::byte> row) {
        const __m128i one = _mm_set1_epi8(1);
        __m128i left = _mm_setzero_si128();
        for (std::size_t i = 0; i < row.size(); i += PixelBytes) {
            const __m128i up = load(&above[i]);
            // The instruction rounds up, the filter rounds down.
            const __m128i roundedUp = _mm_and_si128(_mm_xor_si128(left, up), one);
            const __m128i average = _mm_sub_epi8(_mm_avg_epu8(left, up), roundedUp);
            left = _mm_add_epi8(load(&filtered[i]), average);
            store(&row[i], left);
        }
    }

    static void undoPaeth(std::span<const std::byte> filtered, std::span<const std::byte> above,
                          std::span<std::byte> row) {
        __m128i left = _mm_setzero_si128();
        __m128i corner = _mm_setzero_si128();
        // Each pixel waits for the one before, so as little as can be stands between `left` and the next
        // `left`: all three results are ready when the distances tell which one it is.
        for (std::size_t i = 0; i < row.size(); i += PixelBytes) {
            const __m128i up = widened(load(&above[i]));
            const __m128i residue = widened(load(&filtered[i]));
            const __m128i fromAbove = _mm_add_epi8(residue, up);
            const __m128i fromCorner = _mm_add_epi8(residue, corner);
            const __m128i balance = _mm_sub_epi16(_mm_add_epi16(corner, corner), up);
            const __m128i toLeft = distance(up, corner);
            const __m128i toAbove = distance(left, corner);
            const __m128i toCorner = distance(left, balance);
            const __m128i leftIsFar =
                _mm_or_si128(_mm_cmpgt_epi16(toLeft, toAbove), _mm_cmpgt_epi16(toLeft, toCorner));
            const __m128i other = chosen(_mm_cmpgt_epi16(toAbove, toCorner), fromCorner, fromAbove);
            left = chosen(leftIsFar, other, _mm_add_epi8(residue, left));
            corner = up;
            store(&row[i], _mm_packus_epi16(left, left));
        }
    }
};

#endif

} // namespace

void undoFilterPlainly(PngFilter filter, std::span<const std::byte> filtered,
                       std::span<const std::byte> above, std::span<std::byte> row, int bytesPerPixel) {
    const auto step = static_cast<std::size_t>(bytesPerPixel);
    for (std::size_t i = 0; i < row.size(); ++i) {
        const int left = i < step ? 0 : value(row[i - step]);
        const int up = value(above[i]);
        const int corner = i < step ? 0 : value(above[i - step]);
        int prediction = 0;
        switch (filter) {
        case PngFilter::None:
            break;
        case PngFilter::Sub:
            prediction = left;
            break;
        case PngFilter::Up:
            prediction = up;
            break;
        case PngFilter::Average:
            prediction = (left + up) / 2;
            break;
        case PngFilter::Paeth:
            prediction = paeth(left, up, corner);
            break;
        }
        row[i] = sum(filtered[i], prediction);
    }
}

void undoFilter(PngFilter filter, std::span<const std::byte> filtered, std::span<const std::byte> above,
                std::span<std::byte> row, int bytesPerPixel) {
#if defined(__SSE2__)
    if (bytesPerPixel == 3)
        return WidePixels<3>::undo(filter, filtered, above, row);
    if (bytesPerPixel == 4)
        return WidePixels<4>::undo(filter, filtered, above, row);
#endif
    if (filter == PngFilter::Up)
        return addAbove(filtered, above, row);
    undoFilterPlainly(filter, filtered, above, row, bytesPerPixel);
}

} // namespace GdiplusBackend
