#include "PageRasterLib/RasterModule.h"

#include "platform/PageRasterLib.h"
#include "platform/System.h"

#include <string>

namespace PageRasterLib {

namespace {

/// With the separator at its end; empty when it is not known.
std::wstring folderOfThisLibrary() {
    constexpr DWORD flags =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    HMODULE self = nullptr;
    if (!GetModuleHandleExW(flags, reinterpret_cast<const WCHAR*>(&openPdfDocumentFunction), &self))
        return {};
    std::wstring file(512, L'\0');
    DWORD length = 0;
    while ((length = GetModuleFileNameW(self, file.data(), static_cast<DWORD>(file.size()))) == file.size())
        file.resize(file.size() * 2);
    file.resize(length);
    return file.substr(0, file.rfind(L'/') + 1);
}

/// Empty when the folder is not known.
std::wstring pathOfModule() {
    const std::wstring folder = folderOfThisLibrary();
    return folder.empty() ? folder : folder + L"KestoThumbnailer/kesto_pdf.so";
}

OpenPdfDocument* load() {
    const std::wstring path = pathOfModule();
    if (path.empty())
        return nullptr;
    HMODULE module = LoadLibraryW(path.c_str());
    if (!module)
        return nullptr;
    return reinterpret_cast<OpenPdfDocument*>(GetProcAddress(module, openPdfDocumentName));
}

} // namespace

OpenPdfDocument* openPdfDocumentFunction() {
    static OpenPdfDocument* const function = load();
    return function;
}

bool IsRasterizerInstalled() {
    const std::wstring path = pathOfModule();
    return !path.empty() && GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

} // namespace PageRasterLib
