#include "ls/MemberRole.h"

#include <string_view>

namespace KestoHost {

namespace {

struct FixedName {
    std::string_view name;
    const char* kind;
    const char* role;
};

// Letter for letter, as the library tells members.
constexpr FixedName fixedNames[] = {
    {"Screen_Stream.avi", "video", "screen"}, {"Camera_Stream.wmv", "video", "camera"},
    {"Audio.wav", "audio", "microphone"},     {"SysAudio.wav", "audio", "system"},
    {"Events.dat", "data", "events"},         {"manifest.plumxml", "data", "manifest"},
};

struct NamePattern {
    std::string_view prefix;
    std::string_view suffix;
    const char* kind;
};

constexpr NamePattern patterns[] = {
    {"video", ".mp4", "video"}, {"audio", ".mp4", "audio"}, {"track", ".qrl2", "data"}};

std::string formatOf(const std::string& name) {
    const std::size_t dot = name.rfind('.');
    return dot == std::string::npos ? "" : name.substr(dot + 1);
}

/// `rest` is a name without its first letter.
bool isNumbered(std::string_view rest, const NamePattern& pattern) {
    if (!rest.starts_with(pattern.prefix) || !rest.ends_with(pattern.suffix))
        return false;
    const char digit = rest[pattern.prefix.size()]; // behind it at least the suffix follows
    return digit >= '0' && digit <= '9';
}

/// The letter in front of a numbered member's name.
const char* roleOfLetter(char letter) {
    return letter == 'S' ? "screen" : letter == 'C' ? "camera" : "";
}

} // namespace

ContainerPart describeMember(const std::string& name) {
    ContainerPart member{.name = name, .kind = "data", .format = formatOf(name)};
    for (const FixedName& fixed : fixedNames) {
        if (fixed.name != name)
            continue;
        member.kind = fixed.kind;
        member.role = fixed.role;
        return member;
    }
    const std::string_view rest = std::string_view(name).substr(name.empty() ? 0 : 1);
    for (const NamePattern& pattern : patterns) {
        if (!isNumbered(rest, pattern))
            continue;
        member.kind = pattern.kind;
        member.role = roleOfLetter(name[0]);
        return member;
    }
    return member;
}

} // namespace KestoHost
