#include "inspection/source/GraphKey.h"

#include "inspection/source/PathText.h"
#include "scheduling/imagefile/TextConversion.h"

std::wstring GraphKeyForPath(const std::wstring& path) {
    const std::wstring lowered = KestoThumbnailer::LowerAscii(path);
    if (lowered.find(L".plumex!") != std::wstring::npos) {
        // The extension before the last "!", whatever stands there. The one of the marker has seven
        // characters before it, so there always are enough.
        constexpr std::size_t extensionLength = std::wstring_view(L"plumex").size();
        return lowered.substr(lowered.rfind(L'!') - extensionLength);
    }
    // Deliberate: a forward slash separates nothing.
    return std::wstring(BehindLastDot(std::wstring_view(lowered).substr(lowered.rfind(L'\\') + 1)));
}
