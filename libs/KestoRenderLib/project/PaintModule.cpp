#include "KestoRenderLib/project/PaintModule.h"

#include "platform/System.h"

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
    const auto* address = reinterpret_cast<const WCHAR*>(&paintThroughAffineFunction);
    return GetModuleHandleExW(flags, address, &self) ? folderOf(self) : std::wstring();
}

PaintThroughAffine* load() {
    const std::wstring name = L"KestoThumbnailer/kesto_paint.so";
    HMODULE module = LoadLibraryW((folderOfThisLibrary() + name).c_str());
    if (!module)
        module = LoadLibraryW((folderOf(nullptr) + L"../lib/" + name).c_str());
    return module ? reinterpret_cast<PaintThroughAffine*>(GetProcAddress(module, paintThroughAffineName))
                  : nullptr;
}

} // namespace

PaintThroughAffine* paintThroughAffineFunction() {
    static PaintThroughAffine* const function = load();
    return function;
}

} // namespace KestoRenderLib
