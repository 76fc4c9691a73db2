#include "inspection/source/MediaPath.h"

#include "inspection/source/MemberName.h"
#include "inspection/source/MoskTrackList.h"
#include "inspection/source/PathText.h"
#include "scheduling/imagefile/TextConversion.h"

#include <string_view>

namespace {

bool EndsInMosk(const std::wstring& path) {
    constexpr std::wstring_view ending = L".mosk";
    return path.size() >= ending.size() &&
           KestoThumbnailer::LowerAscii(path.substr(path.size() - ending.size())) == ending;
}

/// Where the file part begins.
std::size_t FilePartOf(const std::wstring& path) {
    const std::size_t backslash = path.rfind(L'\\');
    const std::size_t slash = path.rfind(L'/');
    // Deliberate: a missing backslash counts as standing behind any slash, so slashes alone separate nothing,
    // and the whole path is the file part. Joined again, the parts name the same file.
    const bool atSlash = slash != std::wstring::npos && backslash <= slash;
    return (atSlash ? slash : backslash) + 1; // npos + 1 is 0
}

SourceRecord SplitPath(const std::wstring& path) {
    const std::size_t filePart = FilePartOf(path);
    SourceRecord record;
    record.folder = path.substr(0, filePart);
    record.memberName = path.substr(filePart);
    record.containerName = record.memberName;
    return record;
}

void SplitMember(SourceRecord& record) {
    const std::size_t mark = record.memberName.rfind(L'!');
    if (mark == std::wstring::npos || mark == 0)
        return;
    const std::wstring_view name = std::wstring_view(record.memberName).substr(mark + 1);
    const MemberName member = ClassifyMemberName(name);
    if (member.kind == 0)
        return;
    record.containerName = record.memberName.substr(0, mark);
    record.kind = member.kind;
    record.index = member.index;
    record.sourceCode = SourceCodeOfMember(name);
}

SourceRecord ParseTrack(const std::wstring& path, std::uint32_t index) {
    std::vector<std::pair<std::int32_t, std::int32_t>> tracks;
    if (!ReadMoskTrackList(KestoThumbnailer::Utf8FromWide(path), tracks))
        return {};
    SourceRecord record = SplitPath(path);
    record.index = index;
    if (index < tracks.size()) {
        record.kind = tracks[index].first;
        record.sourceCode = tracks[index].second;
    }
    return record;
}

} // namespace

SourceRecord ParseMediaPath(const std::wstring& path, std::uint32_t index) {
    if (EndsInMosk(path) && index != anyTrack)
        return ParseTrack(path, index);
    SourceRecord record = SplitPath(path);
    SplitMember(record);
    return record;
}

std::wstring ExtensionOfMediaPath(const SourceRecord& record) {
    return std::wstring(BehindLastDot(record.containerName));
}

bool IsMoskMemberPath(const std::wstring& path) {
    const std::int32_t kind = ParseMediaPath(path, anyTrack).kind;
    return kind >= 1 && kind <= 3;
}
