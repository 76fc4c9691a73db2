#include "platform/WindowsVersion.h"
#include "platform/LastError.h"

#include "system/RegistryFile.h"

#include <array>
#include <bit>

namespace SystemBackend {

namespace {

constexpr unsigned bitsOfCondition = 3;
constexpr ULONGLONG conditionBits = (1U << bitsOfCondition) - 1;

struct Version {
    DWORD major = 10;
    DWORD minor = 0;
};

DWORD numberIn(const RegistryValues& values, std::string_view name, DWORD without) {
    const RegistryValue* value = findValue(values, name);
    const auto* number = value ? std::get_if<std::uint32_t>(&value->content) : nullptr;
    return number ? *number : without;
}

Version platformVersion() {
    const auto values =
        readRegistryKey("HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion");
    Version version;
    if (values) {
        version.major = numberIn(*values, "CurrentMajorVersionNumber", version.major);
        version.minor = numberIn(*values, "CurrentMinorVersionNumber", version.minor);
    }
    return version;
}

unsigned shiftOf(DWORD type) {
    return bitsOfCondition * static_cast<unsigned>(std::countr_zero(type));
}

BYTE conditionFor(DWORDLONG conditions, DWORD type) {
    return static_cast<BYTE>(conditions >> shiftOf(type) & conditionBits);
}

struct Part {
    DWORD type;
    DWORD actual;
    DWORD asked;
};

bool holds(BYTE condition, const Part& part) {
    switch (condition) {
    case VER_EQUAL:
        return part.actual == part.asked;
    case VER_GREATER:
        return part.actual > part.asked;
    case VER_GREATER_EQUAL:
        return part.actual >= part.asked;
    case VER_LESS:
        return part.actual < part.asked;
    default:
        return part.actual <= part.asked;
    }
}

bool isKnown(BYTE condition) {
    return condition >= VER_EQUAL && condition <= VER_LESS_EQUAL;
}

bool areKnown(DWORD types, DWORDLONG conditions) {
    constexpr std::array known = {VER_MAJORVERSION, VER_MINORVERSION, VER_SERVICEPACKMAJOR};
    DWORD rest = types;
    for (const DWORD type : known) {
        if ((types & type) != 0 && !isKnown(conditionFor(conditions, type)))
            return false;
        rest &= ~type;
    }
    return types != 0 && rest == 0;
}

bool compares(const OSVERSIONINFOEXW& asked, DWORD types, DWORDLONG conditions) {
    const Version version = platformVersion();
    const std::array parts = {Part{VER_MAJORVERSION, version.major, asked.dwMajorVersion},
                              Part{VER_MINORVERSION, version.minor, asked.dwMinorVersion},
                              Part{VER_SERVICEPACKMAJOR, 0, asked.wServicePackMajor}};
    bool result = false;
    for (const Part& part : parts) {
        if ((types & part.type) == 0)
            continue;
        result = holds(conditionFor(conditions, part.type), part);
        if (part.actual != part.asked)
            break;
    }
    return result;
}

} // namespace

} // namespace SystemBackend

extern "C" {

ULONGLONG VerSetConditionMask(ULONGLONG mask, DWORD type, BYTE condition) {
    using namespace SystemBackend;
    return type == 0 ? mask : mask | (condition & conditionBits) << shiftOf(type);
}

BOOL VerifyVersionInfoW(OSVERSIONINFOEXW* version, DWORD types, DWORDLONG conditions) {
    using namespace SystemBackend;
    if (!version || !areKnown(types, conditions)) {
        SetLastError(ERROR_BAD_ARGUMENTS);
        return FALSE;
    }
    if (compares(*version, types, conditions))
        return TRUE;
    SetLastError(ERROR_OLD_WIN_VERSION);
    return FALSE;
}

} // extern "C"
