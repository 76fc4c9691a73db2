#include "inspection/source/MediaSubtype.h"

#include "inspection/source/FileHandle.h"
#include "inspection/source/FileSignatures.h"
#include "inspection/source/PathText.h"
#include "platform/DirectShowGuids.h"
#include "scheduling/imagefile/TextConversion.h"

#include <array>
#include <string_view>

namespace {

struct ExtensionSubtype {
    std::wstring_view extension;
    GUID subtype;
};

constexpr std::array<ExtensionSubtype, 5> subtypesOfExtensions = {{
    {L"avi", MEDIASUBTYPE_Avi},
    {L"mp3", MEDIASUBTYPE_MPEG1Audio},
    {L"wav", MEDIASUBTYPE_WAVE},
    {L"mpg", MEDIASUBTYPE_MPEG1System},
    {L"mpeg", MEDIASUBTYPE_MPEG1System},
}};

GUID SubtypeOfExtension(std::wstring_view extension) {
    for (const ExtensionSubtype& known : subtypesOfExtensions) {
        if (known.extension == extension)
            return known.subtype;
    }
    return MEDIASUBTYPE_None;
}

} // namespace

GUID MediaSubtypeForFile(const std::wstring& path) {
    const std::wstring extension = KestoThumbnailer::LowerAscii(std::wstring(BehindLastDot(path)));
    FileHandle file;
    if (extension == L"mosk" || !file.open(path))
        return MEDIASUBTYPE_None;
    for (const FileSignature& signature : FileSignatures()) {
        if (MatchesSignature(file, signature))
            return signature.subtype;
    }
    return SubtypeOfExtension(extension);
}
