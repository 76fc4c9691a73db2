#include "inspection/source/FileSignatures.h"

#include "inspection/source/FileHandle.h"
#include "platform/DirectShowGuids.h"
#include "platform/System.h"

#include <algorithm>
#include <array>
#include <string>

namespace {

using namespace std::string_view_literals; // NOLINT(google-build-using-namespace): bytes that may be 0

constexpr std::string_view all4 = "\xFF\xFF\xFF\xFF"sv;
constexpr std::string_view all8 = "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"sv;
constexpr SignaturePattern riff = {0, 4, all4, "RIFF"sv};

constexpr std::array avi = {riff, SignaturePattern{8, 4, all4, "AVI "sv}};

constexpr std::array mpegAudioFrame = {SignaturePattern{0, 2, "\xFF\xE0"sv, "\xFF\xE0"sv}};

// Deliberate: the size in the tag should have clear upper bits, but value and mask have changed places, so
// that no file matches. A file with a tag is told by its extension.
constexpr std::array id3Tag = {SignaturePattern{0, 10, "\xFF\xFF\xFF\xFF\x00\x00\x00\x00\x00\x00"sv,
                                                "ID3\x03\x00\x80\x80\x80\x80\x00"sv}};

constexpr std::array wave = {riff, SignaturePattern{8, 4, all4, "WAVE"sv}};

constexpr std::array mpegVideo = {SignaturePattern{0, 4, all4, "\x00\x00\x01\xB3"sv}};

constexpr std::array mpegSystem = {
    SignaturePattern{0, 16, "\xFF\xFF\xFF\xFF\xF1\x00\x01\x00\x01\x80\x00\x01\xFF\xFF\xFF\xFF"sv,
                     "\x00\x00\x01\xBA\x21\x00\x01\x00\x01\x80\x00\x01\x00\x00\x01\xBB"sv}};

constexpr std::array videoCd = {riff, SignaturePattern{8, 8, all8, "CDXAfmt "sv},
                                SignaturePattern{36, 20,
                                                 "\xFF\xFF\xFF\xFF\x00\x00\x00\x00"
                                                 "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"sv,
                                                 "data\x00\x00\x00\x00\x00"
                                                 "\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF\x00"sv}};

constexpr std::array<FileSignature, 7> signatures = {{
    {MEDIASUBTYPE_Avi, avi},
    {MEDIASUBTYPE_MPEG1Audio, mpegAudioFrame},
    {MEDIASUBTYPE_MPEG1Audio, id3Tag},
    {MEDIASUBTYPE_WAVE, wave},
    {MEDIASUBTYPE_MPEG1Video, mpegVideo},
    {MEDIASUBTYPE_MPEG1System, mpegSystem},
    {MEDIASUBTYPE_MPEG1VideoCD, videoCd},
}};

bool MatchesPattern(FileHandle& file, const SignaturePattern& pattern) {
    if (pattern.mask.size() != pattern.byteCount || pattern.value.size() != pattern.byteCount)
        return false;
    if (!file.seek(pattern.offset, pattern.offset < 0 ? FILE_END : FILE_BEGIN))
        return false;
    std::string bytes(pattern.byteCount, '\0');
    if (file.read(bytes.data(), pattern.byteCount) != pattern.byteCount)
        return false;
    for (std::size_t place = 0; place < bytes.size(); ++place) {
        if ((bytes[place] & pattern.mask[place]) != pattern.value[place])
            return false;
    }
    return true;
}

} // namespace

std::span<const FileSignature> FileSignatures() {
    return signatures;
}

bool MatchesSignature(FileHandle& file, const FileSignature& signature) {
    return std::all_of(signature.patterns.begin(), signature.patterns.end(),
                       [&file](const SignaturePattern& pattern) { return MatchesPattern(file, pattern); });
}
