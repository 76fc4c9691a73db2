#pragma once

#include <cstdint>
#include <string_view>

struct MemberName {
    std::int32_t kind = 0;   ///< 0 for a name that is not known
    std::uint32_t index = 0; ///< the digit in the name of a numbered member
};

/// What the name of a member tells, letter for letter: 1 video, 2 sound and 3 data, numbered, such as
/// "Svideo0.mp4"; 4 to 9 for the six fixed names. Any thread.
MemberName ClassifyMemberName(std::wstring_view name);

/// What was recorded into a member, by the first character of its name: 100 and on; 0 when that tells
/// nothing.
std::int32_t SourceCodeOfMember(std::wstring_view name);
