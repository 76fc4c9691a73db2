#include "sheet/ScrubPage.h"

#include "sheet/ScrubPageParts.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace KestoHost {

namespace {

using Json = nlohmann::ordered_json;

std::string htmlEscaped(const std::string& text) {
    std::string escaped;
    for (const char c : text) {
        switch (c) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        default:
            escaped += c;
        }
    }
    return escaped;
}

/// JSON that can stand in a script element: nothing in it can end the element.
std::string scriptText(const Json& value) {
    std::string text = value.dump(-1, ' ', /*ensure_ascii=*/true, Json::error_handler_t::replace);
    for (std::size_t at = text.find('<'); at != std::string::npos; at = text.find('<', at))
        text.replace(at, 1, "\\u003c");
    return text;
}

/// UTF-8 with U+FFFD for what is none.
std::string validText(const std::string& text) {
    const std::string quoted =
        Json(text).dump(-1, ' ', /*ensure_ascii=*/false, Json::error_handler_t::replace);
    return Json::parse(quoted).get<std::string>();
}

Json tilesOf(const ScrubPage& page) {
    Json tiles = Json::array();
    for (std::size_t i = 0; i < page.cues.size(); ++i) {
        const CRect& tile = page.tiles[i];
        const bool hole = std::binary_search(page.holes.begin(), page.holes.end(), static_cast<int>(i));
        tiles.push_back({{"start", page.cues[i].start},
                         {"x", tile.left},
                         {"y", tile.top},
                         {"width", tile.right - tile.left},
                         {"height", tile.bottom - tile.top},
                         {"hole", hole}});
    }
    return tiles;
}

} // namespace

std::string htmlText(const ScrubPage& page) {
    const std::string title = htmlEscaped(validText(page.title));
    const Json data = {{"end", page.cues.back().end}, {"tiles", tilesOf(page)}};
    std::string html = fmt::format(fmt::runtime(scrubPageHead), title);
    html += scrubPageStyle;
    html += fmt::format(fmt::runtime(scrubPageBody), title, page.tiles.size(), page.width, page.height,
                        page.mediaType);
    html += base64(page.picture);
    html += scrubPageAfterPicture;
    html += scriptText(data);
    html += scrubPageScript;
    return html;
}

std::string base64(const std::string& bytes) {
    constexpr const char* digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t count = std::min<std::size_t>(3, bytes.size() - i);
        unsigned group = 0;
        for (std::size_t k = 0; k < 3; ++k)
            group = group << 8 | (k < count ? static_cast<unsigned char>(bytes[i + k]) : 0U);
        for (std::size_t k = 0; k < 4; ++k)
            text += k <= count ? digits[group >> (18 - 6 * k) & 63] : '=';
    }
    return text;
}

} // namespace KestoHost
