#include "inspection/source/FilterCacheSeeds.h"
#include "inspection/source/GraphKey.h"
#include "inspection/source/MediaPath.h"
#include "inspection/source/MediaSubtype.h"
#include "inspection/source/MoskTrackList.h"
#include "inspection/source/SourceFilterClass.h"
#include "scheduling/imagefile/TextConversion.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include <sys/mman.h>
#include <unistd.h>

// An input is a path up to its first line's end, and behind that the bytes of a file.

// No file is opened for the path: each recording has these tracks.
bool ReadMoskTrackList(const std::string& /*path*/,
                       std::vector<std::pair<std::int32_t, std::int32_t>>& tracks) {
    tracks = {{3, 100}, {1, 101}};
    return true;
}

namespace {

void require(bool holds) {
    if (!holds)
        std::abort();
}

/// A file in memory that a path leads to.
class MemoryFile {
public:
    explicit MemoryFile(std::string_view bytes)
        : descriptor(::memfd_create("media", MFD_CLOEXEC)) {
        require(descriptor >= 0);
        require(::write(descriptor, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()));
    }
    ~MemoryFile() { ::close(descriptor); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    std::wstring path() const { return L"/proc/self/fd/" + std::to_wstring(descriptor); }

private:
    int descriptor;
};

void checkFile(const std::wstring& path) {
    const SourceRecord record = ParseMediaPath(path, anyTrack);
    require(record.folder + record.memberName == path);
    require(record.memberName.starts_with(record.containerName));
    require(record.kind >= 0 && record.kind <= 9 && record.index <= 9);
    require((record.kind == 0) == (record.containerName == record.memberName));
    require(record.sourceCode == 0 || (record.sourceCode >= 100 && record.sourceCode <= 105));
    require(IsMoskMemberPath(path) == (record.kind >= 1 && record.kind <= 3));
}

void checkTrack(const std::wstring& path) {
    for (const std::uint32_t index : {0U, 1U, 2U}) {
        const SourceRecord record = ParseMediaPath(path, index);
        require(record.folder + record.memberName == path);
        require(record.kind >= 0 && record.kind <= 9);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t lineEnd = std::min(input.find('\n'), size);
    const std::wstring path = KestoThumbnailer::WideFromUtf8(input.substr(0, lineEnd));
    checkFile(path);
    checkTrack(path);
    require(GraphKeyForPath(path).size() <= path.size());
    (void)SourceFilterClassForPath(path);
    require(FilterCacheSeedsForPath(path).size() <= 3);
    const MemoryFile file(input.substr(std::min(lineEnd + 1, size)));
    (void)MediaSubtypeForFile(file.path());
    return 0;
}
