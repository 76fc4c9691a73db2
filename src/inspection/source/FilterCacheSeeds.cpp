#include "inspection/source/FilterCacheSeeds.h"

#include "inspection/source/PathText.h"
#include "scheduling/imagefile/TextConversion.h"

#include <array>

namespace {

constexpr CLSID mp4Demultiplexer = {
    0x2A55FF12, 0x1657, 0x41D7, {0x9D, 0x2D, 0xA2, 0xCD, 0xC6, 0x97, 0x8F, 0xF2}};
constexpr CLSID mpeg2Demultiplexer = {
    0x136DCBF5, 0x3874, 0x4B70, {0xAE, 0x3E, 0x15, 0x99, 0x7D, 0x63, 0x34, 0xF7}};
constexpr CLSID aacDecoder = {0x19987CEE, 0xDEE8, 0x49DC, {0x98, 0xEC, 0xF2, 0x13, 0x80, 0xAA, 0x9E, 0x68}};
constexpr CLSID h264Decoder = {0x96B9D0ED, 0x8D13, 0x4171, {0xA9, 0x83, 0xB8, 0x4D, 0x88, 0xD6, 0x27, 0xBE}};

constexpr std::array mp4Filters = {mp4Demultiplexer, aacDecoder, h264Decoder};
constexpr std::array transportFilters = {mpeg2Demultiplexer, h264Decoder};

} // namespace

std::span<const CLSID> FilterCacheSeedsForPath(const std::wstring& path) {
    const std::wstring extension = KestoThumbnailer::LowerAscii(std::wstring(BehindLastDot(path)));
    if (extension == L"mp4" || extension == L"mosk")
        return mp4Filters;
    if (extension == L"mts" || extension == L"m2ts")
        return transportFilters;
    return {};
}
