#include "platform/Registry.h"
#include "platform/LastError.h"

#include "system/PathResolver.h"
#include "system/RegistryFile.h"
#include "system/WideBuffer.h"

#include <cstring>
#include <memory>
#include <string>

// NOLINTNEXTLINE(bugprone-reserved-identifier): what the published handle points to
struct HKEY__ {
    std::string path;
    SystemBackend::RegistryValues values;
};

namespace SystemBackend {

namespace {

bool isRoot(HKEY key) {
    return key == HKEY_LOCAL_MACHINE || key == HKEY_CURRENT_USER;
}

std::string pathOf(HKEY key) {
    if (key == HKEY_LOCAL_MACHINE)
        return "HKEY_LOCAL_MACHINE";
    return key == HKEY_CURRENT_USER ? "HKEY_CURRENT_USER" : key->path;
}

struct StoredValue {
    DWORD type;
    std::string bytes;
};

template <class Unit>
std::string bytesOf(const Unit* units, std::size_t count) {
    return {reinterpret_cast<const char*>(units), count * sizeof(Unit)};
}

StoredValue stored(const RegistryValue& value) {
    if (const auto* number = std::get_if<std::uint32_t>(&value.content))
        return {REG_DWORD, bytesOf(number, 1)};
    const std::wstring text = toWide(std::get<std::string>(value.content));
    return {REG_SZ, bytesOf(text.c_str(), text.size() + 1)};
}

LSTATUS hand(const StoredValue& value, DWORD* type, BYTE* data, DWORD* size) {
    const DWORD room = size ? *size : 0;
    const auto needed = static_cast<DWORD>(value.bytes.size());
    if (type)
        *type = value.type;
    if (size)
        *size = needed;
    if (!data)
        return ERROR_SUCCESS;
    if (room < needed)
        return ERROR_MORE_DATA;
    std::memcpy(data, value.bytes.data(), needed);
    return ERROR_SUCCESS;
}

} // namespace

} // namespace SystemBackend

extern "C" {

LSTATUS RegOpenKeyExW(HKEY key, const WCHAR* subKey, DWORD options, REGSAM access, HKEY* result) {
    using namespace SystemBackend;
    if (!result || options != 0)
        return ERROR_INVALID_PARAMETER;
    *result = nullptr;
    if (!key)
        return ERROR_INVALID_HANDLE;
    if (access != KEY_READ)
        return ERROR_ACCESS_DENIED;
    std::string path = pathOf(key);
    if (subKey && *subKey)
        path += '\\' + toUtf8(subKey);
    auto values = readRegistryKey(path);
    if (!values)
        return ERROR_FILE_NOT_FOUND;
    *result = std::make_unique<HKEY__>(HKEY__{std::move(path), std::move(*values)}).release();
    return ERROR_SUCCESS;
}

LSTATUS RegQueryValueExW(HKEY key, const WCHAR* valueName, DWORD* reserved, DWORD* type, BYTE* data,
                         DWORD* size) {
    using namespace SystemBackend;
    if (!key || isRoot(key))
        return ERROR_INVALID_HANDLE;
    if (reserved || (data && !size))
        return ERROR_INVALID_PARAMETER;
    const RegistryValue* value = findValue(key->values, toUtf8(valueName));
    return value ? hand(stored(*value), type, data, size) : static_cast<LSTATUS>(ERROR_FILE_NOT_FOUND);
}

LSTATUS RegCloseKey(HKEY key) {
    if (!key)
        return ERROR_INVALID_HANDLE;
    if (!SystemBackend::isRoot(key)) // the roots are always open
        std::unique_ptr<HKEY__>(key).reset();
    return ERROR_SUCCESS;
}

} // extern "C"
