#include "inspection/source/MoskTrackList.h"

#include "scheduling/imagefile/TextConversion.h"

#include "platform/FileAttributes.h"
#include "platform/LockRanks.h"
#include "platform/MOSK.h"
#include "platform/Threading.h"

#include <map>
#include <optional>

namespace {

using TrackList = std::vector<std::pair<std::int32_t, std::int32_t>>;

struct KeptList {
    TrackList tracks;
    std::uint64_t lastWrite = 0;
};

struct ListCache {
    Mutex lock{LockRanks::moskTrackLists}; // held while a file is read, so that it is read once
    std::map<std::string, KeptList> lists KESTO_GUARDED_BY(lock); // grows for the life of the process
};

ListCache& cache() {
    static ListCache lists;
    return lists;
}

std::optional<std::uint64_t> lastWriteOf(const std::string& path) {
    WIN32_FILE_ATTRIBUTE_DATA found{};
    if (!GetFileAttributesExW(KestoThumbnailer::WideFromUtf8(path).c_str(), GetFileExInfoStandard, &found))
        return std::nullopt;
    constexpr unsigned lowBits = 32;
    return std::uint64_t{found.ftLastWriteTime.dwHighDateTime} << lowBits |
           found.ftLastWriteTime.dwLowDateTime;
}

/// `kind` and `sourceCode` of `SourceRecord`.
std::pair<std::int32_t, std::int32_t> pairOf(std::int32_t typeCode) {
    constexpr std::int32_t screen = 100;
    constexpr std::int32_t camera = 101;
    constexpr std::int32_t microphone = 102;
    constexpr std::int32_t systemSound = 103;
    switch (typeCode) {
    case screen:
        return {3, typeCode};
    case camera:
        return {1, typeCode};
    case microphone:
    case systemSound:
        return {2, typeCode};
    default: // the numbers are those of another library, which may know more
        return {0, 0};
    }
}

TrackList readTracks(const std::string& path) {
    constexpr int sampleRate = 44100;
    constexpr int channels = 1; // plays no part in the list
    TrackList list;
    const auto reader = MOSK::Reader::create(
        path, MOSK::AudioFormat::create16BitSignedInterleaved(sampleRate, channels), nullptr);
    if (!reader)
        return list;
    for (const auto& track : reader->tracks())
        list.push_back(pairOf(track->typeCode()));
    return list;
}

} // namespace

bool ReadMoskTrackList(const std::string& path, TrackList& tracks) {
    const std::optional<std::uint64_t> lastWrite = lastWriteOf(path);
    if (!lastWrite)
        return false;
    ListCache& kept = cache();
    const MutexLock held(kept.lock);
    const auto found = kept.lists.find(path);
    if (found != kept.lists.end() && found->second.lastWrite == *lastWrite) {
        tracks = found->second.tracks;
        return true;
    }
    tracks = readTracks(path);
    kept.lists.insert_or_assign(path, KeptList{tracks, *lastWrite});
    return true;
}
