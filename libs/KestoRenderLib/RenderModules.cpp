#include "KestoRenderLib/RenderModules.h"

#include <string>

namespace KestoRenderLib {

namespace {

/// With the separator at its end; empty when it is not known.
std::wstring folderOf(HMODULE module) {
    std::wstring file(512, L'\0');
    DWORD length = 0;
    while ((length = GetModuleFileNameW(module, file.data(), static_cast<DWORD>(file.size()))) == file.size())
        file.resize(file.size() * 2);
    file.resize(length);
    return file.substr(0, file.rfind(L'/') + 1);
}

std::wstring folderOfThisLibrary() {
    constexpr DWORD flags =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    HMODULE self = nullptr;
    const auto* address = reinterpret_cast<const WCHAR*>(&renderModuleFunction);
    return GetModuleHandleExW(flags, address, &self) ? folderOf(self) : std::wstring();
}

} // namespace

FARPROC renderModuleFunction(const wchar_t* module, const char* function) {
    const std::wstring name = std::wstring(L"KestoThumbnailer/") + module;
    HMODULE loaded = LoadLibraryW((folderOfThisLibrary() + name).c_str());
    if (!loaded)
        loaded = LoadLibraryW((folderOf(nullptr) + L"../lib/" + name).c_str());
    return loaded ? GetProcAddress(loaded, function) : nullptr;
}

} // namespace KestoRenderLib
