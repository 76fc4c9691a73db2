#include "inspection/source/MemberName.h"

#include <array>
#include <optional>

namespace {

struct NumberedName {
    std::int32_t kind;
    std::wstring_view prefix;
    std::wstring_view suffix;
};

constexpr std::array<NumberedName, 3> numberedNames = {{
    {1, L"video", L".mp4"},
    {2, L"audio", L".mp4"},
    {3, L"track", L".qrl2"},
}};

struct FixedName {
    std::int32_t kind;
    std::wstring_view name;
};

constexpr std::array<FixedName, 6> fixedNames = {{
    {4, L"Screen_Stream.avi"},
    {5, L"Camera_Stream.wmv"},
    {6, L"Audio.wav"},
    {7, L"SysAudio.wav"},
    {8, L"Events.dat"},
    {9, L"manifest.plumxml"},
}};

/// The digit behind the prefix, of a name without its first character; none when it does not match.
std::optional<std::uint32_t> NumberIn(std::wstring_view name, const NumberedName& pattern) {
    if (!name.starts_with(pattern.prefix) || !name.ends_with(pattern.suffix))
        return std::nullopt;
    const wchar_t digit = name[pattern.prefix.size()]; // behind it at least the suffix follows
    if (digit < L'0' || digit > L'9')
        return std::nullopt;
    return static_cast<std::uint32_t>(digit - L'0');
}

} // namespace

MemberName ClassifyMemberName(std::wstring_view name) {
    if (name.empty())
        return {};
    for (const NumberedName& pattern : numberedNames) {
        if (const auto number = NumberIn(name.substr(1), pattern))
            return {pattern.kind, *number};
    }
    for (const FixedName& fixed : fixedNames) {
        if (name == fixed.name)
            return {fixed.kind, 0};
    }
    return {};
}

std::int32_t SourceCodeOfMember(std::wstring_view name) {
    constexpr std::wstring_view codes = L"_SC$MVA";
    if (name.empty())
        return 0;
    const std::size_t place = codes.find(name.front());
    return place == std::wstring_view::npos || place == 0 ? 0 : static_cast<std::int32_t>(place) + 99;
}
