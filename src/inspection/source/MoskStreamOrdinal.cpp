#include "inspection/source/MoskStreamOrdinal.h"

#include "inspection/source/MediaPath.h"
#include "platform/MOSK.h"
#include "scheduling/imagefile/TextConversion.h"

namespace {

struct TrackCounts {
    std::int32_t video = 0;
    std::int32_t audio = 0;
};

constexpr std::int32_t videoTrack = 0;
constexpr std::int32_t audioTrack = 1;

/// Of the tracks before `index`.
TrackCounts CountTracks(const std::vector<boost::shared_ptr<MOSK::MP4TrackReader>>& tracks,
                        std::uint32_t index) {
    TrackCounts counts;
    for (std::uint32_t track = 0; track < index; ++track) {
        const MOSK::MP4TrackReader& reader = *tracks[track];
        if (reader.kind() == videoTrack && reader.format() != "qrl2")
            ++counts.video;
        else if (reader.kind() == audioTrack)
            ++counts.audio;
    }
    return counts;
}

} // namespace

std::int32_t MoskStreamOrdinal(const std::wstring& path) {
    const SourceRecord record = ParseMediaPath(path, anyTrack);
    if (KestoThumbnailer::LowerAscii(ExtensionOfMediaPath(record)) != L"mosk")
        return 0;
    const auto reader = MOSK::Reader::create(
        KestoThumbnailer::Utf8FromWide(record.folder + record.containerName),
        // Deliberate: the track list asks for one channel. The tracks do not depend on it.
        MOSK::AudioFormat::create16BitSignedInterleaved(44100, 2), nullptr);
    if (!reader)
        return 0;
    const auto tracks = reader->tracks();
    if (record.index >= tracks.size())
        return 0;
    const TrackCounts counts = CountTracks(tracks, record.index);
    switch (record.kind) {
    case 1:
    case 3:
        return counts.video;
    case 2:
        return counts.audio;
    default:
        return 0;
    }
}
