#include "gdiplus/scaling/scaler/PlaneRowsSse2.h"

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace GdiplusBackend::Scaling {

#if defined(__SSE2__)

namespace {

constexpr int pixelsAtOnce = 8;
constexpr int bitsPerSample = 8;

__m128i load(const void* memory) {
    return _mm_loadu_si128(static_cast<const __m128i*>(memory));
}
void store(void* memory, __m128i value) {
    _mm_storeu_si128(static_cast<__m128i*>(memory), value);
}

/// One sample of each of eight pixels, as levels.
template <int sample>
__m128i takeLevels(__m128i firstFour, __m128i lastFour) {
    const __m128i lowByte = _mm_set1_epi32(0xFF);
    const __m128i first = _mm_and_si128(_mm_srli_epi32(firstFour, sample * bitsPerSample), lowByte);
    const __m128i last = _mm_and_si128(_mm_srli_epi32(lastFour, sample * bitsPerSample), lowByte);
    const __m128i samples = _mm_slli_epi16(_mm_packs_epi32(first, last), fractionBits);
    return _mm_add_epi16(samples, _mm_set1_epi16(zeroLevel));
}

/// Eight samples of a plane in the low half. Both saturations cut what lies outside 0 to 255.
__m128i takeSamples(const std::uint16_t* plane) {
    const __m128i aboveZero =
        _mm_subs_epu16(load(plane), _mm_set1_epi16(zeroLevel - (1 << (fractionBits - 1))));
    return _mm_packus_epi16(_mm_srli_epi16(aboveZero, fractionBits), _mm_setzero_si128());
}

} // namespace

int splitPixelsSse2(const std::byte* pixels, int count, const PlaneRow& planes) {
    int x = 0;
    for (; x + pixelsAtOnce <= count; x += pixelsAtOnce, pixels += 2 * sizeof(__m128i)) {
        const __m128i firstFour = load(pixels);
        const __m128i lastFour = load(pixels + sizeof(__m128i));
        store(planes.blue + x, takeLevels<0>(firstFour, lastFour));
        store(planes.green + x, takeLevels<1>(firstFour, lastFour));
        store(planes.red + x, takeLevels<2>(firstFour, lastFour));
        if (planes.alpha)
            store(planes.alpha + x, takeLevels<3>(firstFour, lastFour));
    }
    return x;
}

int joinPixelsSse2(const PlaneRow& planes, int count, std::byte* pixels) {
    int x = 0;
    for (; x + pixelsAtOnce <= count; x += pixelsAtOnce, pixels += 2 * sizeof(__m128i)) {
        const __m128i alpha = planes.alpha ? takeSamples(planes.alpha + x) : _mm_set1_epi8(-1);
        const __m128i blue = _mm_min_epu8(takeSamples(planes.blue + x), alpha);
        const __m128i green = _mm_min_epu8(takeSamples(planes.green + x), alpha);
        const __m128i red = _mm_min_epu8(takeSamples(planes.red + x), alpha);
        const __m128i blueGreen = _mm_unpacklo_epi8(blue, green);
        const __m128i redAlpha = _mm_unpacklo_epi8(red, alpha);
        store(pixels, _mm_unpacklo_epi16(blueGreen, redAlpha));
        store(pixels + sizeof(__m128i), _mm_unpackhi_epi16(blueGreen, redAlpha));
    }
    return x;
}

#else

int splitPixelsSse2(const std::byte*, int, const PlaneRow&) {
    return 0;
}
int joinPixelsSse2(const PlaneRow&, int, std::byte*) {
    return 0;
}

#endif

} // namespace GdiplusBackend::Scaling
