#include "gdiplus/codecs/OptionalCodecs.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace GdiplusBackend {

namespace {

Result<std::unique_ptr<PictureDecoder>> openWith(CodecModule which,
                                                 std::shared_ptr<const ByteSource> source) {
    const auto codec = loadCodecModule(which);
    if (!codec)
        return tl::unexpected(codec.error());
    return (*codec)->open(std::move(source));
}

std::string_view textOf(std::span<const std::byte> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

bool isPictureBrand(std::string_view brand) {
    constexpr std::array<std::string_view, 12> brands = {"heic", "heix", "heim", "heis", "hevc", "hevx",
                                                         "hevm", "hevs", "mif1", "msf1", "avif", "avis"};
    return std::find(brands.begin(), brands.end(), brand) != brands.end();
}

/// Takes what `start` opens off the front, up to and with `end`; all of it when the end is not in sight.
bool skipPart(std::string_view& text, std::string_view start, std::string_view end) {
    if (!text.starts_with(start))
        return false;
    const std::size_t found = text.find(end, start.size());
    text.remove_prefix(found == text.npos ? text.size() : found + end.size());
    return true;
}

bool skipBlanks(std::string_view& text) {
    const std::size_t blanks = std::min(text.find_first_not_of(" \t\r\n"), text.size());
    text.remove_prefix(blanks);
    return blanks > 0;
}

bool startsWithWord(std::string_view text, std::string_view word) {
    constexpr std::string_view endings = " \t\r\n/>[";
    return text.starts_with(word) && text.size() > word.size() &&
           endings.find(text[word.size()]) != endings.npos;
}

} // namespace

bool HeifCodec::recognises(std::span<const std::byte> head) {
    constexpr std::size_t firstCompatibleBrand = 16;
    const std::string_view text = textOf(head);
    if (text.size() < firstCompatibleBrand || text.substr(4, 4) != "ftyp")
        return false;
    const std::size_t boxEnd =
        std::to_integer<std::size_t>(head[2]) << 8U | std::to_integer<std::size_t>(head[3]);
    if (isPictureBrand(text.substr(8, 4)))
        return true;
    for (std::size_t place = firstCompatibleBrand; place + 4 <= std::min(boxEnd, text.size()); place += 4)
        if (isPictureBrand(text.substr(place, 4)))
            return true;
    return false;
}

Result<std::unique_ptr<PictureDecoder>> HeifCodec::open(std::shared_ptr<const ByteSource> source) {
    return openWith(CodecModule::Heif, std::move(source));
}

bool SvgCodec::recognises(std::span<const std::byte> head) {
    std::string_view text = textOf(head);
    constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
    if (text.starts_with(byteOrderMark))
        text.remove_prefix(byteOrderMark.size());
    while (skipBlanks(text) || skipPart(text, "<?", "?>") || skipPart(text, "<!--", "-->")) {
    }
    if (text.starts_with("<!DOCTYPE")) {
        text.remove_prefix(std::string_view("<!DOCTYPE").size());
        skipBlanks(text);
        return startsWithWord(text, "svg");
    }
    return startsWithWord(text, "<svg") || startsWithWord(text, "<svg:svg");
}

Result<std::unique_ptr<PictureDecoder>> SvgCodec::open(std::shared_ptr<const ByteSource> source) {
    return openWith(CodecModule::Svg, std::move(source));
}

} // namespace GdiplusBackend
