#include "inspection/source/ContainerListing.h"

#include "inspection/source/DSExceptions.h"
#include "inspection/source/FileReader.h"
#include "inspection/source/MP4Parser.h"
#include "inspection/source/MoskTrackList.h"
#include "inspection/source/StreamTypes.h"

#include "scheduling/imagefile/TextConversion.h"

#include <algorithm>
#include <limits>

namespace KestoThumbnailer {

namespace {

/// Finds the durations of tracks besides (ISO/IEC 14496-12, 8.4.2).
class TrackHeaders : public DSMediaDetNS::MP4Parser {
public:
    using MP4Parser::MP4Parser;

    double secondsOf(std::size_t track) const { return track < durations.size() ? durations[track] : -1; }

protected:
    void onAtomBegin(const AtomHeader& atom) override {
        MP4Parser::onAtomBegin(atom);
        if (atom.type == "mdhd" && !tracks().empty())
            onMdhd();
    }

private:
    void onMdhd() {
        const bool isShort = readWord() >> 24 == 0;
        skip(isShort ? 8 : 16); // creation and modification
        const std::uint32_t unitsPerSecond = readWord();
        const std::uint64_t units = isShort ? readWord() : readLong();
        const std::uint64_t unknown =
            isShort ? std::numeric_limits<std::uint32_t>::max() : std::numeric_limits<std::uint64_t>::max();
        durations.resize(tracks().size(), -1);
        if (unitsPerSecond != 0 && units != unknown)
            durations.back() = static_cast<double>(units) / unitsPerSecond;
    }

    std::vector<double> durations;
};

void AddSources(const std::wstring& path, std::vector<ListedTrack>& tracks) {
    std::vector<std::pair<std::int32_t, std::int32_t>> recorded;
    if (!ReadMoskTrackList(Utf8FromWide(path), recorded))
        return;
    for (std::size_t index = 0; index < std::min(tracks.size(), recorded.size()); ++index)
        tracks[index].recordedFrom = recorded[index].second;
}

} // namespace

std::vector<ListedTrack> ListTracks(const std::wstring& path) {
    TrackHeaders headers(std::make_unique<FileReader>());
    try {
        headers.parse(path);
    } catch (const MP4ParseException&) {
        // What was found until then is the answer.
    }
    std::vector<ListedTrack> tracks;
    for (const StreamTypeRecord& stream : FindStreamTypes(path)) {
        ListedTrack& track = tracks.emplace_back();
        const std::size_t index = tracks.size() - 1;
        track.kind = stream.trackType;
        track.format = stream.format;
        track.seconds = headers.secondsOf(index);
        if (track.kind == 0 && index < headers.tracks().size()) {
            track.width = headers.tracks()[index].width;
            track.height = headers.tracks()[index].height;
        }
    }
    if (LowerAscii(path).ends_with(L".mosk"))
        AddSources(path, tracks);
    return tracks;
}

} // namespace KestoThumbnailer
