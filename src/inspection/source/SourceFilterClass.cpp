#include "inspection/source/SourceFilterClass.h"

#include "inspection/source/InstallMode.h"
#include "inspection/source/PathText.h"
#include "platform/DirectShowGuids.h"
#include "scheduling/imagefile/TextConversion.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

constexpr CLSID containerSource = {
    0xD59FB900, 0xED16, 0x41EB, {0xA3, 0x9C, 0xA2, 0xAF, 0x97, 0x98, 0xA7, 0xAC}};
constexpr CLSID containerSourceOfModeOne = {
    0x8CF33D00, 0x58CA, 0x4D63, {0x98, 0xFB, 0x37, 0x21, 0x29, 0xDE, 0xAC, 0x90}};
constexpr CLSID pictureSource = {
    0xD59FB903, 0xED16, 0x41EB, {0xA3, 0x9C, 0xA2, 0xAF, 0x97, 0x98, 0xA7, 0xAC}};
constexpr CLSID pictureSourceOfModeOne = {
    0x8CF33D04, 0x58CA, 0x4D63, {0x98, 0xFB, 0x37, 0x21, 0x29, 0xDE, 0xAC, 0x90}};

constexpr std::array<std::wstring_view, 10> plainExtensions = {L"mp4", L"mov",  L"mp3", L"wav",  L"avi",
                                                               L"mpg", L"mpeg", L"mts", L"m2ts", L"mosk"};
constexpr std::array<std::wstring_view, 2> windowsMediaExtensions = {L"wmv", L"wma"};
constexpr std::array<std::wstring_view, 5> pictureExtensions = {L"png", L"bmp", L"jpg", L"jpeg", L"gif"};

template <std::size_t count>
bool IsAnyOf(std::wstring_view text, const std::array<std::wstring_view, count>& list) {
    return std::find(list.begin(), list.end(), text) != list.end();
}

} // namespace

GUID SourceFilterClassForPath(const std::wstring& path) {
    const std::wstring lowered = KestoThumbnailer::LowerAscii(path);
    if (lowered.find(L".plumex!") != std::wstring::npos)
        return IsInstallModeOne() == 1 ? containerSourceOfModeOne : containerSource;
    const std::wstring_view extension = BehindLastDot(lowered);
    if (IsAnyOf(extension, plainExtensions))
        return CLSID_AsyncReader;
    if (IsAnyOf(extension, windowsMediaExtensions))
        return CLSID_WMAsfReader;
    if (IsAnyOf(extension, pictureExtensions))
        return IsInstallModeOne() == 1 ? pictureSourceOfModeOne : pictureSource;
    return GUID_NULL;
}
