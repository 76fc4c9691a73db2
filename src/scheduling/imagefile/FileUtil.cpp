#include "scheduling/imagefile/FileUtil.h"

#include "platform/System.h"

#include <algorithm>
#include <cctype>
#include <stdexcept>
#include <string_view>

namespace KestoThumbnailer {

namespace {

constexpr std::wstring_view testProgramName = L"KestoThumbnailerTest.exe";

[[noreturn]] void FailForWantOfPath() {
    // Deliberate: the module's path fails with the same words as the path for temporary files.
    throw std::runtime_error("Could not get system temp path");
}

} // namespace

bool FileUtil::fileExists(const std::string& path) {
    struct _stat64i32 status = {};
    return _stat64i32(path.c_str(), &status) == 0;
}

std::string FileUtil::toLower(const std::string& text) {
    std::string lower = text;
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return lower;
}

std::string FileUtil::extension(const std::string& path) {
    // Deliberate: a "." in a folder's name counts; names of tiles are split and joined by the same rule.
    const std::size_t dot = path.rfind('.');
    return dot == std::string::npos ? std::string() : toLower(path.substr(dot + 1));
}

std::string FileUtil::fullPathWithoutExtension(const std::string& path) {
    const std::size_t dot = path.rfind('.');
    // Deliberate: only a path that is cut is lower-cased.
    return dot == std::string::npos ? path : toLower(path.substr(0, dot));
}

void FileUtil::SafeDeleteFile(const std::string& path) {
    if (fileExists(path))
        (void)_unlink(path.c_str()); // nobody waits for the outcome
}

std::wstring FileUtil::_GetTempPath() {
    const DWORD needed = GetTempPathW(0, nullptr);
    if (needed == 0)
        FailForWantOfPath();
    std::wstring path(needed, L'\0');
    const DWORD length = GetTempPathW(needed, path.data());
    if (length == 0 || length > needed)
        FailForWantOfPath();
    path.resize(length);
    return path;
}

std::wstring FileUtil::_GetModulePathForKtnTest() {
    std::wstring path(2048, L'\0');
    const DWORD size = static_cast<DWORD>(path.size());
    const DWORD length = GetModuleFileNameW(nullptr, path.data(), size);
    if (length == 0 || length == size) // a path that was cut to fit is none
        FailForWantOfPath();
    path.resize(length - std::min<std::size_t>(length, testProgramName.size()));
    return path;
}

} // namespace KestoThumbnailer
