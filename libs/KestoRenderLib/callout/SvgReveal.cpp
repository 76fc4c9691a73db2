#include "KestoRenderLib/callout/SvgReveal.h"

#include "KestoRenderLib/callout/SvgLengths.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string_view>
#include <vector>

namespace KestoRenderLib {

namespace {

using namespace std::string_view_literals;

/// Marks elements for the style sheet. No document has a use for an attribute of this name.
constexpr std::string_view mark = "data-kesto-reveal";

constexpr std::array namesOfCopies = {"text"sv, "image"sv, "use"sv};
/// What lies in these is drawn elsewhere, if at all.
constexpr std::array namesOfStores = {"defs"sv,   "clipPath"sv, "mask"sv,  "pattern"sv,
                                      "marker"sv, "symbol"sv,   "style"sv, "title"sv};

template <class Names>
bool contains(const Names& names, std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

/// An element that the pen draws.
struct Drawn {
    std::size_t nameEnd;  ///< where an attribute may be put in
    std::size_t styleEnd; ///< where its own style may go on; 0 without one
    double length;        ///< 0 for those that fade in as a whole
};

/// Of the value of the attribute `style`; 0 without one. `attributes` is a part of `document`.
std::size_t endOfStyle(std::string_view document, std::string_view attributes) {
    const std::string_view style = svgAttribute(attributes, "style");
    return style.data() ? static_cast<std::size_t>(style.data() + style.size() - document.data()) : 0;
}

/// Goes over the tags of a document. A text that is no well-formed XML has some tags, too.
class TagReader {
public:
    explicit TagReader(std::string_view document)
        : text(document) {}

    struct Tag {
        std::string_view name; ///< without a prefix
        std::string_view attributes;
        std::size_t nameEnd = 0;
        bool opens = false;
        bool closes = false; ///< both for an empty element
    };

    bool next(Tag& tag) {
        while ((at = text.find('<', at)) != text.npos) {
            if (skipped("<!--", "-->") || skipped("<![CDATA[", "]]>") || skipped("<?", "?>") ||
                skipped("<!", ">"))
                continue;
            return read(tag);
        }
        return false;
    }

private:
    bool skipped(std::string_view start, std::string_view end) {
        if (text.substr(at, start.size()) != start)
            return false;
        const std::size_t found = text.find(end, at + start.size());
        at = found == text.npos ? text.size() : found + end.size();
        return true;
    }

    bool read(Tag& tag) {
        const bool isEnd = text.substr(at + 1, 1) == "/";
        const std::size_t start = at + (isEnd ? 2 : 1);
        tag.nameEnd = std::min(text.find_first_of(" \t\r\n/>", start), text.size());
        tag.name = text.substr(start, tag.nameEnd - start);
        tag.name.remove_prefix(tag.name.find(':') + 1);
        const std::size_t end = endOfTag(tag.nameEnd);
        tag.attributes = text.substr(tag.nameEnd, end - tag.nameEnd);
        tag.opens = !isEnd;
        tag.closes = isEnd || tag.attributes.ends_with('/');
        at = end;
        return true;
    }

    /// Of the '>' outside of quotes.
    std::size_t endOfTag(std::size_t from) const {
        char quote = 0;
        for (std::size_t index = from; index < text.size(); ++index) {
            const char c = text[index];
            if (quote != 0)
                quote = c == quote ? '\0' : quote;
            else if (c == '"' || c == '\'')
                quote = c;
            else if (c == '>')
                return index;
        }
        return text.size();
    }

    std::string_view text;
    std::size_t at = 0;
};

std::vector<Drawn> drawnElements(std::string_view document) {
    std::vector<Drawn> drawn;
    TagReader reader(document);
    TagReader::Tag tag;
    int depthInStore = 0;
    while (reader.next(tag)) {
        if (contains(namesOfStores, tag.name))
            depthInStore += (tag.opens ? 1 : 0) - (tag.closes ? 1 : 0);
        else if (tag.opens && depthInStore <= 0) {
            if (const double length = svgLength(tag.name, tag.attributes); length > 0)
                drawn.push_back({tag.nameEnd, endOfStyle(document, tag.attributes), length});
            else if (contains(namesOfCopies, tag.name))
                drawn.push_back({tag.nameEnd, 0, 0});
        }
    }
    return drawn;
}

/// What fades in takes as long as an average line.
double averageLength(const std::vector<Drawn>& drawn) {
    double sum = 0;
    int lines = 0;
    for (const Drawn& element : drawn) {
        sum += element.length;
        lines += element.length > 0 ? 1 : 0;
    }
    return lines > 0 ? sum / lines : 1;
}

/// All but the line of the element at hand.
std::string stylesheetFor(const Drawn& current, double part) {
    std::string sheet = fmt::format("[{}=\"later\"]{{visibility:hidden !important}}\n", mark);
    sheet += fmt::format("[{}=\"now\"]{{{}:{:.3f} !important}}\n", mark,
                         current.length > 0 ? "fill-opacity" : "opacity", part);
    return sheet;
}

/// A line as far as `part` of it. It goes into the element's own style, which wins over all style sheets:
/// librsvg 2.54 drops a dash array that is marked as important.
std::string strokeFor(const Drawn& current, double part) {
    constexpr double gap = 1e8; // longer than any line
    return fmt::format(";stroke-dasharray:{:.3f},{:.0f};stroke-dashoffset:0",
                       std::max(current.length * part, 0.001), gap);
}

std::string marked(const std::string& document, const std::vector<Drawn>& drawn, std::size_t current,
                   double part) {
    std::string result;
    std::size_t copied = 0;
    const auto insert = [&](std::size_t at, const std::string& text) {
        result.append(document, copied, at - copied);
        result += text;
        copied = at;
    };
    for (std::size_t index = current; index < drawn.size(); ++index) {
        const Drawn& element = drawn[index];
        const bool isCurrent = index == current;
        insert(element.nameEnd, fmt::format(" {}=\"{}\"", mark, isCurrent ? "now" : "later"));
        if (!isCurrent || !(element.length > 0))
            continue;
        const std::string stroke = strokeFor(element, part);
        if (element.styleEnd > 0)
            insert(element.styleEnd, stroke);
        else
            insert(element.nameEnd, fmt::format(" style=\"{}\"", stroke));
    }
    return result.append(document, copied);
}

} // namespace

RevealedSvg revealSvg(const std::string& document, double progress, bool antialiased) {
    const std::string sharp = antialiased ? "" : "*{shape-rendering:crispEdges !important}\n";
    const std::vector<Drawn> drawn = progress < 1 ? drawnElements(document) : std::vector<Drawn>();
    if (drawn.empty())
        return {document, sharp};
    const double fading = averageLength(drawn);
    const auto weightOf = [&](const Drawn& element) { return element.length > 0 ? element.length : fading; };
    double total = 0;
    for (const Drawn& element : drawn)
        total += weightOf(element);
    double left = total * std::max(progress, 0.0);
    std::size_t current = 0;
    while (current + 1 < drawn.size() && left >= weightOf(drawn[current]))
        left -= weightOf(drawn[current++]);
    const double part = std::clamp(left / weightOf(drawn[current]), 0.0, 1.0);
    std::string result = marked(document, drawn, current, part);
    std::string sheet = sharp + stylesheetFor(drawn[current], part);
    if (part == 0)
        sheet += fmt::format("[{}=\"now\"]{{visibility:hidden !important}}\n", mark);
    return {std::move(result), std::move(sheet)};
}

} // namespace KestoRenderLib
