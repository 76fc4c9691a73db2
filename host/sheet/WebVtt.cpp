#include "sheet/WebVtt.h"

#include <fmt/format.h>

#include <filesystem>
#include <string_view>
#include <system_error>

namespace KestoHost {

namespace {

/// RFC 3986, 2.3, and the slash between segments. A colon is not among them: in a first segment it would end
/// the name of a scheme. Bytes of letters beyond ASCII are escaped, too.
bool standsAsItIs(char c) {
    constexpr std::string_view marks = "-._~/";
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           marks.find(c) != std::string_view::npos;
}

std::string percentEncoded(const std::string& path) {
    std::string url;
    for (const char c : path)
        url += standsAsItIs(c) ? std::string(1, c)
                               : fmt::format("%{:02X}", static_cast<unsigned>(static_cast<unsigned char>(c)));
    return url;
}

std::filesystem::path folderOf(const std::filesystem::path& file) {
    return file.has_parent_path() ? file.parent_path() : ".";
}

} // namespace

std::string webVttText(const std::vector<Cue>& cues, const std::vector<CRect>& tiles,
                       const std::string& pictureUrl) {
    std::string text = "WEBVTT\n";
    for (std::size_t i = 0; i < cues.size(); ++i) {
        const CRect& tile = tiles[i];
        text += fmt::format("\n{} --> {}\n{}#xywh={},{},{},{}\n", clockText(cues[i].start),
                            clockText(cues[i].end), pictureUrl, tile.left, tile.top, tile.right - tile.left,
                            tile.bottom - tile.top);
    }
    return text;
}

std::string relativeUrl(const std::string& from, const std::string& to) {
    const std::filesystem::path target(to);
    std::error_code error; // without a common folder the whole path will do
    const std::filesystem::path folder = std::filesystem::relative(folderOf(target), folderOf(from), error);
    const std::filesystem::path named = error || folder.empty() ? target : folder / target.filename();
    return percentEncoded(named.lexically_normal().generic_string());
}

} // namespace KestoHost
