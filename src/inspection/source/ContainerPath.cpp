#include "inspection/source/ContainerPath.h"

#include "inspection/source/StructuredStorage.h"

#include "scheduling/imagefile/TextConversion.h"

#include "platform/System.h"

#include <algorithm>
#include <string_view>
#include <vector>

using KestoThumbnailer::LowerAscii;

namespace {

constexpr std::wstring_view containerExtension = L".plumex";
constexpr std::wstring_view memberMarker = L".plumex!";

int FileExists(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES ? 1 : 0;
}

bool ListsElement(NuvraUtl::StructuredStorage& container, const std::wstring& lowerCaseName) {
    std::vector<std::wstring> names;
    container.ListElements(names);
    return std::any_of(names.begin(), names.end(),
                       [&](const std::wstring& name) { return LowerAscii(name) == lowerCaseName; });
}

} // namespace

int SplitContainerPath(const std::wstring& path, std::wstring& diskPath, std::wstring& memberName) {
    // Deliberate: the letter case of the caller's path is lost, for the container as for the member.
    diskPath = LowerAscii(path);
    if (diskPath.find(containerExtension) == std::wstring::npos)
        return 1;
    const std::size_t marker = diskPath.find(memberMarker);
    if (marker == std::wstring::npos)
        return 1;
    memberName = diskPath.substr(marker + memberMarker.size());
    diskPath.resize(marker + containerExtension.size());
    return 0;
}

int MemberExists(const std::wstring& path) {
    std::wstring container;
    std::wstring member;
    if (SplitContainerPath(path, container, member) != 0)
        return FileExists(path);
    // Deliberate: only a backslash makes a folder here. A member whose path has slashes alone does not exist.
    if (container.rfind(L'\\') == std::wstring::npos)
        return 0;
    if (member.empty())
        return FileExists(path);
    NuvraUtl::StructuredStorage storage;
    if (storage.Open(container) == 0)
        return FileExists(path);
    return ListsElement(storage, member) ? 1 : 0;
}
