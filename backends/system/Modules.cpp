#include "platform/System.h"

#include "system/PathResolver.h"
#include "system/WideBuffer.h"

#include <dlfcn.h>
#include <link.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace SystemBackend {

namespace {

namespace fs = std::filesystem;

std::string programFile() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error).string();
}

/// Empty when it is not known.
std::string moduleFile(HMODULE module) {
    if (!module)
        return programFile();
    const link_map* loaded = nullptr;
    if (::dlinfo(module, RTLD_DI_LINKMAP, &loaded) != 0 || !loaded)
        return {};
    if (!*loaded->l_name) // the loader gives the host program no name
        return programFile();
    std::error_code error;
    return fs::absolute(loaded->l_name, error).string();
}

/// The loader's handle for what holds `address`, its users not counted; null without such a module.
void* moduleAround(const void* address) {
    Dl_info nearest{};
    link_map* loaded = nullptr;
    if (::dladdr1(address, &nearest, reinterpret_cast<void**>(&loaded), RTLD_DL_LINKMAP) == 0 || !loaded)
        return nullptr;
    void* handle = ::dlopen(*loaded->l_name ? loaded->l_name : nullptr, RTLD_LAZY | RTLD_NOLOAD);
    if (handle)
        ::dlclose(handle);
    return handle;
}

/// What to hand to the loader: for what was meant as a path the whole one, by which the module is known for
/// good; else the bare name, which the loader searches for. Empty without a current folder.
std::string loaderName(const std::string& filename) {
    if (filename.find_first_of("/\\") == std::string::npos)
        return filename;
    std::error_code error;
    return fs::absolute(resolvePath(filename), error).string();
}

} // namespace

} // namespace SystemBackend

extern "C" {

DWORD GetModuleFileNameW(HMODULE module, WCHAR* filename, DWORD size) {
    if (!filename || size == 0)
        return 0;
    const std::wstring file = SystemBackend::toWide(SystemBackend::moduleFile(module));
    const std::wstring_view fitting = std::wstring_view(file).substr(0, size - 1);
    SystemBackend::copyWithTerminator(fitting, filename);
    return fitting.size() < file.size() ? size : static_cast<DWORD>(file.size());
}

BOOL GetModuleHandleExW(DWORD flags, const WCHAR* address, HMODULE* module) {
    constexpr DWORD known =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (!module)
        return FALSE;
    *module = flags == known ? static_cast<HMODULE>(SystemBackend::moduleAround(address)) : nullptr;
    return *module ? TRUE : FALSE;
}

HMODULE LoadLibraryW(const WCHAR* filename) {
    const std::string name = SystemBackend::loaderName(SystemBackend::toUtf8(filename));
    // An empty name would be the host program's.
    return name.empty() ? nullptr : static_cast<HMODULE>(::dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL));
}

BOOL FreeLibrary(HMODULE module) {
    return module && ::dlclose(module) == 0 ? TRUE : FALSE;
}

FARPROC GetProcAddress(HMODULE module, const CHAR* name) {
    // Values below 0x10000 are ordinals, which modules here do not have.
    if (!module || reinterpret_cast<UINT_PTR>(name) < 0x10000)
        return nullptr;
    return reinterpret_cast<FARPROC>(::dlsym(module, name));
}

} // extern "C"
