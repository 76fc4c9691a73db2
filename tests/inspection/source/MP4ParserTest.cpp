#include "inspection/source/MP4Parser.h"
#include "inspection/source/DSExceptions.h"
#include "inspection/source/FileReader.h"

#include "inspection/source/MemoryReader.h"
#include "inspection/source/Mp4Bytes.h"
#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include <gtest/gtest.h>

namespace {

using namespace Mp4Bytes; // NOLINT(google-build-using-namespace): the vocabulary of this file
using DSMediaDetNS::MP4Parser;

enum class End { Reached, Thrown };

struct Parsed {
    std::vector<TrackRecord> tracks;
    DisplayMatrix movieMatrix;
    End end;
};

Parsed parsed(std::unique_ptr<IStreamReader> reader, const std::wstring& path = L"") {
    MP4Parser parser(std::move(reader));
    End end = End::Reached;
    try {
        parser.parse(path);
    } catch (const MP4ParseException&) {
        end = End::Thrown;
    }
    return {parser.tracks(), parser.movieMatrix(), end};
}

Parsed parsed(const std::string& bytes) {
    return parsed(std::make_unique<MemoryReader>(bytes));
}

std::string movie(const std::string& tracks, const std::string& header = mvhd()) {
    return ftyp() + atom("moov", header + tracks) + atom("mdat", "samples");
}

/// The one track of a movie that has no other.
TrackRecord oneTrack(const std::string& track) {
    const Parsed found = parsed(movie(track));
    EXPECT_EQ(found.end, End::Reached);
    EXPECT_EQ(found.tracks.size(), 1U);
    return found.tracks.empty() ? TrackRecord() : found.tracks.front();
}

TrackRecord trackOf(const Tkhd& header) {
    return oneTrack(atom("trak", header.bytes()));
}

/// A video track with this description.
TrackRecord describedTrack(const std::string& description) {
    return oneTrack(videoTrak({.width = 320, .height = 240}, description));
}

std::string textOf(const DisplayMatrix& matrix) {
    std::string text;
    for (const double value : {matrix.a, matrix.b, matrix.c, matrix.d})
        text += std::to_string(value).substr(0, 5) + ' ';
    return text;
}

const std::string identity = textOf({});

TEST(MP4Parser, ReadsTheHeaderOfATrack) {
    const TrackRecord track = trackOf({.trackId = 7, .volume = 0x0180, .width = 1920, .height = 1080});
    EXPECT_EQ(track.width, 1920U);
    EXPECT_EQ(track.height, 1080U);
    EXPECT_EQ(track.volume, 1U);
    EXPECT_EQ(track.trackId, 7U);
    EXPECT_EQ(textOf(track.matrix), identity);
}

TEST(MP4Parser, ReadsTheHeaderOfATrackOfVersion1) {
    const TrackRecord track = trackOf(
        {.version = 1, .trackId = 7, .volume = 0x0100, .matrix = quarterTurn, .width = 640, .height = 480});
    EXPECT_EQ(track.width, 640U);
    EXPECT_EQ(track.height, 480U);
    EXPECT_EQ(track.volume, 1U);
    EXPECT_EQ(track.trackId, 7U);
    EXPECT_EQ(track.matrix.b, 1);
}

TEST(MP4Parser, LeavesDefaultsInATrackOfItsHeaderAlone) {
    const TrackRecord track = trackOf({});
    EXPECT_EQ(track.kind, 2);
    EXPECT_EQ(track.codedWidth, 0);
    EXPECT_EQ(track.codedHeight, 0);
    EXPECT_STREQ(track.format, "");
    EXPECT_EQ(track.hSpacing, 1U);
    EXPECT_EQ(track.vSpacing, 1U);
}

TEST(MP4Parser, ReadsAQuarterTurn) {
    const TrackRecord track = trackOf({.matrix = quarterTurn});
    EXPECT_EQ(track.matrix.a, 0);
    EXPECT_EQ(track.matrix.b, 1);
    EXPECT_EQ(track.matrix.c, -1);
    EXPECT_EQ(track.matrix.d, 0);
}

TEST(MP4Parser, ReadsTheMatrixInSixteenBitsBehindThePoint) {
    const TrackRecord track = trackOf({.matrix = {.a = 0x18000, .b = 1, .c = 0x80000000, .d = 0xFFFF8000}});
    EXPECT_EQ(track.matrix.a, 1.5);
    EXPECT_EQ(track.matrix.b, 1.0 / 65536);
    EXPECT_EQ(track.matrix.c, -32768);
    EXPECT_EQ(track.matrix.d, -0.5);
}

TEST(MP4Parser, TakesAMatrixInPerspectiveForTheIdentity) {
    Matrix matrix = quarterTurn;
    matrix.u = 1;
    EXPECT_EQ(textOf(trackOf({.matrix = matrix}).matrix), identity);
    matrix = quarterTurn;
    matrix.v = 1;
    EXPECT_EQ(textOf(trackOf({.matrix = matrix}).matrix), identity);
    matrix = quarterTurn;
    matrix.w = 0x10000;
    EXPECT_EQ(textOf(trackOf({.matrix = matrix}).matrix), identity);
}

TEST(MP4Parser, DoesNotMindAShift) {
    EXPECT_EQ(trackOf({.matrix = {.a = 0, .b = 0x10000, .x = 0x1000000, .y = 5}}).matrix.b, 1);
}

TEST(MP4Parser, LeavesTheIdentityForTheMatrixOfAnOrdinaryMovie) {
    for (const int version : {0, 1}) {
        const Parsed found = parsed(movie("", mvhd(quarterTurn, version)));
        EXPECT_EQ(found.end, End::Reached);
        EXPECT_EQ(textOf(found.movieMatrix), identity);
    }
}

/// A header of a movie whose matrix stands one word further back.
std::string mvhdWithALateMatrix(int version) {
    const std::size_t before = version == 0 ? 36 : 48;
    return atom("mvhd",
                word(static_cast<std::uint32_t>(version) << 24) + zeros(before) + quarterTurn.bytes());
}

TEST(MP4Parser, ReadsTheMatrixOfAMovieOneWordTooFar) {
    for (const int version : {0, 1}) {
        const Parsed found = parsed(movie("", mvhdWithALateMatrix(version)));
        EXPECT_EQ(found.movieMatrix.a, 0) << version;
        EXPECT_EQ(found.movieMatrix.b, 1) << version;
        EXPECT_EQ(found.movieMatrix.c, -1) << version;
        EXPECT_EQ(found.movieMatrix.d, 0) << version;
    }
}

TEST(MP4Parser, ReadsTheMatrixOfAShortHeaderBeyondItsEnd) {
    // The atom ends with the matrix, whose last word is then the size of what follows.
    const std::string header = mvhd().substr(0, mvhd().size() - 28);
    const std::string shortHeader =
        atomOfSize(static_cast<std::uint32_t>(header.size()), "mvhd", header.substr(8));
    const Parsed found = parsed(movie(soundTrak(), shortHeader));
    EXPECT_EQ(found.end, End::Reached);
    EXPECT_EQ(textOf(found.movieMatrix), identity);
    EXPECT_EQ(found.tracks.size(), 1U);
}

TEST(MP4Parser, TellsVideoFromSoundByTheHandler) {
    const Parsed found = parsed(
        movie(videoTrak() + soundTrak() + trak(Tkhd{}.bytes(), hdlr("tmcd"), stsd(1, sampleEntry("tmcd")))));
    ASSERT_EQ(found.tracks.size(), 3U);
    EXPECT_EQ(found.tracks[0].kind, 0);
    EXPECT_EQ(found.tracks[1].kind, 1);
    EXPECT_EQ(found.tracks[2].kind, 2);
}

TEST(MP4Parser, IgnoresAHandlerDirectlyBelowATrack) {
    EXPECT_EQ(oneTrack(atom("trak", Tkhd{}.bytes() + hdlr("vide"))).kind, 2);
}

TEST(MP4Parser, MakesATrackForAHandlerThatComesFirst) {
    const TrackRecord track = oneTrack(atom("trak", atom("mdia", hdlr("vide"))));
    EXPECT_EQ(track.kind, 0);
    EXPECT_EQ(track.width, 0U);
}

TEST(MP4Parser, MakesATrackForADescriptionThatComesFirst) {
    EXPECT_STREQ(oneTrack(stsd(1, sampleEntry("mp4a"))).format, "mp4a");
}

TEST(MP4Parser, ReadsEightBytesBeyondAHandler) {
    const std::string inFile =
        ftyp() + atom("moov", atom("trak", Tkhd{}.bytes() + atom("mdia", hdlr("vide"))));
    EXPECT_EQ(parsed(inFile).end, End::Thrown);
    EXPECT_EQ(parsed(inFile).tracks.at(0).kind, 2) << "the kind is told behind the name";
    EXPECT_EQ(parsed(inFile + zeros(7)).end, End::Thrown);
    EXPECT_EQ(parsed(inFile + atom("free")).tracks.at(0).kind, 0);
}

TEST(MP4Parser, ReadsTheCodedSizeOfAvc1) {
    const TrackRecord track = describedTrack(stsd(1, videoEntry("avc1", 1440, 1088)));
    EXPECT_STREQ(track.format, "avc1");
    EXPECT_EQ(track.codedWidth, 1440);
    EXPECT_EQ(track.codedHeight, 1088);
    EXPECT_EQ(track.width, 320U);
}

TEST(MP4Parser, TakesTheCodedSizeAsSigned) {
    const TrackRecord track = describedTrack(stsd(1, videoEntry("avc1", 0x8000, 0xFFFF)));
    EXPECT_EQ(track.codedWidth, -32768);
    EXPECT_EQ(track.codedHeight, -1);
}

TEST(MP4Parser, ReadsTheFormatAloneOfAnythingElse) {
    const TrackRecord track = describedTrack(stsd(1, videoEntry("hvc1", 1440, 1088, pasp(4, 3))));
    EXPECT_STREQ(track.format, "hvc1");
    EXPECT_EQ(track.codedWidth, 0);
    EXPECT_EQ(track.codedHeight, 0);
    EXPECT_EQ(track.hSpacing, 1U);
}

TEST(MP4Parser, ReadsTheAspectOfPixels) {
    const TrackRecord track = describedTrack(stsd(1, videoEntry("avc1", 16, 16, pasp(4, 3))));
    EXPECT_EQ(track.hSpacing, 4U);
    EXPECT_EQ(track.vSpacing, 3U);
}

TEST(MP4Parser, FindsTheAspectOfPixelsAmongOtherExtensions) {
    const TrackRecord track = describedTrack(stsd(
        1, videoEntry("avc1", 16, 16, atom("avcC", "1234") + longAtom("colr") + pasp(4, 3) + atom("btrt"))));
    EXPECT_EQ(track.hSpacing, 4U);
    EXPECT_EQ(track.vSpacing, 3U);
}

TEST(MP4Parser, PassesOverTooFewBytesForAnExtension) {
    const Parsed found =
        parsed(movie(videoTrak({}, stsd(1, videoEntry("avc1", 16, 16, pasp(4, 3) + zeros(7))))));
    EXPECT_EQ(found.end, End::Reached);
    EXPECT_EQ(found.tracks.at(0).hSpacing, 4U);
}

TEST(MP4Parser, LeavesATrackAsItIsForText) {
    const TrackRecord track = describedTrack(stsd(1, videoEntry("text", 16, 16)));
    EXPECT_STREQ(track.format, "");
    EXPECT_EQ(track.codedWidth, 0);
}

TEST(MP4Parser, HasNoTrackForTextAlone) {
    EXPECT_TRUE(parsed(movie(stsd(1, sampleEntry("text")))).tracks.empty());
}

TEST(MP4Parser, HasTheNextAtomsTypeAsFormatAfterASecondDescription) {
    const std::string description = stsd(2, videoEntry("avc1", 16, 8) + videoEntry("avc1", 32, 24));
    const TrackRecord track =
        oneTrack(trak(Tkhd{}.bytes(), hdlr("vide"), description + atom("stts", zeros(8))));
    EXPECT_STREQ(track.format, "stts");
    EXPECT_EQ(track.codedWidth, 16);
    EXPECT_EQ(track.codedHeight, 8);
}

TEST(MP4Parser, ReadsASecondDescriptionBehindTheTrackToo) {
    const std::string description = stsd(2, videoEntry("avc1", 16, 8) + videoEntry("avc1", 32, 24));
    const Parsed found = parsed(movie(videoTrak({}, description) + soundTrak()));
    EXPECT_EQ(found.end, End::Reached);
    ASSERT_EQ(found.tracks.size(), 2U);
    EXPECT_STREQ(found.tracks[0].format, "trak");
    EXPECT_STREQ(found.tracks[1].format, "mp4a");
}

TEST(MP4Parser, ThrowsForASecondDescriptionAtTheEndOfTheFile) {
    const std::string description = stsd(2, videoEntry("avc1", 16, 8) + videoEntry("avc1", 32, 24));
    const Parsed found = parsed(ftyp() + atom("moov", videoTrak({}, description)));
    EXPECT_EQ(found.end, End::Thrown);
    EXPECT_STREQ(found.tracks.at(0).format, "avc1");
    EXPECT_EQ(found.tracks.at(0).codedWidth, 16);
}

TEST(MP4Parser, ReadsNoEntryOfADescriptionThatCountsNone) {
    for (const std::uint32_t count : {0U, 0xFFFFFFFFU}) {
        const TrackRecord track = describedTrack(stsd(count, videoEntry("avc1", 16, 16)));
        EXPECT_STREQ(track.format, "") << count;
        EXPECT_EQ(track.codedWidth, 0) << count;
    }
}

TEST(MP4Parser, TakesTheEntriesForAtomsWhereADescriptionCountsNone) {
    EXPECT_EQ(parsed(movie(stsd(0, Tkhd{.trackId = 9}.bytes()))).tracks.at(1).trackId, 9U);
}

TEST(MP4Parser, TakesWhatFollowsInATrackHeaderForAtoms) {
    const std::string inner = stsd(1, sampleEntry("mp4a"));
    const std::string header = Tkhd{}.bytes();
    EXPECT_STREQ(oneTrack(atom("trak", atom("tkhd", header.substr(8) + inner))).format, "mp4a");
}

TEST(MP4Parser, EndsADescriptionThatCountsMoreEntriesThanThereAre) {
    // Each pass but the first reads the atom behind, which looks like an entry.
    const std::string description = stsd(0x7FFFFFFF, videoEntry("avc1", 16, 8));
    const std::string behind = videoEntry("avc1", 32, 24);
    EXPECT_EQ(parsed(movie(trak(Tkhd{}.bytes(), hdlr("vide"), description + behind))).end, End::Thrown);
}

TEST(MP4Parser, EndsExtensionsOfNoSize) {
    const std::string entry = videoEntry("avc1", 16, 8, longAtomOfSize(0, "free"));
    EXPECT_EQ(parsed(movie(videoTrak({}, stsd(1, entry)))).end, End::Thrown);
}

TEST(MP4Parser, EndsExtensionsThatLeadBack) {
    const std::string extensions = atom("free", zeros(8)) + longAtomOfSize(0 - std::uint64_t{16}, "free");
    const std::string entry = videoEntry("avc1", 16, 8, extensions);
    EXPECT_EQ(parsed(movie(videoTrak({}, stsd(1, entry)))).end, End::Thrown);
}

TEST(MP4Parser, EndsAtANameOfManyGibibytesWithoutReadingIt) {
    const std::string fields = word(0) + "mhlr" + "vide" + zeros(12);
    for (const std::uint32_t size : {0xFFFFFFFFU, 23U})
        EXPECT_EQ(parsed(movie(atom("trak", atom("mdia", atomOfSize(size, "hdlr", fields))))).end,
                  End::Thrown);
}

TEST(MP4Parser, EndsInAFileOfNothingButHeadersOfTracks) {
    // Each says that it ends where the next one begins, in the midst of its own fields.
    std::string bytes = ftyp();
    for (std::size_t count = 0; count <= MP4ParserBase::mostTracks; ++count)
        bytes += atom("tkhd");
    const Parsed found = parsed(bytes + zeros(100));
    EXPECT_EQ(found.end, End::Thrown);
    EXPECT_EQ(found.tracks.size(), MP4ParserBase::mostTracks);
}

TEST(MP4Parser, KeepsWhatItFoundOfAFileCutAtAnyByte) {
    const std::string description = stsd(1, videoEntry("avc1", 16, 8, pasp(4, 3)));
    const std::string whole =
        movie(videoTrak({.matrix = quarterTurn, .width = 20, .height = 8}, description) + soundTrak());
    const std::size_t header = ftyp().size() + 8 + mvhd().size() + 8 + Tkhd{}.bytes().size();
    std::size_t most = 0;
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const Parsed found = parsed(whole.substr(0, size));
        EXPECT_EQ(found.tracks.empty(), size < header) << size;
        EXPECT_GE(found.tracks.size(), most) << size;
        most = found.tracks.size();
        if (!found.tracks.empty()) {
            EXPECT_EQ(found.tracks[0].width, 20U);
            EXPECT_EQ(found.tracks[0].matrix.b, 1);
        }
    }
    EXPECT_EQ(most, 2U);
}

TEST(MP4Parser, HasNoTracksOfAFileWithoutFtyp) {
    const TestSupport::TempFolder temp;
    const auto path = temp.write("a.mov", atom("moov", mvhd() + videoTrak()));
    const Parsed found = parsed(std::make_unique<FileReader>(), TestSupport::wideOf(path));
    EXPECT_EQ(found.end, End::Thrown);
    EXPECT_TRUE(found.tracks.empty());
}

/// What is found in a file that support/video made.
Parsed parsedVideo(const std::string& name) {
    return parsed(std::make_unique<FileReader>(), TestSupport::wideOf(videoPath(name)));
}

TEST(MP4Parser, KnowsAFileThatOthersWrote) {
    const Parsed found = parsedVideo("with-audio.mp4");
    EXPECT_EQ(found.end, End::Reached);
    ASSERT_EQ(found.tracks.size(), 2U);
    const TrackRecord& video = found.tracks[0];
    EXPECT_EQ(video.kind, 0);
    EXPECT_STREQ(video.format, "avc1");
    EXPECT_EQ(video.width, 128U);
    EXPECT_EQ(video.height, 96U);
    EXPECT_EQ(video.codedWidth, 128);
    EXPECT_EQ(video.codedHeight, 96);
    EXPECT_EQ(textOf(video.matrix), identity);
    const TrackRecord& sound = found.tracks[1];
    EXPECT_EQ(sound.kind, 1);
    EXPECT_STREQ(sound.format, "mp4a");
    EXPECT_EQ(sound.volume, 1U);
    EXPECT_EQ(sound.trackId, 2U);
    EXPECT_EQ(textOf(found.movieMatrix), identity);
}

TEST(MP4Parser, KnowsTheAspectOfPixelsInFilesThatOthersWrote) {
    const TrackRecord wide = parsedVideo("wide-pixels.mp4").tracks.at(0);
    EXPECT_EQ(wide.hSpacing * 3, wide.vSpacing * 4);
    EXPECT_EQ(wide.codedWidth, 128);
    const TrackRecord tall = parsedVideo("tall-pixels.mp4").tracks.at(0);
    EXPECT_EQ(tall.hSpacing * 4, tall.vSpacing * 3);
}

TEST(MP4Parser, ThrowsForFilesOfOtherContainers) {
    for (const char* name : {"mpeg4.avi", "h264.mkv", "h264.h264"}) {
        EXPECT_EQ(parsedVideo(name).end, End::Thrown) << name;
        EXPECT_TRUE(parsedVideo(name).tracks.empty()) << name;
    }
}

} // namespace
