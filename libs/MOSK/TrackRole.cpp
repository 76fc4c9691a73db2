#include "MOSK/TrackRole.h"

#include <algorithm>
#include <array>

namespace MOSK {

namespace {

using EngineBackend::StreamFacts;
using EngineBackend::StreamKind;

struct NamedRole {
    TrackRole role;
    std::string_view handlerName;
    StreamKind kind;
};

constexpr std::array<NamedRole, 4> roles = {{
    {TrackRole::Screen, "Kesto Screen", StreamKind::Video},
    {TrackRole::Camera, "Kesto Camera", StreamKind::Video},
    {TrackRole::Microphone, "Kesto Microphone", StreamKind::Audio},
    {TrackRole::SystemAudio, "Kesto System Audio", StreamKind::Audio},
}};

const NamedRole* findRole(TrackRole role) {
    const auto found = std::find_if(roles.begin(), roles.end(),
                                    [role](const NamedRole& named) { return named.role == role; });
    return found == roles.end() ? nullptr : &*found;
}

char lowered(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

bool equalIgnoringCase(std::string_view one, std::string_view other) {
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [](char left, char right) { return lowered(left) == lowered(right); });
}

std::string_view withoutBlanks(std::string_view text) {
    const std::size_t first = text.find_first_not_of(' ');
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(' ') - first + 1);
}

} // namespace

std::string_view handlerNameOf(TrackRole role) {
    const NamedRole* found = findRole(role);
    return found ? found->handlerName : std::string_view();
}

StreamKind kindOf(TrackRole role) {
    const NamedRole* found = findRole(role);
    return found ? found->kind : StreamKind::Other;
}

std::string formatOf(const StreamFacts& track) {
    return codecTagText(track);
}

TrackRole roleOf(const StreamFacts& track) {
    if (formatOf(track) == recordingDataFormat)
        return TrackRole::None;
    const std::string_view name = withoutBlanks(track.handlerName);
    for (const NamedRole& named : roles)
        if (named.kind == track.kind && equalIgnoringCase(named.handlerName, name))
            return named.role;
    return TrackRole::None;
}

} // namespace MOSK
