#include "walls/IncludeLines.h"

#include <optional>

namespace Walls {

namespace {

constexpr std::string_view blanks = " \t";

std::string_view withoutLeadingBlanks(std::string_view text) {
    const std::size_t start = text.find_first_not_of(blanks);
    return start == std::string_view::npos ? std::string_view() : text.substr(start);
}

/// What follows `word` and blanks; nothing if the text does not start with it.
std::optional<std::string_view> after(std::string_view word, std::string_view text) {
    if (!text.starts_with(word))
        return std::nullopt;
    return withoutLeadingBlanks(text.substr(word.size()));
}

std::optional<IncludeLine> parseInclude(std::string_view text, int line) {
    const auto directive = after("#", withoutLeadingBlanks(text));
    const auto name = directive ? after("include", *directive) : std::nullopt;
    if (!name || name->empty() || (name->front() != '"' && name->front() != '<'))
        return std::nullopt;
    const bool quoted = name->front() == '"';
    const std::size_t end = name->find(quoted ? '"' : '>', 1);
    if (end == std::string_view::npos)
        return std::nullopt;
    return IncludeLine{std::string(name->substr(1, end - 1)),
                       quoted ? IncludeForm::Quoted : IncludeForm::Angled, line};
}

/// Blanks out what lies in block comments; `inComment` goes from line to line.
std::string withoutBlockComments(std::string_view line, bool& inComment) {
    std::string code;
    for (std::size_t at = 0; at < line.size(); ++at) {
        const std::string_view pair = line.substr(at, 2);
        if (!inComment && pair == "//")
            break;
        if (pair == (inComment ? "*/" : "/*")) {
            inComment = !inComment;
            ++at;
        } else if (!inComment) {
            code += line[at];
        }
    }
    return code;
}

} // namespace

std::vector<IncludeLine> includesOf(std::string_view text) {
    std::vector<IncludeLine> includes;
    bool inComment = false;
    for (int line = 1; !text.empty(); ++line) {
        const std::size_t end = text.find('\n');
        const std::string code = withoutBlockComments(text.substr(0, end), inComment);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        if (auto include = parseInclude(code, line))
            includes.push_back(std::move(*include));
    }
    return includes;
}

} // namespace Walls
