#include "inspection/source/ContainerListing.h"

#include "inspection/source/DSExceptions.h"
#include "inspection/source/FileReader.h"
#include "inspection/source/MP4Parser.h"
#include "inspection/source/MoskTrackList.h"
#include "inspection/source/StreamTypes.h"

#include "scheduling/imagefile/TextConversion.h"

#include "platform/FrameCodecListing.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <utility>

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
        // The header of a file in fragments counts none of the samples in them.
        if (unitsPerSecond != 0 && units != 0 && units != unknown)
            durations.back() = static_cast<double>(units) / unitsPerSecond;
    }

    std::vector<double> durations;
};

bool IsQuarterTurn(const DisplayMatrix& matrix) {
    return matrix.a == 0 && matrix.d == 0 && matrix.b != 0 && matrix.c != 0;
}

void TakeSize(ListedTrack& track, const TrackRecord& header) {
    track.width = header.width;
    track.height = header.height;
    if (IsQuarterTurn(header.matrix))
        std::swap(track.width, track.height);
}

std::vector<ListedTrack> WalkedTracks(const std::wstring& path) {
    TrackHeaders headers(std::make_unique<FileReader>());
    try {
        headers.parse(path);
    } catch (const MP4ParseException&) {
        // What was found until then is the answer.
    }
    std::vector<ListedTrack> tracks;
    for (const StreamTypeRecord& stream : FindStreamTypes(path)) {
        const std::size_t index = tracks.size();
        ListedTrack& track = tracks.emplace_back();
        track.kind = stream.trackType;
        track.format = stream.format;
        track.seconds = headers.secondsOf(index);
        if (track.kind == 0 && index < headers.tracks().size())
            TakeSize(track, headers.tracks()[index]);
    }
    return tracks;
}

std::int32_t KindOf(FrameCodecLib::StreamContent content) {
    switch (content) {
    case FrameCodecLib::StreamContent::Video:
        return 0;
    case FrameCodecLib::StreamContent::Audio:
        return 1;
    case FrameCodecLib::StreamContent::Other:
        return 2;
    }
    return 2;
}

ListedTrack TrackOf(const FrameCodecLib::ListedStream& stream) {
    ListedTrack track;
    track.kind = KindOf(stream.content);
    track.format = stream.format;
    track.width = static_cast<std::uint32_t>(std::max(stream.width, 0));
    track.height = static_cast<std::uint32_t>(std::max(stream.height, 0));
    if (stream.duration)
        track.seconds = boost::rational_cast<double>(*stream.duration);
    return track;
}

TrackListing OpenedTracks(const std::wstring& path) {
    FrameCodecLib::StreamListing opened = FrameCodecLib::ListStreams(Utf8FromWide(path));
    TrackListing listing{std::move(opened.container), {}};
    std::transform(opened.streams.begin(), opened.streams.end(), std::back_inserter(listing.tracks), TrackOf);
    return listing;
}

bool LacksDuration(const ListedTrack& track) {
    return track.kind != 2 && track.seconds < 0;
}

/// The headers of a file in fragments do not tell them.
void AddDurations(const std::wstring& path, std::vector<ListedTrack>& tracks) {
    const std::vector<ListedTrack> opened = OpenedTracks(path).tracks;
    if (opened.size() != tracks.size())
        return; // a damaged file, and which track is which is not known
    for (std::size_t index = 0; index < tracks.size(); ++index)
        if (LacksDuration(tracks[index]))
            tracks[index].seconds = opened[index].seconds;
}

void AddSources(const std::wstring& path, std::vector<ListedTrack>& tracks) {
    std::vector<std::pair<std::int32_t, std::int32_t>> recorded;
    if (!ReadMoskTrackList(Utf8FromWide(path), recorded))
        return;
    for (std::size_t index = 0; index < std::min(tracks.size(), recorded.size()); ++index)
        tracks[index].recordedFrom = recorded[index].second;
}

} // namespace

TrackListing ListTracks(const std::wstring& path) {
    TrackListing listing{"mp4", WalkedTracks(path)};
    if (listing.tracks.empty())
        listing = OpenedTracks(path);
    else if (std::any_of(listing.tracks.begin(), listing.tracks.end(), LacksDuration))
        AddDurations(path, listing.tracks);
    if (listing.container == "mp4" && LowerAscii(path).ends_with(L".mosk")) {
        listing.container = "mosk";
        AddSources(path, listing.tracks);
    }
    return listing;
}

} // namespace KestoThumbnailer
