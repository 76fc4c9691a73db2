#include "inspection/source/PngTrackMovie.h"

#include "inspection/source/MediaPath.h"
#include "inspection/source/StreamTypes.h"
#include "platform/System.h"
#include "platform/Threading.h"
#include "scheduling/imagefile/TextConversion.h"

#include <algorithm>
#include <map>
#include <optional>

namespace {

bool IsPngVideo(const StreamTypeRecord& stream) {
    return stream.trackType == 0 && stream.format == "png ";
}

/// The first answer for each path.
class FirstAnswers {
public:
    std::optional<std::uint32_t> find(const std::wstring& path) KESTO_EXCLUDES(lock) {
        const MutexLock held(lock);
        const auto known = answers.find(path);
        return known == answers.end() ? std::nullopt : std::optional(known->second);
    }

    /// What counts for `path` from now on: an earlier answer rather than this one.
    std::uint32_t keep(const std::wstring& path, std::uint32_t answer) KESTO_EXCLUDES(lock) {
        const MutexLock held(lock);
        return answers.emplace(path, answer).first->second;
    }

private:
    Mutex lock{LockRanks::pngTrackMovies}; // not held while a file is read
    std::map<std::wstring, std::uint32_t> answers KESTO_GUARDED_BY(lock);
};

FirstAnswers& KnownMovies() {
    static FirstAnswers known;
    return known;
}

} // namespace

std::uint32_t HasPngVideoTrack(const std::wstring& path) {
    const std::wstring extension = ExtensionOfMediaPath(ParseMediaPath(path, anyTrack));
    if (KestoThumbnailer::LowerAscii(extension) != L"mov" || !PathFileExistsW(path.c_str()))
        return 0;
    const auto streams = FindStreamTypes(path);
    return std::any_of(streams.begin(), streams.end(), IsPngVideo) ? 1 : 0;
}

std::uint32_t IsPngTrackMovie(const std::wstring& path) {
    if (const auto known = KnownMovies().find(path))
        return *known;
    return KnownMovies().keep(path, HasPngVideoTrack(path));
}
