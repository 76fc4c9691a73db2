#include "inspection/source/MediaFoundationInspection.h"

#include "inspection/source/MediaPath.h"
#include "inspection/source/PngTrackMovie.h"
#include "inspection/source/WindowsVersionProvider.h"
#include "scheduling/imagefile/TextConversion.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace {

template <std::size_t count>
bool IsAnyOf(const std::wstring& text, const std::array<std::wstring_view, count>& list) {
    return std::find(list.begin(), list.end(), text) != list.end();
}

constexpr std::array<std::wstring_view, 2> recordings = {L"mosk", L"plumex"};
constexpr std::array<std::wstring_view, 2> sinceWindows8 = {L"mts", L"m2ts"};
constexpr std::array<std::wstring_view, 4> notBeforeWindows8 = {L"mov", L"mp4", L"mts", L"m2ts"};
constexpr std::array<std::wstring_view, 7> always = {L"wmv", L"wma", L"mp3", L"mp4", L"mov", L"wav", L"m4a"};

} // namespace

bool UseMediaFoundationInspection(const std::wstring& path, std::int32_t /*reserved1*/,
                                  const boost::shared_ptr<WindowsVersionProvider>& versionProvider) {
    const std::wstring extension =
        KestoThumbnailer::LowerAscii(ExtensionOfMediaPath(ParseMediaPath(path, anyTrack)));
    if (IsAnyOf(extension, recordings))
        return false;
    if (extension == L"mov" && HasPngVideoTrack(path) != 0)
        return true;
    if (!versionProvider)
        return false;
    const bool isLate = versionProvider->IsWindows8OrLater();
    if (isLate && IsAnyOf(extension, sinceWindows8))
        return true;
    if (!isLate && IsAnyOf(extension, notBeforeWindows8))
        return false;
    return IsAnyOf(extension, always);
}
