#pragma once

#include "platform/WinTypes.h"

#include <array>
#include <cstdio>
#include <ostream>
#include <string>

/// As GUIDs are usually written, in capitals.
inline std::string guidText(const GUID& guid) {
    std::array<char, 40> text{};
    const auto& d = guid.Data4;
    std::snprintf(text.data(), text.size(), "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}", guid.Data1,
                  guid.Data2, guid.Data3, d[0], d[1], d[2], d[3], d[4], d[5], d[6], d[7]);
    return text.data();
}

inline void PrintTo(const GUID& guid, std::ostream* out) {
    *out << guidText(guid);
}
