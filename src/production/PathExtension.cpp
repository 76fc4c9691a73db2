#include "production/PathExtension.h"

#include "scheduling/imagefile/TextConversion.h"

#include <string_view>

namespace KestoThumbnailer {

bool ExtensionOf(const wchar_t* path, std::wstring* extension) {
    std::wstring_view name(path);
    // Deliberate: a forward slash separates nothing, so "a.b/file" has the extension "b/file".
    name.remove_prefix(name.rfind(L'\\') + 1); // npos + 1 is 0
    const std::size_t dot = name.rfind(L'.');
    if (dot == std::wstring_view::npos) {
        extension->clear();
        return false;
    }
    extension->assign(name.substr(dot + 1));
    return true;
}

std::wstring LowerExtensionOf(const std::wstring& path) {
    std::wstring extension;
    ExtensionOf(path.c_str(), &extension);
    return LowerAscii(extension);
}

} // namespace KestoThumbnailer
