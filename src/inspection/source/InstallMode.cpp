#include "inspection/source/InstallMode.h"

#include "platform/LastError.h"
#include "platform/Registry.h"

#include <memory>
#include <type_traits>

namespace {

struct CloseKey {
    void operator()(HKEY key) const { RegCloseKey(key); }
};

using OpenedKey = std::unique_ptr<std::remove_pointer_t<HKEY>, CloseKey>;

} // namespace

std::int32_t IsInstallModeOne() {
    HKEY opened = nullptr;
    if (RegOpenKeyExW(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Harrowend\\Lorvanta Studio\\tp", 0, KEY_READ,
                      &opened) != ERROR_SUCCESS)
        return 0;
    const OpenedKey key(opened);
    DWORD type = 0;
    DWORD value = 0;
    DWORD size = sizeof(value);
    const LSTATUS result =
        RegQueryValueExW(key.get(), L"InstallMode", nullptr, &type, reinterpret_cast<BYTE*>(&value), &size);
    return result == ERROR_SUCCESS && type == REG_DWORD && value == 1 ? 1 : 0;
}
