#include "inspection/source/MP4ParserFindStreamTypes.h"
#include "inspection/source/DSExceptions.h"

#include "inspection/source/MemoryReader.h"
#include "inspection/source/Mp4Bytes.h"
#include "support/TempFolder.h"
#include "support/video/Videos.h"

#include <gtest/gtest.h>

namespace {

using namespace Mp4Bytes; // NOLINT(google-build-using-namespace): the vocabulary of this file
using TestSupport::TempFolder;
using TestSupport::wideOf;

std::string textOf(const std::vector<StreamTypeRecord>& records) {
    std::string text;
    for (const StreamTypeRecord& record : records)
        text += std::to_string(record.trackType) + record.format + ' ';
    return text;
}

/// The tracks found in a file of these bytes, each as its type and format; "!" at the end when it threw.
std::string tracksOf(const std::string& bytes) {
    MP4ParserFindStreamTypes parser(std::make_unique<MemoryReader>(bytes));
    std::string end;
    try {
        parser.parse(L"");
    } catch (const MP4ParseException&) {
        end = "!";
    }
    return textOf(parser.streamTypes()) + end;
}

std::string movie(const std::string& tracks) {
    return ftyp() + atom("moov", mvhd() + tracks) + atom("mdat", "samples");
}

TEST(MP4ParserFindStreamTypes, TellsTypeAndFormatOfEachTrack) {
    EXPECT_EQ(tracksOf(movie(videoTrak() + soundTrak())), "0avc1 1mp4a ");
}

TEST(MP4ParserFindStreamTypes, FindsTheTracksBehindTheMedia) {
    EXPECT_EQ(tracksOf(ftyp() + longAtom("mdat", zeros(100)) + atom("moov", soundTrak())), "1mp4a ");
}

TEST(MP4ParserFindStreamTypes, CountsAnyOtherHandlerAsOther) {
    EXPECT_EQ(tracksOf(movie(
                  trak(Tkhd{.width = 9, .height = 9}.bytes(), hdlr("text"), stsd(1, sampleEntry("tx3g"))))),
              "2tx3g ");
}

TEST(MP4ParserFindStreamTypes, GoesBySizeThenVolumeWithoutAHandler) {
    const auto typeOf = [](const Tkhd& header) {
        return tracksOf(movie(trak(header.bytes(), "", stsd(1, sampleEntry("abcd")))));
    };
    EXPECT_EQ(typeOf({.volume = 0x100, .width = 1, .height = 1}), "0abcd ");
    EXPECT_EQ(typeOf({.volume = 0x100, .width = 1, .height = 0}), "1abcd ");
    EXPECT_EQ(typeOf({.volume = 0x100, .width = 0, .height = 1}), "1abcd ");
    EXPECT_EQ(typeOf({.volume = 0x0FF, .width = 0, .height = 1}), "2abcd ");
    EXPECT_EQ(typeOf({}), "2abcd ");
}

TEST(MP4ParserFindStreamTypes, IgnoresAHandlerDirectlyBelowATrack) {
    EXPECT_EQ(tracksOf(movie(atom("trak", Tkhd{.width = 9, .height = 9}.bytes() + hdlr("soun")))), "0 ");
}

TEST(MP4ParserFindStreamTypes, IgnoresAHandlerInMediaWithoutAMovie) {
    EXPECT_EQ(tracksOf(ftyp() + atom("mdia", hdlr("vide")) + atom("trak")), "2 ");
}

TEST(MP4ParserFindStreamTypes, ReadsAVersion1TrackInTheLayoutOfVersion0) {
    // Where version 0 has the size, version 1 has the shift of the matrix, which is 0.
    EXPECT_EQ(tracksOf(movie(atom("trak", Tkhd{.version = 1, .width = 320, .height = 240}.bytes()))), "2 ");
    EXPECT_EQ(tracksOf(movie(atom("trak", Tkhd{.version = 0, .width = 320, .height = 240}.bytes()))), "0 ");
}

TEST(MP4ParserFindStreamTypes, RepeatsTheFormatForATrackWithoutADescription) {
    EXPECT_EQ(tracksOf(movie(videoTrak() + trak(Tkhd{}.bytes(), hdlr("soun"), ""))), "0avc1 1avc1 ");
}

TEST(MP4ParserFindStreamTypes, RepeatsTheTypeForATrackWithoutAnything) {
    EXPECT_EQ(tracksOf(movie(soundTrak() + atom("trak"))), "1mp4a 1mp4a ");
}

TEST(MP4ParserFindStreamTypes, TakesTheFirstOfSeveralFormats) {
    EXPECT_EQ(tracksOf(movie(videoTrak({}, stsd(2, videoEntry("hvc1", 9, 9) + videoEntry("avc1", 9, 9))))),
              "0hvc1 ");
}

TEST(MP4ParserFindStreamTypes, HasTextAsAFormatToo) {
    EXPECT_EQ(tracksOf(movie(trak(Tkhd{}.bytes(), hdlr("text"), stsd(1, sampleEntry("text"))))), "2text ");
}

TEST(MP4ParserFindStreamTypes, PassesOverThePrivateContainer) {
    EXPECT_EQ(tracksOf(movie(soundTrak() + atom("QRLM", videoTrak()))), "1mp4a ");
}

TEST(MP4ParserFindStreamTypes, ReadsEightBytesBeyondAHandler) {
    const std::string inFile = ftyp() + atom("moov", atom("trak", atom("mdia", hdlr("vide"))));
    EXPECT_EQ(tracksOf(inFile), "!");
    EXPECT_EQ(tracksOf(inFile + zeros(7)), "!");
    EXPECT_EQ(tracksOf(inFile + atom("free")), "0 ");
}

TEST(MP4ParserFindStreamTypes, EndsAtAHandlerThatIsTooSmallForItsFields) {
    const std::string fields = word(0) + "mhlr" + "vide" + zeros(12);
    const auto file = [&fields](std::uint32_t size) {
        return movie(atom("trak", atom("mdia", atomOfSize(size, "hdlr", fields) + zeros(100))));
    };
    EXPECT_EQ(tracksOf(file(23)), "!") << "less than nothing is left for the name";
}

TEST(MP4ParserFindStreamTypes, EndsAtANameOfManyGibibytesWithoutReadingIt) {
    const std::string fields = word(0) + "mhlr" + "vide" + zeros(12);
    EXPECT_EQ(tracksOf(movie(atom("trak", atom("mdia", atomOfSize(0xFFFFFFFF, "hdlr", fields))))), "!");
    EXPECT_EQ(tracksOf(movie(atom("trak", atom("mdia", longAtomOfSize(1ULL << 62, "hdlr", fields))))), "!");
}

TEST(MP4ParserFindStreamTypes, KeepsWhatItFoundBeforeItThrew) {
    EXPECT_EQ(tracksOf(ftyp() + atomOfSize(10000, "moov", videoTrak())), "0avc1 !");
}

TEST(MP4ParserFindStreamTypes, FindsOfAFileCutAtAnyByteTheTracksBeforeTheCut) {
    const std::string video = videoTrak();
    const std::string sound = soundTrak();
    const std::string whole = movie(video + sound);
    // A track's last bytes, behind the format in its description, are not read.
    const std::size_t beforeTracks = ftyp().size() + 8 + mvhd().size();
    const std::size_t videoRead = beforeTracks + video.size() - 78;
    const std::size_t soundRead = beforeTracks + video.size() + sound.size() - 8;
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const std::string expected = size < videoRead ? "" : size < soundRead ? "0avc1 " : "0avc1 1mp4a ";
        const std::string found = tracksOf(whole.substr(0, size));
        EXPECT_EQ(found.substr(0, found.find('!')), expected) << size;
    }
}

TEST(MP4ParserFindStreamTypes, EndsInAFileOfNothingButTracks) {
    std::string bytes;
    for (std::size_t count = 0; count <= MP4ParserBase::mostTracks; ++count)
        bytes += atom("trak");
    MP4ParserFindStreamTypes parser(std::make_unique<MemoryReader>(bytes));
    EXPECT_THROW(parser.parse(L""), MP4ParseException);
    EXPECT_EQ(parser.streamTypes().size(), MP4ParserBase::mostTracks);
}

TEST(FindStreamTypes, GivesTheTracksOfAFile) {
    const TempFolder temp;
    EXPECT_EQ(textOf(FindStreamTypes(wideOf(temp.write("a.mp4", movie(videoTrak() + soundTrak()))))),
              "0avc1 1mp4a ");
}

TEST(FindStreamTypes, GivesWhatWasCollectedBeforeAFailure) {
    const TempFolder temp;
    const std::string bytes = movie(videoTrak() + soundTrak());
    EXPECT_EQ(textOf(FindStreamTypes(wideOf(temp.write("a.mp4", bytes.substr(0, bytes.size() - 30))))),
              "0avc1 ");
}

TEST(FindStreamTypes, GivesNothingWithoutFtypOrWithoutAFile) {
    const TempFolder temp;
    EXPECT_EQ(textOf(FindStreamTypes(wideOf(temp.write("a.mov", atom("moov", videoTrak()))))), "");
    EXPECT_EQ(textOf(FindStreamTypes(wideOf(temp / "missing.mp4"))), "");
}

TEST(FindStreamTypes, FindsTheTracksBehindGibibytesOfMedia) {
    const TempFolder temp;
    const auto path = temp.write("a.mp4", ftyp() + longAtomOfSize(5'000'000'016, "mdat"));
    std::filesystem::resize_file(path, ftyp().size() + 5'000'000'016);
    std::ofstream(path, std::ios::binary | std::ios::app) << atom("moov", videoTrak()) + atom("free");
    EXPECT_EQ(textOf(FindStreamTypes(wideOf(path))), "0avc1 ");
}

TEST(FindStreamTypes, KnowsFilesThatOthersWrote) {
    const auto typesOf = [](const char* name) { return textOf(FindStreamTypes(wideOf(videoPath(name)))); };
    EXPECT_EQ(typesOf("h264.mp4"), "0avc1 ");
    EXPECT_EQ(typesOf("with-audio.mp4"), "0avc1 1mp4a ");
    EXPECT_EQ(typesOf("hevc.mp4"), "0hev1 ");
    EXPECT_EQ(typesOf("mpeg4.mp4"), "0mp4v ");
    EXPECT_EQ(typesOf("prores.mov"), "0apco ");
    EXPECT_EQ(typesOf("tone.m4a"), "1mp4a ");
    EXPECT_EQ(typesOf("fragmented.mp4"), "0avc1 ");
    EXPECT_EQ(typesOf("mpeg4.avi"), "");
    EXPECT_EQ(typesOf("h264.mkv"), "");
}

} // namespace
